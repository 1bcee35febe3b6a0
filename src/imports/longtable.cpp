// A long table: a row for each genotype, its columns named in any order by the first row. Words
// that begin with ind (or sample), pop, loc (or marker) and allele are known; separators are tabs,
// semicolons or commas:
//
//      individual,population,locus,allele1,allele2
//      N1,North,LocA,104,106
//
// Without a second allele column the data are haploid, which --ploidy 1 confirms.
#include "imports/readers.h"

#include <algorithm>
#include <map>
#include <utility>

namespace kva {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

struct Columns {
    char separator = ',';
    std::size_t individual = kNone;
    std::size_t population = kNone;
    std::size_t locus = kNone;
    std::size_t first = kNone;  // allele
    std::size_t second = kNone; // allele; kNone: haploid data
};

std::optional<Columns> columnsOf(const Lines& lines) {
    Columns columns;
    if (lines.empty()) {
        return std::nullopt;
    }
    columns.separator = separatorOf(lines.front().text);
    const struct {
        const char* word;
        std::size_t Columns::*column;
    } kWords[] = {{"ind", &Columns::individual}, {"sample", &Columns::individual},
                  {"pop", &Columns::population}, {"loc", &Columns::locus},
                  {"marker", &Columns::locus},   {"allele", &Columns::first}};
    const std::vector<std::string> cells = cellsOf(lines.front().text, columns.separator);
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        const std::string name = smallLettersOf(cells[cell]);
        for (const auto& row : kWords) {
            if (!name.starts_with(row.word)) {
                continue;
            }
            std::size_t& place = columns.*row.column;
            if (place == kNone) {
                place = cell;
            } else if (row.column == &Columns::first && columns.second == kNone) {
                columns.second = cell;
            } else {
                return std::nullopt;
            }
        }
    }
    const bool all = columns.individual != kNone && columns.population != kNone &&
                     columns.locus != kNone && columns.first != kNone;
    return all ? std::optional<Columns>(columns) : std::nullopt;
}

// One genotype of the table.
struct Row {
    std::size_t individual;
    std::size_t locus;
    Genotype genotype;
    std::size_t line;
};

class LongReader {
  public:
    LongReader(const Columns& columns, const ImportOptions& options)
        : Where(columns), Options(options) {}

    Genotypes read(const Lines& lines) {
        for (std::size_t line = 1; line < lines.size(); ++line) {
            readRow(lines[line]);
        }
        checkSize(Data.individuals.size(), Data.loci.size());
        for (ImportedIndividual& individual : Data.individuals) {
            individual.loci.assign(Data.loci.size(), {kNoAllele, kNoAllele});
        }
        std::vector<bool> taken(Data.individuals.size() * Data.loci.size());
        for (const Row& row : Rows) {
            const std::size_t place = row.individual * Data.loci.size() + row.locus;
            if (taken[place]) {
                refuseData(row.line, "a second genotype of individual " +
                                         quotedText(Data.individuals[row.individual].label) +
                                         " at locus " + quotedText(Data.loci[row.locus]));
            }
            taken[place] = true;
            Data.individuals[row.individual].loci[row.locus] = row.genotype;
        }
        noteInbred(Data);
        return std::move(Data);
    }

  private:
    void readRow(const Line& line) {
        const std::vector<std::string> cells = cellsOf(line.text, Where.separator);
        const bool haploid = Where.second == kNone;
        const std::size_t last = std::max({Where.individual, Where.population, Where.locus,
                                           Where.first, haploid ? 0 : Where.second});
        if (cells.size() <= last) {
            refuseData(line.number, std::to_string(cells.size()) + " cells, but " +
                                        std::to_string(last + 1) + " are wanted");
        }
        const int32_t first = alleleOf(cells[Where.first], line.number, Options);
        const int32_t second =
            haploid ? first : alleleOf(cells[Where.second], line.number, Options);
        Rows.push_back(
            {individualOf(cells), locusOf(cells[Where.locus]), {first, second}, line.number});
    }

    // Individuals of one label in different populations are different ones.
    std::size_t individualOf(const std::vector<std::string>& cells) {
        const auto key = std::make_pair(cells[Where.population], cells[Where.individual]);
        const auto known = Individuals.emplace(key, Data.individuals.size());
        if (known.second) {
            ImportedIndividual individual;
            individual.label = key.second;
            individual.population = Populations.of(key.first, Data);
            individual.inbred = Where.second == kNone;
            Data.individuals.push_back(std::move(individual));
        }
        return known.first->second;
    }

    std::size_t locusOf(const std::string& name) {
        const auto known = Loci.emplace(name, Data.loci.size());
        if (known.second) {
            Data.loci.push_back(name);
        }
        return known.first->second;
    }

    const Columns& Where;
    const ImportOptions& Options;
    Genotypes Data;
    std::vector<Row> Rows;
    std::map<std::pair<std::string, std::string>, std::size_t> Individuals;
    PopulationPlaces Populations;
    std::map<std::string, std::size_t> Loci;
};

} // namespace

bool looksLikeLong(const Lines& lines) {
    return columnsOf(lines).has_value();
}

Genotypes readLong(const Lines& lines, const ImportOptions& options) {
    const std::optional<Columns> columns = columnsOf(lines);
    if (!columns) {
        refuseData(
            1, "not the heads of a long table: individual, population, locus, allele1, allele2, "
               "one column each");
    }
    const bool haploid = columns->second == kNone;
    if (haploid && options.ploidy != 1) {
        refuseOption("the table has one column of alleles; say --ploidy 1 if the data are haploid");
    }
    if (!haploid && options.ploidy == 1) {
        refuseOption("--ploidy 1, but the table has two columns of alleles");
    }
    Genotypes data = LongReader(*columns, options).read(lines);
    if (!options.populations.empty()) {
        data.populations = namesByOption(data.populations.size(), options);
    }
    return data;
}

} // namespace kva
