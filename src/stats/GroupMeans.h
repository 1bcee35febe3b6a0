// Means of the sample statistics over groups of populations, for the pass that writes them all.
#ifndef KVA_STATS_GROUPMEANS_H
#define KVA_STATS_GROUPMEANS_H

#include "data/lociclass.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kva {

// The populations of each group at a locus, from one walk over all of them. The group of a
// population is that of its first individual.
class GroupIndex {
  public:
    explicit GroupIndex(const LociObj& locus);

    // The populations of a group, from 1, ascending; none where the group does not come up.
    std::span<const int32_t> populations(int gruppe) const;

    bool operator==(const GroupIndex& other) const = default;

  private:
    std::vector<int32_t> Groups; // of the populations in the order of Pops, ascending
    std::vector<int32_t> Pops;   // populations from 1, group by group
};

// What LociObj's operations of these names give for a group with these populations, of which there
// is at least one at the locus.
struct GroupStatistics {
    double het;   // CalcHet
    double hetRD; // CalcRDHet
    double var;   // CalcVar
    double varRD; // CalcRDVar
    int min;      // CalcMin
    double mean;  // CalcMean
    int max;      // CalcMax
};

// The statistics of a group at locus `locus`, from 1; `tab` is PopAllele.
GroupStatistics groupStatistics(const SampleTables& tab, int locus,
                                std::span<const int32_t> populations);

} // namespace kva

#endif
