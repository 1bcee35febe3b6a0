// What the statistics passes share, and their order in a run.
#include "stats/statpass.h"

#include "stats/statsupport.h"
#include "support/written.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace kva;

using kva_test::kTwoPops;
using kva_test::kTwoPopsOneColumn;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::tableOf;
using kva_test::writeFile;
using kva_test::written;

namespace {

struct Values {
    double real;
    int count;
};

constexpr std::array<CellRule<Values>, 2> kRules = {{
    {"Real", CellFormat::Real, field<&Values::real>, negative<&Values::real>},
    {"Count", CellFormat::Count, field<&Values::count>, belowOne<&Values::count>},
}};

std::string cells(double real, int count) {
    return written([&](ResultFile& f) {
        for (const CellRule<Values>& rule : kRules) {
            writeCell(f, rule, {real, count});
        }
    });
}

} // namespace

TEST(CellRule, ValueInItsFormat) {
    EXPECT_EQ(cells(0.5, 7), "0.500000\t7\t");
    EXPECT_EQ(cells(0.0, 1), "0.000000\t1\t");
    EXPECT_EQ(cells(0.0, 2147483647), "0.000000\t2147483647\t");
}

TEST(CellRule, MissingByItsOwnRule) {
    EXPECT_EQ(cells(-1.0, 7), "n.d.\t7\t");
    EXPECT_EQ(cells(0.5, 0), "0.500000\tn.d.\t");
}

TEST(CellRule, NamesAreColumnHeads) {
    EXPECT_EQ(written([](ResultFile& f) { writeColumnHeads(f, kRules); }), "\tReal\tCount");
}

TEST(LocusNames, BothInTwoColumnData) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(written([&](ResultFile& f) { writeLocusNames(f, *run, 2); }), "L2\tL2b\t");
    EXPECT_STREQ(locusNameHead(*run), "Locus name1\tLocus name2");
}

TEST(LocusNames, OneInOneColumnData) {
    LoadedRun run(kTwoPopsOneColumn);
    EXPECT_EQ(written([&](ResultFile& f) { writeLocusNames(f, *run, 2); }), "L2\t");
    EXPECT_STREQ(locusNameHead(*run), "Locus name");
}

// Loci whose header could not be read.
TEST(LocusNames, EmptyWhereNotSet) {
    LoadedRun run(kTwoPops);
    run->Daten->init(1);
    EXPECT_EQ(locusLabel(*run->Daten, 1), "");
    EXPECT_EQ(locusLabel(*run->Daten, 2), "");
    EXPECT_EQ(written([&](ResultFile& f) { writeLocusNames(f, *run, 1); }), "\t\t");
}

// C/2, cut: C = 2 x 3, 1 x 3, and -1 of an empty table.
TEST(EffectiveCopies, HalfOfTheWeights) {
    EXPECT_EQ(effectiveCopies(tableOf({{100, 3}})), 3);
    EXPECT_EQ(effectiveCopies(tableOf({{100, 3}}, 1)), 1);
    EXPECT_EQ(effectiveCopies(AllelCount()), 0);
}

TEST(TablesReady, CountsOnce) {
    LoadedRun run(kTwoPops);
    StdoutCapture console;
    EXPECT_TRUE(tablesReady(*run));
    EXPECT_TRUE(tablesReady(*run));
    EXPECT_EQ(console.text(), "\nCount Allels\n**\n");
}

TEST(TablesReady, FalseIfCountingFails) {
    LoadedRun run(kTwoPops);
    writeFile("Allelecount", "in the way");
    const StdoutCapture swallowed;
    EXPECT_FALSE(tablesReady(*run));
}

TEST(StatisticsPasses, RunInTheirOrder) {
    LoadedRun run(kTwoPops);
    const StdoutCapture swallowed;
    run->WriteOutput(1, 0);
    const std::string log = run.resultFile("KVA.log");
    EXPECT_NE(log.find("\nCount Allels...\n\n     Calculated Gst\n\nMake Overview...\n"
                       "\nGenerate Errorreport...\n\nCreate tabular result files...\n"
                       "\nMake Group results...\n"),
              std::string::npos);
}

// A name in the way of every folder: each pass tells it and the run goes on.
TEST(StatisticsPasses, SurviveTheLossOfTheirFolders) {
    LoadedRun run(kTwoPops);
    for (const char* name : {"Allelecount", "Single_data", "Group_data"}) {
        writeFile(name, "in the way");
    }
    const StdoutCapture swallowed;
    EXPECT_EQ(run->WriteOutput(1, 0), 0);
    EXPECT_FALSE(std::filesystem::exists("Summary.xls")); // there are no tables
}

TEST(StatisticsPasses, SecondRunWritesTheSameSheets) {
    LoadedRun run(kTwoPops);
    const StdoutCapture swallowed;
    run->WriteOutput(1, 0);
    const std::string summary = run.resultFile("Summary.xls");
    run->LinkResultNew();
    run->WriteOutput(1, 0);
    EXPECT_EQ(run.resultFile("Summary.xls"), summary);
    EXPECT_EQ(run->ResultPfad.substr(run->ResultPfad.size() - 2), "01");
}
