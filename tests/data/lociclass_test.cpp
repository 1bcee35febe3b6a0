#include "data/lociclass.h"

#include "base/globals.h"
#include "support/written.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

using namespace kva;

using kva_test::written;

namespace {

// Population 1 "North" with the slots 11 12 13 of 5 and info values 6 7 8; population 2 "South",
// empty, with room for 2.
LociObj twoPopulations() {
    LociObj locus;
    locus.AddPopulation("North", 5);
    locus.AddPopulation("South", 2);
    locus.AddTier(1, 11, 6);
    locus.AddTier(1, 12, 7);
    locus.AddTier(1, 13, 8);
    return locus;
}

// Two loci "A"/"A2" and "B" without a second name, the populations of twoPopulations() with one
// individual each: North 1/2 and 3/4, South 5/6 and 7/8, info values 10 and 21.
Datensatz twoLoci() {
    Datensatz daten;
    daten.init(2);
    daten.AddPopulation("North", 4);
    daten.AddPopulation("South", 4);
    daten.SetLociName(1, "A");
    daten.SetLociName2(1, "A2");
    daten.SetLociName(2, "B");
    daten.AddTier(1, 1, 1, 2, 10);
    daten.AddTier(2, 1, 3, 4, 10);
    daten.AddTier(1, 2, 5, 6, 21);
    daten.AddTier(2, 2, 7, 8, 21);
    return daten;
}

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

} // namespace

// --- Info values ---------------------------------------------------------------------

TEST(InfoValue, HoldsGroupAndHaploidBit) {
    EXPECT_EQ(infoValue(3, true), 7);
    EXPECT_EQ(infoValue(3, false), 6);
    EXPECT_EQ(infoGroup(7), 3);
    EXPECT_EQ(infoHaploid(7), 1);
    EXPECT_EQ(infoHaploid(6), 0);
}

TEST(InfoValue, NegativeGroupsComeBack) {
    for (const bool haploid : {false, true}) {
        const int32_t info = infoValue(-4, haploid);
        EXPECT_EQ(infoGroup(info), -4);
        EXPECT_EQ(infoHaploid(info), haploid ? 1 : 0);
    }
}

TEST(InfoValue, AGroupBeyond31BitsTakesTheNearestOne) {
    EXPECT_EQ(infoGroup(infoValue(kMaxInt, true)), 1073741823);   // 2^30 - 1
    EXPECT_EQ(infoGroup(infoValue(kMinInt, false)), -1073741824); // -2^30
    EXPECT_EQ(infoHaploid(infoValue(kMaxInt, true)), 1);
    EXPECT_EQ(infoHaploid(infoValue(kMinInt, false)), 0);
}

// --- LociObj: building ------------------------------------------------------------------

TEST(LociObj, IsEmptyAtFirst) {
    const LociObj locus;
    EXPECT_EQ(locus.AnzPop, 0);
    EXPECT_EQ(locus.LociRepeatMuster, -1);
    EXPECT_EQ(locus.LociRepeatRest, -1);
    EXPECT_EQ(locus.InheritanceScalar, -1.0);
    EXPECT_EQ(locus.MutationRate, -1.0);
    EXPECT_EQ(locus.GetLociName(), nullptr);
    EXPECT_EQ(locus.GetLociName2(), nullptr);
    EXPECT_EQ(locus.GetPopName(1), nullptr);
    EXPECT_EQ(locus.GetGroupNummer(1, 0), 0);
    EXPECT_EQ(locus.TestGroup(3), 0);
}

TEST(LociObj, AddPopulationGivesTheNewNumber) {
    LociObj locus;
    EXPECT_EQ(locus.AddPopulation("North", 4), 1);
    EXPECT_EQ(locus.AddPopulation("South", 0), 2);
    EXPECT_EQ(locus.AnzPop, 2);
    EXPECT_EQ(locus.DataChromosom[0].Kapazitaet, 4);
    EXPECT_EQ(locus.DataChromosom[0].Belegt, 0);
    EXPECT_EQ(locus.InfoChromosom[1].Kapazitaet, 0);
}

TEST(LociObj, EmptyPopulationAnswersMissingAndGroupZero) {
    const LociObj locus = twoPopulations();
    EXPECT_EQ(locus.GetAnzDatenChromosome(2), 0);
    EXPECT_EQ(locus.GetDataChromosom(2, 0), -1);
    EXPECT_EQ(locus.GetInfoChromosom(2, 0), 0);
    EXPECT_EQ(locus.isHaploid(2, 0), 0);
    EXPECT_TRUE(locus.DataSlots(2).empty());
}

TEST(LociObj, PopulationWithoutRoomTakesNothing) {
    LociObj locus;
    locus.AddPopulation("Nobody", 0);
    EXPECT_EQ(locus.AddTier(1, 5, 0), -20);
    EXPECT_EQ(locus.AddTier(1, 5, 6, 0), -20);
    EXPECT_EQ(locus.GetDataChromosom(1, 0), -1);
}

TEST(LociObj, OneSlotFormFillsTheBlock) {
    LociObj locus;
    locus.AddPopulation("North", 2);
    EXPECT_EQ(locus.AddTier(1, 11, 6), 0);
    EXPECT_EQ(locus.AddTier(1, 12, 7), 0);
    EXPECT_EQ(locus.AddTier(1, 13, 8), -20);
    EXPECT_EQ(locus.GetAnzDatenChromosome(1), 2);
    EXPECT_EQ(locus.GetInfoChromosom(1, 1), 7);
}

TEST(LociObj, OneFreeSlotRefusesThePairAndTakesTheSingle) {
    LociObj locus;
    locus.AddPopulation("North", 3);
    EXPECT_EQ(locus.AddTier(1, 11, 12, 6), 0);
    EXPECT_EQ(locus.AddTier(1, 13, 14, 6), -20);
    EXPECT_EQ(locus.GetAnzDatenChromosome(1), 2);
    EXPECT_EQ(locus.AddTier(1, 13, 6), 0);
    EXPECT_EQ(locus.GetDataChromosom(1, 2), 13);
}

TEST(LociObj, ThePairFormStoresTheInfoTwice) {
    LociObj locus;
    locus.AddPopulation("North", 2);
    EXPECT_EQ(locus.AddTier(1, 11, 12, 9), 0);
    EXPECT_EQ(locus.GetDataChromosom(1, 0), 11);
    EXPECT_EQ(locus.GetDataChromosom(1, 1), 12);
    EXPECT_EQ(locus.GetInfoChromosom(1, 0), 9);
    EXPECT_EQ(locus.GetInfoChromosom(1, 1), 9);
    EXPECT_EQ(locus.InfoChromosom[0].Belegt, 2);
}

TEST(LociObj, EntriesOfNoPopulationAreRefused) {
    LociObj locus = twoPopulations();
    for (const int pop : {3, 0, -1}) {
        EXPECT_EQ(locus.AddTier(pop, 5, 0), -10) << pop;
        EXPECT_EQ(locus.AddTier(pop, 5, 6, 0), -10) << pop;
    }
}

// --- LociObj: slots -------------------------------------------------------------------------

TEST(LociObj, SlotsReadBack) {
    const LociObj locus = twoPopulations();
    EXPECT_EQ(locus.GetDataChromosom(1, 0), 11);
    EXPECT_EQ(locus.GetDataChromosom(1, 2), 13);
    EXPECT_EQ(locus.GetInfoChromosom(1, 2), 8);
}

TEST(LociObj, TheSlotBehindTheLastReadsAsMissing) {
    const LociObj locus = twoPopulations();
    EXPECT_EQ(locus.GetDataChromosom(1, 3), -1);
    EXPECT_EQ(locus.GetInfoChromosom(1, 3), 0);
}

TEST(LociObj, TheSlotBehindAFullBlockReadsAsMissing) {
    LociObj locus;
    locus.AddPopulation("North", 1);
    locus.AddTier(1, 11, 7);
    EXPECT_EQ(locus.GetDataChromosom(1, 1), -1);
    EXPECT_EQ(locus.GetInfoChromosom(1, 1), 0);
}

TEST(LociObj, SlotsOutsideAreRefused) {
    LociObj locus = twoPopulations();
    const std::pair<int, int> places[] = {{0, 0}, {3, 0}, {-1, 0}, {1, -1}, {1, 4}, {2, 1}};
    for (const auto& [pop, i] : places) {
        EXPECT_EQ(locus.GetDataChromosom(pop, i), -1) << pop << ' ' << i;
        EXPECT_EQ(locus.GetInfoChromosom(pop, i), -1) << pop << ' ' << i;
        EXPECT_EQ(locus.SetDataChromosom(pop, i, 5), -1) << pop << ' ' << i;
        EXPECT_EQ(locus.SetInfoChromosom(pop, i, 5), -1) << pop << ' ' << i;
        EXPECT_EQ(locus.SetInfoChromosom(pop, i, 5, 1), -1) << pop << ' ' << i;
        EXPECT_EQ(locus.isHaploid(pop, i), 0) << pop << ' ' << i;
        EXPECT_EQ(locus.GetGroupNummer(pop, i), 0) << pop << ' ' << i;
    }
}

TEST(LociObj, StoringGivesTheValueBack) {
    LociObj locus = twoPopulations();
    EXPECT_EQ(locus.SetDataChromosom(1, 1, 99), 99);
    EXPECT_EQ(locus.GetDataChromosom(1, 1), 99);
    EXPECT_EQ(locus.SetInfoChromosom(1, 1, 42), 42);
    EXPECT_EQ(locus.GetInfoChromosom(1, 1), 42);
    EXPECT_EQ(locus.SetDataChromosom(1, 3, 98), 98); // the slot behind the last
    EXPECT_EQ(locus.GetAnzDatenChromosome(1), 3);
}

TEST(LociObj, GroupAndTypeMakeTheInfoValue) {
    LociObj locus = twoPopulations();
    EXPECT_EQ(locus.SetInfoChromosom(1, 0, 3, 1), 7);
    EXPECT_EQ(locus.SetInfoChromosom(1, 1, 3, 2), 6); // only 1 means haploid
    EXPECT_EQ(locus.GetGroupNummer(1, 0), 3);
    EXPECT_EQ(locus.GetGroupNummer(1, 1), 3);
    EXPECT_EQ(locus.isHaploid(1, 0), 1);
    EXPECT_EQ(locus.isHaploid(1, 1), 0);
}

TEST(LociObj, AGroupIsFoundByTheFirstIndividualOfAPopulation) {
    LociObj locus = twoPopulations();
    locus.SetInfoChromosom(1, 0, 4, 0);
    locus.SetInfoChromosom(1, 1, 5, 0); // not the first: its group is not seen
    locus.AddTier(2, 1, infoValue(2, true));
    EXPECT_EQ(locus.TestGroup(4), 4);
    EXPECT_EQ(locus.TestGroup(2), 2);
    EXPECT_EQ(locus.TestGroup(5), 0);
}

TEST(LociObj, NumberOfSlotsOfNoPopulationIsRefused) {
    const LociObj locus = twoPopulations();
    EXPECT_EQ(locus.GetAnzDatenChromosome(1), 3);
    for (const int pop : {0, 3, -1}) {
        EXPECT_EQ(locus.GetAnzDatenChromosome(pop), -1) << pop;
        EXPECT_TRUE(locus.DataSlots(pop).empty()) << pop;
        EXPECT_TRUE(locus.InfoSlots(pop).empty()) << pop;
    }
}

TEST(LociObj, RunsOfSlotsAreTheUsedOnes) {
    const LociObj locus = twoPopulations();
    const auto data = locus.DataSlots(1);
    const auto infos = locus.InfoSlots(1);
    EXPECT_EQ(std::vector<int32_t>(data.begin(), data.end()), (std::vector<int32_t>{11, 12, 13}));
    EXPECT_EQ(std::vector<int32_t>(infos.begin(), infos.end()), (std::vector<int32_t>{6, 7, 8}));
}

// --- LociObj: names and lengths ---------------------------------------------------------------

TEST(LociObj, NamesAreReplaced) {
    LociObj locus;
    locus.SetLociName("first");
    locus.SetLociName("fca8");
    locus.SetLociName2("fca8b");
    EXPECT_EQ(*locus.GetLociName(), "fca8");
    EXPECT_EQ(*locus.GetLociName2(), "fca8b");
}

TEST(LociObj, AnEmptyNameIsAName) {
    LociObj locus;
    locus.SetLociName("");
    locus.SetLociName2("");
    EXPECT_EQ(*locus.GetLociName(), "");
    EXPECT_EQ(*locus.GetLociName2(), "");
}

TEST(LociObj, PopulationsAreNamedFromOne) {
    const LociObj locus = twoPopulations();
    EXPECT_EQ(*locus.GetPopName(1), "North");
    EXPECT_EQ(*locus.GetPopName(2), "South");
    EXPECT_EQ(locus.GetPopName(0), nullptr);
    EXPECT_EQ(locus.GetPopName(3), nullptr);
}

TEST(LociObj, PopulationsAreFoundByTheirExactName) {
    LociObj locus = twoPopulations();
    locus.AddPopulation("North", 2);
    EXPECT_EQ(locus.GetPopNummer("South"), 2);
    EXPECT_EQ(locus.GetPopNummer("North"), 1); // the first of two
    EXPECT_EQ(locus.GetPopNummer("north"), 0);
    EXPECT_EQ(locus.GetPopNummer("Nort"), 0);
}

TEST(LociObj, RepeatLengthsGiveTheOldValue) {
    LociObj locus;
    EXPECT_EQ(locus.SetLociRepeatMuster(4), -1);
    EXPECT_EQ(locus.SetLociRepeatMuster(2), 4);
    EXPECT_EQ(locus.SetLociRepeatRest(90), -1);
    EXPECT_EQ(locus.SetLociRepeatRest(0), 90);
    EXPECT_EQ(locus.LociRepeatMuster, 2);
    EXPECT_EQ(locus.LociRepeatRest, 0);
}

// --- Datensatz: building ---------------------------------------------------------------------

TEST(Datensatz, IsEmptyAtFirst) {
    Datensatz daten;
    EXPECT_EQ(daten.AnzLoci, 0);
    EXPECT_EQ(daten.GetPopAnzahl(), 0);
    EXPECT_EQ(daten.GetPopName(1), nullptr);
    EXPECT_EQ(daten.GetAnzDatenChromosome(1), -1);
    EXPECT_EQ(daten.AddPopulation("North", 4), 0);
    EXPECT_EQ(daten.GetGroupNummer(1, 0, 1), 0);
    EXPECT_EQ(daten.TestGroup(0), 0);
    EXPECT_EQ(daten.GetLociNummer("A"), 0);
}

TEST(Datensatz, InitMakesNewLoci) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.init(3), 3);
    EXPECT_EQ(daten.AnzLoci, 3);
    EXPECT_EQ(daten.Loci.size(), 3U);
    EXPECT_EQ(daten.GetPopAnzahl(), 0);
    EXPECT_EQ(daten.GetLociName(1), nullptr);
}

TEST(Datensatz, ANegativeNumberOfLociMakesNone) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.init(-1), -1);
    EXPECT_EQ(daten.AnzLoci, 0);
    EXPECT_EQ(daten.GetPopAnzahl(), 0);
}

TEST(Datensatz, APopulationIsAddedToAllLoci) {
    Datensatz daten;
    daten.init(2);
    EXPECT_EQ(daten.AddPopulation("North", 4), 1);
    EXPECT_EQ(daten.AddPopulation("South", 6), 2);
    for (const LociObj& locus : daten.Loci) {
        EXPECT_EQ(locus.AnzPop, 2);
        EXPECT_EQ(*locus.GetPopName(2), "South");
        EXPECT_EQ(locus.DataChromosom[1].Kapazitaet, 6);
    }
}

TEST(Datensatz, EntriesGoToTheirLocus) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.AddTier(2, 1, 44, 0), 0);
    EXPECT_EQ(daten.Loci[1].GetDataChromosom(1, 2), 44);
    EXPECT_EQ(daten.Loci[0].GetAnzDatenChromosome(1), 2);
    EXPECT_EQ(daten.AddTier(1, 1, 5, 6, 0), 0);
    EXPECT_EQ(daten.AddTier(1, 1, 7, 8, 0), -20);
    EXPECT_EQ(daten.AddTier(1, 3, 7, 8, 0), -10);
}

TEST(Datensatz, ALocusWithoutNamesHasEmptyCells) {
    Datensatz daten;
    daten.init(2);
    EXPECT_EQ(written([&](ResultFile& f) { daten.LociNamen(f, 1); }), "\t\t\t\t\n");
    EXPECT_EQ(written([&](ResultFile& f) { daten.LociNamenK(f); }), "\t\t\t\n");
}

TEST(Datensatz, NamesGoToTheirLocus) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.SetLociName(2, "x"), 0);
    EXPECT_EQ(daten.SetLociName2(2, "y"), 0);
    EXPECT_EQ(*daten.GetLociName(2), "x");
    EXPECT_EQ(*daten.GetLociName2(2), "y");
    EXPECT_EQ(*daten.GetLociName(1), "A");
}

TEST(Datensatz, ABadLocusIsRefusedEverywhere) {
    Datensatz daten = twoLoci();
    for (const int locus : {3, 0, -1}) {
        int a = 71;
        int b = 72;
        EXPECT_EQ(daten.AddTier(locus, 1, 5, 0), -10) << locus;
        EXPECT_EQ(daten.AddTier(locus, 1, 5, 6, 0), -10) << locus;
        EXPECT_EQ(daten.SetLociName(locus, "x"), -10) << locus;
        EXPECT_EQ(daten.SetLociName2(locus, "x"), -10) << locus;
        EXPECT_EQ(daten.GetLociName(locus), nullptr) << locus;
        EXPECT_EQ(daten.GetLociName2(locus), nullptr) << locus;
        EXPECT_EQ(daten.GetLociRepeatMuster(locus), -2) << locus;
        EXPECT_EQ(daten.GetLociRepeatRest(locus), -2) << locus;
        EXPECT_EQ(daten.SetLociRepeatMuster(locus, 2), -2) << locus;
        EXPECT_EQ(daten.SetLociRepeatRest(locus, 2), -2) << locus;
        EXPECT_EQ(daten.GetTierDaten(locus, 1, 0, a, b), -2) << locus;
        EXPECT_EQ(daten.SetTierDaten(locus, 1, 0, 5, 6), -2) << locus;
        EXPECT_EQ(daten.GetChromosomDaten(locus, 1, 0, a), -2) << locus;
        EXPECT_EQ(daten.GetChromosomInfo(locus, 1, 0, b), -2) << locus;
        EXPECT_EQ(daten.GetGroupNummer(1, 0, locus), 0) << locus;
        EXPECT_EQ(std::pair(a, b), std::pair(71, 72)) << locus; // untouched
    }
}

// --- Datensatz: names, lengths, rates ------------------------------------------------------------

TEST(Datensatz, ShapeIsThatOfTheFirstLocus) {
    const Datensatz daten = twoLoci();
    EXPECT_EQ(daten.GetPopAnzahl(), 2);
    EXPECT_EQ(*daten.GetPopName(2), "South");
    EXPECT_EQ(daten.GetPopName(3), nullptr);
    EXPECT_EQ(daten.GetAnzDatenChromosome(1), 2);
    EXPECT_EQ(daten.GetAnzDatenChromosome(3), -1);
}

TEST(Datensatz, AnOddRowIsNoIndividual) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.GetIndividuals(1), 1);
    daten.AddTier(1, 1, 9, 0);
    EXPECT_EQ(daten.GetAnzDatenChromosome(1), 3);
    EXPECT_EQ(daten.GetIndividuals(1), 1);
    EXPECT_EQ(daten.GetIndividuals(3), 0);
}

TEST(Datensatz, LociAreFoundByTheirFirstNameAlone) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.GetLociNummer("A"), 1);
    EXPECT_EQ(daten.GetLociNummer("B"), 2);
    EXPECT_EQ(daten.GetLociNummer("A2"), 0);
    EXPECT_EQ(daten.GetLociNummer("a"), 0);
    daten.SetLociName(2, "A");
    EXPECT_EQ(daten.GetLociNummer("A"), 1); // the first of two
}

TEST(Datensatz, ALocusWithoutANameIsNotFoundByTheEmptyOne) {
    Datensatz daten;
    daten.init(2);
    EXPECT_EQ(daten.GetLociNummer(""), 0);
    daten.SetLociName(2, "");
    EXPECT_EQ(daten.GetLociNummer(""), 2);
}

TEST(Datensatz, TheFirstNameStandsInForASecondOne) {
    const Datensatz daten = twoLoci();
    EXPECT_EQ(*daten.GetLociName2OrFirst(1), "A2");
    EXPECT_EQ(*daten.GetLociName2OrFirst(2), "B");
    EXPECT_EQ(daten.GetLociName2(2), nullptr);
    EXPECT_EQ(daten.GetLociName2OrFirst(3), nullptr);
}

TEST(Datensatz, RepeatLengthsGiveTheOldValue) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.SetLociRepeatMuster(2, 4), -1);
    EXPECT_EQ(daten.SetLociRepeatMuster(2, 5), 4);
    EXPECT_EQ(daten.SetLociRepeatRest(2, 90), -1);
    EXPECT_EQ(daten.GetLociRepeatMuster(2), 5);
    EXPECT_EQ(daten.GetLociRepeatRest(2), 90);
    EXPECT_EQ(daten.GetLociRepeatMuster(1), -1);
}

TEST(Datensatz, RatesAreReadAndWrittenThroughReferences) {
    Datensatz daten = twoLoci();
    EXPECT_EQ(daten.AccessInheritanceScalar(1), -1.0);
    EXPECT_EQ(daten.AccessMutationRate(1), -1.0);
    daten.AccessInheritanceScalar(1) = 0.25;
    daten.AccessMutationRate(2) = 1e-4;
    EXPECT_EQ(daten.Loci[0].InheritanceScalar, 0.25);
    EXPECT_EQ(daten.Loci[1].MutationRate, 1e-4);
    EXPECT_EQ(daten.Loci[0].MutationRate, -1.0);
}

TEST(Datensatz, ABadLocusHandsOutTheErrorValue) {
    Datensatz daten = twoLoci();
    for (const int locus : {3, 0, -1}) {
        Fehlerwert = 5.0;
        double& rate = daten.AccessMutationRate(locus);
        EXPECT_EQ(&rate, &Fehlerwert);
        EXPECT_EQ(Fehlerwert, -2.0);
        rate = 7.0;
        EXPECT_EQ(Fehlerwert, 7.0);
        EXPECT_EQ(&daten.AccessInheritanceScalar(locus), &Fehlerwert);
        EXPECT_EQ(Fehlerwert, -2.0); // set back at each call
    }
}

TEST(Datensatz, AGoodLocusLeavesTheErrorValueAlone) {
    Datensatz daten = twoLoci();
    Fehlerwert = 5.0;
    daten.AccessMutationRate(1) = 0.5;
    daten.AccessInheritanceScalar(2) = 0.5;
    EXPECT_EQ(Fehlerwert, 5.0);
    Fehlerwert = -2.0;
}

// --- Datensatz: genotypes -----------------------------------------------------------------------

TEST(Datensatz, AnIndividualIsAPairOfSlots) {
    Datensatz daten = twoLoci();
    daten.AddTier(1, 1, 31, 32, 0);
    int a = 0;
    int b = 0;
    EXPECT_EQ(daten.GetTierDaten(1, 1, 1, a, b), 0);
    EXPECT_EQ(std::pair(a, b), std::pair(31, 32));
    EXPECT_EQ(daten.SetTierDaten(1, 1, 0, 41, 42), 0);
    EXPECT_EQ(daten.Loci[0].GetDataChromosom(1, 0), 41);
    EXPECT_EQ(daten.Loci[0].GetDataChromosom(1, 1), 42);
    EXPECT_EQ(daten.GetTierDaten(1, 3, 0, a, b), 0); // no such population: both missing
    EXPECT_EQ(std::pair(a, b), std::pair(-1, -1));
}

TEST(Datensatz, TheSlotBehindAnOddRowIsMissing) {
    Datensatz daten;
    daten.init(1);
    daten.AddPopulation("North", 3);
    for (const int allele : {11, 12, 13}) {
        daten.AddTier(1, 1, allele, 0);
    }
    int a = 0;
    int b = 0;
    EXPECT_EQ(daten.GetTierDaten(1, 1, 1, a, b), 0);
    EXPECT_EQ(std::pair(a, b), std::pair(13, -1));
}

TEST(Datensatz, SlotsAreReadOneByOne) {
    const Datensatz daten = twoLoci();
    int allele = 0;
    int info = 0;
    EXPECT_EQ(daten.GetChromosomDaten(2, 2, 1, allele), 0);
    EXPECT_EQ(allele, 8);
    EXPECT_EQ(daten.GetChromosomInfo(2, 2, 1, info), 0);
    EXPECT_EQ(info, 21);
}

TEST(Datensatz, TheGroupIsAskedForWithTheLocusLast) {
    Datensatz daten = twoLoci();
    daten.Loci[1].SetInfoChromosom(2, 0, 8, 0);
    EXPECT_EQ(daten.GetGroupNummer(1, 0, 1), 5);  // 10 >> 1
    EXPECT_EQ(daten.GetGroupNummer(2, 1, 1), 10); // 21 >> 1
    EXPECT_EQ(daten.GetGroupNummer(2, 0, 2), 8);
    EXPECT_EQ(daten.GetGroupNummer(3, 0, 1), 0);
    EXPECT_EQ(daten.TestGroup(10), 10);
    EXPECT_EQ(daten.TestGroup(8), 0); // on locus 1 alone
}

TEST(Datensatz, IndividualsAreVisitedPopulationAfterPopulation) {
    Datensatz daten = twoLoci();
    daten.AddTier(1, 1, 9, 9, 0);
    daten.AddTier(1, 2, 9, 0); // an odd row
    std::vector<std::pair<int, int>> visited;
    daten.ForEachTier([&](int pop, int tier) { visited.emplace_back(pop, tier); });
    EXPECT_EQ(visited, (std::vector<std::pair<int, int>>{{1, 0}, {1, 1}, {2, 0}}));
}

// --- Sheet heads ------------------------------------------------------------------------------

TEST(SheetHeads, OneNameHeadsTwoColumns) {
    const Datensatz daten = twoLoci();
    EXPECT_EQ(written([&](ResultFile& f) { daten.LociNamen(f, 0); }), "\tA\t\tB\t\n");
}

TEST(SheetHeads, BothNamesHaveAColumnEach) {
    Datensatz daten = twoLoci();
    daten.SetLociName2(2, "B2");
    EXPECT_EQ(written([&](ResultFile& f) { daten.LociNamen(f, 1); }), "\tA\tA2\tB\tB2\n");
}

TEST(SheetHeads, AMissingSecondNamePrintsAsTheFirst) {
    const Datensatz daten = twoLoci();
    EXPECT_EQ(written([&](ResultFile& f) {
                  daten.LociNamen(f, 1);
                  daten.LociNamenK2(f);
                  daten.LociNamenKS2(f, "Mean");
              }),
              "\tA\tA2\tB\tB\n"
              "\tA2\tB\t\n"
              "\tMean\tA2\tB\t\n");
}

TEST(SheetHeads, OneColumnPerLocus) {
    const Datensatz daten = twoLoci();
    EXPECT_EQ(written([&](ResultFile& f) {
                  daten.LociNamenK(f);
                  daten.LociNamenKS(f, "Mean");
              }),
              "\tA\tB\t\n"
              "\tMean\tA\tB\t\n");
}

TEST(SheetHeads, WithoutLociOnlyTheFrameIsWritten) {
    const Datensatz daten;
    EXPECT_EQ(written([&](ResultFile& f) {
                  daten.LociNamen(f, 0);
                  daten.LociNamen(f, 1);
                  daten.LociNamenK(f);
                  daten.LociNamenKS(f, "Mean");
              }),
              "\n\n\t\n\tMean\t\n");
}

TEST(SheetHeads, PercentSignsInNamesAreText) {
    Datensatz daten = twoLoci();
    daten.SetLociName(1, "%s%n");
    EXPECT_EQ(written([&](ResultFile& f) { daten.LociNamenK(f); }), "\t%s%n\tB\t\n");
}
