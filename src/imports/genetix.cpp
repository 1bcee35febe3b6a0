// GENETIX: the number of loci (what stands behind it is not read), that of populations, for each
// locus its name and a line of its alleles, for each population its name, its size and a line for
// each individual: name, and genotypes of two alleles with three digits, 000 for missing:
//
//      1
//      2
//      fca8
//      3 117 119 121
//      North
//      1
//      N215 117119
#include "imports/codes.h"
#include "imports/readers.h"

namespace kva {

namespace {

constexpr int kDigits = 3;

std::optional<int32_t> firstNumber(const Lines& lines, std::size_t line) {
    return line < lines.size() ? wholeNumber(wordsOf(lines[line].text).front()) : std::nullopt;
}

int32_t numberAt(const Lines& lines, std::size_t line, const char* what) {
    const std::optional<int32_t> number = firstNumber(lines, line);
    if (!number) {
        refuseData(line < lines.size() ? lines[line].number : 0,
                   std::string("the number of ") + what + " does not stand where GENETIX has it");
    }
    return *number;
}

void readIndividual(const Line& line, std::size_t population, Genotypes& data) {
    const std::vector<std::string_view> words = wordsOf(line.text);
    const std::size_t loci = data.loci.size();
    if (words.size() < loci) {
        refuseData(line.number, std::to_string(words.size()) + " genotypes, but " +
                                    std::to_string(loci) + " loci are named");
    }
    ImportedIndividual individual;
    individual.population = population;
    individual.label = words.size() > loci ? words.front() : std::string_view();
    for (std::size_t word = words.size() - loci; word < words.size(); ++word) {
        individual.loci.push_back(genotypeOfCode(words[word], kDigits, line.number));
    }
    checkSize(data.individuals.size() + 1, loci);
    data.individuals.push_back(std::move(individual));
}

} // namespace

bool looksLikeGenetix(const Lines& lines) {
    // The line below the name of the first locus: a number, and as many alleles.
    const std::optional<int32_t> alleles = firstNumber(lines, 3);
    return firstNumber(lines, 0) && firstNumber(lines, 1) && alleles &&
           wordsOf(lines[3].text).size() == static_cast<std::size_t>(*alleles) + 1;
}

Genotypes readGenetix(const Lines& lines, const ImportOptions& options) {
    const int32_t loci = numberAt(lines, 0, "loci");
    const int32_t populations = numberAt(lines, 1, "populations");
    checkSize(1, static_cast<std::size_t>(loci));
    Genotypes data;
    std::size_t next = 2;
    for (int32_t locus = 0; locus < loci; ++locus, next += 2) {
        numberAt(lines, next + 1, "alleles of a locus"); // refuses a file that ends here
        data.loci.emplace_back(trimmed(lines[next].text));
    }
    PopulationPlaces places;
    for (int32_t pop = 0; pop < populations; ++pop) {
        const int32_t size = numberAt(lines, next + 1, "individuals of a population");
        const std::string name(trimmed(lines[next].text));
        const std::size_t before = data.populations.size();
        const std::size_t place = places.of(name, data);
        if (data.populations.size() == before) {
            data.notes.push_back("population " + quotedText(name) +
                                 " stands in several blocks, which are one population here");
        }
        next += 2;
        for (int32_t individual = 0; individual < size; ++individual, ++next) {
            if (next == lines.size()) {
                refuseData(0, "the file ends before the last individual of population " +
                                  quotedText(name));
            }
            readIndividual(lines[next], place, data);
        }
    }
    if (!options.populations.empty()) {
        data.populations = namesByOption(data.populations.size(), options);
    }
    return data;
}

} // namespace kva
