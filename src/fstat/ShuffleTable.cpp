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

// --- Entries in bytes ------------------------------------------------------------------

// Four individuals side by side, 16 bits each: their two entries, of which either may come first.
// In each field of a sum 16 bits count.
using FourPairs = uint64_t;

constexpr FourPairs kOnes = 0x0001000100010001;
constexpr FourPairs kAllCodes = kCodeBits * (kOnes | kOnes << 8U);
constexpr std::size_t kMostEntries = 32768; // so that 16 bits hold every sum

// The sum of the four fields, which 16 bits hold.
int32_t sumOf(FourPairs fields) {
    return static_cast<int32_t>(fields * kOnes >> 48U);
}

// Sums over individuals.
struct PairSums {
    FourPairs Copies = 0; // gene copies
    FourPairs Light = 0;  // ... of weight 1
    FourPairs Typed = 0;  // individuals with an allele
    FourPairs Hetero = 0; // individuals with two different alleles

    void add(FourPairs pairs) {
        const FourPairs codes = pairs & kAllCodes;
        const FourPairs filled = (codes + kAllCodes) >> 7U; // 1 in each byte with an allele
        const FourPairs first = filled & kOnes;
        const FourPairs second = filled >> 8U & kOnes;
        const FourPairs unlike = ((codes ^ codes >> 8U) & kCodeBits * kOnes) + kCodeBits * kOnes;
        Copies += first + second;
        Light += (pairs >> 7U & kOnes) + (pairs >> 15U & kOnes);
        Typed += first | second;
        Hetero += first & second & unlike >> 7U;
    }
    Tally tally() const {
        const int32_t copies = sumOf(Copies);
        return {copies, 2 * copies - sumOf(Light), 2 * sumOf(Typed), sumOf(Hetero)};
    }
};

// The last entry of an odd number: its individual stays open.
Tally tallyOpen(uint8_t entry) {
    const uint32_t code = entry & kCodeBits;
    Tally open = tallyPair(code, (entry & kHaploidBit) != 0 ? 1 : 2, kMissingCode, 0);
    open.Typed = 1;
    return open;
}

} // namespace

Tally tallyEntries(std::span<const uint8_t> entries) {
    if (entries.size() > kMostEntries) {
        Tally sum = tallyEntries(entries.first(kMostEntries));
        sum += tallyEntries(entries.subspan(kMostEntries));
        return sum;
    }
    PairSums sums;
    std::size_t k = 0;
    for (; k + sizeof(FourPairs) <= entries.size(); k += sizeof(FourPairs)) {
        FourPairs pairs = 0;
        std::memcpy(&pairs, &entries[k], sizeof pairs);
        sums.add(pairs);
    }
    FourPairs rest = 0;
    for (; k + 1 < entries.size(); k += 2) {
        rest = rest << 16U | uint32_t{entries[k]} << 8U | entries[k + 1];
    }
    sums.add(rest);
    Tally sum = sums.tally();
    if (k < entries.size()) {
        sum += tallyOpen(entries[k]);
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
