#include "fstat/ShuffleTable.h"

#include <algorithm>
#include <cstring>
#include <numeric>

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
using FourPairs = uint64_t;

constexpr FourPairs kOnes = 0x0001000100010001; // 1 in each of the 16 bits
constexpr FourPairs kAllCodes = kCodeBits * (kOnes | kOnes << 8U);
constexpr std::size_t kMostSteps = 8192; // so that 16 bits hold the total of a sum

// Sums over individuals, four side by side.
struct FourSums {
    FourPairs Typed = 0;
    FourPairs Hetero = 0;

    // Adding kAllCodes sets the highest bit of each byte that is not 0; where the two bytes of a
    // pair are compared, the lower one counts.
    void add(FourPairs pairs) {
        const FourPairs codes = pairs & kAllCodes;
        const FourPairs filled = codes + kAllCodes;
        const FourPairs unlike = ((codes ^ codes >> 8U) & kAllCodes) + kAllCodes;
        Typed += (filled | filled >> 8U) >> 7U & kOnes;
        Hetero += (filled & filled >> 8U & unlike) >> 7U & kOnes;
    }
    static int32_t total(FourPairs fields) { return static_cast<int32_t>(fields * kOnes >> 48U); }
};

} // namespace

TypedPairs countEights(std::span<const uint8_t> entries) {
    TypedPairs sum;
    while (entries.size() >= sizeof(FourPairs)) {
        const std::size_t steps = std::min(entries.size() / sizeof(FourPairs), kMostSteps);
        FourSums sums;
        for (std::size_t k = 0; k < steps; ++k) {
            FourPairs pairs = 0;
            std::memcpy(&pairs, &entries[k * sizeof pairs], sizeof pairs);
            sums.add(pairs);
        }
        sum.Typed += 2 * FourSums::total(sums.Typed);
        sum.Hetero += FourSums::total(sums.Hetero);
        entries = entries.subspan(steps * sizeof(FourPairs));
    }
    return sum;
}

int32_t countLight(std::span<const uint8_t> entries) {
    return std::accumulate(entries.begin(), entries.end(), int32_t{0},
                           [](int32_t sum, uint8_t entry) { return sum + (entry >> 7); });
}

void ShuffleTable::resize(int32_t alleles) {
    Count.assign(alleles + 1, 0);
    Order.assign(alleles + 1, 0);
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

} // namespace kva
