// The estimate on the fast tables against AllelCount and the equations.
#include "fstat/PairEstimator.h"

#include "fstat/genotypes.h"

#include <gtest/gtest.h>
#include <numeric>

using namespace kva;

using kva_test::addSlots;
using kva_test::expectSameBits;
using kva_test::plainComponents;
using kva_test::randomGenotypes;
using kva_test::slotsAt;

TEST(PairEstimator, TwoTablesAreAsCountedSlotBySlot) {
    for (uint32_t seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        const Datensatz daten = randomGenotypes(seed);
        const CodedData data(daten);
        PairEstimator estimator(HRule::Hobs, data.mostAlleles());
        for (std::size_t l = 0; l < data.loci(); ++l) {
            AllelCount pool;
            std::array<AllelCount, 2> plain;
            std::array<ShuffleTable, 2> fast;
            for (std::size_t pop = 0; pop < 2; ++pop) {
                std::vector<int32_t> places(static_cast<std::size_t>(data.slots(pop) / 2));
                std::iota(places.begin(), places.end(), data.pairPlace(pop));
                const std::array<AllelCount*, 2> tables = {&pool, &plain[pop]};
                addSlots(daten, l, slotsAt(data, places), tables);
                fast[pop].resize(data.mostAlleles());
                fast[pop].addPairs(data.locus(l), places);
            }
            expectSameBits(estimator.components(fast[0], fast[1]),
                           plainComponents(pool, plain[0], plain[1]));
        }
    }
}
