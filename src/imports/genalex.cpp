// GenAlEx, saved as CSV: loci, individuals, populations and their sizes; a title and the names of
// the populations; the heads of the columns; the individuals. 0 is missing, unless --missing says
// more:
//
//      2,3,2,2,1
//      Title,,,North,South
//      Sample,Pop,LocA,,LocB,
//      N1,North,104,106,88,92
//
// Haploid data have one column per locus.
#include "imports/readers.h"

#include <algorithm>

namespace kva {

namespace {

constexpr std::size_t kHeadColumns = 2; // name and population of an individual

struct Head {
    char separator = ',';
    std::size_t loci = 0;
    std::size_t individuals = 0;
    int ploidy = 2;
};

std::optional<Head> headOf(const Lines& lines) {
    if (lines.size() < 3) {
        return std::nullopt;
    }
    Head head;
    head.separator = separatorOf(lines.front().text);
    const std::vector<std::string> cells = cellsOf(lines.front().text, head.separator);
    if (head.separator == '\0' || cells.size() < 3) {
        return std::nullopt;
    }
    for (std::size_t cell = 0; cell < 3; ++cell) {
        if (!wholeNumber(cells[cell])) {
            return std::nullopt;
        }
    }
    head.loci = static_cast<std::size_t>(*wholeNumber(cells[0]));
    head.individuals = static_cast<std::size_t>(*wholeNumber(cells[1]));
    return head.loci > 0 ? std::optional<Head>(head) : std::nullopt;
}

// The names of the loci; sets the ploidy, by the option or by the empty cell behind each name.
std::vector<std::string> readNames(const Line& line, Head& head, const ImportOptions& options) {
    std::vector<std::string> cells = cellsOf(line.text, head.separator);
    cells.resize(std::max(cells.size(), kHeadColumns + 2 * head.loci));
    const auto nameAt = [&cells](std::size_t place) { return cells[kHeadColumns + place]; };
    bool pairs = true;
    bool singles = true;
    for (std::size_t locus = 0; locus < head.loci; ++locus) {
        pairs = pairs && !nameAt(2 * locus).empty() && nameAt(2 * locus + 1).empty();
        singles = singles && !nameAt(locus).empty();
    }
    if (options.ploidy) {
        head.ploidy = *options.ploidy;
    } else if (pairs == (singles && head.loci > 1)) {
        refuseOption("line " + std::to_string(line.number) +
                     ": the names do not tell whether a locus has one column (--ploidy 1) or two "
                     "(--ploidy 2)");
    } else {
        head.ploidy = pairs ? 2 : 1;
    }
    std::vector<std::string> names;
    for (std::size_t locus = 0; locus < head.loci; ++locus) {
        names.push_back(nameAt(locus * static_cast<std::size_t>(head.ploidy)));
    }
    return names;
}

void readIndividual(const Line& line, const Head& head, const ImportOptions& options,
                    PopulationPlaces& places, Genotypes& data) {
    const std::vector<std::string> cells = cellsOf(line.text, head.separator);
    const auto ploidy = static_cast<std::size_t>(head.ploidy);
    const std::size_t wanted = kHeadColumns + head.loci * ploidy;
    if (cells.size() < wanted) {
        refuseData(line.number, std::to_string(cells.size()) + " cells, but " +
                                    std::to_string(wanted) + " are wanted");
    }
    ImportedIndividual individual;
    individual.label = cells[0];
    individual.population = places.of(cells[1], data);
    individual.inbred = ploidy == 1;
    for (std::size_t locus = 0; locus < head.loci; ++locus) {
        const std::size_t cell = kHeadColumns + locus * ploidy;
        individual.loci.push_back({alleleOf(cells[cell], line.number, options),
                                   alleleOf(cells[cell + ploidy - 1], line.number, options)});
    }
    data.individuals.push_back(std::move(individual));
}

} // namespace

bool looksLikeGenalex(const Lines& lines) {
    const std::optional<Head> head = headOf(lines);
    return head && head->individuals + 3 <= lines.size();
}

Genotypes readGenalex(const Lines& lines, const ImportOptions& options) {
    std::optional<Head> head = headOf(lines);
    if (!head) {
        refuseData(1, "not the numbers of GenAlEx: loci, individuals, populations");
    }
    checkSize(head->individuals, head->loci);
    ImportOptions codes = options;
    if (codes.missing.empty()) {
        codes.missing = {"0"}; // what the format says
    }
    Genotypes data;
    data.loci = readNames(lines[2], *head, options);
    if (lines.size() < 3 + head->individuals) {
        refuseData(1, std::to_string(head->individuals) + " individuals are told, but " +
                          std::to_string(lines.size() - 3) + " rows are there");
    }
    PopulationPlaces places;
    for (std::size_t row = 0; row < head->individuals; ++row) {
        readIndividual(lines[3 + row], *head, codes, places, data);
    }
    if (lines.size() > 3 + head->individuals) {
        data.notes.push_back(std::to_string(lines.size() - 3 - head->individuals) +
                             " lines behind the last individual are not read");
    }
    if (!options.populations.empty()) {
        data.populations = namesByOption(data.populations.size(), options);
    }
    noteInbred(data);
    return data;
}

} // namespace kva
