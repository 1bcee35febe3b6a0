#include "data/popnames.h"

#include "data/lociclass.h"

#include <gtest/gtest.h>

using namespace kva;

TEST(PopNames, NamesOfSharersAreStoredOnce) {
    PopNames first;
    PopNames second = first.share();
    first.add("North");
    second.add("North");
    EXPECT_EQ(&first[0], &second[0]);
    EXPECT_EQ(second.size(), 1U);
}

TEST(PopNames, WhatASharerAddsDoesNotShow) {
    PopNames first;
    const PopNames second = first.share();
    first.add("North");
    EXPECT_EQ(second.size(), 0U);
    EXPECT_EQ(second.find("North"), 0U); // behind the last
    EXPECT_FALSE(first == second);
}

TEST(PopNames, AnotherNameInThatPlaceStartsAListOfItsOwn) {
    PopNames first;
    PopNames second = first.share();
    first.add("North");
    first.add("South");
    second.add("North");
    second.add("East");
    first.add("West");
    EXPECT_EQ(first[1], "South");
    EXPECT_EQ(second[1], "East");
    EXPECT_EQ(second.size(), 2U);
    EXPECT_EQ(first[2], "West");
    EXPECT_NE(&first[0], &second[0]);
}

TEST(PopNames, ACopyGoesItsOwnWay) {
    PopNames first;
    first.add("North");
    PopNames copy = first;
    EXPECT_TRUE(copy == first);
    copy.add("East");
    first.add("South");
    EXPECT_EQ(copy[1], "East");
    EXPECT_EQ(first[1], "South");
    EXPECT_FALSE(copy == first);
}

TEST(PopNames, FindsTheFirstOfAName) {
    PopNames names;
    for (const char* name : {"A", "B", "A"}) {
        names.add(name);
    }
    EXPECT_EQ(names.find("A"), 0U);
    EXPECT_EQ(names.find("B"), 1U);
    EXPECT_EQ(names.find("C"), 3U);
}

TEST(PopNames, ANameStaysInItsPlaceWhileOthersAreAdded) {
    PopNames first;
    PopNames second = first.share();
    first.add("North");
    second.add("North");
    const std::string* const name = &first[0];
    for (int i = 0; i < 1000; ++i) {
        second.add("P" + std::to_string(i));
    }
    EXPECT_EQ(&first[0], name);
    EXPECT_EQ(*name, "North");
}

TEST(PopNames, LociOfADataSetShareThem) {
    Datensatz daten;
    daten.init(2);
    daten.AddPopulation("North", 4);
    daten.AddPopulation("South", 4);
    EXPECT_EQ(daten.Loci[0].GetPopName(2), daten.Loci[1].GetPopName(2));
    Datensatz copy = daten;
    copy.AddPopulation("East", 2);
    daten.AddPopulation("West", 2);
    EXPECT_EQ(*copy.GetPopName(3), "East");
    EXPECT_EQ(*daten.GetPopName(3), "West");
    EXPECT_EQ(copy.Loci[1].GetPopNummer("East"), 3);
    EXPECT_EQ(daten.Loci[1].GetPopNummer("East"), 0);
}
