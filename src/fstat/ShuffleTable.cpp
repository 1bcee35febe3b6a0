#include "fstat/ShuffleTable.h"

#include "data/lociclass.h"

#include <algorithm>

namespace {

constexpr uint32_t kMissing = 0; // code of missing data

// The tally of two entries in turn.
Tally tallyPair(uint32_t first, int32_t firstWeight, uint32_t second, int32_t secondWeight) {
    const bool hasFirst = first != kMissing;
    const bool hasSecond = second != kMissing;
    Tally sum;
    sum.Copies = (hasFirst ? 1 : 0) + (hasSecond ? 1 : 0);
    sum.Weight = (hasFirst ? firstWeight : 0) + (hasSecond ? secondWeight : 0);
    sum.Typed = hasFirst || hasSecond ? 2 : 0;
    sum.Hetero = hasFirst && hasSecond && first != second ? 1 : 0;
    return sum;
}

// Counting with the table's fields held in registers. A code seen for the first time is
// written behind the last and the end moves on: no branch to mispredict.
class Counter {
  public:
    Counter(std::vector<int32_t>& count, std::vector<uint32_t>& order, std::size_t found)
        : Count(count.data()), Order(order.data()), Found(found) {}

    void add(uint32_t code) {
        Order[Found] = code;
        int32_t& count = Count[code];
        Found += count == 0 ? 1 : 0;
        ++count;
    }
    std::size_t found() const { return Found; }

  private:
    int32_t* Count;
    uint32_t* Order;
    std::size_t Found;
};

std::vector<int32_t> allelesOf(const LociObj& locus) {
    std::vector<int32_t> numbers;
    for (int pop = 1; pop <= locus.AnzPop; ++pop) {
        for (const int32_t number : locus.DataSlots(pop)) {
            if (number >= 0) {
                numbers.push_back(number);
            }
        }
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

uint32_t codeOf(const std::vector<int32_t>& alleles, int32_t number) {
    if (number < 0) {
        return kMissing;
    }
    const auto place = std::lower_bound(alleles.begin(), alleles.end(), number);
    return static_cast<uint32_t>(place - alleles.begin()) + 1;
}

} // namespace

// --- Coded data ------------------------------------------------------------------------

void CodedLocus::pairUp(int32_t slotPlace, int32_t pairPlace, int32_t slots) {
    for (int32_t pair = 0; pair < slots / 2; ++pair) {
        const auto first = static_cast<std::size_t>(slotPlace + 2 * pair);
        Pairs[static_cast<std::size_t>(pairPlace + pair)] = {
            Code[first], Code[first + 1],
            tallyPair(Code[first], Weight[first], Code[first + 1], Weight[first + 1])};
    }
}

CodedData::CodedData(const Datensatz& daten) : Loci(daten.Loci.size()) {
    int32_t slotPlaces = 0;
    int32_t pairPlaces = 0;
    for (int pop = 1; pop <= daten.GetPopAnzahl(); ++pop) {
        const int32_t slots = daten.GetAnzDatenChromosome(pop);
        Slots.push_back(slots);
        SlotPlace.push_back(slotPlaces);
        PairPlace.push_back(pairPlaces);
        slotPlaces += slots + 1;
        pairPlaces += slots / 2;
    }
    for (std::size_t l = 0; l < Loci.size(); ++l) {
        const std::vector<int32_t> alleles = allelesOf(daten.Loci[l]);
        CodedLocus& locus = Loci[l];
        locus.Alleles = static_cast<int32_t>(alleles.size());
        locus.Code.reserve(static_cast<std::size_t>(slotPlaces));
        locus.Weight.reserve(static_cast<std::size_t>(slotPlaces));
        locus.Pairs.resize(static_cast<std::size_t>(pairPlaces));
        for (std::size_t pop = 0; pop < populations(); ++pop) {
            for (int32_t slot = 0; slot <= slots(pop); ++slot) { // with the one behind the last
                const int number = static_cast<int>(pop) + 1;
                locus.Code.push_back(codeOf(alleles, daten.Loci[l].GetDataChromosom(number, slot)));
                locus.Weight.push_back(daten.Loci[l].isHaploid(number, slot) != 0 ? 1 : 2);
            }
            locus.pairUp(slotPlace(pop), pairPlace(pop), slots(pop));
        }
    }
}

void CodedData::readThrough(const SlotSheet& sheet, CodedData& out) const {
    for (std::size_t l = 0; l < Loci.size(); ++l) {
        const CodedLocus& from = Loci[l];
        CodedLocus& to = out.Loci[l];
        for (std::size_t pop = 0; pop < populations(); ++pop) {
            const std::vector<long>& sources = sheet[l][pop];
            for (int32_t slot = 0; slot < slots(pop); ++slot) {
                const long source = sources[static_cast<std::size_t>(slot)];
                const auto target = static_cast<std::size_t>(slotPlace(pop) + slot);
                const auto place =
                    static_cast<std::size_t>(slotPlace(pop) + std::max(source, long{0}));
                to.Code[target] = source < 0 ? kMissing : from.Code[place];
                to.Weight[target] = from.Weight[place];
            }
            to.pairUp(slotPlace(pop), pairPlace(pop), slots(pop));
        }
    }
}

int32_t CodedData::mostAlleles() const {
    int32_t most = 0;
    for (const CodedLocus& locus : Loci) {
        most = std::max(most, locus.Alleles);
    }
    return most;
}

// --- Tables ----------------------------------------------------------------------------

void ShuffleTable::resize(int32_t alleles) {
    Count.assign(static_cast<std::size_t>(alleles) + 1, 0);
    Order.assign(static_cast<std::size_t>(alleles) + 1, 0);
    Found = 0;
    clear();
}

void ShuffleTable::addPairs(const CodedLocus& locus, std::span<const int32_t> places) {
    Counter counter(Count, Order, Found);
    const CodedPair* const pairs = locus.Pairs.data();
    Tally sum = Sum;
    for (const int32_t place : places) {
        const CodedPair& pair = pairs[place];
        counter.add(pair.First);
        counter.add(pair.Second);
        sum += pair.Sum;
    }
    Found = counter.found();
    Sum = sum;
}

void ShuffleTable::addSlots(const CodedLocus& locus, std::span<const int32_t> places) {
    Counter counter(Count, Order, Found);
    const uint32_t* const codes = locus.Code.data();
    const int32_t* const weights = locus.Weight.data();
    Tally sum = Sum;
    const std::size_t paired = places.size() / 2 * 2;
    for (std::size_t c = 0; c < paired; c += 2) {
        const int32_t first = places[c];
        const int32_t second = places[c + 1];
        counter.add(codes[first]);
        counter.add(codes[second]);
        sum += tallyPair(codes[first], weights[first], codes[second], weights[second]);
    }
    if (paired < places.size()) { // the last individual stays open
        const int32_t last = places[paired];
        counter.add(codes[last]);
        Tally open = tallyPair(codes[last], weights[last], kMissing, 0);
        open.Typed = 1;
        sum += open;
    }
    Found = counter.found();
    Sum = sum;
}

void ShuffleTable::addCopies(const ShuffleTable& other) {
    for (const uint32_t code : other.alleles()) {
        Order[Found] = code;
        Found += Count[code] == 0 ? 1 : 0;
        Count[code] += other.Count[code];
    }
    Sum.Copies += other.Sum.Copies;
}

double ShuffleTable::sumOfSquares() const {
    double sum = 0.0;
    for (const uint32_t code : alleles()) {
        const double p = frequency(code);
        sum += p * p;
    }
    return sum;
}

double ShuffleTable::CalcHet() const {
    if (Sum.Weight <= 2) {
        return -1.0;
    }
    const double C = Sum.Weight;
    return std::min((C / (C - 2.0)) * (1.0 - sumOfSquares()), 1.0);
}

double ShuffleTable::CalcHetuk() const {
    return Sum.Copies == 0 ? -1.0 : std::min(1.0 - sumOfSquares(), 1.0);
}

// --- Estimator -------------------------------------------------------------------------

PairEstimator::PairEstimator(HRegel regel, int32_t mostAlleles)
    : Regel(regel), Counts1(static_cast<std::size_t>(mostAlleles) + kAlleleStep), Counts2(Counts1) {
    Drawn.resize(mostAlleles);
}

std::optional<Varianz> PairEstimator::components(const ShuffleTable& t1, const ShuffleTable& t2) {
    Found = 0;
    for (const uint32_t code : t1.alleles()) {
        put(t1.count(code), t2.count(code));
    }
    for (const uint32_t code : t2.alleles()) {
        if (t1.count(code) == 0) {
            put(0, t2.count(code));
        }
    }
    const HRegel choice = pairRegel(Regel, t1, t2);
    return estimate(t1.tally(), t2.tally(), sampleH(choice, t1), sampleH(choice, t2));
}

std::optional<Varianz> PairEstimator::componentsOfDeal(const CodedLocus& locus,
                                                       const ShuffleTable& whole1,
                                                       const ShuffleTable& whole2,
                                                       std::span<const int32_t> places1,
                                                       std::span<const int32_t> places2) {
    Drawn.clear();
    Drawn.addPairs(locus, places1);
    Tally rest = whole1.tally();
    rest += whole2.tally();
    rest -= Drawn.tally();
    Found = 0;
    int32_t open = rest.Copies; // not yet found in the second sample
    for (const uint32_t code : Drawn.alleles()) {
        const int32_t left = whole1.count(code) + whole2.count(code) - Drawn.count(code);
        put(Drawn.count(code), left);
        open -= left;
    }
    // What is open belongs to alleles that the second sample alone has, in their order there.
    const auto addNew = [&](uint32_t code) {
        if (Drawn.count(code) == 0) {
            const int32_t copies = whole1.count(code) + whole2.count(code);
            put(0, copies);
            open -= copies;
            Drawn.mark(code);
        }
    };
    for (const int32_t* place = places2.data(); open > 0; ++place) {
        const CodedPair& pair = locus.Pairs[static_cast<std::size_t>(*place)];
        addNew(pair.First);
        addNew(pair.Second);
    }
    return estimate(Drawn.tally(), rest, Drawn.CalcHetobs(), rest.CalcHetobs());
}

std::optional<Varianz> PairEstimator::estimate(const Tally& t1, const Tally& t2, double H1,
                                               double H2) {
    while (Found % kAlleleStep != 0) {
        put(0, 0);
    }
    return pairComponents({t1.Copies, t2.Copies, H1, H2, std::span(Counts1).first(Found),
                           std::span(Counts2).first(Found)});
}
