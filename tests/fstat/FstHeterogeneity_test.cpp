#include "fstat/FstHeterogeneity.h"

#include "data/ftriple.h"
#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"
#include "support/written.h"

#include <gtest/gtest.h>

using namespace kva;

using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::streamIsBehind;
using kva_test::written;

namespace {

constexpr double kUndefined = -32767.0;
constexpr uint32_t kGlobalAlone = 0x5801; // with heterogeneity and no pairwise pass

const char* const kHead = "Heterogeneity in F-Statistics among loci\n"
                          "calculated by resampling (with replacement) over all loci\n"
                          "\n";
const char* const kPairColumns = "\t\t\tFst\t\t\t\tFst\n"
                                 "\t\t95% lower\tmean\t95% upper\t\t99% lower\tmean\t99% upper";
const char* const kGlobalColumns =
    "\n\t\tFst\t\t\t\tFit\t\t\t\tFis\t\t\t\tFst\t\t\t\tFit\t\t\t\tFis\n"
    "\t95% lower\tmean\t95% upper\t\t95% lower\tmean\t95% upper\t\t95% lower\tmean\t95% upper"
    "\t\t99% lower\tmean\t99% upper\t\t99% lower\tmean\t99% upper\t\t99% lower\tmean\t99% upper\n";

// A row a locus, a column a pair.
CMatrix pairTable(const std::vector<std::vector<double>>& rows) {
    CMatrix table;
    table.Resize(static_cast<int32_t>(rows.size()), static_cast<int32_t>(rows[0].size()));
    for (std::size_t l = 0; l < rows.size(); ++l) {
        for (std::size_t pair = 0; pair < rows[l].size(); ++pair) {
            table(static_cast<int32_t>(l), static_cast<int32_t>(pair)) = rows[l][pair];
        }
    }
    return table;
}

// kTwoPops with 200 replicas.
struct Case {
    Case() : run(kTwoPops) {
        run.counted();
        run->Replikate = 200;
        run->FstMask = kGlobalAlone;
        srand2(1);
    }
    std::string pairs(const CMatrix& table) {
        StdoutCapture capture;
        std::string text =
            written([&](ResultFile& sheet) { writePairHeterogeneity(*run, table, sheet); });
        console = capture.text();
        return text;
    }
    std::string all(const CMatrix& table) {
        StdoutCapture capture;
        std::string text =
            written([&](ResultFile& sheet) { writeGlobalHeterogeneity(*run, table, sheet); });
        console = capture.text();
        return text;
    }

    LoadedRun run;
    std::string console;
};

} // namespace

TEST(LociPerReplica, FollowsTheSetting) {
    EXPECT_EQ(lociPerReplica(-1, 10), 9);
    EXPECT_EQ(lociPerReplica(0, 10), 10);
    EXPECT_EQ(lociPerReplica(3, 10), 3);
    EXPECT_EQ(lociPerReplica(10, 10), 10);
    EXPECT_EQ(lociPerReplica(20, 10), 9) << "more than there are: all but one";
    EXPECT_EQ(lociPerReplica(-10, 10), 2) << "none left: two";
    EXPECT_EQ(lociPerReplica(-1, 1), 1);
    EXPECT_EQ(lociPerReplica(5, 1), 1);
    EXPECT_EQ(lociPerReplica(-1, 2), 1);
    EXPECT_EQ(lociPerReplica(-2, 2), 2);
}

TEST(PairHeterogeneity, EqualLociGiveTheirValueEverywhere) {
    Case c;
    EXPECT_EQ(c.pairs(pairTable({{0.25}, {0.25}})),
              std::string(kHead) +
                  "Analysis takes 1 Loci out of 2 Loci total.\n"
                  "KVA made 200 replikas.\n\n" +
                  kPairColumns +
                  "\nA\tB\t0.250000\t0.250000\t0.250000\t\t0.250000\t0.250000\t0.250000\t");
    EXPECT_EQ(c.console, "");
    EXPECT_TRUE(streamIsBehind(1, 200)) << "one locus a replica";
}

TEST(PairHeterogeneity, UndefinedLociAreDrawnAgain) {
    // Of 0.416 .092 .7564 ... every draw below 0.5 hits the undefined first locus.
    Case c;
    const std::string sheet = c.pairs(pairTable({{kUndefined}, {0.5}}));
    EXPECT_NE(sheet.find("\nA\tB\t0.500000\t0.500000\t0.500000\t\t"), std::string::npos);
    EXPECT_FALSE(streamIsBehind(1, 200));
}

// One locus a replica out of two: the replicas are 0 or 1, so the limits are 0 and 1 and the mean
// is the share of draws of 0.5 or more.
TEST(PairHeterogeneity, LimitsAndMeanOfTwoLoci) {
    int high = 0;
    srand2(1);
    for (int replica = 0; replica < 200; ++replica) {
        high += rand2() >= 0.5F ? 1 : 0;
    }
    char row[80];
    std::snprintf(row, sizeof row, "\nA\tB\t0.000000\t%f\t1.000000\t\t0.000000\t%f\t1.000000\t",
                  high / 200.0, high / 200.0);
    Case c;
    EXPECT_NE(c.pairs(pairTable({{0.0}, {1.0}})).find(row), std::string::npos) << row;
}

TEST(PairHeterogeneity, AReplicaIsTheMeanOfItsLoci) {
    // Both loci a replica: 0, 0.5 or 1.
    Case c;
    c.run->ReplikaLoci = 0;
    const std::string sheet = c.pairs(pairTable({{0.0}, {1.0}}));
    EXPECT_NE(sheet.find("Analysis takes 2 Loci out of 2 Loci total.\n"), std::string::npos);
    EXPECT_TRUE(streamIsBehind(1, 400));
}

TEST(PairHeterogeneity, NoDefinedLocusDrawsNothingAndSaysSo) {
    Case c;
    const std::string sheet = c.pairs(pairTable({{kUndefined}, {kUndefined}}));
    EXPECT_EQ(sheet.substr(sheet.find("\nA\tB")), "\nA\tB\tn.d.\tn.d.\tn.d.\t\tn.d.\tn.d.\tn.d.\t");
    EXPECT_EQ(c.console,
              "\nNo locus with a defined Fst, heterogeneity among loci is n.d.: A and B\n");
    EXPECT_TRUE(streamIsBehind(1, 0));
    EXPECT_NE(c.run.resultFile("KVA.log").find("heterogeneity among loci is n.d.: A and B\n"),
              std::string::npos);
}

TEST(PairHeterogeneity, OnePopulationHasTheHeadAlone) {
    LoadedRun run("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 5 6\n");
    run.counted();
    const CMatrix none;
    EXPECT_EQ(written([&](ResultFile& sheet) { writePairHeterogeneity(*run, none, sheet); }),
              std::string(kHead) +
                  "Analysis takes 1 Loci out of 1 Loci total.\n"
                  "KVA made 1000 replikas.\n\n" +
                  kPairColumns);
}

TEST(GlobalHeterogeneity, HeadAndSixTriples) {
    Case c;
    CMatrix table;
    table.Resize(FRow::Anzahl, 2);
    for (int32_t l = 0; l < 2; ++l) {
        table(FRow::Fst, l) = 0.25;
        table(FRow::Fit, l) = 0.5;
        table(FRow::Fis, l) = -0.125;
    }
    const std::string fst = "0.250000\t0.250000\t0.250000\t";
    const std::string fit = "0.500000\t0.500000\t0.500000\t";
    const std::string fis = "-0.125000\t-0.125000\t-0.125000\t";
    EXPECT_EQ(c.all(table), std::string(kHead) +
                                "Analysis takes 1 Loci out of 2 Loci total.\n"
                                "KVA makes 200 replikas.\n\n\n" +
                                kGlobalColumns + "Global:\t" + fst + "\t" + fit + "\t" + fis +
                                "\t" + fst + "\t" + fit + "\t" + fis + "\n");
    EXPECT_TRUE(streamIsBehind(1, 200)) << "one draw serves all three";
}

TEST(GlobalHeterogeneity, BehindThePairwisePartTheHeadIsNotRepeated) {
    Case c;
    c.run->FstMask = 0x4801;
    CMatrix table;
    table.Resize(FRow::Anzahl, 2);
    EXPECT_EQ(c.all(table).substr(0, 8), "\n\n\t\tFst\t");
}

TEST(GlobalHeterogeneity, NoDefinedLocusIsToldOnce) {
    Case c;
    CMatrix table;
    table.Resize(FRow::Anzahl, 2);
    table.Fill(kUndefined);
    const std::string sheet = c.all(table);
    EXPECT_EQ(sheet.substr(sheet.find("Global:")),
              "Global:\tn.d.\tn.d.\tn.d.\t\tn.d.\tn.d.\tn.d.\t\tn.d.\tn.d.\tn.d.\t"
              "\tn.d.\tn.d.\tn.d.\t\tn.d.\tn.d.\tn.d.\t\tn.d.\tn.d.\tn.d.\t\n");
    EXPECT_EQ(c.console,
              "\nNo locus with a defined Fst, heterogeneity among loci is n.d.: Global\n");
    EXPECT_TRUE(streamIsBehind(1, 0));
}

TEST(GlobalHeterogeneity, AnUndefinedFstLeavesTheLocusOutOfAll) {
    Case c;
    CMatrix table;
    table.Resize(FRow::Anzahl, 2);
    table(FRow::Fst, 0) = kUndefined;
    table(FRow::Fit, 0) = 99.0;
    table(FRow::Fit, 1) = 0.5;
    EXPECT_NE(c.all(table).find("\t0.500000\t0.500000\t0.500000\t"), std::string::npos);
}
