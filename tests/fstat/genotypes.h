// Random genotypes in memory, deals of them, and a plain reading of a pair's locus, for the tests
// of the fast counts.
#ifndef KVA_TESTS_FSTAT_GENOTYPES_H
#define KVA_TESTS_FSTAT_GENOTYPES_H

#include "data/codeddata.h"
#include "data/lociclass.h"
#include "fstat/wc84.h"

#include <cstdint>
#include <optional>
#include <random>
#include <span>
#include <vector>

namespace kva_test {

using namespace kva;

// Two to six populations of 0 to 12 individuals at one to five loci of 1 to 12 alleles, in either
// order within an individual, some missing, some slots flagged haploid. One set in twenty has
// populations about the sizes at which a byte overflows or a sample is not small, one in ten a
// locus of 63 to 300 alleles.
Datensatz randomGenotypes(uint32_t seed);

// A place that stands for an entry: population and slot, both from 0.
struct SlotOf {
    int32_t Pop;
    int32_t Slot;
};

// The two slots of each individual at `places` (pair places), in their order.
std::vector<SlotOf> slotsAt(const CodedData& data, std::span<const int32_t> places);

// Counts entries of a locus (from 0) into tables, in the order given.
void addSlots(const Datensatz& daten, std::size_t locus, std::span<const SlotOf> slots,
              std::span<AllelCount* const> tables);

// A locus of two samples by the equations, allele by allele in the order of `pool`, with the
// observed heterozygosity.
std::optional<VarianceComponents> plainComponents(const AllelCount& pool, const AllelCount& t1,
                                                  const AllelCount& t2);

// Expects the same bits, or no value on both sides.
void expectSameBits(const std::optional<VarianceComponents>& fast,
                    const std::optional<VarianceComponents>& plain);

} // namespace kva_test

#endif
