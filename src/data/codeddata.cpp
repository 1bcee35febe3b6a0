#include "data/codeddata.h"

#include "data/lociclass.h"

#include <algorithm>

namespace kva {

namespace {

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
        return kMissingCode;
    }
    const auto place = std::lower_bound(alleles.begin(), alleles.end(), number);
    return static_cast<uint32_t>(place - alleles.begin()) + 1;
}

} // namespace

Tally tallyPair(uint32_t first, int32_t firstWeight, uint32_t second, int32_t secondWeight) {
    const bool hasFirst = first != kMissingCode;
    const bool hasSecond = second != kMissingCode;
    Tally sum;
    sum.Copies = (hasFirst ? 1 : 0) + (hasSecond ? 1 : 0);
    sum.Weight = (hasFirst ? firstWeight : 0) + (hasSecond ? secondWeight : 0);
    sum.Typed = hasFirst || hasSecond ? 2 : 0;
    sum.Hetero = hasFirst && hasSecond && first != second ? 1 : 0;
    return sum;
}

void CodedLocus::packEntries() {
    Entries.clear();
    if (Alleles > int32_t{kCodeBits}) {
        return;
    }
    for (std::size_t place = 0; place < Code.size(); ++place) {
        const bool haploid = Code[place] != kMissingCode && Weight[place] == 1;
        Entries.push_back(static_cast<uint8_t>(Code[place] | (haploid ? kHaploidBit : 0U)));
    }
}

void CodedLocus::pairUp(int32_t slotPlace, int32_t pairPlace, int32_t slots) {
    const auto pairs = static_cast<std::size_t>(slots / 2);
    auto first = static_cast<std::size_t>(slotPlace);
    auto place = static_cast<std::size_t>(pairPlace);
    for (std::size_t pair = 0; pair < pairs; ++pair, first += 2, ++place) {
        Pairs[place] = {Code[first], Code[first + 1],
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
        locus.Code.reserve(slotPlaces);
        locus.Weight.reserve(slotPlaces);
        locus.Pairs.resize(pairPlaces);
        for (std::size_t pop = 0; pop < populations(); ++pop) {
            for (int32_t slot = 0; slot <= slots(pop); ++slot) { // with the one behind the last
                const int number = static_cast<int>(pop) + 1;
                locus.Code.push_back(codeOf(alleles, daten.Loci[l].GetDataChromosom(number, slot)));
                locus.Weight.push_back(daten.Loci[l].isHaploid(number, slot) != 0 ? 1 : 2);
            }
            locus.pairUp(slotPlace(pop), pairPlace(pop), slots(pop));
        }
        locus.packEntries();
    }
}

void CodedData::readThrough(const SlotSheet& sheet, CodedData& out) const {
    for (std::size_t l = 0; l < Loci.size(); ++l) {
        const CodedLocus& from = Loci[l];
        CodedLocus& to = out.Loci[l];
        for (std::size_t pop = 0; pop < populations(); ++pop) {
            const auto begin = static_cast<std::size_t>(slotPlace(pop));
            std::size_t target = begin;
            for (const long source : sheet[l][pop]) { // one for each slot
                const std::size_t place =
                    begin + static_cast<std::size_t>(std::max(source, long{0}));
                to.Code[target] = source < 0 ? kMissingCode : from.Code[place];
                to.Weight[target] = from.Weight[place];
                ++target;
            }
            to.pairUp(slotPlace(pop), pairPlace(pop), slots(pop));
        }
        to.packEntries();
    }
}

bool CodedData::onlyPairs() const {
    return std::all_of(Slots.begin(), Slots.end(), [](int32_t slots) { return slots % 2 == 0; });
}

int32_t CodedData::mostAlleles() const {
    int32_t most = 0;
    for (const CodedLocus& locus : Loci) {
        most = std::max(most, locus.Alleles);
    }
    return most;
}

} // namespace kva
