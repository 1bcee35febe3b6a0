#include "api/PlannedRun.h"
#include "control/frontend.h"
#include "support/datasets.h"
#include "support/support.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kva/kva.h>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace kva::api;

using kva_test::StdoutCapture;
using kva_test::tabbed;
using kva_test::TempFolder;

namespace fs = std::filesystem;

namespace {

using Sheets = std::map<std::string, std::string, std::less<>>;

DataSet example() {
    return *loadText(kva_test::readFile(KVA_EXAMPLE), "testdata.dat");
}

// All passes, in small numbers.
Settings everything() {
    Settings settings;
    settings.fstPairs = settings.fstGlobal = settings.fstBeta = settings.fstLoci = true;
    settings.permutations = 60;
    settings.populationDistances = settings.individualDistances = {"all"};
    settings.bootstrap = 2;
    settings.distanceLoci = true;
    settings.hetRange = 20;
    settings.formats = {"all"};
    settings.seed = 7;
    settings.threads = 2;
    return settings;
}

// The files that a run of the same plan writes.
Sheets sheetsOnDisk(const Settings& settings) {
    const TempFolder folder(TempFolder::Enter::yes);
    fs::copy_file(KVA_EXAMPLE, "testdata.dat");
    const StdoutCapture swallowed;
    kva::AnalyseDataObj run;
    kva::InputFile input;
    kva::LoadFirst(run, "testdata.dat", "", nullptr, input);
    kva::runPlan(run, kva::planOf(settings), nullptr, nullptr);
    Sheets sheets;
    for (const auto& entry : fs::recursive_directory_iterator(run.ResultPfad)) {
        if (entry.is_regular_file()) {
            sheets[fs::relative(entry.path(), run.ResultPfad)] = kva_test::readFile(entry.path());
        }
    }
    return sheets;
}

std::vector<std::string> pathsOf(const Sheets& sheets) {
    std::vector<std::string> paths;
    for (const auto& [path, text] : sheets) {
        paths.push_back(path);
    }
    return paths;
}

Error errorOf(const Outcome<Result>& result) {
    return result ? Error{ErrorKind::Internal, "it ran"} : result.error();
}

} // namespace

// --- What comes out --------------------------------------------------------------------------

TEST(Running, SheetsAreThoseOfARunThatWritesFiles) {
    const auto result = run(example(), everything());
    ASSERT_TRUE(result);
    const Sheets onDisk = sheetsOnDisk(everything());
    EXPECT_EQ(pathsOf(result->sheets()), pathsOf(onDisk));
    EXPECT_GT(onDisk.size(), 80U); // all folders have some
    for (const auto& [path, text] : onDisk) {
        EXPECT_TRUE(result->sheets().find(path)->second == text) << path;
    }
    EXPECT_TRUE(result->warnings().empty());
}

TEST(Running, ValuesAreThoseOfTheSheets) {
    // Hexp of A at L1, with 100/102 100/100: 8/6 (1 - 10/16) = 0.5; see the tests of the sheets.
    const auto result = run(*loadText(tabbed(kva_test::kTwoPops)), {});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->value("heterozygosity_expected", "A", "L1"), 0.5);
    EXPECT_EQ(result->value("gene_copies", "Total", "L2"), 8);
    const auto rows = result->rows("allele_count");
    const auto row = std::find_if(rows.begin(), rows.end(), [](const Row& each) {
        return each.population1 == "A" && each.locus == "L1" && each.replicate == "100";
    });
    ASSERT_NE(row, rows.end());
    EXPECT_EQ(row->value, 3);
}

TEST(Running, WhatIsNotAskedForIsNotThere) {
    const auto result = run(example(), {});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->fst().size(), 0U);
    EXPECT_TRUE(result->tests().empty());
}

TEST(Running, TestsHaveAPairOrALocusEach) {
    Settings settings;
    settings.fstPairs = settings.fstGlobal = true;
    settings.permutations = 20;
    const DataSet data = example();
    const auto result = run(data, settings);
    ASSERT_TRUE(result);
    const std::size_t pops = data.populations().size();
    const std::size_t loci = data.loci().size();
    EXPECT_EQ(result->tests().size(), 3 * pops * (pops - 1) / 2 + 3 * (loci + 1));
    const Matrix p = result->pValues();
    ASSERT_EQ(p.size(), pops);
    for (std::size_t i = 0; i < pops; ++i) {
        EXPECT_EQ(p.names[i], data.populations()[i].name);
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_GT(p.at(i, j), 0);
            EXPECT_LE(p.at(i, j), 1);
        }
    }
    for (const kva::api::Test& test : result->tests()) {
        if (test.population1 == p.names[1] && test.population2 == p.names[3] &&
            test.statistic == "fst_pairwise") {
            EXPECT_EQ(test.p, p.at(1, 3));
            EXPECT_EQ(test.permutations, 20);
            EXPECT_EQ(test.p, (static_cast<double>(test.hits) + 1) / 21);
        }
    }
}

TEST(Running, IMInformationReachesTheExport) {
    Settings settings;
    settings.formats = {"im"};
    const auto without = run(*loadText(tabbed(kva_test::kTwoPops)), settings);
    // Lines end with CR LF, a cell for each column of a locus.
    settings.imInformation = tabbed("2 . . 2 . 4 .\r\n. . . 50 . 60 .\r\n. . . L1 L1b L2 L2b\r\n"
                                    "inherit . . 0.25 . 0.25 .\r\n");
    const auto with = run(*loadText(tabbed(kva_test::kTwoPops)), settings);
    ASSERT_TRUE(without && with);
    const std::string kPath = "Formats&Data/IM_Format/IM_A_B.txt";
    EXPECT_THAT(with->sheets().find(kPath)->second, testing::HasSubstr("0.25"));
    EXPECT_THAT(without->sheets().find(kPath)->second, testing::Not(testing::HasSubstr("0.25")));
}

// 2 x 10^9 replicates of 64 cells of 9 bytes: more than any machine has.
TEST(Running, APassBeyondTheMemoryIsLeftOutWithAWarning) {
    Settings settings;
    settings.populationDistances = {"DAN"};
    settings.bootstrap = 2000000000;
    const auto result = run(example(), settings);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->distances("DAN").size(), 0U);
    ASSERT_EQ(result->warnings().size(), 1U);
    EXPECT_THAT(result->warnings()[0], testing::HasSubstr("are not computed: they take"));
    EXPECT_FALSE(result->rows("heterozygosity_expected").empty());
}

// --- What stays as it is -----------------------------------------------------------------------

TEST(Running, WritesNothingAndStaysInItsFolder) {
    const TempFolder folder(TempFolder::Enter::yes);
    StdoutCapture capture;
    const DataSet data = example();
    EXPECT_TRUE(run(data, everything()));
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(fs::current_path(), folder.path());
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST(Running, ASecondRunIsTheFirstAgain) {
    const DataSet data = example();
    const auto first = run(data, everything());
    ASSERT_TRUE(run(data, {})); // another one in between
    const auto second = run(data, everything());
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(first->sheets() == second->sheets());
}

TEST(Running, RunsAtTheSameTimeDoNotDisturbOneAnother) {
    const DataSet data = example();
    const auto alone = run(data, everything());
    std::vector<Outcome<Result>> results(3, Outcome<Result>(Error{ErrorKind::Internal, "not run"}));
    {
        std::vector<std::jthread> threads;
        threads.reserve(results.size());
        for (auto& result : results) {
            threads.emplace_back([&data, &result] { result = run(data, everything()); });
        }
    }
    for (const auto& result : results) {
        ASSERT_TRUE(result);
        EXPECT_TRUE(result->sheets() == alone->sheets());
    }
}

TEST(Running, OtherSeedsGiveOtherDraws) {
    Settings settings;
    settings.populationDistances = {"DAN"};
    settings.bootstrap = 5; // draws of 10 loci
    const DataSet data = example();
    const auto first = run(data, settings);
    settings.seed = 2;
    const auto second = run(data, settings);
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->distances("DAN").cells, second->distances("DAN").cells);
    EXPECT_EQ(first->sheets().find("Single_data/Hetexp.xls")->second,
              second->sheets().find("Single_data/Hetexp.xls")->second);
}

// --- Errors and progress -------------------------------------------------------------------------

TEST(Running, WrongSettingsAreAnError) {
    Settings settings;
    settings.permutations = -1;
    const Error error = errorOf(run(example(), settings));
    EXPECT_EQ(error.kind, ErrorKind::Settings);
    EXPECT_EQ(error.text, "permutations: 0 or more");
}

TEST(Running, IMInformationThatIsNoneIsAnError) {
    Settings settings;
    settings.formats = {"im"};
    settings.imInformation = "x";
    EXPECT_EQ(errorOf(run(example(), settings)).kind, ErrorKind::Settings);
}

TEST(Running, ProgressTellsEachPassAndItsShare) {
    std::vector<std::string> passes;
    bool shares = true;
    double last = 0;
    ASSERT_TRUE(run(example(), everything(), [&](const Progress& progress) {
        if (passes.empty() || passes.back() != progress.pass) {
            passes.push_back(progress.pass);
            last = 0;
        }
        shares = shares && progress.share >= last && progress.share <= 1;
        last = progress.share;
        return true;
    }));
    EXPECT_TRUE(shares);
    std::vector<std::string> expected;
    for (const kva::PassStep& step : kva::allPassSteps()) {
        expected.emplace_back(step.Name);
    }
    EXPECT_EQ(passes, expected);
}

TEST(Running, CancelledAtAPassGivesNoResult) {
    const Error error =
        errorOf(run(example(), everything(), [](const Progress&) { return false; }));
    EXPECT_EQ(error.kind, ErrorKind::Cancelled);
}

TEST(Running, CancelledWithinAPassGivesNoResultAndTheNextRunIsWhole) {
    const DataSet data = example();
    const auto whole = run(data, everything());
    const auto cancelled =
        run(data, everything(), [](const Progress& progress) { return progress.share < 0.5; });
    EXPECT_EQ(errorOf(cancelled).kind, ErrorKind::Cancelled);
    const auto next = run(data, everything());
    ASSERT_TRUE(whole && next);
    EXPECT_TRUE(whole->sheets() == next->sheets());
}

TEST(Running, AnExceptionOfTheCallbackEndsTheRun) {
    const Error error = errorOf(run(example(), everything(), [](const Progress&) -> bool {
        throw std::runtime_error("enough");
    }));
    EXPECT_EQ(error.kind, ErrorKind::Cancelled);
    EXPECT_EQ(error.text, "the progress callback threw: enough");
}
