#include "control/AnalyseDataObj.h"
#include "data/CMatrix.h"
#include "fstat/randsci.h"
#include "hetrange/HetReplika.h"
#include "run/spread.h"
#include "support/datasets.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>

using namespace kva;

namespace {

using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::writeFile;

constexpr const char* kOneHeterozygote = "2 . . 2 .\n"
                                         ". . . 50 .\n"
                                         ". . . L1 L1b\n"
                                         "A d 0 100 102\n";

constexpr uint32_t kDefaultMask = 0x803;

// Counts, seeds and runs the pass.
void runPass(LoadedRun& run, uint32_t mask, int replicates, long seed) {
    run.counted();
    run->HetRangeMask = mask;
    run->HetRandomisierungen = replicates;
    const StdoutCapture swallowed;
    srand2(seed);
    run->CalcHetRange();
}

std::string sheet(const LoadedRun& run, const std::string& name) {
    return run.resultFile("Resampling_data/" + name);
}

// Seed 1 gives 0.416 0.092 | 0.756 0.530 | 0.930 0.384, so of the entries 100 and 102 the
// replicates hold 100 100 | 102 102 | 102 100.
//   H: 0 -> 2 x ((1 - 1/9 - 4/9) / 1) = 0.888889, twice; 4/2 x 1/2 = 1 -> 1 - 2/6 = 0.666667
//   V: 0, 0, 4/2 x (1 + 1) / 2 = 2
//   A: 1, 1, 2
TEST(CalcHetRange, ReplicatesReplayedByHand) {
    LoadedRun run(kOneHeterozygote);
    runPass(run, kDefaultMask, 3, 1);
    const std::string head = "\tL1\t\n\tL1b\t\n";
    EXPECT_EQ(sheet(run, "A_HetRange.xls"), head + "1\t0.888889\n2\t0.888889\n3\t0.666667\n");
    EXPECT_EQ(sheet(run, "A_VarRange.xls"), head + "1\t0.000000\n2\t0.000000\n3\t2.000000\n");
    EXPECT_EQ(sheet(run, "A_AlleleRange.xls"), head + "1\t1.000000\n2\t1.000000\n3\t2.000000\n");
    EXPECT_EQ(sheet(run, "HetRangeMin.xls"), head + "A\t0.666667\n");
    EXPECT_EQ(sheet(run, "HetRangeMean.xls"), head + "A\t0.814815\n"); // 22/27
    EXPECT_EQ(sheet(run, "HetRangeMax.xls"), head + "A\t0.888889\n");
    EXPECT_EQ(sheet(run, "VarRangeMin.xls"), head + "A\t0.000000\n");
    EXPECT_EQ(sheet(run, "VarRangeMean.xls"), head + "A\t0.666667\n");
    EXPECT_EQ(sheet(run, "VarRangeMax.xls"), head + "A\t2.000000\n");
    EXPECT_EQ(sheet(run, "AlleleRangeMin.xls"), head + "A\t1.000000\n");
    EXPECT_EQ(sheet(run, "AlleleRangeMean.xls"), head + "A\t0.333333\n"); // the first over three
    EXPECT_EQ(sheet(run, "AlleleRangeMax.xls"), head + "A\t1.000000\n");
}

// Without the correction the first two replicates hold H = 0: the first does not count, the
// second does; the third holds 1.
TEST(CalcHetRange, UncorrectedFirstZeroDoesNotCount) {
    LoadedRun run(kOneHeterozygote);
    runPass(run, HetRangeBit::Draw, 3, 1);
    const std::string head = "\tL1\t\n\tL1b\t\n";
    EXPECT_EQ(sheet(run, "HetRangeMin.xls"), head + "A\t0.000000\n");
    EXPECT_EQ(sheet(run, "HetRangeMean.xls"), head + "A\t0.500000\n");
    EXPECT_EQ(sheet(run, "HetRangeMax.xls"), head + "A\t1.000000\n");
}

TEST(CalcHetRange, ReplicateSheetsOnlyOnDemand) {
    LoadedRun run(kOneHeterozygote);
    runPass(run, HetRangeBit::Draw, 3, 1);
    EXPECT_THROW(sheet(run, "A_HetRange.xls"), std::runtime_error);
}

// Individuals: one place per replicate, always individual 0, both its entries.
TEST(CalcHetRange, IndividualsAreDrawnAsPairs) {
    LoadedRun run(kOneHeterozygote);
    runPass(run, HetRangeBit::Draw | HetRangeBit::Individuals, 2, 1);
    EXPECT_EQ(sheet(run, "HetRangeMin.xls"), "\tL1\t\n\tL1b\t\nA\t1.000000\n");
    EXPECT_NEAR(rand2(), 0.756411, 1e-6); // two numbers were drawn
}

// Draws off: every place reads entry 0, allele 100, in all replicates; nothing is drawn.
TEST(CalcHetRange, WithoutDrawsEveryPlaceReadsTheFirstEntry) {
    LoadedRun run(kOneHeterozygote);
    runPass(run, HetRangeBit::ReplicateSheets, 2, 1);
    EXPECT_EQ(sheet(run, "A_HetRange.xls"), "\tL1\t\n\tL1b\t\n1\t0.000000\n2\t0.000000\n");
    EXPECT_NEAR(rand2(), 0.415999, 1e-6); // the first number of the stream
}

// Three entries make two pairs of places; with the draws off all four read entry 0. n = 4, so
// H = 0 becomes 4 x ((1 - 1/25 - 16/25) / 3) = 32/75, also where individuals would be drawn.
TEST(CalcHetRange, WithoutDrawsAnOddLastPlaceReadsTheFirstEntry) {
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\nA d 0 100\nA d 0 102\nA d 0 102\n");
    runPass(run, HetRangeBit::ReplicateSheets | HetRangeBit::CorrectZero | HetRangeBit::Individuals,
            1, 1);
    EXPECT_EQ(sheet(run, "A_HetRange.xls"), "\tL1\t\n1\t0.426667\n");
}

// A single entry: its place and the one behind it both read it. Two copies of one allele, C = 4:
// H = 4/2 x (1 - 1) = 0, which the first replicate does not count and the second one does.
TEST(CalcHetRange, WithoutDrawsASingleEntryIsReadTwice) {
    LoadedRun run("1 . . 2\n. . . 0\n. . . L1\nSolo d 0 120\n");
    runPass(run, 0, 2, 1);
    EXPECT_EQ(sheet(run, "HetRangeMax.xls"), "\tL1\t\nSolo\t0.000000\n");
    EXPECT_EQ(sheet(run, "AlleleRangeMax.xls"), "\tL1\t\nSolo\t1.000000\n");
}

// With the draws on, the place behind an odd last entry is missing: one copy, so no H.
TEST(CalcHetRange, WithDrawsThePlaceBehindASingleEntryIsMissing) {
    LoadedRun run("1 . . 2\n. . . 0\n. . . L1\nSolo d 0 120\n");
    runPass(run, HetRangeBit::Draw, 2, 1);
    EXPECT_EQ(sheet(run, "HetRangeMax.xls"), "\tL1\t\nSolo\tn.d.\n");
}

TEST(CalcHetRange, NoReplicateGivesNoValues) {
    LoadedRun run(kva_test::kTwoPops);
    runPass(run, kDefaultMask, 0, 1);
    EXPECT_EQ(sheet(run, "VarRangeMax.xls"),
              "\tL1\tL2\t\n\tL1b\tL2b\t\nA\tn.d.\tn.d.\nB\tn.d.\tn.d.\n");
}

TEST(CalcHetRange, LocusWithoutDataHasNoValues) {
    LoadedRun run(kva_test::kWithGaps);
    runPass(run, kDefaultMask, 5, 1);
    for (const char* name : {"HetRangeMin.xls", "VarRangeMean.xls", "AlleleRangeMax.xls"}) {
        EXPECT_NE(sheet(run, name).find("\tn.d.\n"), std::string::npos) << name;
    }
}

TEST(CalcHetRange, WithoutTablesThereIsNothingToDraw) {
    LoadedRun run(kva_test::kTwoPops);
    writeFile("Allelecount", "in the way of the counting pass");
    const StdoutCapture console;
    EXPECT_EQ(run->CalcHetRange(), 1);
    EXPECT_FALSE(std::filesystem::exists("Resampling_data"));
}

TEST(CalcHetRange, TellsItsProgress) {
    LoadedRun run(kva_test::kTwoPops);
    run.counted();
    run->HetRandomisierungen = 1;
    StdoutCapture console;
    EXPECT_EQ(run->CalcHetRange(), 0);
    EXPECT_EQ(console.text(), "\nCalculate random heterozygosity range\n"
                              "! This may take a long time...\n"
                              "..\n"
                              "... Finished random heterozygosity range calculation!\n");
    run->LogDatei.flush();
    EXPECT_NE(
        run.resultFile("KVA.log").find("\nCalculate heterosygosity range as a sampling artefact\n"),
        std::string::npos);
}

TEST(CalcHetRange, NothingLoadedIsRefused) {
    AnalyseDataObj empty;
    EXPECT_EQ(empty.CalcHetRange(), -4);
}

TEST(CalcHetRange, CountsFirstIfNothingIsCounted) {
    LoadedRun run(kva_test::kTwoPops);
    run->HetRandomisierungen = 1;
    const kva_test::StdoutCapture swallowed;
    EXPECT_EQ(run->CalcHetRange(), 0);
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

TEST(CalcHetRange, AFolderThatCannotBeEnteredEndsThePass) {
    LoadedRun run(kva_test::kTwoPops);
    run.counted();
    kva_test::writeFile("Resampling_data", "in the way");
    const kva_test::StdoutCapture swallowed;
    EXPECT_EQ(run->CalcHetRange(), 2);
}

TEST(CalcHetRange, PopulationNameNeverLeavesTheFolder) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n../x d 0 100 102\n");
    runPass(run, kDefaultMask, 1, 1);
    EXPECT_NE(sheet(run, ".._x_HetRange.xls").find("1\t"), std::string::npos);
    EXPECT_NE(sheet(run, "HetRangeMin.xls").find("../x\t"), std::string::npos);
}

// 4 x 0.416 0.092 0.7564 0.5297, then 4 x 0.9304 0.3835 0.6539 0.0668: the stream of seed 1.
TEST(MakeHetReplika, DrawsAnEntryForEachPlaceOfEachLocus) {
    LoadedRun run(kva_test::kTwoPops);
    run->HetRangeMask = HetRangeBit::Draw;
    HetStichprobe sample(2, 4);
    srand2(1);
    EXPECT_EQ(run->MakeHetReplika(0, 0, sample), 0);
    const auto row = [&](int locus) {
        const auto places = sample.Row(locus);
        return std::vector<int32_t>(places.begin(), places.end());
    };
    EXPECT_EQ(row(0), (std::vector<int32_t>{1, 0, 3, 2}));
    EXPECT_EQ(row(1), (std::vector<int32_t>{3, 1, 2, 0}));
    run->HetRangeMask = 0;
    EXPECT_EQ(run->MakeHetReplika(1, 0, sample), 0);
    EXPECT_EQ(row(0), (std::vector<int32_t>{1, 0, 3, 2})) << "without draws nothing changes";
}

TEST(AnalyseHetReplika, TellsOfALastLocusWithoutValue) {
    LoadedRun run(kva_test::kWithGaps); // population B has nothing at L2
    run.counted();
    std::vector<HetTable> tables(2);
    for (std::size_t l = 0; l < 2; ++l) {
        tables[l].Load(run->Daten->Loci[l], 2, run->PopAllele[2][l]);
    }
    std::vector<HetBereich> bereich(2);
    HetReplicateSheets closed;
    const HetStichprobe sample(2, 4);
    EXPECT_EQ(run->AnalyseHetReplika(0, sample, bereich, tables, closed), -100);
}

// --- The plain reading, entry by entry through an AllelCount -----------------------------

std::string cell(double value) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "\t%f", value);
    return text.data();
}

class PlainReading {
  public:
    PlainReading(AnalyseDataObj& object, int pop) : obj(object), p(pop) {
        C = obj.Daten->GetAnzDatenChromosome(p + 1);
        w = (obj.HetRangeMask & 0x2000U) != 0 ? 2 : 1;
        n = C / w;
        sample.Resize(obj.AnzLoci, std::max(obj.MaxChromosomen, 1) + 1);
        sample.Fill(0.0);
        for (int r = 0; r < obj.AnzLoci && (obj.HetRangeMask & 0x2U) != 0; ++r) {
            for (int k = n * w; k <= C; ++k) {
                sample(r, k) = C;
            }
        }
    }

    // One replicate; appends the cells of the three replicate sheets.
    void replicate(int i) {
        het += std::to_string(i + 1);
        var += std::to_string(i + 1);
        allele += std::to_string(i + 1);
        draw();
        for (int l = 0; l < obj.AnzLoci; ++l) {
            evaluate(l);
        }
        het += '\n';
        var += '\n';
        allele += '\n';
    }

    std::string het;
    std::string var;
    std::string allele;

  private:
    void draw() {
        if ((obj.HetRangeMask & 0x2U) == 0) {
            return;
        }
        const int rows = (obj.HetRangeMask & 0x1000U) != 0 ? 1 : obj.AnzLoci;
        for (int r = 0; r < rows; ++r) {
            for (int place = 0; place < n; ++place) {
                const float product = rand2() * static_cast<float>(n);
                const int x = static_cast<int>(product) * w;
                sample(r, place * w) = x;
                if (w == 2) {
                    sample(r, place * w + 1) = x + 1;
                }
            }
        }
    }

    void evaluate(int l) {
        const int r = (obj.HetRangeMask & 0x1000U) != 0 ? 0 : l;
        AllelCount table;
        for (int k = 0; k < C; k += 2) {
            std::array<int, 2> a{};
            std::array<int, 2> f{};
            for (std::size_t e = 0; e < 2; ++e) {
                const int x = static_cast<int>(sample(r, k + static_cast<int>(e)));
                obj.Daten->GetChromosomDaten(l + 1, p + 1, x, a[e]);
                obj.Daten->GetChromosomInfo(l + 1, p + 1, x, f[e]);
            }
            if ((obj.HetRangeMask & 0x4000U) != 0 && (f[0] & 1) != 0) {
                const bool second = rand2() < 0.5F;
                a[second ? 0 : 1] = a[second ? 1 : 0];
                f[1] = f[0];
            }
            table.AddAllel(a[0], f[0] & 1);
            table.AddAllel(a[1], f[1] & 1);
        }
        write(table);
    }

    void write(const AllelCount& table) {
        double H = table.CalcHet();
        const double V = table.CalcVar(table.CalcMean());
        const int pairs = table.AnzChromosomen / 2;
        const double copies = pairs;
        if ((obj.HetRangeMask & 0x800U) != 0) {
            if (H == 0) {
                const double m = copies + 1;
                H = copies <= 1
                        ? -1.0
                        : copies * ((1 - 1 / (m * m) - copies * copies / (m * m)) / (copies - 1));
            }
            if (H > 0.999999) {
                H = copies <= 1 ? -1.0 : 1 - 2 / (copies * (copies + 1));
            }
        }
        het += H < 0 ? "\tn.d." : cell(H);
        var += V < 0 ? "\tn.d." : cell(V);
        allele += cell(table.AnzAllele < 1 ? -1.0 : table.AnzAllele);
    }

    AnalyseDataObj& obj;
    int p;
    int C;
    int w;
    int n;
    CMatrix sample;
};

constexpr unsigned kLargeSeed = 6; // its populations draw more than a block at once

// A file of three populations with missing data, inbred individuals and, in one-column
// form, an odd number of rows.
std::string randomFile(unsigned seed, int columns) {
    std::mt19937 random(seed);
    std::string text = std::to_string(columns) + " . .";
    std::string rest = ". . .";
    std::string names = ". . .";
    for (int cell = 0; cell < 3 * columns; ++cell) {
        text += " 2";
        rest += " 50";
        names += " N";
        names += std::to_string(cell);
    }
    text += "\n" + rest + "\n" + names + "\n";
    for (const char* pop : {"A", "B", "C"}) {
        const auto rows = seed == kLargeSeed ? 700 : 1 + random() % 15;
        for (std::size_t row = 0; row < rows; ++row) {
            text += std::string(pop) + (random() % 3 == 0 ? " h 1" : " d 1");
            for (int cell = 0; cell < 3 * columns; ++cell) {
                const auto kind = random() % 6;
                text += ' ';
                text += kind == 0 ? "." : std::to_string(98 + 2 * kind);
            }
            text += "\n";
        }
    }
    return text;
}

class CalcHetRangeMask : public testing::TestWithParam<uint32_t> {};

TEST_P(CalcHetRangeMask, ReplicateSheetsEqualThePlainReading) {
    for (unsigned seed = 1; seed <= kLargeSeed; ++seed) {
        for (const int columns : {1, 2}) {
            LoadedRun run(randomFile(seed, columns));
            runPass(run, GetParam(), 20, 77);
            srand2(77);
            for (int pop = 0; pop < run->AnzPop; ++pop) {
                PlainReading plain(*run, pop);
                for (int i = 0; i < 20; ++i) {
                    plain.replicate(i);
                }
                const std::string name = *run->Daten->GetPopName(pop + 1);
                const auto rows = [&](const char* suffix) {
                    const std::string bytes = sheet(run, name + suffix);
                    std::size_t at = bytes.find('\n') + 1;
                    return bytes.substr(columns == 2 ? bytes.find('\n', at) + 1 : at);
                };
                ASSERT_EQ(rows("_HetRange.xls"), plain.het) << seed << ' ' << columns << name;
                ASSERT_EQ(rows("_VarRange.xls"), plain.var) << seed << ' ' << columns << name;
                ASSERT_EQ(rows("_AlleleRange.xls"), plain.allele) << seed << ' ' << columns;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Masks, CalcHetRangeMask,
                         testing::Values(0x803U, 0x3U, 0x1U, 0x2001U, 0x1803U, 0x2803U, 0x3803U,
                                         0x4803U, 0x5803U, 0x6803U, 0x7803U, 0x7003U));

} // namespace

// --- In units, each on a stream of its own -------------------------------------------------

namespace {

// All sheets of a pass of several populations.
std::string sheetsOf(const Spread* spread, int replicates, uint32_t mask) {
    LoadedRun run(kva_test::kTwoPops);
    run->Spreading = spread;
    run.counted();
    run->HetRangeMask = mask;
    run->HetRandomisierungen = replicates;
    {
        const StdoutCapture swallowed;
        run->CalcHetRange();
    }
    std::string all;
    const std::filesystem::path folder(run->ResultPfad);
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "Resampling_data")) {
        names.insert(entry.path().filename());
    }
    for (const std::string& name : names) {
        all += name + "\n" + sheet(run, name);
    }
    return all;
}

} // namespace

TEST(CalcHetRange, InUnitsSameForAnyNumberOfThreads) {
    for (const uint32_t mask : {0x803U, 0x802U, 0x7803U}) {
        const Spread one(3, 1);
        const std::string alone = sheetsOf(&one, 600, mask);
        for (const unsigned threads : {2U, 3U}) {
            const Spread spread(3, threads);
            EXPECT_EQ(sheetsOf(&spread, 600, mask), alone);
        }
        const Spread other(4, 1);
        EXPECT_NE(sheetsOf(&other, 600, mask), alone);
    }
}

// The first block of the first population is what the way in order gives on the stream of that
// unit.
TEST(CalcHetRange, FirstBlockIsThatOfItsStream) {
    const Spread spread(3, 2);
    LoadedRun units(kOneHeterozygote);
    units->Spreading = &spread;
    runPass(units, kDefaultMask, 40, 1);
    LoadedRun inOrder(kOneHeterozygote);
    inOrder.counted();
    inOrder->HetRangeMask = kDefaultMask;
    inOrder->HetRandomisierungen = 40;
    startUnit(3, {UnitKind::HetRange, 0});
    {
        const StdoutCapture swallowed;
        inOrder->CalcHetRange();
    }
    srand2(1);
    for (const char* name : {"A_HetRange.xls", "HetRangeMean.xls", "VarRangeMax.xls"}) {
        EXPECT_EQ(sheet(units, name), sheet(inOrder, name)) << name;
    }
}

TEST(CalcHetRange, InUnitsWithoutReplicates) {
    const Spread spread(3, 2);
    EXPECT_EQ(sheetsOf(&spread, 0, kDefaultMask), sheetsOf(nullptr, 0, kDefaultMask));
}
