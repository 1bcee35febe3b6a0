#include "imports/readers.h"

#include <algorithm>

namespace kva {

std::vector<std::string> namesByOption(std::size_t populations, const ImportOptions& options) {
    const std::vector<std::string>& told = options.populations;
    if (told.size() == 1 && told.front() == "numbers") {
        std::vector<std::string> names;
        for (std::size_t pop = 1; pop <= populations; ++pop) {
            names.push_back("pop" + std::to_string(pop));
        }
        return names;
    }
    if (told.size() != populations) {
        refuseOption("--populations names " + std::to_string(told.size()) + ", the file has " +
                     std::to_string(populations) + " populations");
    }
    const std::string* const twice = repeatedName(told);
    const auto empty = std::find_if(told.begin(), told.end(),
                                    [](const std::string& name) { return trimmed(name).empty(); });
    if (twice != nullptr || empty != told.end()) {
        refuseOption("--populations needs a name of its own for each population, not " +
                     quotedText(twice != nullptr ? *twice : *empty));
    }
    return told;
}

int32_t alleleOf(std::string_view cell, std::size_t line, const ImportOptions& options) {
    const std::vector<std::string>& missing = options.missing;
    if (cell.empty() || std::find(missing.begin(), missing.end(), cell) != missing.end()) {
        return kNoAllele;
    }
    const std::optional<int32_t> allele = wholeNumber(cell);
    if (!allele) {
        if (missing.empty()) {
            refuseOption("line " + std::to_string(line) + ": " + quotedText(cell) +
                         " is no allele; name the words for missing alleles with --missing");
        }
        refuseData(line, quotedText(cell) +
                             " is neither an allele, a whole number of 0 or more, nor a "
                             "word of --missing");
    }
    if (*allele == 0 && missing.empty()) {
        refuseOption("line " + std::to_string(line) +
                     ": is 0 a missing allele (--missing 0) or an allele (--missing none)?");
    }
    return *allele;
}

void noteInbred(Genotypes& data) {
    const auto count =
        std::count_if(data.individuals.begin(), data.individuals.end(),
                      [](const ImportedIndividual& individual) { return individual.inbred; });
    if (count > 0) {
        data.notes.push_back(std::to_string(count) +
                             " individuals with one gene copy are inbred (h), their allele twice");
    }
}

} // namespace kva
