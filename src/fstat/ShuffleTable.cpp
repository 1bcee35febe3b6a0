#include "fstat/ShuffleTable.h"

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

} // namespace

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
