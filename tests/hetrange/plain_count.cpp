#include "hetrange/plain_count.h"

#include "fstat/randsci.h"

#include <array>

using namespace kva;

namespace kva_test {

namespace {

// The pairs of a row, one after the other, with random discard if it is asked for.
AllelCount plainCount(const LociObj& locus, int pop, std::span<const int32_t> row,
                      bool randomDiscard) {
    const auto missing = static_cast<int32_t>(locus.DataSlots(pop).size());
    const auto entry = [&](int32_t place) {
        return place == missing ? -1 : locus.GetDataChromosom(pop, place);
    };
    const auto flag = [&](int32_t place) {
        return place == missing ? 0 : static_cast<int>(locus.isHaploid(pop, place));
    };
    AllelCount count;
    for (std::size_t k = 0; k + 1 < row.size(); k += 2) {
        std::array<int, 2> alleles{entry(row[k]), entry(row[k + 1])};
        std::array<int, 2> flags{flag(row[k]), flag(row[k + 1])};
        if (randomDiscard && flags[0] != 0) {
            const std::size_t kept = rand2() < 0.5F ? 1 : 0;
            alleles[1 - kept] = alleles[kept];
            flags[1] = flags[0];
        }
        count.AddAllel(alleles[0], flags[0]);
        count.AddAllel(alleles[1], flags[1]);
    }
    return count;
}

} // namespace

std::string countDifference(HetTable& table, const LociObj& locus, int pop,
                            std::span<const int32_t> row, bool randomDiscard, long seed) {
    srand2(seed);
    table.Add(row, randomDiscard);
    const HetStatistics fast = table.Statistics();
    srand2(seed);
    const AllelCount plain = plainCount(locus, pop, row, randomDiscard);
    std::string names;
    names += fast.H == plain.CalcHet() ? "" : "H ";
    names += fast.V == plain.CalcVar(plain.CalcMean()) ? "" : "V ";
    names += fast.A == (plain.AnzAllele < 1 ? -1.0 : plain.AnzAllele) ? "" : "A ";
    names += fast.n == plain.AnzChromosomen / 2 ? "" : "n ";
    return names;
}

} // namespace kva_test
