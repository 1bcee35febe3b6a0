// The known word that a mistyped one was meant to be.
#ifndef KVA_BASE_NEARESTWORD_H
#define KVA_BASE_NEARESTWORD_H

#include <string>
#include <string_view>
#include <vector>

namespace kva {

// The word of `known` that the fewest changes make of `word`: a letter more, a letter less, another
// letter, two neighbours swapped. Capitals count as small letters (ASCII). The first of several;
// empty if `known` is.
std::string nearestWord(std::string_view word, const std::vector<std::string>& known);

// "unknown WHAT 'WORD', the nearest known one is 'NEAREST' (known: A, B, C)"; empty if `known`
// holds the word. For options: a word that is none of `known` is a wrong usage.
std::string unknownWord(std::string_view what, std::string_view word,
                        const std::vector<std::string>& known);

} // namespace kva

#endif
