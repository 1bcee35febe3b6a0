// Deals of tiny pairs are told apart by the individuals of the first sample alone.
#include "fstat/KnownDeals.h"

#include "data/lociclass.h"

#include <gtest/gtest.h>
#include <set>

using namespace kva;

namespace {

// Populations of so many individuals without data, at one locus.
CodedData populations(const std::vector<int>& sizes) {
    Datensatz daten;
    daten.init(1);
    int pop = 0;
    for (const int size : sizes) {
        daten.AddPopulation("P", 2 * size);
        ++pop;
        for (int tier = 0; tier < size; ++tier) {
            daten.AddTier(1, pop, -1, -1, 0);
        }
    }
    return CodedData(daten);
}

} // namespace

TEST(KnownDeals, EachSampleHasItsOwnPlaceInAnyOrder) {
    const CodedData data = populations({2, 1, 3});
    KnownDeals deals(data);
    std::vector<int32_t> all = {data.pairPlace(0), data.pairPlace(0) + 1, data.pairPlace(2),
                                data.pairPlace(2) + 1, data.pairPlace(2) + 2};
    std::set<const KnownDeal*> places;
    for (std::size_t k = 0; k < all.size(); ++k) {
        for (std::size_t m = 0; m < k; ++m) {
            const KnownDeal* const one = deals.find(0, 2, std::vector{all[k], all[m]});
            EXPECT_EQ(one, deals.find(0, 2, std::vector{all[m], all[k]}));
            EXPECT_FALSE(one->Known);
            places.insert(one);
        }
    }
    EXPECT_EQ(places.size(), 10U); // two of five
}

TEST(KnownDeals, PairsAreKeptApart) {
    const CodedData data = populations({1, 1, 1});
    KnownDeals deals(data);
    *deals.find(0, 1, std::vector{data.pairPlace(0)}) = {true, Reached{true, false, true}};
    EXPECT_FALSE(deals.find(0, 2, std::vector{data.pairPlace(0)})->Known);
    EXPECT_FALSE(deals.find(0, 1, std::vector{data.pairPlace(1)})->Known);
    const KnownDeal* const known = deals.find(0, 1, std::vector{data.pairPlace(0)});
    ASSERT_TRUE(known->Known);
    EXPECT_EQ(known->Told, (Reached{true, false, true}));
}

TEST(KnownDeals, MoreThanTenIndividualsAreNotKept) {
    const CodedData data = populations({5, 5, 6});
    KnownDeals deals(data);
    EXPECT_NE(deals.find(0, 1, std::vector{data.pairPlace(0)}), nullptr);
    EXPECT_EQ(deals.find(0, 2, std::vector{data.pairPlace(0)}), nullptr);
}

TEST(KnownDeals, RoomIsBounded) {
    // 46 populations have 1035 pairs of 1024 deals each, 11 pairs more than 2^20 deals hold.
    const CodedData data = populations(std::vector<int>(46, 5));
    KnownDeals deals(data);
    int kept = 0;
    for (std::size_t j = 1; j < data.populations(); ++j) {
        for (std::size_t i = 0; i < j; ++i) {
            kept += deals.find(i, j, std::vector{data.pairPlace(i)}) != nullptr ? 1 : 0;
        }
    }
    EXPECT_EQ(kept, 1024);
}
