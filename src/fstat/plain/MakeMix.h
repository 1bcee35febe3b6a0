// The shuffles of the permutation tests: which source slot goes to which place of
// the drawn samples. Populations and slots count from 0.
//
// The plain reading, which only the tests reach: the program shuffles with Shuffle.h, which is
// faster and makes the same draws, and the tests hold the two together.
#ifndef KVA_FSTAT_PLAIN_MAKEMIX_H
#define KVA_FSTAT_PLAIN_MAKEMIX_H

#include "data/slotmaps.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kva {

// Deals the slots of two populations of nA and nB slots into two maps of the same
// sizes. Each map has room for its sample.
// pop1, pop2: the populations; map1, map2: take them and the slots, -1 for a place left over.
// permutation 1: each slot once; else every place is drawn from all slots.
// genotypes 1: slots go in pairs; the population of a pair is that of its first slot.
// jackknife 1: the tails of both populations stay at home (see jackknifedSlots).
// linked: not used. buffer: scratch, sized here. One random number a slot or pair. 0.
int MakeMix2(int permutation, int genotypes, int linked, int jackknife, long nA, long nB, long pop1,
             long pop2, SampleMap& map1, SampleMap& map2, std::vector<int32_t>& buffer);

// Another scheme, beside MakeMix2: walks each population in a circle from a random
// start and sends each slot (genotypes 1: pair) to sample 1 or 2 by chance, in the
// shares nB : nA; to the other sample when the chosen one is full. One random number a
// population and one a slot or pair. Does nothing unless `permutation` is 1. linked: not used. The
// others as in MakeMix2. 0.
int MakeMix(int permutation, int genotypes, int linked, long nA, long nB, long pop1, long pop2,
            SampleMap& map1, SampleMap& map2);

// Deals the slots of all populations to places of populations of the same sizes, from
// the last place down. mapSlot[p][c], mapPop[p][c]: source slot and population of place c of
// population p; they come with a cell for each place. groessen: slots of each of the nPop
// populations, `gesamt` their sum; buffer: scratch, sized here. genotypes not 0: slots go in pairs.
// A place outside a population is dropped. One random number a slot or pair but the last.
//
// Wanted: without genotypes the last slot goes to flat place 1, over the one dealt there, and flat
// place 0 keeps what it held: one allele drops out of each shuffle, and the p-values depend on it.
// 0.
int MakeMixGlobal(int nPop, std::vector<std::vector<int32_t>>& mapSlot,
                  std::vector<std::vector<int32_t>>& mapPop, std::span<const int32_t> groessen,
                  int gesamt, std::vector<int32_t>& buffer, int genotypes);

} // namespace kva

#endif
