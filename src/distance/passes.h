// The passes of the genetic distances: CalcDistances.cpp.
#ifndef KVA_DISTANCE_PASSES_H
#define KVA_DISTANCE_PASSES_H

namespace kva {

class Run;

// Distances between all pairs of populations, in the folder "Distance_data": a file of matrices
// for each measure whose bit is on in PopDistMask, and with DistBit::PerLocus a sheet of single
// loci. `bootstraps` is the number of replicates, cut to 32 bits and stored in Bootstraps; their
// matrices stand behind each other. The alleles are counted first if no pass did. Without
// DistBit::Engine the folder alone is made; with it the random stream is seeded from the clock. The
// process is in the result folder afterwards. 0; 1 or 2 if the folder cannot be entered (new, or
// there already); 2 if PopDistMask is 0; 3, and nothing else is done, if the matrices take more
// memory or disk than the machine has left, told on the console and in the log; -4 if nothing is
// loaded.
long populationDistances(Run& run, long bootstraps);

// The same between all pairs of individuals, with 1 for the repeat length of each locus. Wanted:
// the measures are those of PopDistMask, too, as the front ends set them once for both. No sheets
// of single loci; with DistBit::Nexus and no bootstrap the matrices are NEXUS files.
long individualDistances(Run& run, long bootstraps);

// The engines: what the two passes do in their folder, here the current one, with the replicates of
// Run::Bootstraps. They need a data set and PopAllele, the one of individuals also IndAllele; a
// sample without tables counts as not typed. 0; -3 if no measure is selected.
long writePopulationMatrices(Run& run);
long writeIndividualMatrices(Run& run);

} // namespace kva

#endif
