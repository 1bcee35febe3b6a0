// The settings of a run: five words of flags, the scalar settings, and the
// defaults of the analysis object and of both front ends.
//
// One named constant stands for each bit. A bit that is carried in the defaults
// but read by nothing has no name.
#ifndef KVA_BASE_SETTINGS_H
#define KVA_BASE_SETTINGS_H

#include <cstdint>

namespace kva {

// The version, as the log and the exports tell it.
extern const char* const kVersion;

// True if all bits of `bits` are on in `mask`.
constexpr bool hasBit(uint32_t mask, uint32_t bits) {
    return (mask & bits) == bits;
}

// Bits of GeneralMask: which passes run and which sheets they write.
namespace GeneralBit {
constexpr uint32_t CountSheet = 0x1;       // write "Allelecount.xls"
constexpr uint32_t FrequencySheet = 0x2;   // write "Allelefrequencies.xls"
constexpr uint32_t PopDistances = 0x400;   // distances between populations
constexpr uint32_t IndDistances = 0x800;   // distances between individuals
constexpr uint32_t FStatistics = 0x4000;   // F-statistics
constexpr uint32_t MinusLog = 0x8000;      // -ln(similarity) instead of 1 - similarity
constexpr uint32_t Msvar = 0x20000;        // write the msvar files
constexpr uint32_t Arlequin = 0x40000;     // write the Arlequin project
constexpr uint32_t Migrate = 0x80000;      // write the Migrate/LAMARC file
constexpr uint32_t RepeatSteps = 0x100000; // exports hold repeat steps, not lengths
constexpr uint32_t HetRange = 0x200000;    // heterozygosity range by resampling
constexpr uint32_t IMFormat = 0x400000;    // write the IM files
} // namespace GeneralBit

// Bits of PopDistMask. Both distance engines, of populations and of individuals, read this word.
// The sources of the distances stand with their formulas in distance/measures.h.
namespace DistBit {
constexpr uint32_t Engine = 0x1;     // master switch of the engines; off: no distance is computed
constexpr uint32_t Dps = 0x2;        // proportion of shared alleles
constexpr uint32_t Dfs = 0x4;        // fuzzy set similarity
constexpr uint32_t Dad = 0x8;        // absolute difference
constexpr uint32_t Dkf = 0x10;       // kinship coefficient
constexpr uint32_t Dmu = 0x20;       // delta mu squared
constexpr uint32_t D1 = 0x40;        // average squared difference
constexpr uint32_t DcDa = 0x80;      // chord distance and Nei's distance of 1983, always together
constexpr uint32_t D = 0x100;        // Nei's standard distance of 1978
constexpr uint32_t Rst = 0x200;      // only a line in the log; computes nothing
constexpr uint32_t PerLocus = 0x400; // also write the sheets per population pair and locus
constexpr uint32_t Nexus = 0x800;    // individual matrices as NEXUS, without bootstrap only
} // namespace DistBit

// Bits of FstMask. Of the three heterozygosities the first that is on counts; without any the
// estimators act as under HAuto.
namespace FstBit {
constexpr uint32_t HObs = 0x1;                 // the estimators take the observed heterozygosity
constexpr uint32_t HExp = 0x2;                 // ... the expected one
constexpr uint32_t HAuto = 0x4;                // ... the expected one for inbred populations only
constexpr uint32_t Genotypes = 0x8;            // resample genotypes as wholes; off: single alleles
constexpr uint32_t Linked = 0x10;              // one draw serves all loci
constexpr uint32_t Permutation = 0x20;         // draw without replacement; off: with replacement
constexpr uint32_t PerLocus = 0x40;            // Fst per locus and population pair
constexpr uint32_t RandomDiscard = 0x80;       // random discarding before permutation
constexpr uint32_t Jackknife = 0x100;          // jackknifing before permutation
constexpr uint32_t Confidence = 0x200;         // 95 % limits of the test statistic
constexpr uint32_t ConfidencePermuted = 0x400; // ... of the permuted statistic instead
constexpr uint32_t Global = 0x800;             // global Fst
constexpr uint32_t NoPairs = 0x1000;           // no pairwise Fst
constexpr uint32_t LocusTable = 0x2000;        // keep the values of each locus
constexpr uint32_t Heterogeneity = 0x4000;     // heterogeneity among loci
constexpr uint32_t Beta = 0x8000;              // F-beta analysis
} // namespace FstBit

// Bits of HetRangeMask.
namespace HetRangeBit {
constexpr uint32_t ReplicateSheets = 0x1;  // also write the sheets of every replicate
constexpr uint32_t Draw = 0x2;             // draw the replicate's sample; off: it stays as it is
constexpr uint32_t CorrectZero = 0x800;    // replace a heterozygosity of 0 or about 1
constexpr uint32_t Linked = 0x1000;        // loci are linked
constexpr uint32_t Individuals = 0x2000;   // sample individuals instead of gene copies
constexpr uint32_t RandomDiscard = 0x4000; // random discard of inbred data
} // namespace HetRangeBit

// The five words, in their order at the head of Run, and so of AnalyseDataObj.
struct AnalyseSettings {
    uint32_t GeneralMask = 0xC31FF; // bits of GeneralBit
    uint32_t PopDistMask = 0xA3;    // bits of DistBit, also for individuals; 0: no distances
    uint32_t IndDistMask = 0xA3;    // no bit is read; 0: no distances of individuals
    uint32_t FstMask = 0x9A39;      // bits of FstBit; 0: no F-statistics
    uint32_t HetRangeMask = 0x803;  // bits of HetRangeBit
};

// Defaults of the menu: no analysis switched on, but the Arlequin and Migrate
// files, and the distances Dps, Dmu, Dc and Da preselected.
constexpr AnalyseSettings kMenuDefaults{};

// Defaults of the command line: no export and no distance selected.
constexpr AnalyseSettings kCommandLineDefaults{0x31FF, 0x1, 0x1, 0x9A39, 0x803};

// The scalar settings that a front end keeps beside the words.
struct ScalarSettings {
    int32_t Bootstraps = 1;             // replicates of the distances, at least 1
    int32_t BootLoci = -1;              // loci drawn per bootstrap replicate; 0 or less: as
                                        // many as there are
    int32_t Permutationen = 10000;      // permutations of the F-statistics tests; 0: no tests
    int32_t RichnessRef = -1;           // gene copies of the richness sub-sample; 0 or less:
                                        // minimal sample number per locus
    int32_t HetRandomisierungen = 1000; // replicates of the heterozygosity range, at least 0
    int32_t ReplikaLoci = -1;           // loci per replica of the heterogeneity among loci:
                                        // 0 all, n > 0 n loci, n < 0 all but -n
    int32_t Replikate = 1000;           // replicas of the heterogeneity among loci; the menu
                                        // takes multiples of 200
};

} // namespace kva

#endif
