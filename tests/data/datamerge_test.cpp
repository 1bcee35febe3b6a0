#include "control/AnalyseDataObj.h"
#include "support/datasets.h"
#include "support/support.h"

#include <filesystem>
#include <gtest/gtest.h>
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

namespace fs = std::filesystem;

namespace {

// The individuals of kTwoPops at two further loci, L3 and L1 (a name that kTwoPops has).
const char* const kMoreLoci = "2 . . 3 . 4 .\n"
                              ". . . 70 . 80 .\n"
                              ". . . L3 L3b L1 L1b\n"
                              "A d 0 300 303 1 1\n"
                              "A d 0 300 . 1 1\n"
                              "B h 4 306 306 1 1\n"
                              "B h 4 . . 1 1\n";

// kTwoPops with an individual more in B.
const char* const kLargerB = "2 . . 2 .\n"
                             ". . . 50 .\n"
                             ". . . L9 L9b\n"
                             "A d 0 1 1\n"
                             "A d 0 1 1\n"
                             "B d 0 1 1\n"
                             "B d 0 1 1\n"
                             "B d 0 1 1\n";

// kTwoPops with another name for B.
const char* const kOtherName = "2 . . 2 .\n"
                               ". . . 50 .\n"
                               ". . . L9 L9b\n"
                               "A d 0 1 1\n"
                               "A d 0 1 1\n"
                               "b d 0 1 1\n"
                               "b d 0 1 1\n";

using Genotype = std::pair<int, int>;

Genotype genotype(const AnalyseDataObj& run, int locus, int pop, int ind) {
    Genotype alleles{-99, -99};
    EXPECT_EQ(run.GetTierDaten(locus, pop, ind, alleles.first, alleles.second), 0);
    return alleles;
}

// The text of the file that SaveDataAs makes of the object's data.
std::string savedText(const AnalyseDataObj& run) {
    const TempFolder folder;
    const fs::path file = folder / "saved.txt";
    EXPECT_EQ(run.SaveDataAs(file), -1); // also after a complete write
    return readFile(file);
}

// A data set of one locus "L1" with the populations A and B of so many slots each.
Datensatz oneLocus(int slots) {
    Datensatz daten;
    daten.init(1);
    daten.SetLociName(1, "L1");
    for (const char* name : {"A", "B"}) {
        daten.AddPopulation(name, slots);
    }
    for (int i = 0; i < slots; ++i) {
        daten.AddTier(1, 1, 100 + i, 2 * i);
        daten.AddTier(1, 2, 200 + i, 2 * i + 1);
    }
    return daten;
}

} // namespace

// --- Access -----------------------------------------------------------------------------

TEST(Access, WithoutDataEverythingIsRefused) {
    AnalyseDataObj run;
    int a = 71;
    int b = 72;
    EXPECT_EQ(run.GetTierDaten(1, 1, 0, a, b), -1);
    EXPECT_EQ(run.SetTierDaten(1, 1, 0, 5, 6), -1);
    EXPECT_EQ(run.GetTierInfo(1, 1, a, b, 1), -1);
    EXPECT_EQ(run.GetAnzIndividuuen(1, a), -1);
    EXPECT_EQ(run.GetGesamtIndividuuenAnzahl(), 0);
    EXPECT_EQ(run.ConvertIndividAnzahl(1, a, b), -1);
    EXPECT_EQ(run.GetPopName(1), nullptr);
    EXPECT_EQ(std::pair(a, b), std::pair(71, 72)); // untouched
}

TEST(Merge, OfTwoObjectsWithoutDataIsRefused) {
    AnalyseDataObj run;
    AnalyseDataObj other;
    run.AnzPop = other.AnzPop = 1; // both equally without names and individuals
    EXPECT_EQ(run.AddNewData(&other), -3);
    EXPECT_EQ(run.AnzPop, 0);
}

TEST(Access, IndividualsCountFromZero) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(genotype(*run, 2, 1, 1), (Genotype{204, 208}));
    EXPECT_EQ(genotype(*run, 1, 2, 0), (Genotype{102, 104}));
}

TEST(Access, GenotypesAreStored) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(run->SetTierDaten(2, 1, 1, 7, -1), 0);
    EXPECT_EQ(genotype(*run, 2, 1, 1), (Genotype{7, -1}));
    EXPECT_EQ(genotype(*run, 2, 1, 0), (Genotype{200, 200}));
}

TEST(Access, ABadLocusIsRefused) {
    LoadedRun run(kTwoPops);
    int a = 71;
    int b = 72;
    EXPECT_EQ(run->GetTierDaten(3, 1, 0, a, b), -2);
    EXPECT_EQ(run->SetTierDaten(3, 1, 0, 5, 6), -2);
    EXPECT_EQ(std::pair(a, b), std::pair(71, 72));
}

TEST(Access, InfoCountsIndividualsFromOne) {
    LoadedRun run(kTwoPops);
    for (LociObj& locus : run->Daten->Loci) {
        locus.SetInfoChromosom(2, 0, 5, 1); // the first individual of B, slots 0 and 1
        locus.SetInfoChromosom(2, 2, 6, 0); // the second
    }
    int haploid = -99;
    int gruppe = -99;
    EXPECT_EQ(run->GetTierInfo(2, 1, haploid, gruppe, 2), 0);
    EXPECT_EQ(std::pair(haploid, gruppe), std::pair(1, 5));
    EXPECT_EQ(run->GetTierInfo(2, 2, haploid, gruppe, 2), 0);
    EXPECT_EQ(std::pair(haploid, gruppe), std::pair(0, 6));
}

TEST(Access, TheGroupIsReadOnTheFirstLocus) {
    LoadedRun run(kTwoPops);
    run->Daten->Loci[0].SetInfoChromosom(2, 0, 5, 0);
    run->Daten->Loci[1].SetInfoChromosom(2, 0, 6, 0);
    int haploid = -99;
    int gruppe = -99;
    EXPECT_EQ(run->GetTierInfo(2, 1, haploid, gruppe, 2), 0);
    EXPECT_EQ(gruppe, 5);
}

TEST(Access, TheFlagIsReadOnTheLocusAskedFor) {
    LoadedRun run(kInbredPop);
    run->Daten->Loci[1].SetInfoChromosom(2, 0, 2, 0); // B's first individual diploid at L2 alone
    int haploid = -99;
    int gruppe = -99;
    EXPECT_EQ(run->GetTierInfo(2, 1, haploid, gruppe, 1), 0);
    EXPECT_EQ(std::pair(haploid, gruppe), std::pair(1, 2));
    EXPECT_EQ(run->GetTierInfo(2, 1, haploid, gruppe, 2), 0);
    EXPECT_EQ(std::pair(haploid, gruppe), std::pair(0, 2));
    EXPECT_EQ(run->GetTierInfo(2, 1, haploid, gruppe, 3), 0); // no such locus
    EXPECT_EQ(std::pair(haploid, gruppe), std::pair(0, 2));
}

TEST(Access, NumbersOfIndividualsAreHalvesOfSlots) {
    LoadedRun run(kLargerB);
    int anzahl = -99;
    EXPECT_EQ(run->GetAnzIndividuuen(1, anzahl), 0);
    EXPECT_EQ(anzahl, 2);
    EXPECT_EQ(run->GetAnzIndividuuen(2, anzahl), 0);
    EXPECT_EQ(anzahl, 3);
    EXPECT_EQ(run->GetAnzIndividuuen(3, anzahl), 0);
    EXPECT_EQ(anzahl, 0);
    EXPECT_EQ(run->GetGesamtIndividuuenAnzahl(), 5);
}

TEST(Access, WithoutPopulationsThereIsNobody) {
    AnalyseDataObj run;
    run.Daten = std::make_unique<Datensatz>();
    EXPECT_EQ(run.GetGesamtIndividuuenAnzahl(), 0);
    EXPECT_EQ(run.GetPopName(1), nullptr);
}

TEST(Access, ARunningNumberBecomesPopulationAndNumber) {
    LoadedRun run(kLargerB); // 2 and 3 individuals
    const std::pair<int, int> expected[] = {{1, 0}, {1, 1}, {2, 0}, {2, 1}, {2, 2}};
    for (int number = 0; number < 5; ++number) {
        int pop = -99;
        int ind = -99;
        EXPECT_EQ(run->ConvertIndividAnzahl(number, pop, ind), 0);
        EXPECT_EQ(std::pair(pop, ind), expected[number]) << number;
    }
}

TEST(Access, ANumberBehindTheLastIndividualIsRefused) {
    LoadedRun run(kLargerB);
    int pop = 71;
    int ind = 72;
    EXPECT_EQ(run->ConvertIndividAnzahl(5, pop, ind), -2);
    EXPECT_EQ(std::pair(pop, ind), std::pair(71, 72));
}

TEST(Access, TheWalkEndsAtAnEmptyPopulation) {
    AnalyseDataObj run;
    run.Daten = std::make_unique<Datensatz>(oneLocus(2));
    run.Daten->AddPopulation("Nobody", 2);
    run.Daten->AddPopulation("C", 2);
    int pop = -99;
    int ind = -99;
    EXPECT_EQ(run.ConvertIndividAnzahl(4, pop, ind), 0); // 4 - 1 - 1 = 2 are left
    EXPECT_EQ(std::pair(pop, ind), std::pair(3, 2));
}

TEST(Access, PopulationsAreNamed) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(*run->GetPopName(1), "A");
    EXPECT_EQ(*run->GetPopName(2), "B");
    EXPECT_EQ(run->GetPopName(0), nullptr);
    EXPECT_EQ(run->GetPopName(3), nullptr);
}

TEST(Access, ALocusTellsNamesAndLengths) {
    LoadedRun run(kTwoPops);
    const std::string* name = nullptr;
    const std::string* name2 = nullptr;
    int muster = -99;
    int rest = -99;
    run->GetLociInfo(2, &name, &name2, muster, rest);
    EXPECT_EQ(*name, "L2");
    EXPECT_EQ(*name2, "L2b");
    EXPECT_EQ(std::pair(muster, rest), std::pair(4, 60));
}

TEST(Access, OneColumnDataHaveNoSecondName) {
    LoadedRun run(kTwoPopsOneColumn);
    const std::string* name = nullptr;
    const std::string other = "other";
    const std::string* name2 = &other;
    int muster = -99;
    int rest = -99;
    run->GetLociInfo(1, &name, &name2, muster, rest);
    EXPECT_EQ(*name, "L1");
    EXPECT_EQ(name2, nullptr);
}

TEST(Access, ALocusTellsNothingWithoutDataOrPlace) {
    LoadedRun run(kTwoPops);
    const std::string* name = nullptr;
    int muster = -99;
    int rest = -99;
    run->GetLociInfo(1, nullptr, &name, muster, rest);
    run->GetLociInfo(1, &name, nullptr, muster, rest);
    AnalyseDataObj().GetLociInfo(1, &name, &name, muster, rest);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(std::pair(muster, rest), std::pair(-99, -99));
}

// --- Adding a locus -----------------------------------------------------------------------------

TEST(AddLoci, NeedsBothDataSets) {
    Datensatz daten = oneLocus(2);
    EXPECT_EQ(daten.AddLoci("L2", nullptr, nullptr, 1), -2);
    EXPECT_EQ(daten.AddLoci("L2", nullptr, &daten, 2), -2); // no such locus to take
    EXPECT_EQ(Datensatz().AddLoci("L2", nullptr, &daten, 1), -1);
    EXPECT_EQ(daten.AnzLoci, 1);
}

TEST(AddLoci, TakesAllelesInfosAndLengths) {
    Datensatz daten = oneLocus(2);
    Datensatz neu = oneLocus(2);
    neu.Loci[0].SetDataChromosom(2, 1, 999);
    neu.SetLociRepeatMuster(1, 3);
    neu.SetLociRepeatRest(1, 70);
    const std::string second = "L2b";
    EXPECT_EQ(daten.AddLoci("L2", &second, &neu, 1), 2);
    EXPECT_EQ(daten.AnzLoci, 2);
    EXPECT_EQ(*daten.GetLociName(2), "L2");
    EXPECT_EQ(*daten.GetLociName2(2), "L2b");
    EXPECT_EQ(daten.Loci[1].GetDataChromosom(2, 1), 999);
    EXPECT_EQ(daten.Loci[1].GetInfoChromosom(2, 1), 3);
    EXPECT_EQ(daten.GetLociRepeatMuster(2), 3);
    EXPECT_EQ(daten.GetLociRepeatRest(2), 70);
}

TEST(AddLoci, LeavesNoSlotToSpare) {
    Datensatz daten;
    daten.init(1);
    daten.AddPopulation("A", 10); // room for ten, two used
    daten.AddTier(1, 1, 5, 6, 0);
    EXPECT_EQ(daten.AddLoci("L2", nullptr, &daten, 1), 2);
    EXPECT_EQ(daten.Loci[1].DataChromosom[0].Kapazitaet, 2);
    EXPECT_EQ(daten.AddTier(2, 1, 7, 0), -20);
    EXPECT_EQ(daten.AddTier(1, 1, 7, 0), 0);
    EXPECT_EQ(daten.Loci[1].GetDataChromosom(1, 2), -1); // behind the last: missing
}

TEST(AddLoci, PopulationsAreMatchedByNumberAlone) {
    Datensatz daten = oneLocus(2);
    Datensatz neu;
    neu.init(1);
    neu.AddPopulation("X", 2);
    neu.AddPopulation("Y", 2);
    neu.AddTier(1, 1, 1, 2, 0);
    neu.AddTier(1, 2, 3, 4, 0);
    EXPECT_EQ(daten.AddLoci("L2", nullptr, &neu, 1), 2);
    EXPECT_EQ(*daten.Loci[1].GetPopName(1), "A");
    EXPECT_EQ(daten.Loci[1].GetDataChromosom(2, 0), 3);
    EXPECT_EQ(daten.GetLociName2(2), nullptr);
}

TEST(AddLoci, TheFirstLocusSaysHowManySlots) {
    Datensatz daten = oneLocus(2);
    const Datensatz larger = oneLocus(4);
    const Datensatz smaller = oneLocus(1);
    EXPECT_EQ(daten.AddLoci("L2", nullptr, &larger, 1), 2);
    EXPECT_EQ(daten.AddLoci("L3", nullptr, &smaller, 1), 3);
    EXPECT_EQ(daten.Loci[1].GetAnzDatenChromosome(1), 2);
    EXPECT_EQ(daten.Loci[2].GetAnzDatenChromosome(1), 2);
    EXPECT_EQ(daten.Loci[2].GetDataChromosom(1, 1), -1); // not there: missing
}

// --- Merging data sets ---------------------------------------------------------------------------

TEST(AddNewDatensatz, NeedsLociOnBothSides) {
    Datensatz daten = oneLocus(2);
    Datensatz none;
    EXPECT_EQ(daten.AddNewDatensatz(nullptr), -1);
    EXPECT_EQ(daten.AddNewDatensatz(&none), -2);
    EXPECT_EQ(none.AddNewDatensatz(&daten), -2);
}

TEST(AddNewDatensatz, GivesTheLargestNumberOfSlots) {
    Datensatz daten = oneLocus(4);
    daten.AddPopulation("C", 6);
    for (int i = 0; i < 6; ++i) {
        daten.AddTier(1, 3, i, 0);
    }
    const Datensatz neu = oneLocus(4);
    EXPECT_EQ(daten.AddNewDatensatz(&neu), 6);
    EXPECT_EQ(daten.AnzLoci, 1); // "L1" is there already
}

TEST(AddNewDatensatz, NamesAreComparedByTheirExactText) {
    Datensatz daten = oneLocus(2);
    Datensatz neu = oneLocus(2);
    neu.SetLociName(1, "l1");
    EXPECT_EQ(daten.AddNewDatensatz(&neu), 2);
    EXPECT_EQ(daten.AnzLoci, 2);
}

TEST(AddNewDatensatz, TwoNewLociOfOneNameBothGoIn) {
    Datensatz daten = oneLocus(2);
    Datensatz neu = oneLocus(2);
    neu.SetLociName(1, "new");
    EXPECT_EQ(neu.AddLoci("new", nullptr, &neu, 1), 2);
    EXPECT_EQ(daten.AddNewDatensatz(&neu), 2);
    EXPECT_EQ(daten.AnzLoci, 3);
}

TEST(AddNewDatensatz, WithItselfNothingIsAdded) {
    Datensatz daten = oneLocus(2);
    EXPECT_EQ(daten.AddNewDatensatz(&daten), 2);
    EXPECT_EQ(daten.AnzLoci, 1);
}

TEST(AddNewDatensatz, PopulationsWithoutSlotsGiveZero) {
    Datensatz daten = oneLocus(0);
    const Datensatz neu = oneLocus(0);
    EXPECT_EQ(daten.AddNewDatensatz(&neu), 0);
}

// --- Merging objects --------------------------------------------------------------------------

TEST(AddNewData, AddsTheLociOfNewNames) {
    LoadedRun run(kTwoPops);
    LoadedRun more(kMoreLoci);
    EXPECT_EQ(run->AddNewData(&*more), 0);
    EXPECT_EQ(run->AnzLoci, 3);
    EXPECT_EQ(run->AnzPop, 2);
    EXPECT_EQ(*run->Daten->GetLociName(3), "L3");
    EXPECT_EQ(*run->Daten->GetLociName2(3), "L3b");
    EXPECT_EQ(genotype(*run, 3, 1, 1), (Genotype{300, -1}));
    EXPECT_EQ(genotype(*run, 3, 2, 0), (Genotype{306, 306}));
    EXPECT_EQ(run->Daten->GetLociRepeatMuster(3), 3);
    EXPECT_EQ(run->Daten->GetLociRepeatRest(3), 70);
    EXPECT_EQ(run->Daten->GetGroupNummer(2, 0, 3), 4);
    EXPECT_EQ(run->Daten->Loci[2].isHaploid(2, 0), 1);
}

TEST(AddNewData, ALocusOfAKnownNameKeepsItsOldData) {
    LoadedRun run(kTwoPops);
    LoadedRun more(kMoreLoci);
    EXPECT_EQ(run->AddNewData(&*more), 0);
    EXPECT_EQ(genotype(*run, 1, 1, 0), (Genotype{100, 102}));
    EXPECT_EQ(run->Daten->GetLociRepeatRest(1), 50);
}

TEST(AddNewData, TheNextPassCountsAnew) {
    LoadedRun run(kTwoPops);
    LoadedRun more(kMoreLoci);
    run.counted();
    more.counted();
    EXPECT_EQ(run->AddNewData(&*more), 0);
    EXPECT_TRUE(run->PopAllele.empty());
    run.counted();
    ASSERT_EQ(run->PopAllele[0].size(), 3U);
    EXPECT_EQ(run->PopAllele[0][2].AnzGesamt, more->PopAllele[0][0].AnzGesamt);
    EXPECT_EQ(run->PopAllele[0][2].AnzChromosomen, more->PopAllele[0][0].AnzChromosomen);
}

TEST(AddNewData, WithoutNewNamesTheTablesGoAllTheSame) {
    LoadedRun run(kTwoPops);
    LoadedRun same(kWithGaps);
    run.counted();
    {
        const StdoutCapture swallowed;
        run->CountIAllels();
    }
    run->MaxChromosomen = 0;
    EXPECT_EQ(run->AddNewData(&*same), 0);
    EXPECT_EQ(run->AnzLoci, 2);
    EXPECT_EQ(run->MaxChromosomen, 4);
    EXPECT_TRUE(run->PopAllele.empty());
    EXPECT_TRUE(run->IndAllele.empty());
    EXPECT_EQ(run->AnzInd, 0);
}

TEST(AddNewData, RefusalsChangeNothing) {
    LoadedRun run(kTwoPops);
    run.counted();
    LoadedRun larger(kLargerB);
    LoadedRun renamed(kOtherName);
    LoadedRun onePop("2 . . 2 .\n. . . 50 .\n. . . L9 L9b\nA d 0 1 1\nA d 0 1 1\n");
    EXPECT_EQ(run->AddNewData(nullptr), -1);
    EXPECT_EQ(run->AddNewData(&*onePop), -2);
    EXPECT_EQ(run->AddNewData(&*larger), 2);
    EXPECT_EQ(run->AddNewData(&*renamed), 2);
    EXPECT_EQ(run->AnzLoci, 2);
    EXPECT_EQ(run->Daten->AnzLoci, 2);
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

TEST(AddNewData, TheFirstPopulationThatDoesNotFitIsNamed) {
    LoadedRun run(kTwoPops);
    LoadedRun swapped("2 . . 2 .\n. . . 50 .\n. . . L9 L9b\n"
                      "B d 0 1 1\nB d 0 1 1\nA d 0 1 1\nA d 0 1 1\n");
    EXPECT_EQ(run->AddNewData(&*swapped), 1);
}

TEST(AddNewData, ResultsOfTheDataSetsComeOneLower) {
    AnalyseDataObj run;
    AnalyseDataObj neu;
    run.Daten = std::make_unique<Datensatz>();
    EXPECT_EQ(run.AddNewData(&neu), -2); // no data set: -1
    neu.Daten = std::make_unique<Datensatz>();
    EXPECT_EQ(run.AddNewData(&neu), -3); // no loci: -2
    run.Daten = std::make_unique<Datensatz>(oneLocus(0));
    neu.Daten = std::make_unique<Datensatz>(oneLocus(0));
    EXPECT_EQ(run.AddNewData(&neu), -1); // no slots: 0
    EXPECT_EQ(AnalyseDataObj().AddNewData(&neu), -3);
}

// --- Saving -----------------------------------------------------------------------------------

TEST(SaveDataAs, WritesThreeHeaderRowsAndTheIndividuals) {
    LoadedRun run(kInbredPop);
    EXPECT_EQ(savedText(*run), "2\t\t\t2\t.\t4\t.\n"
                               "\t\t\t50\t.\t60\t.\n"
                               "\t\t\tL1\tL1b\tL2\tL2b\n"
                               "A\td\t1\t100\t102\t200\t200\n"
                               "A\td\t1\t100\t100\t204\t208\n"
                               "B\th\t2\t102\t104\t200\t204\n"
                               "B\th\t2\t104\t104\t200\t200\n");
}

TEST(SaveDataAs, MissingAllelesAreMinusOne) {
    LoadedRun run(kWithGaps);
    EXPECT_EQ(savedText(*run), "2\t\t\t2\t.\t4\t.\n"
                               "\t\t\t50\t.\t60\t.\n"
                               "\t\t\tL1\tL1b\tL2\tL2b\n"
                               "A\td\t0\t100\t102\t200\t200\n"
                               "A\td\t0\t100\t-1\t204\t208\n"
                               "B\td\t0\t102\t104\t-1\t-1\n"
                               "B\td\t0\t104\t104\t-1\t-1\n");
}

TEST(SaveDataAs, OneColumnDataGetTwoColumns) {
    LoadedRun run(kTwoPopsOneColumn);
    LoadedRun twoColumns(kTwoPops);
    std::string expected = savedText(*twoColumns);
    expected.replace(expected.find("L1b"), 3, "L1"); // no second names
    expected.replace(expected.find("L2b"), 3, "L2");
    EXPECT_EQ(savedText(*run), expected);
}

TEST(SaveDataAs, AnOddLastRowIsNoIndividual) {
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\nA d 0 1\nA d 0 2\nA d 0 3\n");
    EXPECT_EQ(savedText(*run), "2\t\t\t2\t.\n\t\t\t50\t.\n\t\t\tL1\tL1\nA\td\t0\t1\t2\n");
}

TEST(SaveDataAs, UnknownLengthsAreMinusOne) {
    LoadedRun run("2 . . . .\n. . . L1 L1b\nA h 3 1 2\n");
    EXPECT_EQ(savedText(*run), "2\t\t\t-1\t.\n\t\t\t-1\t.\n\t\t\tL1\tL1b\nA\th\t3\t1\t2\n");
}

TEST(SaveDataAs, AFileThatCannotBeMadeIsNotTold) {
    LoadedRun run(kTwoPops);
    StdoutCapture console;
    EXPECT_EQ(run->SaveDataAs("nowhere/saved.txt"), -1);
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(run.resultFile("KVA.log"), "");
}

TEST(SaveDataAs, WithoutDataThereIsNoFile) {
    const TempFolder folder(TempFolder::Enter::yes);
    EXPECT_EQ(AnalyseDataObj().SaveDataAs("saved.txt"), -1);
    EXPECT_FALSE(fs::exists("saved.txt"));
}

TEST(SaveDataAs, AnEarlierFileIsReplaced) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 1 2\n");
    kva_test::writeFile("saved.txt", std::string(5000, 'x'));
    EXPECT_EQ(run->SaveDataAs("saved.txt"), -1);
    EXPECT_EQ(readFile("saved.txt"), savedText(*run));
}

// --- What was saved reads back ----------------------------------------------------------------

namespace {

void expectSameData(const AnalyseDataObj& a, const AnalyseDataObj& b, unsigned seed) {
    ASSERT_EQ(a.AnzLoci, b.AnzLoci) << "seed " << seed;
    ASSERT_EQ(a.AnzPop, b.AnzPop) << "seed " << seed;
    EXPECT_EQ(b.KopfZeilen, 3);
    EXPECT_EQ(b.DatenFormat, 2);
    for (std::size_t l = 0; l < a.Daten->Loci.size(); ++l) {
        const LociObj& one = a.Daten->Loci[l];
        const LociObj& other = b.Daten->Loci[l];
        EXPECT_EQ(*one.GetLociName(), *other.GetLociName());
        EXPECT_EQ(one.LociRepeatMuster, other.LociRepeatMuster);
        EXPECT_EQ(one.LociRepeatRest, other.LociRepeatRest);
        EXPECT_EQ(one.PopNamen, other.PopNamen);
        for (int pop = 1; pop <= a.AnzPop; ++pop) {
            const auto slots = [](auto&& run) { return std::vector(run.begin(), run.end()); };
            EXPECT_EQ(slots(one.DataSlots(pop)), slots(other.DataSlots(pop))) << "seed " << seed;
            EXPECT_EQ(slots(one.InfoSlots(pop)), slots(other.InfoSlots(pop))) << "seed " << seed;
        }
    }
}

// A file of one or two columns: three populations of 1 to 5 individuals, three loci, all kinds of
// cells.
std::string randomData(std::mt19937& random, int columns) {
    std::uniform_int_distribution<int> allele(-3, 400);
    std::uniform_int_distribution<int> individuals(1, 5);
    std::uniform_int_distribution<int> group(-1, 3);
    std::string text = std::to_string(columns) + " .";
    text += columns == 2 ? " . 2 . 3 . 4 .\n. . . 50 . 51 . 52 .\n. . . L1 M1 L2 M2 L3 M3\n"
                         : " . 2 3 4\n. . . 50 51 52\n. . . L1 L2 L3\n";
    for (const char* name : {"A", "B", "C"}) {
        for (int individual = individuals(random); individual > 0; --individual) {
            const std::string info =
                (group(random) > 1 ? " h " : " d ") + std::to_string(group(random));
            for (int row = columns; row <= 2; ++row) {
                text += name + info;
                for (int cell = 0; cell < 3 * columns; ++cell) {
                    const int number = allele(random);
                    text += ' ';
                    text += number < -1 ? std::string(".") : std::to_string(number);
                }
                text += '\n';
            }
        }
    }
    return text;
}

} // namespace

TEST(SaveDataAsProperty, WhatWasSavedReadsBackEqual) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        LoadedRun run(randomData(random, 1 + static_cast<int>(seed % 2)));
        LoadedRun again(savedText(*run));
        expectSameData(*run, *again, seed);
    }
}

// --- Copies ---------------------------------------------------------------------------------

TEST(DataCopy, HoldsTheSameAndHasGenotypesOfItsOwn) {
    LoadedRun run(kTwoPops);
    LoadedData copy;
    copy.CopyOf(*run);
    EXPECT_EQ(copy.CompareSamples(*run), 0);
    EXPECT_EQ(copy.AnzLoci, 2);
    EXPECT_EQ(copy.AnzPop, 2);
    EXPECT_EQ(copy.DatenFormat, 2);
    EXPECT_EQ(copy.KopfZeilen, 3);
    EXPECT_EQ(copy.DateiName, "data.txt");
    EXPECT_EQ(copy.DataBytes, run->DataBytes);
    EXPECT_EQ(copy.MaxChromosomen, run->MaxChromosomen);
    copy.SetTierDaten(1, 1, 0, 7, 8);
    int a1 = 0;
    int a2 = 0;
    run->GetTierDaten(1, 1, 0, a1, a2);
    EXPECT_EQ(a1, 100);
    EXPECT_EQ(a2, 102);
}

TEST(DataCopy, OfNothingIsNothing) {
    LoadedData copy;
    copy.CopyOf(LoadedData());
    EXPECT_EQ(copy.Daten, nullptr);
}
