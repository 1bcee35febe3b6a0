#include "control/AnalyseDataObj.h"

#include "support/support.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace kva;

using kva_test::readFile;
using kva_test::TempFolder;

namespace {

// What stands in front of the optional parts with the defaults.
const std::string kStart = "KVAnalyser-Log\n"
                           "\tVersion: 4.05\n"
                           "\tKVAnalyzer, population genetics of microsatellites\n"
                           "\n"
                           "Filename: cats.txt\n"
                           "Number of Loci\t\t: 9\n"
                           "Number of Populations\t: 17\n"
                           "Format : 2\n"
                           "\n"
                           "Allelic Richness : Minimal sample number per locus";

// An analysis object with nine loci and 17 populations, and the defaults of the command line.
class DataLog : public testing::Test {
  protected:
    DataLog() {
        static_cast<AnalyseSettings&>(run) = kCommandLineDefaults;
        run.DateiName = "cats.txt";
        run.AnzLoci = 9;
        run.AnzPop = 17;
        run.DatenFormat = 2;
    }

    std::string head(long bootstraps = 1, long permutations = 10000) {
        run.LogDatei = ResultFile("KVA.log", "wb", "KVA.log", nullptr);
        EXPECT_EQ(run.WriteDataLog(bootstraps, permutations), 0);
        run.LogDatei.close();
        return readFile("KVA.log");
    }

    // Writes one more head to the log, which is to be kStart and `lines`.
    void add(long bootstraps, long permutations, const std::string& lines) {
        if (expected.empty()) {
            run.LogDatei = ResultFile("KVA.log", "wb", "KVA.log", nullptr);
        }
        EXPECT_EQ(run.WriteDataLog(bootstraps, permutations), 0);
        expected.push_back(kStart + lines + "\n");
    }

    void expectAll(std::size_t heads) {
        run.LogDatei.close();
        const std::string log = readFile("KVA.log");
        std::size_t place = 0;
        for (const std::string& one : expected) {
            ASSERT_EQ(log.substr(place, one.size()), one);
            place += one.size();
        }
        EXPECT_EQ(place, log.size());
        EXPECT_EQ(expected.size(), heads);
    }

    const TempFolder folder{TempFolder::Enter::yes};
    AnalyseDataObj run;
    std::vector<std::string> expected; // heads in the order of add()
};

std::string pick(bool on, const std::string& yes, const std::string& no = "") {
    return on ? yes : no;
}

// The optional parts, line after line.
std::string distanceLines(uint32_t mask, bool minusLog, int bootstraps) {
    return "\nDistanz settings:\n" + pick(mask & 0x2, "Dps, Proportion of shared allels\n") +
           pick(mask & 0x4, "Dfs, Fuzzy set similarity\n") +
           pick(mask & 0x8, "Dad, Absolute difference algorithm\n") +
           pick(mask & 0x10, "Dkf, Kinship coefficient\n") +
           pick(mask & 0x20, "Dmu, Delta mu squared\n") +
           pick(mask & 0x40, "D1, Average squared difference\n") +
           pick(mask & 0x80, "Dc , Chord distance (Cavalli-Sforza and Edwards (1967))\n") +
           pick(mask & 0x80, "Da , Nei's-distance (1983)\n") +
           pick(mask & 0x100, "D, Nei's standard genetic distance (1978) corrected for small "
                              "sample size.\n") +
           pick(mask & 0x200, "Rst, Population subdivision with MS\n") +
           pick(minusLog, "Distances are taken as -ln(P) [if possible]\n",
                "Distances are taken as 1-P [if possible]\n") +
           "\nNumber of bootstraps\t: " + std::to_string(bootstraps) + "\n";
}

std::string fstLines(uint32_t mask, int permutations) {
    const bool thinning = permutations > 0;
    const bool confidence = thinning && (mask & 0x80);
    return "\nF-Statistics settings:\n" + pick(mask & 0x1, "Heterozygosity is Hobserved") +
           pick(mask & 0x2, "Heterozygosity is Hexpected") +
           pick(mask & 0x4, "(AUTO)Heterozygosity is Hobserved or Hexpected") + "\n" +
           pick(mask & 0x8, "Resampling Genotypes\n", "Resampling Alleles\n") +
           pick(mask & 0x10, "Loci are linked together\n", "Loci are unlinked\n") +
           pick(mask & 0x20, "Randomisationmode: Permutation\n",
                "Randomisationmode: Randomisation\n") +
           pick(mask & 0x40, "All Fst's per loci and population pairs\n") +
           pick(thinning && (mask & 0x80), "Make Randomdiscarding before permutation\n") +
           pick(thinning && (mask & 0x100), "Make Jackknifing before permutation\n") +
           pick(confidence && (mask & 0x200), "95% Confidenzinterval of test-statistic\n") +
           pick(confidence && (mask & 0x400), "95% Confidenzinterval of permutated-statistic "
                                              "instead of test-statistic itself\n") +
           "\nNumber of permutations\t: " + std::to_string(permutations) + "\n";
}

} // namespace

// --- Data set and richness --------------------------------------------------------

TEST_F(DataLog, EndsBehindTheRichnessLineWithoutDistancesAndFStatistics) {
    EXPECT_EQ(head(), "KVAnalyser-Log\n"
                      "\tVersion: 4.05\n"
                      "\tKVAnalyzer, population genetics of microsatellites\n"
                      "\n"
                      "Filename: cats.txt\n"
                      "Number of Loci\t\t: 9\n"
                      "Number of Populations\t: 17\n"
                      "Format : 2\n"
                      "\n"
                      "Allelic Richness : Minimal sample number per locus\n");
}

TEST_F(DataLog, ShowsTheFileNameAsItWasTyped) {
    run.DateiName = "sub/../my data%s.txt";
    EXPECT_NE(head().find("\nFilename: sub/../my data%s.txt\nNumber of Loci"), std::string::npos);
}

TEST_F(DataLog, FormatIsANumber) {
    run.DatenFormat = 1;
    EXPECT_NE(head().find("\nFormat : 1\n\n"), std::string::npos);
}

TEST_F(DataLog, RefusedFileHasZeroLociAndPopulations) {
    run.AnzLoci = 0;
    run.AnzPop = 0;
    run.DatenFormat = 0;
    EXPECT_NE(head().find("\nNumber of Loci\t\t: 0\nNumber of Populations\t: 0\nFormat : 0\n\n"),
              std::string::npos);
}

// Half the gene copies are individuals: 1 x 0.5.
TEST_F(DataLog, RichnessOfOneGeneCopyIsHalfAnIndividual) {
    run.RichnessRef = 1;
    EXPECT_TRUE(head().ends_with("Format : 2\n\nAllelic Richness : 0.500000\n"));
}

TEST_F(DataLog, RichnessOfTenGeneCopiesIsFiveIndividuals) {
    run.RichnessRef = 10;
    EXPECT_TRUE(head().ends_with("\nAllelic Richness : 5.000000\n"));
}

TEST_F(DataLog, RichnessOfZeroIsTheMinimalSampleNumber) {
    run.RichnessRef = 0;
    EXPECT_EQ(head(), kStart + "\n");
}

// 33554435 is 2^25 + 3. Single-precision numbers are 4 apart there, so it becomes 33554436, and
// half of that is 16777218. In double precision it would be 16777217.5.
TEST_F(DataLog, RichnessIsComputedInSinglePrecision) {
    run.RichnessRef = 33554435;
    EXPECT_TRUE(head().ends_with("\nAllelic Richness : 16777218.000000\n"));
}

// --- Distances ------------------------------------------------------------------------

TEST_F(DataLog, DistancesOfTheMenusDefault) {
    run.GeneralMask |= 0x400;
    run.PopDistMask = 0xA3;
    EXPECT_EQ(head(100), kStart + "\n"
                                  "Distanz settings:\n"
                                  "Dps, Proportion of shared allels\n"
                                  "Dmu, Delta mu squared\n"
                                  "Dc , Chord distance (Cavalli-Sforza and Edwards (1967))\n"
                                  "Da , Nei's-distance (1983)\n"
                                  "Distances are taken as 1-P [if possible]\n"
                                  "\n"
                                  "Number of bootstraps\t: 100\n"
                                  "\n");
}

TEST_F(DataLog, AllDistancesUnderTheLogarithm) {
    run.GeneralMask |= 0x8400;
    run.PopDistMask = 0xFFF;
    EXPECT_EQ(head(),
              kStart +
                  "\n"
                  "Distanz settings:\n"
                  "Dps, Proportion of shared allels\n"
                  "Dfs, Fuzzy set similarity\n"
                  "Dad, Absolute difference algorithm\n"
                  "Dkf, Kinship coefficient\n"
                  "Dmu, Delta mu squared\n"
                  "D1, Average squared difference\n"
                  "Dc , Chord distance (Cavalli-Sforza and Edwards (1967))\n"
                  "Da , Nei's-distance (1983)\n"
                  "D, Nei's standard genetic distance (1978) corrected for small sample size.\n"
                  "Rst, Population subdivision with MS\n"
                  "Distances are taken as -ln(P) [if possible]\n"
                  "\n"
                  "Number of bootstraps\t: 1\n"
                  "\n");
}

TEST_F(DataLog, NoDistanceSelectedLeavesTheFrameOfThePart) {
    run.GeneralMask |= 0x400;
    EXPECT_EQ(head(), kStart + "\n"
                               "Distanz settings:\n"
                               "Distances are taken as 1-P [if possible]\n"
                               "\n"
                               "Number of bootstraps\t: 1\n"
                               "\n");
}

TEST_F(DataLog, DistancesOfIndividualsAloneAreNotLogged) {
    run.GeneralMask |= 0x8800;
    run.PopDistMask = 0x1FF;
    EXPECT_EQ(head(), kStart + "\n");
}

// --- F-statistics -----------------------------------------------------------------------

TEST_F(DataLog, FStatisticsOfTheDefaults) {
    run.GeneralMask |= 0x4000;
    EXPECT_EQ(head(), kStart + "\n"
                               "F-Statistics settings:\n"
                               "Heterozygosity is Hobserved\n"
                               "Resampling Genotypes\n"
                               "Loci are linked together\n"
                               "Randomisationmode: Permutation\n"
                               "\n"
                               "Number of permutations\t: 10000\n"
                               "\n");
}

TEST_F(DataLog, ClearedWordShowsTheOtherSideOfEachChoice) {
    run.GeneralMask |= 0x4000;
    run.FstMask = 0;
    EXPECT_EQ(head(1, 5), kStart + "\n"
                                   "F-Statistics settings:\n"
                                   "\n"
                                   "Resampling Alleles\n"
                                   "Loci are unlinked\n"
                                   "Randomisationmode: Randomisation\n"
                                   "\n"
                                   "Number of permutations\t: 5\n"
                                   "\n");
}

TEST_F(DataLog, AllOfFStatisticsWithPermutations) {
    run.GeneralMask |= 0x4000;
    run.FstMask = 0xFFFF;
    EXPECT_EQ(head(1, 1),
              kStart + "\n"
                       "F-Statistics settings:\n"
                       "Heterozygosity is HobservedHeterozygosity is Hexpected"
                       "(AUTO)Heterozygosity is Hobserved or Hexpected\n"
                       "Resampling Genotypes\n"
                       "Loci are linked together\n"
                       "Randomisationmode: Permutation\n"
                       "All Fst's per loci and population pairs\n"
                       "Make Randomdiscarding before permutation\n"
                       "Make Jackknifing before permutation\n"
                       "95% Confidenzinterval of test-statistic\n"
                       "95% Confidenzinterval of permutated-statistic instead of test-statistic "
                       "itself\n"
                       "\n"
                       "Number of permutations\t: 1\n"
                       "\n");
}

TEST_F(DataLog, WithoutPermutationsNothingIsDoneBeforeThem) {
    run.GeneralMask |= 0x4000;
    run.FstMask = 0x7C4;
    EXPECT_EQ(head(1, 0), kStart + "\n"
                                   "F-Statistics settings:\n"
                                   "(AUTO)Heterozygosity is Hobserved or Hexpected\n"
                                   "Resampling Alleles\n"
                                   "Loci are unlinked\n"
                                   "Randomisationmode: Randomisation\n"
                                   "All Fst's per loci and population pairs\n"
                                   "\n"
                                   "Number of permutations\t: 0\n"
                                   "\n");
}

TEST_F(DataLog, ConfidenceIsLoggedOnlyWithRandomDiscarding) {
    run.GeneralMask |= 0x4000;
    run.FstMask = 0x739; // 0x100, 0x200 and 0x400 on, 0x80 off
    EXPECT_EQ(head(1, 10), kStart + "\n"
                                    "F-Statistics settings:\n"
                                    "Heterozygosity is Hobserved\n"
                                    "Resampling Genotypes\n"
                                    "Loci are linked together\n"
                                    "Randomisationmode: Permutation\n"
                                    "Make Jackknifing before permutation\n"
                                    "\n"
                                    "Number of permutations\t: 10\n"
                                    "\n");
}

TEST_F(DataLog, GlobalPairwiseAndBetaAreNotLogged) {
    run.GeneralMask |= 0x4000;
    run.FstMask = 0x39;
    const std::string plain = head();
    run.FstMask = 0x39 | 0x800 | 0x1000 | 0x2000 | 0x4000 | 0x8000;
    EXPECT_EQ(head(), plain);
}

// --- Both --------------------------------------------------------------------------------

TEST_F(DataLog, DistancesComeBeforeFStatistics) {
    run.GeneralMask |= 0x4400;
    run.PopDistMask = 0x103;
    run.RichnessRef = 4;
    EXPECT_EQ(head(2, 3),
              "KVAnalyser-Log\n"
              "\tVersion: 4.05\n"
              "\tKVAnalyzer, population genetics of microsatellites\n"
              "\n"
              "Filename: cats.txt\n"
              "Number of Loci\t\t: 9\n"
              "Number of Populations\t: 17\n"
              "Format : 2\n"
              "\n"
              "Allelic Richness : 2.000000\n"
              "Distanz settings:\n"
              "Dps, Proportion of shared allels\n"
              "D, Nei's standard genetic distance (1978) corrected for small sample size.\n"
              "Distances are taken as 1-P [if possible]\n"
              "\n"
              "Number of bootstraps\t: 2\n"
              "\n"
              "F-Statistics settings:\n"
              "Heterozygosity is Hobserved\n"
              "Resampling Genotypes\n"
              "Loci are linked together\n"
              "Randomisationmode: Permutation\n"
              "\n"
              "Number of permutations\t: 3\n"
              "\n");
}

TEST_F(DataLog, HeterozygosityRangeAndFormatsAreNotLogged) {
    run.GeneralMask |= 0x7E0000;
    run.HetRangeMask = 0x7803;
    EXPECT_EQ(head(), kStart + "\n");
}

// All heads go into one log, which is then walked head by head.
TEST_F(DataLog, EveryCombinationOfDistances) {
    for (uint32_t bits = 0; bits < 0x400; bits += 2) {
        run.PopDistMask = bits;
        for (const bool minusLog : {false, true}) {
            run.GeneralMask = minusLog ? 0x8400 : 0x400;
            add(7, 0, distanceLines(bits, minusLog, 7));
        }
    }
    expectAll(1024);
}

TEST_F(DataLog, EveryCombinationOfFStatistics) {
    run.GeneralMask = 0x4000;
    for (uint32_t bits = 0; bits < 0x800; ++bits) {
        run.FstMask = bits;
        for (const int permutations : {0, 1}) {
            add(1, permutations, fstLines(bits, permutations));
        }
    }
    expectAll(4096);
}
