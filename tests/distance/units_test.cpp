// Bootstrap replicates in units of work, each on a stream of its own.
#include "distance/passrun.h"
#include "fstat/randsci.h"
#include "run/spread.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>

using namespace kva;

using namespace kva_test;

namespace {

constexpr uint32_t kAllMeasures = 0x1FE;

// Which pass, how often, and how it is spread.
struct Way {
    Pass (*Distances)(LoadedRun& run, uint32_t mask, long bootstraps);
    long Bootstraps;
    uint32_t Mask;
    const Spread* Spreading;
};

// All files of a pass.
std::string filesOf(const Way& way) {
    LoadedRun run(kThreePops);
    run.counted();
    run->Spreading = way.Spreading;
    way.Distances(run, way.Mask, way.Bootstraps);
    std::set<std::string> names;
    const std::filesystem::path folder(run->ResultPfad);
    for (const auto& entry : std::filesystem::directory_iterator(folder / "Distance_data")) {
        names.insert(entry.path().filename());
    }
    std::string all;
    for (const std::string& name : names) {
        all += name + "\n" + distanceFile(run, name);
    }
    return all;
}

} // namespace

TEST(DistancesInUnits, SameForAnyNumberOfThreads) {
    for (const auto distances : {&popPass, &indPass}) {
        for (const uint32_t mask : {kAllMeasures, kAllMeasures | DistBit::PerLocus}) {
            const Spread one(3, 1);
            const std::string alone = filesOf({distances, 40, mask, &one});
            for (const unsigned threads : {2U, 3U}) {
                const Spread spread(3, threads);
                EXPECT_EQ(filesOf({distances, 40, mask, &spread}), alone);
            }
            const Spread other(4, 1);
            EXPECT_NE(filesOf({distances, 40, mask, &other}), alone);
        }
    }
}

// The first of two replicates is what the way in order draws first on the stream of that unit.
TEST(DistancesInUnits, FirstReplicateIsThatOfItsStream) {
    const Spread spread(3, 2);
    LoadedRun units(kThreePops);
    units.counted();
    units->Spreading = &spread;
    popPass(units, DistBit::Dps | DistBit::PerLocus, 2);
    LoadedRun inOrder(kThreePops);
    inOrder.counted();
    startUnit(3, {UnitKind::PopulationBootstrap, 0});
    popPass(inOrder, DistBit::Dps | DistBit::PerLocus, 2);
    srand2(1);
    for (const char* name : {"POSA_Pop.txt", "POSA_Pop_Loci.xls"}) {
        const std::string expected = distanceFile(inOrder, name);
        ASSERT_EQ(distanceFile(units, name).size(), expected.size());
        const std::size_t first = expected.size() / 2;
        EXPECT_EQ(distanceFile(units, name).substr(0, first), expected.substr(0, first)) << name;
    }
}

TEST(DistancesInUnits, WithoutABootstrapAsWithoutUnits) {
    const Spread spread(3, 2);
    for (const auto distances : {&popPass, &indPass}) {
        EXPECT_EQ(filesOf({distances, 1, kAllMeasures, &spread}),
                  filesOf({distances, 1, kAllMeasures, nullptr}));
    }
}
