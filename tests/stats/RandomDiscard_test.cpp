// The random-discard drivers, their draws replayed by a generator of the test's own.
#include "data/randomdiscard.h"

#include "fstat/randsci.h"
#include "stats/statsupport.h"
#include "support/draws.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace kva;

using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::tableOf;

namespace {

// The stream of rand2 for a positive seed, in 64-bit arithmetic.
class Replay {
  public:
    explicit Replay(int64_t seed) : State(seed) {
        for (int i = 0; i < 8; ++i) {
            step();
        }
        for (std::size_t j = Table.size(); j > 0; --j) {
            Table[j - 1] = step();
        }
        Last = Table[0];
    }

    float draw() {
        const int64_t next = step();
        const auto place = static_cast<std::size_t>(Last / (1 + 2147483646 / 32));
        Last = Table[place];
        Table[place] = next;
        const auto value = static_cast<float>(static_cast<double>(Last) / 2147483647.0);
        return value < 1.0F ? value : 0.99999988F;
    }

  private:
    int64_t step() { return State = State * 16807 % 2147483647; }

    int64_t State;
    std::array<int64_t, 32> Table = {};
    int64_t Last = 0;
};

constexpr int kMissing = -1;

using Individuals = std::vector<std::pair<int, int>>;

struct Sums {
    double het = 0.0;
    double mean = 0.0;
    double var = 0.0;
    double alleles = 0.0;
};

// One replicate: of each typed individual one allele, the first for a draw up to one half.
std::map<int, int> thinned(const Individuals& individuals, Replay& stream) {
    std::map<int, int> counts;
    for (const auto& [first, second] : individuals) {
        if (first != kMissing && second != kMissing) {
            ++counts[stream.draw() <= 0.5F ? first : second];
        } else if (first != kMissing || second != kMissing) {
            ++counts[first != kMissing ? first : second];
        }
    }
    return counts;
}

// The sums over the replicates; `copies` is the number of all alleles of the sample.
Sums replayed(const Individuals& individuals, int copies, int replicates, Replay& stream) {
    Sums sums;
    for (int r = 0; r < replicates; ++r) {
        const std::map<int, int> counts = thinned(individuals, stream);
        double n = 0.0;
        double total = 0.0;
        for (const auto& [number, count] : counts) {
            n += count;
            total += double(number) * count;
        }
        const double mean = total / n;
        double squares = 0.0;
        double deviations = 0.0;
        for (const auto& [number, count] : counts) {
            squares += (count / n) * (count / n);
            deviations += count * ((number - mean) * (number - mean));
        }
        sums.het += n / (n - 1.0) * (1.0 - squares);
        sums.mean += mean;
        sums.var += 2.0 / (copies - 2.0) * deviations;
        sums.alleles += static_cast<double>(counts.size());
    }
    return sums;
}

constexpr int kSeed = 4711;
constexpr int kReplicates = 50;

const char* const kThreeKinds = "2 . . 2 .\n"
                                ". . . 50 .\n"
                                ". . . L1 L1b\n"
                                "Dip d 0 100 102\n"
                                "Dip d 0 100 100\n"
                                "Mix d 0 100 102\n"
                                "Mix h 0 104 106\n"
                                "Mix d 0 100 .\n"
                                "Mix h 0 . .\n"
                                "Mix h 0 102 102\n"
                                "Inb h 0 100 104\n"
                                "Inb h 0 . 106\n"
                                "Inb h 0 102 104\n"
                                "Inb h 0 104 104\n";
const Individuals kDip = {{100, 102}, {100, 100}};
const Individuals kMix = {
    {100, 102}, {104, 106}, {100, kMissing}, {kMissing, kMissing}, {102, 102}};
const Individuals kInb = {{100, 104}, {kMissing, 106}, {102, 104}, {104, 104}};

enum Sample { kPool, kDipPop, kMixPop, kInbPop };

// A counted data set with the stream seeded, and the four drivers without their marks.
class Drivers {
  public:
    explicit Drivers(const char* text) : Run(text) {
        Run.counted();
        srand2(kSeed);
    }

    double het(int pop) {
        const StdoutCapture swallowed;
        return Run->Daten->CalcRDHet(Run->PopAllele, pop, 1, kReplicates);
    }
    double mean(int pop) {
        const StdoutCapture swallowed;
        return Run->Daten->CalcRDMean(Run->PopAllele, pop, 1, kReplicates);
    }
    double var(int pop, double mean) {
        const StdoutCapture swallowed;
        return Run->Daten->CalcRDVar(Run->PopAllele, pop, 1, mean, kReplicates);
    }
    double alleles(int pop) {
        const StdoutCapture swallowed;
        return Run->Daten->CalcRDAllele(Run->PopAllele, pop, 1, kReplicates);
    }
    AllelCount& table(int pop) { return Run->PopAllele[static_cast<std::size_t>(pop)][0]; }
    Datensatz& daten() { return *Run->Daten; }
    SampleTables& tables() { return Run->PopAllele; }

  private:
    LoadedRun Run;
};

void expectMeans(Drivers& drivers, int pop, const Sums& sums) {
    EXPECT_DOUBLE_EQ(drivers.het(pop), sums.het / kReplicates);
    EXPECT_DOUBLE_EQ(drivers.mean(pop), sums.mean / kReplicates);
    EXPECT_DOUBLE_EQ(drivers.var(pop, 0.0), sums.var / kReplicates);
    EXPECT_DOUBLE_EQ(drivers.alleles(pop), sums.alleles / kReplicates);
}

} // namespace

// --- Draws replayed by hand --------------------------------------------------------------

// 6 alleles of 3 typed pairs and one single allele: 7 copies. All individuals are thinned, the
// diploid ones too; the homozygote takes a draw, the half missing individual none.
TEST(CalcRDHet, MixedPopulationIsThinnedWhole) {
    Drivers drivers(kThreeKinds);
    Replay stream(kSeed);
    const Sums sums = replayed(kMix, 7, kReplicates, stream);
    expectMeans(drivers, kMixPop, sums);
    EXPECT_EQ(rand2(), stream.draw()); // not one draw more
}

TEST(CalcRDHet, InbredPopulationIsThinned) {
    Drivers drivers(kThreeKinds);
    Replay stream(kSeed);
    const Sums sums = replayed(kInb, 7, kReplicates, stream);
    expectMeans(drivers, kInbPop, sums);
    EXPECT_EQ(rand2(), stream.draw());
}

// Allele 0, which no file gives, in each place of an individual: two draws and two single alleles,
// 6 copies.
TEST(CalcRDHet, AlleleZeroIsAnAllele) {
    Drivers drivers("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                    "A h 0 1 1\nA h 0 1 1\nA h 0 1 1\nA h 0 1 1\n");
    const Individuals individuals = {{0, 104}, {102, 0}, {kMissing, 0}, {0, kMissing}};
    for (int tier = 0; tier < 4; ++tier) {
        const auto& [first, second] = individuals[static_cast<std::size_t>(tier)];
        drivers.daten().SetTierDaten(1, 1, tier, first, second);
    }
    ResultFile none;
    drivers.tables()[1] = drivers.daten().AllelCountPop(none, none, 1);
    Replay stream(kSeed);
    expectMeans(drivers, 1, replayed(individuals, 6, kReplicates, stream));
    EXPECT_EQ(rand2(), stream.draw());
}

// One replicate: 100 is kept of the first individual, 104 of the second.
TEST(CalcRDHet, OneHalfItselfKeepsTheFirstAllele) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA h 0 100 102\nA h 0 104 104\n");
    run.counted();
    srand2(kva_test::kSeedOfOneHalf);
    const StdoutCapture swallowed;
    run->Daten->CalcRDHet(run->PopAllele, 1, 1, 1);
    EXPECT_EQ(run->PopAllele[1][0].GetRDMaxAllelCount(0), 1);
    EXPECT_EQ(run->PopAllele[1][0].GetRDMaxAllelCount(1), 0);
}

// 100, 102, 100, 100: H = 8/6 x (1 - 10/16) = 1/2, mean 100.5, variance 8/6 x 3/4 = 1.
TEST(CalcRDHet, DiploidPopulationIsPlainAndDrawsNothing) {
    Drivers drivers(kThreeKinds);
    EXPECT_DOUBLE_EQ(drivers.het(kDipPop), 0.5);
    EXPECT_DOUBLE_EQ(drivers.mean(kDipPop), 100.5);
    EXPECT_DOUBLE_EQ(drivers.var(kDipPop, 100.5), 1.0);
    EXPECT_DOUBLE_EQ(drivers.alleles(kDipPop), 2.0);
    EXPECT_EQ(drivers.table(kDipPop).RDDurchlauf, 0);
    EXPECT_EQ(rand2(), Replay(kSeed).draw());
}

TEST(CalcRDHet, PoolWalksThePopulationsInTurn) {
    Individuals all = kDip;
    all.insert(all.end(), kMix.begin(), kMix.end());
    all.insert(all.end(), kInb.begin(), kInb.end());
    Drivers drivers(kThreeKinds);
    Replay stream(kSeed);
    const Sums sums = replayed(all, 18, kReplicates, stream);
    expectMeans(drivers, kPool, sums);
    EXPECT_EQ(rand2(), stream.draw());
}

TEST(CalcRDHet, TablesAreThinnedInTheOrderOfTheCalls) {
    Drivers drivers(kThreeKinds);
    Replay stream(kSeed);
    const Sums inbred = replayed(kInb, 7, kReplicates, stream);
    const Sums mixed = replayed(kMix, 7, kReplicates, stream);
    EXPECT_DOUBLE_EQ(drivers.alleles(kInbPop), inbred.alleles / kReplicates);
    EXPECT_DOUBLE_EQ(drivers.het(kMixPop), mixed.het / kReplicates);
}

// --- Once in the life of a table ------------------------------------------------------------

TEST(CalcRDHet, SecondCallReadsAndDrawsNothing) {
    Drivers drivers(kThreeKinds);
    const double first = drivers.het(kMixPop);
    srand2(99);
    EXPECT_EQ(drivers.het(kMixPop), first);
    EXPECT_EQ(rand2(), Replay(99).draw());
    EXPECT_EQ(drivers.table(kMixPop).RDDurchlauf, kReplicates);
}

TEST(CalcRDHet, LastReplicateIsMarkedOnce) {
    Drivers drivers(kThreeKinds);
    StdoutCapture console;
    drivers.daten().CalcRDHet(drivers.tables(), kMixPop, 1, 200);
    drivers.daten().CalcRDAllele(drivers.tables(), kMixPop, 1, 200);
    EXPECT_EQ(console.text(), "3#");
    EXPECT_EQ(drivers.table(kMixPop).RDDurchlauf, 200);
}

TEST(CalcRDHet, MonomorphicTableEndsAfterOneReplicate) {
    Drivers drivers("2 . . 2 .\n"
                    ". . . 50 .\n"
                    ". . . L1 L1b\n"
                    "A h 0 100 100\n"
                    "A h 0 100 100\n");
    StdoutCapture console;
    EXPECT_EQ(drivers.daten().CalcRDHet(drivers.tables(), 1, 1, 200), 0.0);
    EXPECT_EQ(console.text(), "2#");
    EXPECT_EQ(drivers.table(1).RDDurchlauf, 1);
    EXPECT_EQ(drivers.mean(1), 100.0);
    EXPECT_EQ(drivers.alleles(1), 1.0);
}

// Two copies: the replicate is refused, all sums are -1.0, after one draw and without a mark.
TEST(CalcRDHet, TooSmallTableHasNoneAndNoMark) {
    Drivers drivers("2 . . 2 .\n"
                    ". . . 50 .\n"
                    ". . . L1 L1b\n"
                    "A h 0 100 102\n");
    StdoutCapture console;
    EXPECT_EQ(drivers.daten().CalcRDHet(drivers.tables(), 1, 1, 200), -1.0);
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(drivers.alleles(1), -1.0);
    Replay stream(kSeed);
    stream.draw();
    EXPECT_EQ(rand2(), stream.draw());
}

TEST(CalcRDHet, EmptyTableHasNone) {
    Drivers drivers("2 . . 2 .\n"
                    ". . . 50 .\n"
                    ". . . L1 L1b\n"
                    "A h 0 . .\n");
    EXPECT_EQ(drivers.het(1), -1.0);
    EXPECT_EQ(drivers.mean(1), -1.0);
    EXPECT_EQ(drivers.var(1, -1.0), -1.0);
    EXPECT_EQ(drivers.alleles(1), -1.0);
}

// --- One-column data with an odd row ---------------------------------------------------------

namespace {

const char* const kOddRows = "1 . . 2\n"
                             ". . . 50\n"
                             ". . . L1\n"
                             "A h 0 100\n"
                             "A h 0 102\n"
                             "A h 0 104\n"
                             "A h 0 100\n"
                             "A h 0 106\n";

} // namespace

TEST(CalcRDHet, LeavesOutTheSingleLastSlot) {
    Drivers drivers(kOddRows);
    Replay stream(kSeed);
    const Sums sums = replayed({{100, 102}, {104, 100}}, 5, kReplicates, stream);
    expectMeans(drivers, 1, sums);
}

// The three other drivers walk twice as far: the last slot has a missing partner there.
TEST(CalcRDAllele, TakesTheSingleLastSlotWithoutADraw) {
    Replay stream(kSeed);
    const Sums sums = replayed({{100, 102}, {104, 100}, {106, kMissing}}, 5, kReplicates, stream);
    Drivers alleles(kOddRows);
    EXPECT_DOUBLE_EQ(alleles.alleles(1), sums.alleles / kReplicates);
    Drivers mean(kOddRows);
    EXPECT_DOUBLE_EQ(mean.mean(1), sums.mean / kReplicates);
    Drivers var(kOddRows);
    EXPECT_DOUBLE_EQ(var.var(1, 0.0), sums.var / kReplicates);
}

// Three rows make one individual, so a replicate of one copy: n/(n-1) is infinite, times 0.
TEST(CalcRDHet, ReplicateOfOneCopyIsNoNumber) {
    Drivers drivers("1 . . 2\n"
                    ". . . 50\n"
                    ". . . L1\n"
                    "A h 0 100\n"
                    "A h 0 102\n"
                    "A h 0 104\n");
    EXPECT_TRUE(std::isnan(drivers.het(1)));
}

// --- The fast walk is the plain one -------------------------------------------------------------

namespace {

// A population of random inbred and diploid individuals with missing alleles.
std::string randomPopulation(std::mt19937& stream) {
    std::ostringstream text;
    text << "2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n";
    const auto individuals = 2 + stream() % 30;
    for (auto i = individuals; i > 0; --i) {
        text << (stream() % 3 == 0 ? "A d 0" : "A h 0");
        for (int entry = 0; entry < 2; ++entry) {
            const auto allele = 100 + 2 * (stream() % 9);
            text << ' ' << (stream() % 6 == 0 ? "." : std::to_string(allele));
        }
        text << '\n';
    }
    return text.str();
}

// The replicates entry by entry through AllelCount::AddHaploidSet.
void thinPlainly(AllelCount& table, const Datensatz& daten) {
    const StdoutCapture swallowed;
    table.StartRD(kReplicates);
    do {
        for (int i = 0; i < daten.GetAnzDatenChromosome(1) / 2; ++i) {
            table.AddHaploidSet(daten.Loci[0].GetDataChromosom(1, 2 * i),
                                daten.Loci[0].GetDataChromosom(1, 2 * i + 1));
        }
    } while (table.RDEnd() == 1);
}

} // namespace

TEST(CalcRDHet, SumsOfThePlainWalk) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        std::mt19937 stream(seed);
        Drivers drivers(randomPopulation(stream).c_str());
        AllelCount plain = drivers.table(1);
        const double het = drivers.het(1);
        if (!plain.isHaploid()) {
            continue;
        }
        srand2(kSeed);
        thinPlainly(plain, drivers.daten());
        const AllelCount& fast = drivers.table(1);
        EXPECT_EQ(het, plain.RDHet / plain.RDDurchlauf) << "seed " << seed;
        EXPECT_EQ(fast.RDMean, plain.RDMean) << "seed " << seed;
        EXPECT_EQ(fast.RDVar, plain.RDVar) << "seed " << seed;
        EXPECT_EQ(fast.RDAlleleSumme, plain.RDAlleleSumme) << "seed " << seed;
        for (int i = 0; i < plain.AnzAllele; ++i) {
            EXPECT_EQ(fast.GetRDMinAllelCount(i), plain.GetRDMinAllelCount(i)) << "seed " << seed;
            EXPECT_EQ(fast.GetRDMaxAllelCount(i), plain.GetRDMaxAllelCount(i)) << "seed " << seed;
        }
    }
}

// --- The values alone -------------------------------------------------------------------------

TEST(RandomDiscardValues, PlainWithoutReplicates) {
    const AllelCount table = tableOf({{100, 3}, {102, 1}}, 1); // C = 4: factor 2
    EXPECT_DOUBLE_EQ(rdHet(table), 2.0 * (1.0 - 10.0 / 16.0));
    EXPECT_DOUBLE_EQ(rdMean(table), 100.5);
    EXPECT_DOUBLE_EQ(rdVar(table, 100.5), 2.0 * 3.0 / 4.0);
    EXPECT_EQ(rdAlleles(table), 2.0);
}

TEST(RandomDiscardValues, MeanOverTheReplicates) {
    AllelCount table = tableOf({{100, 3}, {102, 1}}, 1);
    table.RDDurchlauf = 4;
    table.RDHet = 1.0;
    table.RDMean = 402.0;
    table.RDVar = 2.0;
    table.RDAlleleSumme = 6.0;
    EXPECT_EQ(rdHet(table), 0.25);
    EXPECT_EQ(rdMean(table), 100.5);
    EXPECT_EQ(rdVar(table, 7.0), 0.5);
    EXPECT_EQ(rdAlleles(table), 1.5);
}

TEST(RandomDiscardValues, DiploidTableIsPlainWhateverItsSums) {
    AllelCount table = tableOf({{100, 3}, {102, 1}});
    table.RDDurchlauf = 4;
    table.RDHet = 4.0;
    EXPECT_DOUBLE_EQ(rdHet(table), 0.5);
}

TEST(RandomDiscardValues, NoAlleleIsNone) {
    EXPECT_EQ(rdAlleles(AllelCount()), -1.0);
}
