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

// --- Coded data -------------------------------------------------------------------------

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
        for (int32_t pop = 0; pop < populations(); ++pop) {
            for (int32_t slot = 0; slot <= slots(pop); ++slot) { // with the one behind the last
                locus.Code.push_back(
                    codeOf(alleles, daten.Loci[l].GetDataChromosom(pop + 1, slot)));
                locus.Weight.push_back(daten.Loci[l].isHaploid(pop + 1, slot) != 0 ? 1 : 2);
            }
            locus.pairUp(slotPlace(pop), pairPlace(pop), slots(pop));
        }
    }
}

void CodedData::readThrough(const SlotSheet& sheet, CodedData& out) const {
    for (std::size_t l = 0; l < Loci.size(); ++l) {
        const CodedLocus& from = Loci[l];
        CodedLocus& to = out.Loci[l];
        for (int32_t pop = 0; pop < populations(); ++pop) {
            const std::vector<long>& sources = sheet[l][static_cast<std::size_t>(pop)];
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

// --- Tables ------------------------------------------------------------------------------

void ShuffleTable::resize(int32_t alleles) {
    Count.assign(static_cast<std::size_t>(alleles) + 1, 0);
    Order.assign(static_cast<std::size_t>(alleles) + 1, 0);
    Found = 0;
    clear();
}

void ShuffleTable::clear() {
    for (const uint32_t code : alleles()) {
        Count[code] = 0;
    }
    Count[kMissing] = 1; // missing data never look like a new allele
    Found = 0;
    Sum = {};
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

void ShuffleTable::addRest(const ShuffleTable& whole1, const ShuffleTable& whole2,
                           const ShuffleTable& drawn, const CodedLocus& locus,
                           std::span<const int32_t> places) {
    Sum += whole1.Sum;
    Sum += whole2.Sum;
    Sum -= drawn.Sum;
    int32_t open = Sum.Copies; // not yet counted
    for (const uint32_t code : drawn.alleles()) {
        const int32_t left = whole1.Count[code] + whole2.Count[code] - drawn.Count[code];
        Order[Found] = code;
        Found += left != 0 ? 1 : 0;
        Count[code] = left;
        open -= left;
    }
    // What is open belongs to alleles that this sample alone has: those without a count.
    const auto addNew = [&](uint32_t code) {
        if (Count[code] == 0) {
            Count[code] = whole1.Count[code] + whole2.Count[code];
            Order[Found] = code;
            ++Found;
            open -= Count[code];
        }
    };
    const CodedPair* const pairs = locus.Pairs.data();
    for (const int32_t* place = places.data(); open > 0; ++place) {
        addNew(pairs[*place].First);
        addNew(pairs[*place].Second);
    }
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

double ShuffleTable::CalcHetobs() const {
    return Sum.Weight <= 1 || Sum.Typed <= 1 ? -1.0 : Sum.Hetero / (Sum.Typed * 0.5);
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

// --- Estimator ---------------------------------------------------------------------------

PairEstimator::PairEstimator(HRegel regel, int32_t mostAlleles)
    : Regel(regel), Counts1(static_cast<std::size_t>(mostAlleles) + kAlleleStep), Counts2(Counts1) {
}

std::optional<Varianz> PairEstimator::components(const ShuffleTable& t1, const ShuffleTable& t2) {
    std::size_t found = 0;
    for (const uint32_t code : t1.alleles()) {
        Counts1[found] = t1.count(code);
        Counts2[found] = t2.count(code);
        ++found;
    }
    for (const uint32_t code : t2.alleles()) {
        Counts1[found] = 0;
        Counts2[found] = t2.count(code);
        found += t1.count(code) == 0 ? 1 : 0;
    }
    for (; found % kAlleleStep != 0; ++found) {
        Counts1[found] = 0;
        Counts2[found] = 0;
    }
    const HRegel choice = pairRegel(Regel, t1, t2);
    return pairComponents({t1.tally().Copies, t2.tally().Copies, sampleH(choice, t1),
                           sampleH(choice, t2), std::span(Counts1).first(found),
                           std::span(Counts2).first(found)});
}
