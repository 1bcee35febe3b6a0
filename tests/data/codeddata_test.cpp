#include "data/codeddata.h"

#include "data/lociclass.h"
#include "support/datasets.h"

#include <gtest/gtest.h>
#include <vector>

using namespace kva;

using kva_test::kInbredPop;
using kva_test::kTwoPops;
using kva_test::LoadedRun;

TEST(CodedData, SlotsOfAllPopulationsStandInOneRow) {
    LoadedRun run(kTwoPops);
    const CodedData data(*run->Daten);
    EXPECT_EQ(data.populations(), 2U);
    EXPECT_EQ(data.slots(1), 4);
    EXPECT_EQ(data.slotPlace(1), 5) << "behind the four of A and the missing one";
    EXPECT_EQ(data.pairPlace(1), 2);
    EXPECT_EQ(data.mostAlleles(), 3);
    // L1: 100 102 104 are 1 2 3; A 100/102 100/100, B 102/104 104/104.
    EXPECT_EQ(data.locus(0).Code, (std::vector<uint32_t>{1, 2, 1, 1, 0, 2, 3, 3, 3, 0}));
    EXPECT_EQ(data.locus(0).Pairs[2].First, 2U);
    EXPECT_EQ(data.locus(0).Pairs[2].Second, 3U);
    EXPECT_EQ(data.locus(0).Pairs[2].Sum.Hetero, 1);
}

TEST(CodedData, InbredEntriesWeighOne) {
    LoadedRun run(kInbredPop);
    const CodedData data(*run->Daten);
    EXPECT_EQ(data.locus(0).Weight[0], 2);
    EXPECT_EQ(data.locus(0).Weight[5], 1);
    EXPECT_EQ(data.locus(0).Pairs[2].Sum.Weight, 2);
}

TEST(CodedData, AnEntryInAByteIsItsCodeAndWhetherItIsHaploid) {
    LoadedRun run(kInbredPop);
    const CodedData data(*run->Daten);
    const CodedLocus& locus = data.locus(0);
    ASSERT_EQ(locus.Entries.size(), locus.Code.size());
    for (std::size_t place = 0; place < locus.Code.size(); ++place) {
        const bool light = locus.Code[place] != 0 && locus.Weight[place] == 1;
        EXPECT_EQ(locus.Entries[place], locus.Code[place] + (light ? 128 : 0)) << place;
    }
    EXPECT_GT(locus.Entries[5], 128) << "inbred";
}

TEST(CodedData, EntriesInBytesEndWith127Alleles) {
    for (const int alleles : {127, 128}) {
        Datensatz daten;
        daten.init(1);
        daten.AddPopulation("P", 2 * alleles);
        for (int allele = 0; allele < alleles; ++allele) {
            daten.AddTier(1, 1, 100 + allele, 100, 0);
        }
        const CodedData data(daten);
        EXPECT_EQ(data.locus(0).Alleles, alleles);
        if (alleles == 127) {
            EXPECT_EQ(data.locus(0).Entries[252], 127);
        } else {
            EXPECT_TRUE(data.locus(0).Entries.empty());
        }
    }
}

TEST(CodedData, APopulationOfOddSizeHasMoreThanPairs) {
    for (const bool odd : {false, true}) {
        Datensatz daten;
        daten.init(1);
        daten.AddPopulation("A", 3);
        daten.AddTier(1, 1, 5, 6, 0);
        daten.AddPopulation("B", 3);
        daten.AddTier(1, 2, 5, 5, 0);
        if (odd) {
            daten.AddTier(1, 2, 6, 0); // a third slot
        }
        EXPECT_NE(CodedData(daten).onlyPairs(), odd);
    }
}

TEST(CodedData, ReadThroughASheet) {
    LoadedRun run(kTwoPops);
    const CodedData data(*run->Daten);
    CodedData out = data;
    const SlotSheet sheet(2, {{1, 1, -1, -1}, {3, 2, 1, 4}});
    data.readThrough(sheet, out);
    EXPECT_EQ(out.locus(0).Code, (std::vector<uint32_t>{2, 2, 0, 0, 0, 3, 3, 3, 0, 0}))
        << "-1 and the slot behind the last are missing";
    EXPECT_EQ(out.locus(0).Pairs[0].First, 2U) << "pairs follow";
    EXPECT_EQ(out.locus(0).Pairs[1].Sum.Typed, 0);
}
