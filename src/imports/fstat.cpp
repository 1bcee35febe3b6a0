// FSTAT: a line of four numbers (populations, loci, highest allele, digits of an allele), the loci,
// and a line for each individual: the number of its population and its genotypes, 0 for missing:
//
//      2 2 18 2
//      fca8
//      fca23
//         1  0000 0409
#include "imports/codes.h"
#include "imports/readers.h"

#include <algorithm>
#include <array>

namespace kva {

namespace {

struct Head {
    int32_t populations = 0;
    std::size_t loci = 0;
    int digits = 0;
};

std::optional<Head> headOf(const Lines& lines) {
    const std::vector<std::string_view> words =
        lines.empty() ? std::vector<std::string_view>() : wordsOf(lines.front().text);
    std::array<int32_t, 4> numbers{};
    if (words.size() != numbers.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::optional<int32_t> number = wholeNumber(words[i]);
        if (!number) {
            return std::nullopt;
        }
        numbers[i] = *number;
    }
    const bool possible = numbers[0] > 0 && numbers[1] > 0 && numbers[3] >= 1 && numbers[3] <= 3;
    return possible
               ? std::optional<Head>({numbers[0], static_cast<std::size_t>(numbers[1]), numbers[3]})
               : std::nullopt;
}

void readIndividual(const Line& line, const Head& head, PopulationPlaces& places, Genotypes& data) {
    const std::vector<std::string_view> words = wordsOf(line.text);
    const std::optional<int32_t> population = wholeNumber(words.front(), head.populations);
    if (!population || *population == 0) {
        refuseData(line.number, quotedText(words.front()) + " is no population of 1 to " +
                                    std::to_string(head.populations));
    }
    if (words.size() != head.loci + 1) {
        refuseData(line.number, std::to_string(words.size() - 1) + " genotypes, but " +
                                    std::to_string(head.loci) + " loci are named");
    }
    ImportedIndividual individual;
    individual.population = places.of(std::to_string(*population), data);
    for (std::size_t locus = 1; locus < words.size(); ++locus) {
        individual.loci.push_back(genotypeOfCode(words[locus], head.digits, line.number));
    }
    data.individuals.push_back(std::move(individual));
}

} // namespace

bool looksLikeFstat(const Lines& lines) {
    const std::optional<Head> head = headOf(lines);
    return head && head->loci < lines.size();
}

Genotypes readFstat(const Lines& lines, const ImportOptions& options) {
    const std::optional<Head> head = headOf(lines);
    if (!head) {
        refuseData(1,
                   "not the four numbers of FSTAT: populations, loci, highest allele, digits of an "
                   "allele (1 to 3)");
    }
    if (head->loci >= lines.size()) {
        refuseData(0, "the file ends before its " + std::to_string(head->loci) + " loci are named");
    }
    checkSize(1, head->loci);
    Genotypes data;
    for (std::size_t locus = 1; locus <= head->loci; ++locus) {
        data.loci.emplace_back(trimmed(lines[locus].text));
    }
    PopulationPlaces places;
    for (std::size_t row = head->loci + 1; row < lines.size(); ++row) {
        checkSize(data.individuals.size() + 1, head->loci);
        readIndividual(lines[row], *head, places, data);
    }
    if (!options.populations.empty()) {
        data.populations = namesByOption(data.populations.size(), options);
    }
    return data;
}

} // namespace kva
