#include "fstat/ShuffleTable.h"

#include <algorithm>
#include <cstring>

namespace kva {

namespace {

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

// 1 or 0 in 16 bits, for sums that go side by side.
constexpr uint16_t one(bool holds) {
    return holds ? 1 : 0;
}

// `pairs` is so small that 16 bits hold the sums.
Tally tallyPairs(const uint8_t* entries, std::size_t pairs) {
    uint16_t copies = 0;
    uint16_t light = 0; // copies of weight 1
    uint16_t typed = 0;
    uint16_t hetero = 0;
    for (std::size_t k = 0; k < pairs; ++k) {
        uint16_t pair = 0; // both entries side by side; which is which does not matter
        std::memcpy(&pair, entries + 2 * k, sizeof pair);
        const uint16_t a = pair & kCodeBits;
        const uint16_t b = pair >> 8U & kCodeBits;
        copies = static_cast<uint16_t>(copies + one(a != 0) + one(b != 0));
        light = static_cast<uint16_t>(light + (pair >> 7U & 1U) + (pair >> 15U));
        typed = static_cast<uint16_t>(typed + one((a | b) != 0));
        hetero = static_cast<uint16_t>(hetero + (one(a != 0) & one(b != 0) & one(a != b)));
    }
    return {copies, 2 * copies - light, 2 * typed, hetero};
}

} // namespace

Tally tallyEntries(std::span<const uint8_t> entries) {
    constexpr std::size_t kMostPairs = 16384;
    Tally sum;
    while (entries.size() > 1) {
        const std::size_t pairs = std::min(entries.size() / 2, kMostPairs);
        sum += tallyPairs(entries.data(), pairs);
        entries = entries.subspan(2 * pairs);
    }
    if (!entries.empty()) { // the last individual stays open
        const bool typed = (entries[0] & kCodeBits) != kMissingCode;
        const bool haploid = (entries[0] & kHaploidBit) != 0;
        sum += {typed ? 1 : 0, !typed ? 0 : haploid ? 1 : 2, 1, 0};
    }
    return sum;
}

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
        Tally open = tallyPair(codes[last], weights[last], kMissingCode, 0);
        open.Typed = 1;
        sum += open;
    }
    Found = counter.found();
    Sum = sum;
}

void ShuffleTable::addEntries(std::span<const uint8_t> entries) {
    Counter counter(Count, Order, Found);
    for (const uint8_t entry : entries) {
        counter.add(entry & kCodeBits);
    }
    Found = counter.found();
    Sum += tallyEntries(entries);
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

} // namespace kva
