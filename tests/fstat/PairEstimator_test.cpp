#include "fstat/PairEstimator.h"

#include "data/lociclass.h"
#include "fstat/fstatsupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <span>
#include <vector>

using namespace kva;

using kva_test::LoadedRun;
using kva_test::randomFstData;

namespace {

std::vector<int32_t> range(int32_t first, int32_t n) {
    std::vector<int32_t> places(static_cast<std::size_t>(n));
    std::iota(places.begin(), places.end(), first);
    return places;
}

} // namespace

TEST(PairEstimator, TheRestOfADealCountsAsTheSecondSample) {
    for (uint32_t seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        LoadedRun run(randomFstData(seed));
        const CodedData data(*run->Daten);
        if (data.populations() < 2 || data.slots(0) % 2 != 0 || data.slots(1) % 2 != 0) {
            continue;
        }
        std::mt19937 stream(seed);
        const int32_t pairs1 = data.slots(0) / 2;
        std::vector<int32_t> places = range(0, pairs1 + data.slots(1) / 2);
        std::shuffle(places.begin(), places.end(), stream);
        const auto deal = std::span<const int32_t>(places);
        const auto sample1 = deal.first(static_cast<std::size_t>(pairs1));
        const auto sample2 = deal.subspan(static_cast<std::size_t>(pairs1));
        PairEstimator estimator(HRule::Hobs, data.mostAlleles());
        ShuffleTable t1;
        ShuffleTable t2;
        ShuffleTable whole1;
        ShuffleTable whole2;
        for (ShuffleTable* table : {&t1, &t2, &whole1, &whole2}) {
            table->resize(data.mostAlleles());
        }
        for (std::size_t l = 0; l < data.loci(); ++l) {
            for (ShuffleTable* table : {&t1, &t2, &whole1, &whole2}) {
                table->clear();
            }
            t1.addPairs(data.locus(l), sample1);
            t2.addPairs(data.locus(l), sample2);
            whole1.addSlots(data.locus(l), range(data.slotPlace(0), data.slots(0)));
            whole2.addSlots(data.locus(l), range(data.slotPlace(1), data.slots(1)));
            const auto counted = estimator.components(t1, t2);
            const auto rest =
                estimator.componentsOfDeal(data.locus(l), whole1, whole2, sample1, sample2);
            ASSERT_EQ(counted.has_value(), rest.has_value());
            if (counted) {
                EXPECT_EQ(counted->a, rest->a);
                EXPECT_EQ(counted->b, rest->b);
                EXPECT_EQ(counted->c, rest->c);
            }
        }
    }
}
