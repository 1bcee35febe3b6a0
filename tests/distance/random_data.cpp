#include "distance/random_data.h"

#include <random>
#include <vector>

namespace kva_test {

namespace {

void addCell(std::string& row, const std::string& cell) {
    row.append(" ").append(cell);
}

class Maker {
  public:
    explicit Maker(uint32_t seed)
        : Stream(seed), TwoColumns(chance(60)), Loci(pick(1, 5)), Alleles(pick(1, 6)),
          Missing(pick(0, 3) * 15), Inbred(chance(40)), Groups(chance(40)) {
        for (int locus = 0; locus < Loci; ++locus) {
            Absent.push_back(chance(8));
        }
    }

    std::string text() {
        std::string file = head();
        const int populations = pick(1, 5);
        for (int pop = 0; pop < populations; ++pop) {
            const std::string name = std::string(static_cast<std::size_t>(pick(0, 9)), 'n') +
                                     static_cast<char>('A' + pop);
            const int gap = chance(25) ? pick(0, Loci - 1) : -1; // locus without data here
            const int rows = pick(1, 5);
            for (int row = 0; row < rows; ++row) {
                file += dataRow(name, gap);
            }
        }
        return file;
    }

  private:
    // The stream's own bits, since distributions differ between libraries.
    int pick(int low, int high) {
        return low + static_cast<int>(Stream() % static_cast<uint32_t>(high - low + 1));
    }
    bool chance(int percent) { return pick(1, 100) <= percent; }
    int columns() const { return TwoColumns ? 2 : 1; }

    std::string head() {
        std::string repeats = TwoColumns ? "2 . ." : "1 . .";
        std::string rests = ". . .";
        std::string names = ". . .";
        for (int locus = 0; locus < Loci; ++locus) {
            const int repeat = pick(-1, 4);
            addCell(repeats, repeat < 0 ? "." : std::to_string(repeat));
            rests += " 0";
            addCell(names, 'L' + std::to_string(locus));
            if (TwoColumns) {
                repeats += " .";
                rests += " .";
                addCell(names, 'L' + std::to_string(locus) + 'b');
            }
        }
        return repeats + "\n" + rests + "\n" + names + "\n";
    }

    std::string dataRow(const std::string& name, int gap) {
        std::string row = name + (Inbred && chance(50) ? " h " : " d ");
        row += std::to_string(Groups ? pick(0, 2) : 0);
        for (int locus = 0; locus < Loci; ++locus) {
            const bool empty = locus == gap || Absent[static_cast<std::size_t>(locus)];
            for (int column = 0; column < columns(); ++column) {
                addCell(row, empty || chance(Missing) ? "." : std::to_string(allele()));
            }
        }
        return row + "\n";
    }

    int allele() { return 100 + pick(0, Alleles - 1) * pick(1, 3); }

    std::mt19937 Stream;
    bool TwoColumns;
    int Loci;
    int Alleles;
    int Missing; // percent
    bool Inbred;
    bool Groups;
    std::vector<bool> Absent; // loci without any data
};

} // namespace

std::string randomData(uint32_t seed) {
    return Maker(seed).text();
}

} // namespace kva_test
