// What holds for every data set, tried on many random ones through the reader and the passes.
#include "distance/passes.h"
#include "fstat/passes.h"
#include "support/datasets.h"
#include "support/randomdata.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <random>
#include <sstream>

using namespace kva;

namespace {

using kva_test::dataFile;
using kva_test::LoadedRun;
using kva_test::RandomDataSet;
using kva_test::RandomPopulation;
using kva_test::StdoutCapture;

constexpr uint32_t kDataSets = 300;

// All matrices of populations, by file name.
using Matrices = std::map<std::string, std::vector<std::vector<std::string>>>;

// What is compared of a run.
struct Outcome {
    // Per population from 0 (the pool) and locus: copies by allele, and statistics.
    std::vector<std::vector<std::map<int, int>>> copies;
    std::vector<std::vector<std::vector<double>>> statistics;
    FTriple f;
    Matrices distances;
};

std::vector<double> statisticsOf(const AllelCount& table) {
    return {table.CalcHet(),  table.CalcHetuk(), table.CalcHetobs(),
            table.CalcHsk(1), table.CalcMean(),  table.CalcVar(table.CalcMean())};
}

std::vector<std::vector<std::string>> matrixOf(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line); // the number of populations
    while (std::getline(lines, line)) {
        std::istringstream cells(line);
        std::string cell;
        if (!(cells >> cell)) { // the name
            continue;
        }
        std::vector<std::string>& row = rows.emplace_back();
        while (cells >> cell) {
            row.push_back(cell);
        }
    }
    return rows;
}

Outcome outcomeOf(const std::string& file) {
    LoadedRun run(file);
    run.counted();
    Outcome outcome;
    for (const LocusTables& tables : run->PopAllele) {
        auto& copies = outcome.copies.emplace_back();
        auto& statistics = outcome.statistics.emplace_back();
        for (const AllelCount& table : tables) {
            auto& alleles = copies.emplace_back();
            for (int32_t i = 0; i < table.AnzAllele; ++i) {
                const AllelEintrag& row = table.Allele[static_cast<std::size_t>(i)];
                alleles[row.Nummer] = row.Anzahl;
            }
            statistics.push_back(statisticsOf(table));
        }
    }
    const StdoutCapture swallowed;
    outcome.f = newFTriple(run->AnzPop);
    CMatrix none;
    run->FstMask = FstBit::HObs;
    run->FST_PAIR_WC84(outcome.f, run->PopAllele, none);
    run->PopDistMask = 0xFFF & ~DistBit::PerLocus & ~DistBit::Rst;
    run->CalcDistancesPop(1);
    for (const char* stem : {"POSA", "FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN", "DSG"}) {
        const std::string name = std::string(stem) + "_Pop.txt";
        outcome.distances[stem] = matrixOf(run.resultFile("Distance_data/" + name));
    }
    return outcome;
}

// Calls check(data) for many data sets; the same ones in each run.
void forDataSets(const kva_test::Oddities& oddities,
                 const std::function<void(const RandomDataSet&)>& check) {
    for (uint32_t seed = 1; seed <= kDataSets; ++seed) {
        std::mt19937 draws(seed);
        const RandomDataSet data = kva_test::randomDataSet(
            [&draws] { return static_cast<uint8_t>(draws() & 0xFFU); }, oddities);
        SCOPED_TRACE("data set " + std::to_string(seed));
        check(data);
        if (testing::Test::HasFailure()) {
            return; // one example is enough
        }
    }
}

// The data set with its populations in another order: entry p is population order[p] of before.
RandomDataSet reordered(const RandomDataSet& data, const std::vector<std::size_t>& order) {
    RandomDataSet result{data.repeats, {}};
    for (const std::size_t p : order) {
        result.populations.push_back(data.populations[p]);
    }
    return result;
}

constexpr double kRounding = 1e-9; // of sums in another order

// Equal but for rounding; both may be nan.
void expectNear(double a, double b) {
    if (a == a || b == b) {
        EXPECT_NEAR(a, b, kRounding * std::max(1.0, std::abs(a)));
    }
}

// Equal but for one step of the last of six decimals.
void expectSameCell(const std::string& a, const std::string& b) {
    if (a != b) {
        EXPECT_NEAR(std::stod(a), std::stod(b), 1.5e-6) << a << " " << b;
    }
}

} // namespace

TEST(Properties, FrequenciesAddUpToOne) {
    forDataSets({}, [](const RandomDataSet& data) {
        LoadedRun run(dataFile(data, 2, "\n"));
        run.counted();
        for (const LocusTables& tables : run->PopAllele) {
            for (const AllelCount& table : tables) {
                double sum = table.AnzAllele == 0 ? 1.0 : 0.0;
                for (int32_t i = 0; i < table.AnzAllele; ++i) {
                    EXPECT_GT(table.GetFrequenz(i), 0.0);
                    sum += table.GetFrequenz(i);
                }
                EXPECT_NEAR(sum, 1.0, 1e-12);
            }
        }
    });
}

TEST(Properties, CopiesAreThoseOfTheGenotypes) {
    forDataSets({}, [](const RandomDataSet& data) {
        const Outcome outcome = outcomeOf(dataFile(data, 2, "\n"));
        for (std::size_t p = 0; p < data.populations.size(); ++p) {
            for (std::size_t l = 0; l < data.repeats.size(); ++l) {
                std::map<int, int> copies;
                for (const auto& individual : data.populations[p].individuals) {
                    for (const int allele : individual[l]) {
                        if (allele >= 0) {
                            ++copies[allele];
                        }
                    }
                }
                EXPECT_EQ(outcome.copies[p + 1][l], copies);
            }
        }
    });
}

TEST(Properties, MatricesAreSymmetric) {
    forDataSets({}, [](const RandomDataSet& data) {
        const Outcome outcome = outcomeOf(dataFile(data, 2, "\n"));
        const auto n = static_cast<int32_t>(data.populations.size());
        for (const CMatrix& matrix : outcome.f) {
            for (int32_t i = 0; i < n; ++i) {
                for (int32_t j = 0; j < n; ++j) {
                    EXPECT_TRUE(matrix(i, j) == matrix(j, i) || matrix(i, j) != matrix(i, j));
                }
            }
        }
        for (const auto& [stem, rows] : outcome.distances) {
            ASSERT_EQ(rows.size(), data.populations.size()) << stem;
            for (std::size_t i = 0; i < rows.size(); ++i) {
                ASSERT_EQ(rows[i].size(), rows.size()) << stem;
                for (std::size_t j = 0; j < i; ++j) {
                    EXPECT_EQ(rows[i][j], rows[j][i]) << stem;
                }
            }
        }
    });
}

TEST(Properties, TheOrderOfPopulationsPermutesRowsAndColumnsOnly) {
    forDataSets({}, [](const RandomDataSet& data) {
        std::vector<std::size_t> order(data.populations.size());
        std::iota(order.rbegin(), order.rend(), std::size_t{0}); // backwards
        const Outcome before = outcomeOf(dataFile(data, 2, "\n"));
        const Outcome after = outcomeOf(dataFile(reordered(data, order), 2, "\n"));
        for (std::size_t i = 0; i < order.size(); ++i) {
            EXPECT_EQ(after.copies[i + 1], before.copies[order[i] + 1]);
            EXPECT_EQ(after.statistics[i + 1], before.statistics[order[i] + 1]);
            for (std::size_t j = 0; j < order.size(); ++j) {
                for (std::size_t s = 0; s < before.f.size(); ++s) {
                    const auto row = static_cast<int32_t>(i);
                    const auto column = static_cast<int32_t>(j);
                    expectNear(after.f[s](row, column),
                               before.f[s](static_cast<int32_t>(order[i]),
                                           static_cast<int32_t>(order[j])));
                }
                for (const auto& [stem, rows] : before.distances) {
                    SCOPED_TRACE(stem);
                    expectSameCell(after.distances.at(stem)[i][j], rows[order[i]][order[j]]);
                }
            }
        }
    });
}

TEST(Properties, DoublingEveryIndividualLeavesFrequenciesAlone) {
    forDataSets({}, [](const RandomDataSet& data) {
        RandomDataSet twice = data;
        for (RandomPopulation& population : twice.populations) {
            const auto once = population.individuals;
            population.individuals.insert(population.individuals.end(), once.begin(), once.end());
        }
        const Outcome before = outcomeOf(dataFile(data, 2, "\n"));
        const Outcome after = outcomeOf(dataFile(twice, 2, "\n"));
        for (std::size_t p = 0; p < before.copies.size(); ++p) {
            for (std::size_t l = 0; l < data.repeats.size(); ++l) {
                for (const auto& [allele, number] : before.copies[p][l]) {
                    EXPECT_EQ(after.copies[p][l].at(allele), 2 * number);
                }
                EXPECT_EQ(after.statistics[p][l][1], before.statistics[p][l][1]);
                EXPECT_EQ(after.statistics[p][l][4], before.statistics[p][l][4]);
            }
        }
        for (const char* stem : {"POSA", "FSS", "ADA", "KSC", "DMS", "CAS", "DAN"}) {
            EXPECT_EQ(after.distances.at(stem), before.distances.at(stem)) << stem;
        }
    });
}

TEST(Properties, APopulationWithoutDataChangesNoOther) {
    forDataSets({}, [](const RandomDataSet& data) {
        RandomDataSet more = data;
        RandomPopulation& empty = more.populations.emplace_back(data.populations.front());
        empty.name = "Empty";
        for (auto& individual : empty.individuals) {
            std::fill(individual.begin(), individual.end(), kva_test::Genotype{-1, -1});
        }
        const Outcome before = outcomeOf(dataFile(data, 2, "\n"));
        const Outcome after = outcomeOf(dataFile(more, 2, "\n"));
        const std::size_t n = data.populations.size();
        for (std::size_t p = 0; p <= n; ++p) { // the pool, too
            EXPECT_EQ(after.copies[p], before.copies[p]);
            EXPECT_EQ(after.statistics[p], before.statistics[p]);
        }
        for (int32_t i = 0; i < static_cast<int32_t>(n); ++i) {
            for (int32_t j = 0; j < static_cast<int32_t>(n); ++j) {
                for (std::size_t s = 0; s < before.f.size(); ++s) {
                    EXPECT_TRUE(after.f[s](i, j) == before.f[s](i, j) ||
                                before.f[s](i, j) != before.f[s](i, j));
                }
            }
        }
        for (const auto& [stem, rows] : before.distances) {
            for (std::size_t i = 0; i < n; ++i) {
                const auto& row = after.distances.at(stem)[i];
                EXPECT_TRUE(std::equal(rows[i].begin(), rows[i].end(), row.begin())) << stem;
            }
        }
    });
}

TEST(Properties, ColumnsAndLineEndsDoNotMatter) {
    forDataSets({}, [](const RandomDataSet& data) {
        const Outcome plain = outcomeOf(dataFile(data, 2, "\n"));
        for (const int columns : {1, 2}) {
            for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
                const Outcome other = outcomeOf(dataFile(data, columns, lineEnd));
                EXPECT_EQ(other.copies, plain.copies);
                EXPECT_EQ(other.statistics, plain.statistics);
                EXPECT_EQ(other.distances, plain.distances);
            }
        }
    });
}

// No individual is inbred, so nothing is discarded: the new data sheets hold the same data.
TEST(Properties, ExportsReadBackGiveTheSameCounts) {
    forDataSets({}, [](const RandomDataSet& data) {
        std::string sheets[2];
        {
            LoadedRun run(dataFile(data, 2, "\n"));
            run.counted();
            const StdoutCapture swallowed;
            ASSERT_EQ(run->MakeGenePop(), 0);
            sheets[0] = run.resultFile("Formats&Data/data.txt_1C_RD");
            sheets[1] = run.resultFile("Formats&Data/data.txt_2C_RD");
        }
        const Outcome before = outcomeOf(dataFile(data, 2, "\n"));
        for (const std::string& sheet : sheets) {
            EXPECT_EQ(outcomeOf(sheet).copies, before.copies);
        }
    });
}
