// Genotypes as numbers of fixed width, two alleles side by side: 0104, 104106. 0 is missing.
#ifndef KVA_IMPORTS_CODES_H
#define KVA_IMPORTS_CODES_H

#include "imports/genotypes.h"

#include <cstddef>
#include <string_view>

namespace kva {

// A genotype of two alleles of `digits` digits each, by a word of digits alone that may lack zeros
// in front. Refused: another word, or one that is longer.
Genotype genotypeOfCode(std::string_view word, int digits, std::size_t line);

} // namespace kva

#endif
