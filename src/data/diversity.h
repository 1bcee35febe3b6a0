// The formulas of diversity, each in its one home. They take what any table of a sample holds:
//
//      S     sum of squared allele frequencies, 0 to 1
//      C     sum of the weights of the gene copies: two for one of a diploid individual, one for
//            one flagged haploid; 2n for n copies of diploids
//      Hs    mean gene diversity within populations, of s populations
//      Ht    gene diversity of the pool of all populations
//
// The order of the operations is part of each result.
#ifndef KVA_DATA_DIVERSITY_H
#define KVA_DATA_DIVERSITY_H

#include <algorithm>
#include <cstdint>

namespace kva {

// What all statistics of a sample give if it is too small.
constexpr double kTooSmall = -1.0;

// The correction for the size of a sample: C/(C-2), which is n/(n-1) without haploid entries; C is
// above 2.
inline double sizeFactor(double C) {
    return C / (C - 2.0);
}

// Expected heterozygosity 1 - S, uncorrected, at most 1.0 (Nei 1973).
inline double uncorrectedHet(double S) {
    return std::min(1.0 - S, 1.0);
}

// Expected heterozygosity C/(C-2) (1 - S), at most 1.0 (Nei 1978); C is above 2.
inline double expectedHet(double C, double S) {
    return std::min(sizeFactor(C) * (1.0 - S), 1.0);
}

// Observed heterozygosity: `hetero` heterozygous individuals among `typed` entries of individuals
// with an allele; kTooSmall unless C is above 1 and there are two such entries.
inline double observedHet(int32_t C, int32_t typed, int32_t hetero) {
    return C <= 1 || typed <= 1 ? kTooSmall : hetero / (typed * 0.5);
}

// The inbreeding coefficient of a population, 1 - Hobs/Hs. No guard for an Hs of 0.
inline double inbreeding(double hetObs, double Hs) {
    return 1.0 - hetObs / Hs;
}

// The share of the diversity between populations, 1 - Hs/Ht (Nei 1973), from the ratio Hs/Ht.
inline double gst(double ratio) {
    return 1.0 - ratio;
}

// The largest Ht that an Hs of s populations allows: none shares an allele with another.
inline double largestHt(double s, double Hs) {
    return (s - 1.0 + Hs) / s;
}

// Gst over its largest value for this Hs (Hedrick 2005), from Hs/Ht and Hs over the largest Ht.
inline double gstStrich(double ratio, double ratioMax) {
    return gst(ratio) / gst(ratioMax);
}

} // namespace kva

#endif
