// Genepop: a title, the loci (a line each, or several between commas), and for each population a
// line "Pop" and its individuals, alleles with two or three digits, 0 for missing:
//
//      Cats of Nancy
//      fca8
//      fca23
//      Pop
//      N215, 0000 0409
//
// A genotype of one allele is that of a haploid individual.
#include "imports/codes.h"
#include "imports/readers.h"

#include <algorithm>

namespace kva {

namespace {

bool isPopLine(const Line& line) {
    return smallLettersOf(trimmed(line.text)) == "pop";
}

// The file as far as it can be understood line by line.
class GenepopReader {
  public:
    GenepopReader(const Lines& lines, const ImportOptions& options)
        : All(lines), Options(options) {}

    Genotypes read() {
        readLoci();
        for (; Next < All.size(); ++Next) {
            if (isPopLine(All[Next])) {
                closePopulation();
            } else {
                readIndividual(All[Next]);
            }
        }
        closePopulation();
        namePopulations();
        noteInbred(Data);
        return std::move(Data);
    }

  private:
    void readLoci();
    void readIndividual(const Line& line);
    Genotype genotypeOf(std::string_view word, std::size_t line, ImportedIndividual& individual);
    void closePopulation();
    void namePopulations();

    const Lines& All;
    const ImportOptions& Options;
    Genotypes Data;
    std::size_t Next = 1;            // line to read, behind the title
    int Digits = 0;                  // of an allele; 0: not seen
    std::size_t Population = 0;      // place of the open one
    std::vector<std::size_t> Firsts; // first individual of each population
};

void GenepopReader::readLoci() {
    for (; Next < All.size() && !isPopLine(All[Next]); ++Next) {
        for (const std::string& name : cellsOf(All[Next].text, ',')) {
            if (!name.empty()) {
                Data.loci.push_back(name);
            }
        }
    }
    if (Next == All.size()) {
        refuseData(0, "no line \"Pop\" in front of the individuals, as Genepop has it");
    }
    ++Next;
    if (Data.loci.empty()) {
        refuseData(All[Next - 1].number, "no names of loci in front of \"Pop\"");
    }
}

Genotype GenepopReader::genotypeOf(std::string_view word, std::size_t line,
                                   ImportedIndividual& individual) {
    const bool two = word.size() == 4 || word.size() == 6;
    const auto digits = static_cast<int>(two ? word.size() / 2 : word.size());
    if ((digits != 2 && digits != 3) || (Digits != 0 && digits != Digits)) {
        refuseData(line, quotedText(word) + " is no genotype of alleles with " +
                             (Digits == 0 ? "2 or 3" : std::to_string(Digits)) + " digits");
    }
    Digits = digits;
    Genotype genotype = genotypeOfCode(word, digits, line);
    if (!individual.loci.empty() && individual.inbred == two) {
        refuseData(line,
                   "the individual has one allele at some loci and two at others, which a data "
                   "file cannot say; make files of their own of the two kinds of loci");
    }
    individual.inbred = !two;
    if (!two) {
        genotype[0] = genotype[1];
    }
    return genotype;
}

void GenepopReader::readIndividual(const Line& line) {
    const std::size_t comma = line.text.rfind(',');
    if (comma == std::string_view::npos) {
        refuseData(line.number, "no comma behind the name of the individual");
    }
    ImportedIndividual individual;
    individual.label = trimmed(line.text.substr(0, comma));
    individual.population = Population;
    const std::vector<std::string_view> words = wordsOf(line.text.substr(comma + 1));
    if (words.size() != Data.loci.size()) {
        refuseData(line.number, std::to_string(words.size()) + " genotypes, but " +
                                    std::to_string(Data.loci.size()) + " loci are named");
    }
    checkSize(Data.individuals.size() + 1, Data.loci.size());
    for (const std::string_view word : words) {
        individual.loci.push_back(genotypeOf(word, line.number, individual));
    }
    Data.individuals.push_back(std::move(individual));
}

// A population without individuals is left out.
void GenepopReader::closePopulation() {
    const std::size_t before = Firsts.empty() ? 0 : Firsts.back();
    if (Data.individuals.size() > before || Firsts.empty()) {
        if (Firsts.size() == Population && !Data.individuals.empty()) {
            ++Population;
            Firsts.push_back(Data.individuals.size());
        }
    }
}

// The labels of a population are its name where all are the same and no other population has it, as
// in kva's own files. Else the user says what to take.
void GenepopReader::namePopulations() {
    if (Data.individuals.empty()) {
        refuseData(0, "no individual behind \"Pop\"");
    }
    std::vector<std::string> first(Population);
    std::vector<std::string> last(Population);
    bool same = true;
    for (const ImportedIndividual& individual : Data.individuals) {
        std::string& name = first[individual.population];
        const bool begins = last[individual.population].empty();
        name = begins ? individual.label : name;
        last[individual.population] = individual.label;
        same = same && !individual.label.empty() && individual.label == name;
    }
    const auto distinct = [](std::vector<std::string> names) {
        std::sort(names.begin(), names.end());
        return std::adjacent_find(names.begin(), names.end()) == names.end() &&
               !names.front().empty();
    };
    const std::vector<std::string>& told = Options.populations;
    if (told.empty()) {
        if (!same || !distinct(first)) {
            refuseOption(
                "Genepop has no names of populations: give --populations first or last (the "
                "label of their first or last individual), numbers, or the names");
        }
        Data.populations = first;
    } else if (told.size() == 1 && (told.front() == "first" || told.front() == "last")) {
        Data.populations = told.front() == "first" ? first : last;
        if (!distinct(Data.populations)) {
            refuseOption("--populations " + told.front() +
                         " gives two populations one name, or one none; give the names");
        }
    } else {
        Data.populations = namesByOption(Population, Options);
    }
}

} // namespace

bool looksLikeGenepop(const Lines& lines) {
    return lines.size() > 1 && std::any_of(lines.begin() + 1, lines.end(), isPopLine);
}

Genotypes readGenepop(const Lines& lines, const ImportOptions& options) {
    return GenepopReader(lines, options).read();
}

} // namespace kva
