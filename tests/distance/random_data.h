// Random small data files, with all that makes distances hard: missing alleles, loci and
// populations without any, inbred individuals, groups, one column with odd rows, long names.
#ifndef KVA_TESTS_DISTANCE_RANDOM_DATA_H
#define KVA_TESTS_DISTANCE_RANDOM_DATA_H

#include <cstdint>
#include <string>

namespace kva_test {

// A data file as tabbed() takes it; the same for the same seed.
std::string randomData(uint32_t seed);

} // namespace kva_test

#endif
