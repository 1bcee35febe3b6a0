// What a user types at a prompt of the menu, read from standard input. A prompt takes its
// answer alone: the rest of the line stays and is read as keys.
#ifndef KVA_CONTROL_CMENUEINGABE_H
#define KVA_CONTROL_CMENUEINGABE_H

#include <optional>
#include <string>

namespace kva {

// So many bytes of a file name are taken.
constexpr std::size_t kInputLimit = 255;

// An answer where a number is wanted.
template <class Number> struct NumberInput {
    std::optional<Number> Value;
    std::string Word; // without Value: what stood there instead; empty at the end of input
};

// Both skip white space and take the longest text that a number can begin with, as formatted
// input does; of "12abc" the letters stay. A number beyond the type is its largest or smallest
// value. If no number stands there, the rest of the line is dropped.
NumberInput<long> ReadWholeNumber();
NumberInput<double> ReadDecimal();

// A file name of one word, up to white space, cut at kInputLimit bytes and in front of a NUL
// byte; empty at the end of input.
std::string ReadWord();

// The same for a name that may stand in quotes and hold blanks. A word that holds a double quote,
// or else a single one, loses its first character and goes on, one blank for any white space, up to
// the quote in a further word; what stands behind that quote in its word is dropped. Wanted: the
// quote is not looked for in the first word, so "name" in quotes waits for more.
std::string ReadFileName();

} // namespace kva

#endif
