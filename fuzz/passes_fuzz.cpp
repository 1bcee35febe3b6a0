// All passes: the bytes make a valid data set and the settings of a run, which is made in a folder
// of its own. Then each fast way is held to its plain twin, under settings of the bytes, too.
#include "harness.h"

#include "distance/plain_distances.h"
#include "formats/plain_rows.h"
#include "fstat/fstatsupport.h"
#include "fstat/plain_tests.h"
#include "fstat/randsci.h"
#include "hetrange/plain_count.h"
#include "support/datasets.h"
#include "support/randomdata.h"

#include <algorithm>
#include <string>
#include <vector>

using namespace kva;

namespace {

// Numbers of the bytes, 0 behind the last.
class Numbers {
  public:
    Numbers(const uint8_t* data, std::size_t size) : Data(data), Size(size) {}

    uint8_t byte() { return At < Size ? Data[At++] : 0; }
    int below(int n) { return byte() % n; }
    uint32_t word() {
        uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value << 8U | byte();
        }
        return value;
    }

  private:
    const uint8_t* Data;
    std::size_t Size;
    std::size_t At = 0;
};

// A twin that differs is a find.
void requireNone(const std::string& difference, const char* what) {
    if (!difference.empty()) {
        std::cerr << difference << std::endl;
    }
    kva_fuzz::require(difference.empty(), what);
}

void runPasses(kva_test::LoadedRun& run, const AnalyseSettings& settings, std::size_t populations,
               Numbers& numbers) {
    ScalarSettings scalars;
    scalars.RichnessRef = numbers.below(8) - 1;
    scalars.HetRandomisierungen = numbers.below(4);
    scalars.ReplikaLoci = numbers.below(5) - 2;
    scalars.Replikate = 200;
    run->TakeSettings(settings, scalars);
    const int replicates = numbers.below(4);
    kva_fuzz::require(run->WriteOutput(replicates, numbers.below(4)) == 0, "the passes end");
    kva_fuzz::require(run->PopAllele.size() == populations + 1, "tables are there");
}

// The flags that a shuffle, its estimator and the lists of a test follow.
constexpr uint32_t kShuffled = FstBit::HObs | FstBit::HExp | FstBit::HAuto | FstBit::Genotypes |
                               FstBit::Linked | FstBit::Permutation;
constexpr uint32_t kTails = FstBit::Confidence | FstBit::ConfidencePermuted;

void comparePermutationTests(AnalyseDataObj& run, Numbers& numbers) {
    const uint32_t mask = numbers.word();
    constexpr int kReseeded = 52; // beyond the second seeding
    run.Permutationen = numbers.below(16) == 15 ? kReseeded : 1 + numbers.below(4);
    run.FstMask = mask & (kShuffled | FstBit::Jackknife | FstBit::LocusTable);
    requireNone(kva_test::pairTestDifference(run), "the test of pairs gives the plain bits");
    run.FstMask = (mask & (kShuffled | kTails | FstBit::Jackknife)) | FstBit::RandomDiscard;
    requireNone(kva_test::discardTestDifference(run), "random discarding gives the plain bits");
    run.FstMask = mask & kShuffled;
    requireNone(kva_test::globalTestDifference(run), "the global test gives the plain bits");
}

void compareDistances(kva_test::LoadedRun& run, Numbers& numbers, long seed) {
    run->PopDistMask = (numbers.word() & 0xFFFU) | DistBit::Engine;
    run->GeneralMask = numbers.below(2) == 0 ? 0 : GeneralBit::MinusLog;
    run->BootLoci = numbers.below(8) - 1;
    const int replicates = 1 + numbers.below(4);
    kva_fuzz::require(run->CalcDistancesPop(replicates) == 0, "populations' pass ends");
    requireNone(kva_test::distanceDifference(run, false, replicates, seed),
                "distances of populations are the plain bytes");
    kva_fuzz::require(run->CalcDistancesInd(replicates) == 0, "individuals' pass ends");
    requireNone(kva_test::distanceDifference(run, true, replicates, seed),
                "distances of individuals are the plain bytes");
}

// Any entries of each population and locus, the one behind the last among them.
void compareHetTables(const AnalyseDataObj& run, Numbers& numbers, long seed) {
    for (int pop = 1; pop <= run.AnzPop; ++pop) {
        const auto p = static_cast<std::size_t>(pop);
        for (std::size_t l = 0; l < run.PopAllele[p].size(); ++l) {
            const LociObj& locus = run.Daten->Loci[l];
            const auto entries = static_cast<int>(locus.DataSlots(pop).size());
            std::vector<int32_t> row(static_cast<std::size_t>(numbers.below(20)));
            std::ranges::generate(row, [&] { return numbers.below(entries + 1); });
            HetTable table;
            table.Load(locus, pop, run.PopAllele[p][l]);
            requireNone(
                kva_test::countDifference(table, locus, pop, row, numbers.below(2) == 1, seed),
                "drawn entries are counted as an AllelCount does");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const kva_fuzz::Quiet quiet;
    Numbers numbers(data, size);
    const AnalyseSettings settings{numbers.word(), numbers.word(), numbers.word(), numbers.word(),
                                   numbers.word()};
    const int columns = 1 + numbers.below(2);
    const char* const lineEnds[] = {"\n", "\r\n", "\r"};
    const char* const lineEnd = lineEnds[numbers.below(3)];
    const long seed = 1 + numbers.byte();
    const kva_test::FrozenClock clock(seed);
    const kva_test::RandomDataSet set =
        kva_test::randomDataSet([&numbers] { return numbers.byte(); }, {true, true});
    kva_test::LoadedRun run(kva_test::dataFile(set, columns, lineEnd));
    runPasses(run, settings, set.populations.size(), numbers);
    comparePermutationTests(*run, numbers);
    compareDistances(run, numbers, seed);
    requireNone(kva_test::rowDifference(*run->Daten, run->PopAllele[0], seed),
                "rows of the Genepop export are the plain ones");
    compareHetTables(*run, numbers, seed);
    return 0;
}
