// Real data: the published estimates, and the sheets of a whole pass.
#include "fstat/nancycats_loci.h"

#include "fstat/fstatsupport.h"
#include "fstat/passrun.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>

using namespace kva;

using kva_test::globalEstimate;
using kva_test::GlobalEstimate;
using kva_test::kBoth;
using kva_test::kNancyNine;
using kva_test::kNancyNineLoci;
using kva_test::kPairs;
using kva_test::LoadedRun;
using kva_test::PassRun;

namespace {

constexpr double kRounding = 1e-13; // of sums over a thousand terms

// The data file as LoadedRun takes it.
std::string dataFile() {
    std::string repeats = "2 . .";
    std::string names = ". . .";
    for (const char* const locus : kNancyNineLoci) {
        repeats += " 2 .";
        names.append(" ").append(locus).append(" ").append(locus).append("b");
    }
    std::string text = repeats + "\n" + repeats + "\n" + names + "\n";
    std::istringstream colonies(kNancyNine);
    std::string line;
    while (std::getline(colonies, line)) {
        std::istringstream words(line);
        std::string colony;
        std::string cat;
        words >> colony;
        while (words >> cat) {
            text.append(colony).append(" d 0");
            for (std::size_t digit = 0; digit < cat.size(); digit += 3) {
                const int allele = std::stoi(cat.substr(digit, 3));
                text.append(" ").append(allele == 0 ? "." : std::to_string(allele));
            }
            text += "\n";
        }
    }
    return text;
}

// The value with so many decimals as it is printed elsewhere.
std::string rounded(double value, int decimals) {
    char text[40];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

} // namespace

// The longer values are Weir and Cockerham's formulas in exact fractions, on the raw genotypes.

TEST(NancyCats, PairwiseFstIsThePublishedOne) {
    LoadedRun run(dataFile());
    run.counted();
    run->FstMask = 0x1;
    FTriple f = newFTriple(run->AnzPop);
    CMatrix none;
    run->FST_PAIR_WC84(f, run->PopAllele, none);
    EXPECT_EQ(rounded(f[0](0, 1), 7), "0.1307741");
    EXPECT_NEAR(f[0](0, 1), 0.13077406423924404, kRounding);
    EXPECT_NEAR(f[1](0, 1), 0.28043059156628564, kRounding);
    EXPECT_NEAR(f[2](0, 1), 0.17217218351412927, kRounding);
}

TEST(NancyCats, GlobalEstimatesAreThePublishedOnes) {
    LoadedRun run(dataFile());
    run.counted();
    run->FstMask = 0x1;
    const GlobalEstimate all = globalEstimate(*run);
    EXPECT_EQ(rounded(all.fst, 8), "0.08494959");
    EXPECT_EQ(rounded(all.fit, 7), "0.1952946");
    EXPECT_NEAR(all.fst, 0.08494959407381003, kRounding);
    EXPECT_NEAR(all.fit, 0.19529461543019955, kRounding);
    EXPECT_NEAR(all.fis, 0.12058900869477368, kRounding);
}

TEST(NancyCats, OnlyTheColonyWithoutDataAtALocusLacksIt) {
    const PassRun pass(dataFile(), kPairs | 0x40, 0);
    std::istringstream sheet(pass.file("Fst_per_locus.xls"));
    std::string line;
    while (std::getline(sheet, line)) {
        const bool withP17 = line.find("\tP17\t") != std::string::npos;
        EXPECT_EQ(line.find("n.d.") != std::string::npos, withP17) << line;
    }
}

TEST(NancyCats, EveryColonyDiffersFromAllTogether) {
    const PassRun pass(dataFile(), kBoth, 100);
    EXPECT_NE(pass.file("GlobFst.xls").find("global Fst over all loci:\t0.084950\t0.010000\n"),
              std::string::npos);
    // P01 and P02 never meet their Fst again; corrected for 136 pairs that is 1.36.
    const std::string sheet = pass.file("FST_WC84-pValue.xls");
    const std::string pValues = sheet.substr(sheet.find("P-values:"));
    EXPECT_NE(pValues.find("\nP01\t0.000000\t0.010000\t"), std::string::npos);
    EXPECT_NE(pValues.find("\nP02\tn.s.\t0.000000\t"), std::string::npos);
}
