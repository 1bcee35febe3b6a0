// Jackknifing: the share of a population that takes part in a shuffle.
#ifndef KVA_FSTAT_JACKKNIFE_H
#define KVA_FSTAT_JACKKNIFE_H

namespace kva {

// The slots of a population of `slots` that take part in a shuffle under jackknifing:
// all but those of a tenth of the individuals, cut to a whole number of 1 to 79. Populations of 5
// slots or fewer keep all. Wanted: Run::JackknifeAnteil has no say here; it tells the share that
// thinning drops.
long jackknifedSlots(long slots);

} // namespace kva

#endif
