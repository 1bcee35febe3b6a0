// Real data: heterozygosities, allele numbers, richness and Gst of the sheets against plain
// formulas on the raw counts. The sheets have six decimals, so half of the last one is allowed, and
// a little for the plain formulas' own rounding.
#include "stats/nancycats.h"
#include "stats/statsupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace kva;

using kva_test::cellOf;
using kva_test::cellsOf;
using kva_test::kNancyCats;
using kva_test::kNancyLoci;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;

namespace {

constexpr double kSixDecimals = 5.1e-7;
constexpr std::size_t kLoci = 3;

// The raw counts of a locus in a sample.
struct Counts {
    std::map<int, int> copies; // by allele
    int typed = 0;             // individuals
    int hetero = 0;

    void add(int allel1, int allel2) {
        if (allel1 == 0 || allel2 == 0) { // no cat has one allele alone
            return;
        }
        ++copies[allel1];
        ++copies[allel2];
        ++typed;
        hetero += allel1 != allel2 ? 1 : 0;
    }
    double n() const { return 2.0 * typed; }
    double homozygosity() const {
        double sum = 0.0;
        for (const auto& [allele, count] : copies) {
            sum += (count / n()) * (count / n());
        }
        return sum;
    }
    double hExp() const { return n() / (n() - 1.0) * (1.0 - homozygosity()); }
    double hObs() const { return double(hetero) / typed; }
    // Alleles expected in k copies: 1 - (n-k)/n x (n-k-1)/(n-1) x ... for each, c factors.
    double richness(double k) const {
        double sum = 0.0;
        for (const auto& [allele, count] : copies) {
            double missed = 1.0;
            for (int t = 0; t < count; ++t) {
                missed *= std::max(n() - k - t, 0.0) / (n() - t);
            }
            sum += 1.0 - missed;
        }
        return sum;
    }
};

using Sample = std::vector<Counts>; // by locus

struct Colony {
    std::string name;
    Sample loci = Sample(kLoci);
};

// The colonies, and the data file made of the same words.
struct Cats {
    std::vector<Colony> colonies;
    Sample all = Sample(kLoci);
    std::string file = "2 . . 2 . 2 . 2 .\n. . . . . . . . .\n"
                       ". . . fca8 fca8b fca45 fca45b fca37 fca37b\n";
};

void addCat(Cats& cats, const std::string& word) {
    cats.file += cats.colonies.back().name + " d 0";
    for (std::size_t l = 0; l < kLoci; ++l) {
        const int allel1 = std::stoi(word.substr(6 * l, 3));
        const int allel2 = std::stoi(word.substr(6 * l + 3, 3));
        cats.colonies.back().loci[l].add(allel1, allel2);
        cats.all[l].add(allel1, allel2);
        for (const int allele : {allel1, allel2}) {
            cats.file += ' ';
            cats.file += allele == 0 ? "." : std::to_string(allele);
        }
    }
    cats.file += '\n';
}

Cats readCats() {
    Cats cats;
    std::istringstream lines(kNancyCats);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        cats.colonies.emplace_back();
        words >> cats.colonies.back().name;
        for (std::string word; words >> word;) {
            addCat(cats, word);
        }
    }
    return cats;
}

class NancyCats : public testing::Test {
  protected:
    NancyCats() : cats(readCats()), run(cats.file) {
        const StdoutCapture swallowed;
        run->Uebersicht();
        run->TABAusgabe();
    }

    std::string single(const std::string& name, const std::string& label, std::size_t l) const {
        return cellOf(run.resultFile("Single_data/" + name + ".xls"), label, l + 1);
    }

    // The richness sub-sample: the smallest sample of a locus, in copies.
    double reference(std::size_t l) const {
        double smallest = cats.all[l].n();
        for (const Colony& colony : cats.colonies) {
            smallest = colony.loci[l].typed > 0 ? std::min(smallest, colony.loci[l].n()) : smallest;
        }
        return smallest;
    }

    Cats cats;
    LoadedRun run;
};

void expectCell(const std::string& cell, double value, const std::string& place) {
    EXPECT_NEAR(std::stod(cell), value, kSixDecimals) << place;
}

} // namespace

TEST_F(NancyCats, AreAllThere) {
    EXPECT_EQ(cats.colonies.size(), 17U);
    EXPECT_EQ(cats.all[2].typed, 237);
    EXPECT_EQ(cats.colonies[16].loci[1].typed, 0); // P17 at fca45
}

TEST_F(NancyCats, ExpectedHeterozygosities) {
    for (std::size_t l = 0; l < kLoci; ++l) {
        expectCell(single("Hetexp", "Total", l), cats.all[l].hExp(), kNancyLoci[l]);
        for (const Colony& colony : cats.colonies) {
            const std::string cell = single("Hetexp", colony.name, l);
            if (colony.loci[l].typed == 0) {
                EXPECT_EQ(cell, "n.d.");
            } else {
                expectCell(cell, colony.loci[l].hExp(), colony.name + kNancyLoci[l]);
            }
        }
    }
}

TEST_F(NancyCats, NumbersOfCopiesAndAlleles) {
    for (std::size_t l = 0; l < kLoci; ++l) {
        for (const Colony& colony : cats.colonies) {
            const Counts& counts = colony.loci[l];
            if (counts.typed > 0) {
                EXPECT_EQ(single("NumChromosomes", colony.name, l),
                          std::to_string(2 * counts.typed));
                EXPECT_EQ(single("NumAlleles", colony.name, l),
                          std::to_string(counts.copies.size()) + ".000000");
            }
        }
        EXPECT_EQ(single("NumAlleles", "Total", l),
                  std::to_string(cats.all[l].copies.size()) + ".000000");
    }
}

// Samples of 18 to 46 copies and pools of more than 400: both numeric routes.
TEST_F(NancyCats, AllelicRichness) {
    for (std::size_t l = 0; l < kLoci; ++l) {
        const double k = reference(l);
        EXPECT_EQ(single("AllelicRichness", "Std. Ind. Number", l), kva_test::fixed6(k / 2.0));
        expectCell(single("AllelicRichness", "Total", l), cats.all[l].richness(k), kNancyLoci[l]);
        for (const Colony& colony : cats.colonies) {
            if (colony.loci[l].typed > 0) {
                expectCell(single("AllelicRichness", colony.name, l), colony.loci[l].richness(k),
                           colony.name + kNancyLoci[l]);
            }
        }
    }
}

TEST_F(NancyCats, ObservedHeterozygosities) {
    const std::vector<std::vector<std::string>> lines = cellsOf(run.resultFile("Summary.xls"));
    std::size_t line = 1;
    for (std::size_t l = 0; l < kLoci; ++l) {
        for (const Colony& colony : cats.colonies) {
            ASSERT_EQ(lines.at(line)[2], colony.name);
            if (colony.loci[l].typed > 0) {
                expectCell(lines[line][3], colony.loci[l].hObs(), colony.name + kNancyLoci[l]);
            } else {
                EXPECT_EQ(lines[line][3], "n.d.");
            }
            ++line;
        }
    }
}

TEST_F(NancyCats, Gst) {
    for (std::size_t l = 0; l < kLoci; ++l) {
        double sum = 0.0;
        double s = 0.0;
        for (const Colony& colony : cats.colonies) {
            if (colony.loci[l].typed > 0) {
                sum += 1.0 - colony.loci[l].homozygosity();
                s += 1.0;
            }
        }
        const double Hs = sum / s;
        const double Ht = 1.0 - cats.all[l].homozygosity();
        const double HtMax = (s - 1.0 + Hs) / s;
        expectCell(single("GST", "Gst", l), 1.0 - Hs / Ht, kNancyLoci[l]);
        expectCell(single("GST", "Gst'", l), (1.0 - Hs / Ht) / (1.0 - Hs / HtMax), kNancyLoci[l]);
        expectCell(single("GST", "Hs", l), Hs, kNancyLoci[l]);
        expectCell(single("GST", "Ht", l), Ht, kNancyLoci[l]);
        expectCell(single("GST", "Ht(max)", l), HtMax, kNancyLoci[l]);
    }
}
