// The passes of the genetic distances: CalcDistances.cpp.
#ifndef KVA_DISTANCE_PASSES_H
#define KVA_DISTANCE_PASSES_H

namespace kva {

class Run;

// Distances between all pairs of populations, in the folder "Distance_data": a file of matrices
// for each measure whose bit is on in PopDistMask, one matrix per replicate, and with
// DistBit::PerLocus a sheet of single loci. `bootstraps` is stored in Bootstraps; the random stream
// is seeded from the clock. 0; 1 or 2 if the folder cannot be entered; 2 if PopDistMask is 0; -4 if
// nothing is loaded.
long populationDistances(Run& run, long bootstraps);

// The same between all pairs of individuals. The measures are those of PopDistMask, too. No sheets
// of single loci; with DistBit::Nexus and no bootstrap the matrices are NEXUS files.
long individualDistances(Run& run, long bootstraps);

// The engines, in the current folder. 0; -3 if no measure is selected.
long writePopulationMatrices(Run& run);
long writeIndividualMatrices(Run& run);

} // namespace kva

#endif
