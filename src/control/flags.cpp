#include "control/flags.h"

#include "control/CMenu.h"

#include <algorithm>

namespace kva {

namespace {

constexpr std::array<const char*, 2> kNoYes = {"no", "yes"};

constexpr Flag kFlags[] = {
    // --- Distances -----------------------------------------------------------------------
    {.Word = FlagWord::General,
     .Bit = GeneralBit::PopDistances,
     .Option = "-dist",
     .On = {"population", "p"},
     .MenuNumber = Menu::DistanceSettings,
     .Keys = "cC",
     .Label = "     (c) ... Pairwise populations distances calc: "},
    {.Word = FlagWord::General,
     .Bit = GeneralBit::IndDistances,
     .Option = "-dist",
     .On = {"individual", "i"},
     .MenuNumber = Menu::DistanceSettings,
     .Keys = "iI",
     .Label = "     (i) ... Pairwise individual distances calc : "},
    {.Word = FlagWord::General,
     .Bit = GeneralBit::MinusLog,
     .Option = "-dist",
     .On = {"calc=ln"},
     .MenuNumber = Menu::DistanceSettings,
     .Keys = "lL",
     .Label = "     (l) ... Use -ln(similarity factor) \n"
              "      instead of 1-(similarity factor)    : ",
     .LogOn = "Distances are taken as -ln(P) [if possible]\n",
     .LogOff = "Distances are taken as 1-P [if possible]\n"},
    // Wanted: not on the screen, whose lines stay as they are.
    {.Word = FlagWord::Distances,
     .Bit = DistBit::Nexus,
     .Option = "-dist",
     .On = {"nexus", "NEXUS"},
     .MenuNumber = Menu::DistanceSettings,
     .Keys = "xX"},
    {.Word = FlagWord::Distances,
     .Bit = DistBit::PerLocus,
     .Option = "-dist",
     .On = {"locus", "l"},
     .MenuNumber = Menu::DistanceSettings,
     .Keys = "oO",
     .Label = "     (o) ... Distance per population pair and locus: "},
    {.Word = FlagWord::Distances,
     .Bit = DistBit::Rst,
     .LogOn = "Rst, Population subdivision with MS\n"},

    // --- F-statistics --------------------------------------------------------------------
    {.Word = FlagWord::General,
     .Bit = GeneralBit::FStatistics,
     .MenuNumber = Menu::FStatistics,
     .Keys = "cC",
     .Label = "Fst/Fis/Fit distances calc: "},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Global,
     .Label = "     (g) Fst calculated global         : "},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Beta,
     .MenuNumber = Menu::FStatistics,
     .Keys = "hH",
     .Label = "     (h) Betai/ij calculation          : "},
    {.Word = FlagWord::FStatistics, .Bit = FstBit::HObs, .LogOn = "Heterozygosity is Hobserved"},
    {.Word = FlagWord::FStatistics, .Bit = FstBit::HExp, .LogOn = "Heterozygosity is Hexpected"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::HAuto,
     .LogOn = "(AUTO)Heterozygosity is Hobserved or Hexpected"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Genotypes,
     .Label = "     (4) Assume Hardy-Weinberg         : ",
     .States = {"Yes", "No"},
     .LogOn = "Resampling Genotypes\n",
     .LogOff = "Resampling Alleles\n"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Linked,
     .LogOn = "Loci are linked together\n",
     .LogOff = "Loci are unlinked\n"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Permutation,
     .LogOn = "Randomisationmode: Permutation\n",
     .LogOff = "Randomisationmode: Randomisation\n"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::PerLocus,
     .Option = "-fst",
     .On = {"locus"},
     .MenuNumber = Menu::FStatistics,
     .Keys = "6",
     .Label = "     (6) Fst per locus and pair        : ",
     .States = kNoYes,
     .LogOn = "All Fst's per loci and population pairs\n"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Heterogeneity,
     .MenuNumber = Menu::FStatistics,
     .Keys = "7"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::RandomDiscard,
     .Option = "-fst",
     .On = {"RD=ON", "RD"},
     .Off = "RD=OFF",
     .MenuNumber = Menu::FStatistics,
     .Keys = "rR",
     .Label = "     (r) ... Random discarding of data\n"
              "             if necessary before permutation:  ",
     .States = kNoYes,
     .LogOn = "Make Randomdiscarding before permutation\n"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Jackknife,
     .LogOn = "Make Jackknifing before permutation\n"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::Confidence,
     .LogOn = "95% Confidenzinterval of test-statistic\n"},
    {.Word = FlagWord::FStatistics,
     .Bit = FstBit::ConfidencePermuted,
     .LogOn = "95% Confidenzinterval of permutated-statistic instead of test-statistic itself\n"},

    // --- Heterozygosity range --------------------------------------------------------------
    {.Word = FlagWord::General,
     .Bit = GeneralBit::HetRange,
     .MenuNumber = Menu::HetRange,
     .Keys = "cC",
     .Label = "     (c) ... Calculate Heterozygosityrange: "},
    {.Word = FlagWord::HetRange,
     .Bit = HetRangeBit::Linked,
     .Option = "-hetrange",
     .On = {"linked", "l"},
     .MenuNumber = Menu::HetRange,
     .Keys = "lL",
     .Label = "     (l) ... Loci are linked              : "},
    // Also of `individual`, the end of which is then skipped like any unknown word.
    {.Word = FlagWord::HetRange,
     .Bit = HetRangeBit::Individuals,
     .Option = "-hetrange",
     .On = {"ind"},
     .MenuNumber = Menu::HetRange,
     .Keys = "sS",
     .Label = "     (s) ... Sample individuals  instead of chromosomes:"},
    {.Word = FlagWord::HetRange,
     .Bit = HetRangeBit::RandomDiscard,
     .Option = "-hetrange",
     .On = {"RD=ON", "RD"},
     .Off = "RD=OFF",
     .MenuNumber = Menu::HetRange,
     .Keys = "rR",
     .Label = "     (r) ... Randomdiscard inbred data    : "},
    {.Word = FlagWord::HetRange,
     .Bit = HetRangeBit::CorrectZero,
     .Option = "-hetrange",
     .On = {"zero=ON"},
     .MenuNumber = Menu::HetRange,
     .Keys = "0",
     .Label = "     (0) ... correct Min(=0) and Max(=1) Heterozygosity\n"
              "             with by min/max value        : "},

    // --- Exports ---------------------------------------------------------------------------
    {.Word = FlagWord::General,
     .Bit = GeneralBit::RepeatSteps,
     .MenuNumber = Menu::Conversion,
     .Keys = "rR",
     .Label = "     (r) ... Reduce to stepsize        : "},
};

} // namespace

std::span<const Flag> allFlags() {
    return kFlags;
}

const Flag& flagOf(FlagWord word, uint32_t bit) {
    return *std::ranges::find_if(
        kFlags, [=](const Flag& flag) { return flag.Word == word && flag.Bit == bit; });
}

uint32_t AnalyseSettings::*maskOf(FlagWord word) {
    constexpr std::array kMasks = {&AnalyseSettings::GeneralMask, &AnalyseSettings::PopDistMask,
                                   &AnalyseSettings::FstMask, &AnalyseSettings::HetRangeMask};
    return kMasks[static_cast<std::size_t>(word)];
}

} // namespace kva
