// The passes against the plain reading of the distances: the same bytes in every file, for
// random data sets, with and without -ln and bootstrap.
#include "distance/plain_distances.h"
#include "distance/random_data.h"
#include "support/datasets.h"

#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

namespace {

constexpr uint32_t kAllDistances = 0x1FF;

struct Setting {
    bool Individuals;
    uint32_t GeneralMask;
    int Bootstraps;
    int BootLoci;
};

// Runs the pass and compares. The pass seeds the stream from the clock, so every second that it
// took may be the seed.
std::string compare(LoadedRun& run, const Setting& setting) {
    run->GeneralMask = setting.GeneralMask;
    run->BootLoci = setting.BootLoci;
    std::filesystem::remove_all(run->ResultPfad + "/Distance_data"); // files of a pass before
    const long before = static_cast<long>(std::time(nullptr));
    {
        const StdoutCapture swallowed;
        const long result = setting.Individuals ? run->CalcDistancesInd(setting.Bootstraps)
                                                : run->CalcDistancesPop(setting.Bootstraps);
        if (result != 0) {
            return "result " + std::to_string(result);
        }
    }
    const long after = static_cast<long>(std::time(nullptr));
    std::string difference;
    for (long seed = before; seed <= after; ++seed) {
        difference = distanceDifference(run, setting.Individuals, setting.Bootstraps, seed);
        if (difference.empty()) {
            break;
        }
    }
    return difference;
}

// Variances of inbred samples come from the random-discard replicates where there are any.
void setReplicates(AnalyseDataObj& run) {
    int replicates = 1;
    for (LocusTables& tables : run.PopAllele) {
        for (AllelCount& table : tables) {
            table.RDDurchlauf = replicates % 3;
            table.RDVar = table.RDDurchlauf * 1.7;
            ++replicates;
        }
    }
}

class PlainTwin : public ::testing::TestWithParam<uint32_t> {};

} // namespace

TEST_P(PlainTwin, SameBytes) {
    const std::string data = randomData(GetParam());
    LoadedRun run(data);
    run.counted();
    if (GetParam() % 3 == 0) {
        setReplicates(*run);
    }
    const int bootLoci = GetParam() % 2 == 0 ? -1 : static_cast<int>(GetParam() % 9) + 1;
    for (const bool individuals : {false, true}) {
        for (const uint32_t general : {0U, uint32_t{GeneralBit::MinusLog}}) {
            for (const int bootstraps : {1, 3}) {
                run->PopDistMask = kAllDistances | DistBit::PerLocus | DistBit::Nexus;
                const std::string difference =
                    compare(run, {individuals, general, bootstraps, bootLoci});
                EXPECT_TRUE(difference.empty())
                    << "seed " << GetParam() << ", individuals " << individuals << ", mask "
                    << general << ", bootstraps " << bootstraps << "\n"
                    << data << difference;
            }
        }
    }
}

TEST_P(PlainTwin, SameBytesForAPartOfTheMeasures) {
    LoadedRun run(randomData(GetParam()));
    run.counted();
    run->PopDistMask = DistBit::Engine | (GetParam() * 37 & kAllDistances);
    for (const bool individuals : {false, true}) {
        const std::string difference = compare(run, {individuals, 0, 2, -1});
        EXPECT_TRUE(difference.empty()) << "seed " << GetParam() << "\n" << difference;
    }
}

INSTANTIATE_TEST_SUITE_P(RandomData, PlainTwin, ::testing::Range(1U, 81U));

// A row of more individuals than are taken over to the lower triangle at a time.
TEST(PlainTwinOfManyIndividuals, SameBytes) {
    std::string data = "2 . . 1 .\n. . . 0 .\n. . . L Lb\n";
    for (int i = 0; i < 53; ++i) {
        data.append(i < 20 ? "A d 0 " : "B d 0 ").append(std::to_string(100 + i * 7 % 5));
        data.append(" ").append(std::to_string(100 + i * 3 % 4)).append("\n");
    }
    LoadedRun run(data);
    run.counted();
    run->PopDistMask = kAllDistances;
    for (const uint32_t general : {0U, uint32_t{GeneralBit::MinusLog}}) {
        const std::string difference = compare(run, {true, general, 1, -1});
        EXPECT_TRUE(difference.empty()) << difference;
    }
}
