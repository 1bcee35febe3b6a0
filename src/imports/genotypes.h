// What the readers of other programs' files make of them, and what they are told beside the file.
#ifndef KVA_IMPORTS_GENOTYPES_H
#define KVA_IMPORTS_GENOTYPES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

namespace kva {

constexpr int32_t kNoAllele = -1; // a missing allele

using Genotype = std::array<int32_t, 2>; // two alleles of 0 or more, or kNoAllele

struct ImportedIndividual {
    std::string label;          // as the file has it; empty: none
    std::size_t population = 0; // place in Genotypes::populations, from 0
    bool inbred = false;        // one gene copy, which stands twice
    std::vector<Genotype> loci; // of each locus
};

struct Genotypes {
    std::vector<std::string> loci;
    std::vector<std::string> populations; // in the order in which they first come up
    std::vector<ImportedIndividual> individuals;
    std::vector<std::string> notes; // what the reader did that its user should know, a line each
};

// What a format cannot say. Without a value it is not told.
struct ImportOptions {
    std::vector<std::string> missing;       // words for a missing allele; "none": there is none
    std::vector<std::string> populations;   // names, or one of "first", "last", "numbers"
    std::optional<int> ploidy;              // gene copies of an individual in the file, 1 or 2
    std::optional<int> rows;                // STRUCTURE: rows of an individual, 1 or 2
    std::optional<int> populationColumn;    // STRUCTURE: from 1; 0: there is none
    std::optional<int> populationDigits;    // STRUCTURE: the population is the label without them
    std::optional<int> locusColumn;         // STRUCTURE: first column of alleles, from 1
    std::optional<std::string> halfMissing; // STRUCTURE: "inbred" or "keep"
};

// Why a file is not imported, in one line that says where and what to do. Thrown by the readers,
// caught where they are called.
class ImportRefusal : public std::runtime_error {
  public:
    enum class Cause {
        Data,  // the file cannot be understood
        Option // an option is missing, or wrong for this file
    };

    ImportRefusal(Cause cause, const std::string& text) : std::runtime_error(text), Why(cause) {}

    Cause cause() const { return Why; }

  private:
    Cause Why;
};

// Throw a refusal. `line`: of the file, from 1; 0: none.
[[noreturn]] void refuseData(std::size_t line, const std::string& text);
[[noreturn]] void refuseOption(const std::string& text);

// The populations of a file by name, as they come up.
class PopulationPlaces {
  public:
    // The place of the population in `data`, which gets it if it is new.
    std::size_t of(const std::string& name, Genotypes& data);

  private:
    std::unordered_map<std::string, std::size_t> Places;
};

// The first name that stands twice, or null.
const std::string* repeatedName(const std::vector<std::string>& names);

// Refuses more genotypes than a data file is made of. For readers, before they make room.
void checkSize(std::size_t individuals, std::size_t loci);

} // namespace kva

#endif
