// STRUCTURE: columns between tabs or blanks, of which the first ones may be a label, a population
// and others; the alleles of a locus in one column and two rows, or in two columns and one row. A
// first row may name the loci:
//
//      LocA	LocB
//      N215	1	104	88
//      N215	1	106	-9
//
// The file does not say which column is what: the options do.
#include "imports/readers.h"

#include <algorithm>

namespace kva {

namespace {

using Cells = std::vector<std::string>;

Cells cellsOfRow(const Line& line, bool tabs) {
    Cells cells;
    if (tabs) {
        cells = cellsOf(line.text, '\t');
        while (!cells.empty() && cells.back().empty()) {
            cells.pop_back();
        }
        return cells;
    }
    for (const std::string_view word : wordsOf(line.text)) {
        cells.emplace_back(word);
    }
    return cells;
}

bool hasTabs(const Lines& lines) {
    return std::all_of(lines.begin(), lines.end(), [](const Line& line) {
        return line.text.find('\t') != std::string_view::npos;
    });
}

bool isNumber(std::string_view cell) {
    return wholeNumber(cell.starts_with('-') ? cell.substr(1) : cell).has_value();
}

// The rows of a file and what its columns are.
class StructureReader {
  public:
    StructureReader(const Lines& lines, const ImportOptions& options)
        : All(lines), Options(options), Tabs(hasTabs(lines)) {}

    Genotypes read() {
        findShape();
        checkSize(All.size(), Loci);
        while (Next < All.size()) {
            readIndividual();
        }
        settleHalves();
        if (Data.populations.size() == 1 && Data.populations.front().empty()) {
            Data.populations = namesByOption(1, Options);
        } else if (!Options.populations.empty()) {
            Data.populations = namesByOption(Data.populations.size(), Options);
        }
        noteInbred(Data);
        return std::move(Data);
    }

  private:
    Cells row(std::size_t line) const { return cellsOfRow(All[line], Tabs); }

    void findShape();
    void askForShape() const;
    void findNames(const Cells& first, const Cells& second);
    bool isAllele(const std::string& cell) const; // or a word for a missing one
    void readIndividual();
    std::string populationOf(const Cells& cells, std::size_t line);
    std::string populationOfLabel(const std::string& label, std::size_t line);
    std::string labelOf(const Cells& cells) const;
    void checkPartner(const Cells& cells, const Cells& partner, std::size_t line) const;
    void settleHalves();

    const Lines& All;
    const ImportOptions& Options;
    bool Tabs; // cells stand between tabs, not between blanks
    Genotypes Data;
    PopulationPlaces Places;
    std::size_t Next = 0;        // line to read
    std::size_t Columns = 0;     // cells of a row
    std::size_t FirstAllele = 0; // place of the first allele in a row, from 0
    std::size_t Loci = 0;
    std::string LastPopulation;        // --pop-digits: of the individual before
    std::optional<int32_t> LastNumber; // the same of its number; none before the first
};

void StructureReader::askForShape() const {
    if (!Options.rows) {
        refuseOption(
            "STRUCTURE: say --rows 1 if an individual has one row with two columns per locus, "
            "--rows 2 if it has two rows");
    }
    if (!Options.populationColumn && !Options.populationDigits) {
        refuseOption(
            "STRUCTURE: say which column holds the population with --pop-column (0: none), or "
            "with --pop-digits how many digits stand behind it in the label");
    }
}

// Sets the names if the first row holds them: it has fewer cells than the others, or text where
// they have alleles. Needs FirstAllele where the numbers of cells are the same.
void StructureReader::findNames(const Cells& first, const Cells& second) {
    const auto rows = static_cast<std::size_t>(*Options.rows);
    const std::size_t perLocus = rows == 2 ? 1 : 2;
    if (first.size() < second.size()) {
        Data.loci = first;
        const std::size_t cells = first.size() * perLocus;
        if (!Options.locusColumn) {
            if (cells >= second.size() + (rows == 2 ? 0 : 1)) {
                refuseData(All.front().number,
                           std::to_string(first.size()) + " names of loci, but rows of " +
                               std::to_string(second.size()) + " cells; is --rows right?");
            }
            FirstAllele = second.size() - cells;
        }
    } else if (FirstAllele < second.size() && isNumber(second[FirstAllele]) &&
               std::none_of(first.begin() + static_cast<std::ptrdiff_t>(FirstAllele), first.end(),
                            [this](const std::string& cell) { return isAllele(cell); })) {
        for (std::size_t cell = FirstAllele; cell < first.size(); cell += perLocus) {
            Data.loci.push_back(first[cell]);
        }
        Data.notes.emplace_back("the first row is taken as the names of the loci");
    }
}

bool StructureReader::isAllele(const std::string& cell) const {
    return isNumber(cell) ||
           std::find(Options.missing.begin(), Options.missing.end(), cell) != Options.missing.end();
}

void StructureReader::findShape() {
    askForShape();
    if (All.size() < 2) {
        refuseData(0, "fewer than two rows");
    }
    const Cells first = row(0);
    const Cells second = row(1);
    Columns = second.size();
    if (Options.locusColumn) {
        FirstAllele = static_cast<std::size_t>(*Options.locusColumn) - 1;
    } else if (first.size() >= second.size()) {
        refuseOption("STRUCTURE: say with --locus-column which column holds the first allele");
    }
    findNames(first, second);
    Next = Data.loci.empty() ? 0 : 1;
    const std::size_t perLocus = *Options.rows == 2 ? 1 : 2;
    if (FirstAllele >= Columns || (Columns - FirstAllele) % perLocus != 0) {
        refuseData(All[1].number, std::to_string(Columns) +
                                      " cells make no whole loci from column " +
                                      std::to_string(FirstAllele + 1) + " on");
    }
    Loci = (Columns - FirstAllele) / perLocus;
    if (Data.loci.empty()) {
        for (std::size_t locus = 1; locus <= std::min<std::size_t>(Loci, 100000); ++locus) {
            Data.loci.push_back("Locus" + std::to_string(locus));
        }
        Data.notes.push_back("the file names no loci; they are Locus1 to Locus" +
                             std::to_string(Loci));
    } else if (Data.loci.size() != Loci) {
        refuseData(All.front().number, std::to_string(Data.loci.size()) +
                                           " names of loci, but the rows have " +
                                           std::to_string(Loci) + " loci");
    }
}

std::string StructureReader::labelOf(const Cells& cells) const {
    return FirstAllele > 0 && Options.populationColumn != 1 ? cells[0] : std::string();
}

// The label without the digits at its end; numbers that count on from the label before may have
// more of them, as that of the individual 1000 behind 999.
std::string StructureReader::populationOfLabel(const std::string& label, std::size_t line) {
    const auto digits = static_cast<std::size_t>(*Options.populationDigits);
    const std::size_t behind = LastPopulation.size();
    if (LastNumber && label.size() > behind + digits && label.starts_with(LastPopulation) &&
        wholeNumber(label.substr(behind)) == *LastNumber + 1) {
        ++*LastNumber;
        return LastPopulation;
    }
    const std::size_t end = label.size() - std::min(label.size(), digits);
    LastNumber = wholeNumber(label.substr(end));
    if (FirstAllele == 0 || end == 0 || !LastNumber) {
        refuseData(line, quotedText(label) + " is no label of a population and " +
                             std::to_string(digits) + " digits (--pop-digits)");
    }
    LastPopulation = label.substr(0, end);
    return LastPopulation;
}

std::string StructureReader::populationOf(const Cells& cells, std::size_t line) {
    if (Options.populationDigits) {
        return populationOfLabel(cells[0], line);
    }
    const auto column = static_cast<std::size_t>(*Options.populationColumn);
    if (column > FirstAllele) {
        refuseOption("--pop-column " + std::to_string(column) + " is a column of alleles");
    }
    if (column == 0 && Options.populations.size() != 1) {
        refuseOption("--pop-column 0: name the one population with --populations");
    }
    return column == 0 ? std::string() : cells[column - 1];
}

// The cells in front of the alleles are the same in both rows of an individual, but for those that
// are neither label nor population.
void StructureReader::checkPartner(const Cells& cells, const Cells& partner,
                                   std::size_t line) const {
    const std::size_t column = Options.populationColumn.value_or(0) > 0
                                   ? static_cast<std::size_t>(*Options.populationColumn)
                                   : 1;
    const bool other = column <= FirstAllele && cells[column - 1] != partner[column - 1];
    if (labelOf(cells) != labelOf(partner) || other) {
        refuseData(line, "this row and the one before are not of one individual; is --rows right?");
    }
}

void StructureReader::readIndividual() {
    const std::size_t line = All[Next].number;
    std::vector<Cells> rows;
    for (int part = 0; part < *Options.rows; ++part, ++Next) {
        if (Next == All.size()) {
            refuseData(line, "the individual has no second row; is --rows right?");
        }
        rows.push_back(row(Next));
        if (rows.back().size() != Columns) {
            refuseData(All[Next].number, std::to_string(rows.back().size()) + " cells, but " +
                                             std::to_string(Columns) + " are wanted");
        }
    }
    const bool twoRows = rows.size() == 2;
    if (twoRows) {
        checkPartner(rows[0], rows[1], All[Next - 1].number);
    }
    ImportedIndividual individual;
    individual.label = labelOf(rows[0]);
    individual.population = Places.of(populationOf(rows[0], line), Data);
    for (std::size_t locus = 0; locus < Loci; ++locus) {
        const std::size_t first = FirstAllele + locus * (twoRows ? 1 : 2);
        const std::string& second = twoRows ? rows[1][first] : rows[0][first + 1];
        individual.loci.push_back({alleleOf(rows[0][first], line, Options),
                                   alleleOf(second, All[Next - 1].number, Options)});
    }
    Data.individuals.push_back(std::move(individual));
}

// Individuals whose second alleles are all missing: the user says what they are.
void StructureReader::settleHalves() {
    for (ImportedIndividual& individual : Data.individuals) {
        const auto missing = [&individual](std::size_t allele) {
            return std::all_of(
                individual.loci.begin(), individual.loci.end(),
                [allele](const Genotype& genotype) { return genotype[allele] == kNoAllele; });
        };
        if (!missing(1) || missing(0)) {
            continue;
        }
        if (!Options.halfMissing) {
            refuseOption("the second alleles of individual " + quotedText(individual.label) +
                         " are all missing: is it inbred (--half-missing inbred) or are they "
                         "unknown (--half-missing keep)?");
        }
        if (*Options.halfMissing == "inbred") {
            individual.inbred = true;
            for (Genotype& genotype : individual.loci) {
                genotype[1] = genotype[0];
            }
        }
    }
}

} // namespace

bool looksLikeStructure(const Lines& lines) {
    if (lines.size() < 3) {
        return false;
    }
    const std::size_t columns = wordsOf(lines[1].text).size();
    return columns > 1 && std::all_of(lines.begin() + 1, lines.end(), [columns](const Line& line) {
               const std::vector<std::string_view> words = wordsOf(line.text);
               return words.size() == columns && isNumber(words.back());
           });
}

Genotypes readStructure(const Lines& lines, const ImportOptions& options) {
    return StructureReader(lines, options).read();
}

} // namespace kva
