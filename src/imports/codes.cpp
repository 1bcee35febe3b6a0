#include "imports/codes.h"

#include "imports/lines.h"

namespace kva {

Genotype genotypeOfCode(std::string_view word, int digits, std::size_t line) {
    const std::optional<int32_t> number = wholeNumber(word);
    if (!number || word.size() > 2 * static_cast<std::size_t>(digits)) {
        refuseData(line, quotedText(word) + " is no genotype of two alleles with " +
                             std::to_string(digits) + (digits == 1 ? " digit" : " digits"));
    }
    int32_t base = 1;
    for (int digit = 0; digit < digits; ++digit) {
        base *= 10;
    }
    const auto allele = [](int32_t code) { return code == 0 ? kNoAllele : code; };
    return {allele(*number / base), allele(*number % base)};
}

} // namespace kva
