#include "control/AnalyseDataObj.h"
#include "support/datasets.h"
#include "support/support.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace kva;

using kva_test::kInbredPop;
using kva_test::kTwoPops;
using kva_test::kTwoPopsOneColumn;
using kva_test::kWithGaps;
using kva_test::LoadedRun;
using kva_test::readFile;
using kva_test::StdoutCapture;
using kva_test::TempFolder;
using kva_test::writeFile;

namespace fs = std::filesystem;

namespace {

const char* const kCountSheet = "Allelecount/Allelecount.xls";
const char* const kFrequencySheet = "Allelecount/Allelefrequencies.xls";

// One column, populations of three and two rows.
const char* const kOddRows = "1 . . 2\n"
                             ". . . 50\n"
                             ". . . L1\n"
                             "A d 0 100\n"
                             "A d 0 102\n"
                             "A d 0 100\n"
                             "B d 0 104\n"
                             "B d 0 104\n";

using Copies = std::map<int, int>; // allele to copies

Copies copiesOf(const AllelCount& table) {
    Copies copies;
    for (int i = 0; i < table.AnzAllele; ++i) {
        const AllelEintrag& row = table.Allele[static_cast<std::size_t>(i)];
        copies[row.Nummer] = row.Anzahl;
    }
    return copies;
}

const AllelCount& tableOf(AnalyseDataObj& run, std::size_t sample, std::size_t locus) {
    return run.PopAllele.at(sample).at(locus - 1);
}

std::string consoleOf(AnalyseDataObj& run, int (AnalyseDataObj::*pass)(), int result = 0) {
    StdoutCapture console;
    EXPECT_EQ((run.*pass)(), result);
    return console.text();
}

} // namespace

// --- The two sheets -----------------------------------------------------------------------

TEST(CountAllels, CountSheetOfTwoColumns) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(run.resultFile(kCountSheet), "\tL1\tL1b\tL2\tL2b\n"
                                           "Total\t100\t3\t200\t5\t\n"
                                           "\t102\t2\t204\t2\t\n"
                                           "\t104\t3\t208\t1\t\n"
                                           "\n"
                                           "\n"
                                           "A\t100\t3\t200\t2\t\n"
                                           "\t102\t1\t204\t1\t\n"
                                           "\t\t\t208\t1\t\n"
                                           "\n"
                                           "\n"
                                           "B\t102\t1\t200\t3\t\n"
                                           "\t104\t3\t204\t1\t\n"
                                           "\n");
}

TEST(CountAllels, FrequencySheetOfTwoColumns) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(run.resultFile(kFrequencySheet), "\tL1\tL1b\tL2\tL2b\n"
                                               "Total\t100\t0.375000\t200\t0.625000\t\n"
                                               "\t102\t0.250000\t204\t0.250000\t\n"
                                               "\t104\t0.375000\t208\t0.125000\t\n"
                                               "\n"
                                               "\n"
                                               "A\t100\t0.750000\t200\t0.500000\t\n"
                                               "\t102\t0.250000\t204\t0.250000\t\n"
                                               "\t\t\t208\t0.250000\t\n"
                                               "\n"
                                               "\n"
                                               "B\t102\t0.250000\t200\t0.750000\t\n"
                                               "\t104\t0.750000\t204\t0.250000\t\n"
                                               "\n");
}

TEST(CountAllels, OneColumnDataHasOneNamePerTwoSheetColumns) {
    LoadedRun oneColumn(kTwoPopsOneColumn);
    oneColumn.counted();
    const std::string sheet = oneColumn.resultFile(kCountSheet);
    const std::string head = "\tL1\t\tL2\t\n";
    EXPECT_EQ(sheet.substr(0, head.size()), head);

    LoadedRun twoColumns(kTwoPops); // the same genotypes: the same blocks
    twoColumns.counted();
    const std::string other = twoColumns.resultFile(kCountSheet);
    EXPECT_EQ(sheet.substr(head.size()), other.substr(other.find('\n') + 1));
}

TEST(CountAllels, ALocusWithoutAllelesLeavesItsPairOfCellsEmpty) {
    LoadedRun run(kWithGaps); // A is half missing at L1, B has nothing at L2
    run.counted();
    EXPECT_EQ(run.resultFile(kFrequencySheet), "\tL1\tL1b\tL2\tL2b\n"
                                               "Total\t100\t0.285714\t200\t0.500000\t\n" // 2/7
                                               "\t102\t0.285714\t204\t0.250000\t\n"
                                               "\t104\t0.428571\t208\t0.250000\t\n" // 3/7
                                               "\n"
                                               "\n"
                                               "A\t100\t0.666667\t200\t0.500000\t\n"
                                               "\t102\t0.333333\t204\t0.250000\t\n"
                                               "\t\t\t208\t0.250000\t\n"
                                               "\n"
                                               "\n"
                                               "B\t102\t0.250000\t\t\t\n"
                                               "\t104\t0.750000\t\t\t\n"
                                               "\n");
    EXPECT_EQ(tableOf(*run, 2, 2).AnzGesamt, -1);
}

TEST(CountAllels, APopulationWithoutAllelesHasNoRows) {
    LoadedRun run("2 . . 2 .\n"
                  ". . . 50 .\n"
                  ". . . L1 L1b\n"
                  "A d 0 . .\n"
                  "B d 0 100 100\n");
    run.counted();
    EXPECT_EQ(run.resultFile(kCountSheet), "\tL1\tL1b\n"
                                           "Total\t100\t2\t\n"
                                           "\n"
                                           "\n"
                                           "A\n"
                                           "\n"
                                           "B\t100\t2\t\n"
                                           "\n");
}

TEST(CountAllels, DataWithoutAnyAlleleGiveHeadAndLabels) {
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\nA d 0 x\nA d 0 .\n");
    run.counted();
    EXPECT_EQ(run.resultFile(kCountSheet), "\tL1\t\nTotal\n\nA\n");
    EXPECT_EQ(run.resultFile(kFrequencySheet), "\tL1\t\nTotal\n\nA\n");
}

TEST(CountAllels, AllelesAscendWhateverTheirOrderInTheFile) {
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\nA d 0 9\nA d 0 100\nA d 0 0\nA d 0 20\n");
    run.counted();
    EXPECT_EQ(run.resultFile(kCountSheet), "\tL1\t\n"
                                           "Total\t0\t1\t\n\t9\t1\t\n\t20\t1\t\n\t100\t1\t\n\n"
                                           "\nA\t0\t1\t\n\t9\t1\t\n\t20\t1\t\n\t100\t1\t\n\n");
}

TEST(CountAllels, WithoutLociTheSheetsHoldTheirHeads) {
    const TempFolder folder(TempFolder::Enter::yes);
    AnalyseDataObj run;
    run.ResultPfad = folder.path().string();
    run.Daten = std::make_unique<Datensatz>();
    EXPECT_EQ(consoleOf(run, &AnalyseDataObj::CountAllels), "\nCount Allels\n\n");
    EXPECT_EQ(readFile(kCountSheet), "\nTotal\n");
    EXPECT_EQ(readFile(kFrequencySheet), "\nTotal\n");
    EXPECT_EQ(run.PopAllele.size(), 1U);
}

// --- Switches of the sheets -------------------------------------------------------------------

TEST(CountAllels, ASheetSwitchedOffIsLeftOut) {
    LoadedRun run(kTwoPops);
    run->GeneralMask &= ~GeneralBit::CountSheet;
    run.counted();
    EXPECT_FALSE(fs::exists(kCountSheet));
    EXPECT_TRUE(run.resultFile(kFrequencySheet).starts_with("\tL1\tL1b\tL2\tL2b\nTotal\t100\t"));
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

TEST(CountAllels, TheOtherSheetCanBeSwitchedOffToo) {
    LoadedRun run(kTwoPops);
    run->GeneralMask &= ~GeneralBit::FrequencySheet;
    run.counted();
    EXPECT_TRUE(fs::exists(kCountSheet));
    EXPECT_FALSE(fs::exists(kFrequencySheet));
}

TEST(CountAllels, TheTablesAreBuiltWithoutAnySheet) {
    LoadedRun run(kTwoPops);
    run->GeneralMask = 0;
    run.counted();
    EXPECT_TRUE(fs::is_empty("Allelecount"));
    EXPECT_EQ(copiesOf(tableOf(*run, 0, 1)), (Copies{{100, 3}, {102, 2}, {104, 3}}));
    EXPECT_EQ(copiesOf(tableOf(*run, 2, 2)), (Copies{{200, 3}, {204, 1}}));
}

// --- The pass ------------------------------------------------------------------------------------

TEST(CountAllels, EachPopulationIsMarkedOnTheConsole) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(consoleOf(*run, &AnalyseDataObj::CountAllels), "\nCount Allels\n**\n");
}

TEST(CountAllels, TheLogTellsOfThePass) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(run.resultFile("KVA.log"), "\nCount Allels...\n");
}

TEST(CountAllels, TheProcessIsBackInTheResultFolder) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(fs::current_path(), run->ResultPfad);
}

TEST(CountAllels, AFurtherPassCountsAnewInTheSameFolder) {
    LoadedRun run(kTwoPops);
    run.counted();
    const std::string sheet = run.resultFile(kCountSheet);
    run.counted();
    EXPECT_EQ(run.resultFile(kCountSheet), sheet);
    EXPECT_EQ(run->PopAllele.size(), 3U);
    EXPECT_EQ(tableOf(*run, 0, 1).AnzGesamt, 8);
}

TEST(CountAllels, AFileInPlaceOfTheFolderLeavesTheTablesAsTheyWere) {
    LoadedRun run(kTwoPops);
    run.counted();
    fs::remove_all("Allelecount");
    writeFile("Allelecount", "");
    EXPECT_EQ(consoleOf(*run, &AnalyseDataObj::CountAllels, 2),
              "\nCount Allels\n"
              "\n!! ERROR Can't create Subfolder Allelcount! ERROR !!\n");
    EXPECT_EQ(tableOf(*run, 0, 1).AnzGesamt, 8);
}

TEST(CountAllels, ASheetThatCannotBeOpenedIsToldAndTheOtherIsWritten) {
    LoadedRun run(kTwoPops);
    fs::create_directories(kCountSheet);
    EXPECT_EQ(consoleOf(*run, &AnalyseDataObj::CountAllels),
              "\nCount Allels\n"
              "\nCannot write result file Allelecount/Allelecount.xls: Is a directory\n"
              "**\n");
    EXPECT_EQ(run.resultFile("KVA.log"),
              "Cannot write result file Allelecount/Allelecount.xls: Is a directory\n"
              "\nCount Allels...\n");
    EXPECT_TRUE(fs::exists(kFrequencySheet));
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

TEST(CountAllels, ASheetOnAFullDiskIsToldOnce) {
    LoadedRun run(kTwoPops);
    run->GeneralMask = GeneralBit::FrequencySheet;
    const kva_test::SizeLimit limit(110); // enough for log and console, not for the sheet
    EXPECT_EQ(consoleOf(*run, &AnalyseDataObj::CountAllels),
              "\nCount Allels\n**"
              "\nCannot write result file Allelecount/Allelefrequencies.xls: "
              "File too large\n"
              "\n");
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

// --- The tables -------------------------------------------------------------------------------

TEST(CountAllels, EntryZeroIsThePoolAndEntryPPopulationP) {
    LoadedRun run(kTwoPops);
    run.counted();
    ASSERT_EQ(run->PopAllele.size(), 3U);
    for (const LocusTables& sample : run->PopAllele) {
        EXPECT_EQ(sample.size(), 2U);
    }
    EXPECT_EQ(copiesOf(tableOf(*run, 0, 2)), (Copies{{200, 5}, {204, 2}, {208, 1}}));
    EXPECT_EQ(copiesOf(tableOf(*run, 1, 2)), (Copies{{200, 2}, {204, 1}, {208, 1}}));
    EXPECT_EQ(copiesOf(tableOf(*run, 2, 2)), (Copies{{200, 3}, {204, 1}}));
}

TEST(CountAllels, OnlyTheHaploidBitOfTheInfoCounts) {
    LoadedRun run(kInbredPop); // A diploid in group 1, B inbred in group 2
    run.counted();
    EXPECT_EQ(tableOf(*run, 1, 1).AnzChromosomen, 8);
    EXPECT_EQ(tableOf(*run, 2, 1).AnzChromosomen, 4);
    EXPECT_EQ(tableOf(*run, 0, 1).AnzChromosomen, 12);
    EXPECT_FALSE(tableOf(*run, 1, 1).isHaploid());
    EXPECT_TRUE(tableOf(*run, 2, 1).isHaploid());
    EXPECT_TRUE(tableOf(*run, 0, 1).isHaploid());
}

TEST(CountAllels, OddRowsShiftThePairsOfThePoolAlone) {
    LoadedRun run(kOddRows);
    run.counted();
    // A: 100/102 and 100 open. B: 104/104. Pool: 100/102, 100/104 and 104 open.
    EXPECT_EQ(tableOf(*run, 1, 1).AnzHetero, 1);
    EXPECT_EQ(tableOf(*run, 1, 1).AnzTypisiert, 3);
    EXPECT_EQ(tableOf(*run, 2, 1).AnzHetero, 0);
    EXPECT_EQ(tableOf(*run, 2, 1).AnzTypisiert, 2);
    EXPECT_EQ(tableOf(*run, 0, 1).AnzHetero, 2);
    EXPECT_EQ(tableOf(*run, 0, 1).AnzTypisiert, 5);
    EXPECT_EQ(tableOf(*run, 0, 1).AnzGesamt, 5);
    EXPECT_EQ(tableOf(*run, 0, 1).AnzChromosomen, 10);
}

TEST(CountAllels, OddRowsStandInTheSheetLikeOthers) {
    LoadedRun run(kOddRows);
    run.counted();
    EXPECT_EQ(run.resultFile(kCountSheet), "\tL1\t\n"
                                           "Total\t100\t2\t\n\t102\t1\t\n\t104\t2\t\n\n"
                                           "\nA\t100\t2\t\n\t102\t1\t\n\n"
                                           "\nB\t104\t2\t\n\n");
}

TEST(AllelCountP, FeedsAPopulationOrThePool) {
    LoadedRun run(kTwoPops);
    const LociObj& locus = run->Daten->Loci[0];
    const Copies pool = {{100, 3}, {102, 2}, {104, 3}};
    const std::pair<int, int> poolCalls[] = {{0, 0}, {3, 0}, {1, 1}, {3, 1}, {-1, 0}};
    for (const auto& [pop, flag] : poolCalls) {
        AllelCount table;
        EXPECT_EQ(locus.AllelCountP(table, pop, flag), 0);
        EXPECT_EQ(copiesOf(table), pool) << pop << ' ' << flag;
    }
    AllelCount table;
    EXPECT_EQ(locus.AllelCountP(table, 2, 0), 0);
    EXPECT_EQ(copiesOf(table), (Copies{{102, 1}, {104, 3}}));
}

TEST(AllelCountP, FlagWithoutAPopulationFeedsNothing) {
    LoadedRun run(kTwoPops);
    AllelCount table;
    EXPECT_EQ(run->Daten->Loci[0].AllelCountP(table, 0, 1), 1);
    EXPECT_EQ(table.AnzGesamt, -1);
}

TEST(AllelCountP, KeepsWhatTheTableHolds) {
    LoadedRun run(kTwoPops);
    AllelCount table;
    run->Daten->Loci[0].AllelCountP(table, 1, 0);
    run->Daten->Loci[0].AllelCountP(table, 2, 0);
    EXPECT_EQ(copiesOf(table), (Copies{{100, 3}, {102, 2}, {104, 3}}));
}

TEST(AllelCountLT, ClosedSheetsTakeNothing) {
    LoadedRun run(kTwoPops);
    ResultFile none;
    EXPECT_EQ(run->Daten->AllelCountLT(none, none).size(), 2U);
    EXPECT_EQ(run->Daten->AllelCountPop(none, none, 1).size(), 2U);
}

// --- Individuals ------------------------------------------------------------------------------

TEST(CountIAllels, IndividualsStandPopulationAfterPopulation) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(consoleOf(*run, &AnalyseDataObj::CountIAllels), "####");
    EXPECT_EQ(run->AnzInd, 4);
    ASSERT_EQ(run->IndAllele.size(), 4U);
    EXPECT_EQ(copiesOf(run->IndAllele[0][0]), (Copies{{100, 1}, {102, 1}}));
    EXPECT_EQ(copiesOf(run->IndAllele[1][1]), (Copies{{204, 1}, {208, 1}}));
    EXPECT_EQ(copiesOf(run->IndAllele[3][0]), (Copies{{104, 2}}));
}

TEST(CountIAllels, TablesAreSorted) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 108 104\n");
    consoleOf(*run, &AnalyseDataObj::CountIAllels);
    EXPECT_EQ(run->IndAllele[0][0].Allele[0].Nummer, 104);
    EXPECT_EQ(run->IndAllele[0][0].AnzHetero, 1);
}

TEST(CountIAllels, AnIndividualInAGroupWeighsAsHaploid) {
    LoadedRun grouped("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 1 100 102\n");
    LoadedRun ungrouped("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 100 102\n");
    consoleOf(*grouped, &AnalyseDataObj::CountIAllels);
    consoleOf(*ungrouped, &AnalyseDataObj::CountIAllels);
    EXPECT_EQ(grouped->IndAllele[0][0].AnzChromosomen, 2);
    EXPECT_EQ(ungrouped->IndAllele[0][0].AnzChromosomen, 4);
}

TEST(CountIAllels, TheFirstSlotsInfoHoldsForBoth) {
    LoadedRun run(kTwoPopsOneColumn);
    run->Daten->Loci[0].SetInfoChromosom(1, 1, 7); // the second slot of the first individual
    consoleOf(*run, &AnalyseDataObj::CountIAllels);
    EXPECT_EQ(run->IndAllele[0][0].AnzChromosomen, 4);
}

TEST(CountIAllels, AMissingIndividualHasAnEmptyTable) {
    LoadedRun run(kWithGaps);
    consoleOf(*run, &AnalyseDataObj::CountIAllels);
    EXPECT_EQ(run->IndAllele[2][1].AnzGesamt, -1);                 // B at L2
    EXPECT_EQ(copiesOf(run->IndAllele[1][0]), (Copies{{100, 1}})); // half missing
    EXPECT_EQ(run->IndAllele[1][0].AnzTypisiert, 2);
}

TEST(CountIAllels, TheNumberIsHalfOfAllSlots) {
    // Three rows each: (3 + 3) / 2 = 3 individuals, of which one a population can be read.
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\n"
                  "A d 0 100\nA d 0 102\nA d 0 100\n"
                  "B d 0 104\nB d 0 104\nB d 0 106\n");
    EXPECT_EQ(consoleOf(*run, &AnalyseDataObj::CountIAllels), "##");
    EXPECT_EQ(run->AnzInd, 3);
    ASSERT_EQ(run->IndAllele.size(), 3U);
    EXPECT_EQ(copiesOf(run->IndAllele[1][0]), (Copies{{104, 2}}));
    EXPECT_EQ(run->IndAllele[2].at(0).AnzGesamt, -1);
}

TEST(CountIAllels, TheLogTellsOfThePass) {
    LoadedRun run(kTwoPops);
    consoleOf(*run, &AnalyseDataObj::CountIAllels);
    EXPECT_EQ(run.resultFile("KVA.log"), "\nCount Allels per Individual ...\n");
}

TEST(CountIAllels, AFurtherPassCountsAnew) {
    LoadedRun run(kTwoPops);
    consoleOf(*run, &AnalyseDataObj::CountIAllels);
    run->Daten->SetTierDaten(1, 1, 0, 90, 92);
    consoleOf(*run, &AnalyseDataObj::CountIAllels);
    EXPECT_EQ(run->IndAllele.size(), 4U);
    EXPECT_EQ(copiesOf(run->IndAllele[0][0]), (Copies{{90, 1}, {92, 1}}));
}

TEST(CountAllels, DataThatAreGoneLeaveTheTablesAsTheyWere) {
    LoadedRun run(kTwoPops);
    run.counted();
    run->Daten.reset();
    EXPECT_EQ(run->CountAllels(), 0);
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

TEST(AllelCountPop, APopulationThatIsNotThereIsThePoolWithoutAName) {
    LoadedRun run(kTwoPops);
    ResultFile counts = run->OpenResult("counts.xls", "wb");
    ResultFile none;
    run->Daten->AllelCountPop(counts, none, 3);
    counts.close();
    EXPECT_EQ(readFile("counts.xls"), "\n\t100\t3\t200\t5\t\n\t102\t2\t204\t2\t\n"
                                      "\t104\t3\t208\t1\t\n\n");
}

TEST(CountIAllels, WithoutDataThereAreNoIndividuals) {
    AnalyseDataObj run;
    run.AnzInd = 9;
    EXPECT_EQ(run.CountIAllels(), 0);
    EXPECT_EQ(run.AnzInd, 0);
}

TEST(CountIAllels, WithoutPopulationsThereAreNoIndividuals) {
    AnalyseDataObj run;
    run.AnzInd = 9;
    run.Daten = std::make_unique<Datensatz>();
    EXPECT_EQ(consoleOf(run, &AnalyseDataObj::CountIAllels), "");
    EXPECT_EQ(run.AnzInd, 0);
    EXPECT_TRUE(run.IndAllele.empty());
}

// --- Against a slow count of the slots --------------------------------------------------------

namespace {

// A data file of three populations, two loci and up to nine individuals each, some missing.
std::string randomData(std::mt19937& random) {
    std::uniform_int_distribution<int> allele(95, 110);
    std::uniform_int_distribution<int> size(1, 9);
    std::string text = "2 . . 2 . 2 .\n. . . 50 . 50 .\n. . . L1 L1b L2 L2b\n";
    for (const char* name : {"A", "B", "C"}) {
        for (int individual = size(random); individual > 0; --individual) {
            text += std::string(name) + " d 0";
            for (int cell = 0; cell < 4; ++cell) {
                const int number = allele(random);
                text += ' ';
                text += number < 98 ? std::string(".") : std::to_string(number);
            }
            text += '\n';
        }
    }
    return text;
}

} // namespace

TEST(CountAllelsProperty, TablesEqualACountOfTheSlots) {
    for (unsigned seed = 1; seed <= 25; ++seed) {
        std::mt19937 random(seed);
        LoadedRun run(randomData(random));
        run.counted();
        for (std::size_t locus = 1; locus <= 2; ++locus) {
            Copies pool;
            for (int pop = 1; pop <= 3; ++pop) {
                Copies sample;
                for (const int allele : run->Daten->Loci[locus - 1].DataSlots(pop)) {
                    if (allele >= 0) {
                        ++sample[allele];
                        ++pool[allele];
                    }
                }
                EXPECT_EQ(copiesOf(tableOf(*run, static_cast<std::size_t>(pop), locus)), sample)
                    << "seed " << seed;
            }
            EXPECT_EQ(copiesOf(tableOf(*run, 0, locus)), pool) << "seed " << seed;
        }
    }
}
