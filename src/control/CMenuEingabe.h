// What a user types at a prompt of the menu, read from standard input. A prompt takes its
// answer alone: the rest of the line stays and is read as keys.
#ifndef KVA_CONTROL_CMENUEINGABE_H
#define KVA_CONTROL_CMENUEINGABE_H

#include <optional>
#include <string>

namespace kva {

// So many bytes of a file name are taken; the rest of the word is dropped.
constexpr std::size_t kInputLimit = 255;

// An answer to the question for a number.
template <class Number> struct NumberInput {
    std::optional<Number> Value; // nothing: no number stood there
    std::string Word;            // without Value: what stood there instead; empty at the end of
                                 // input
};

// A whole number in decimal digits, and a number with point and exponent, both with a sign if need
// be. Both skip white space and take the longest text that a number can begin with, as formatted
// input does; of "12abc" the letters stay. A number beyond the type is its largest or smallest
// value, of double an infinity. If no number stands there, the rest of the line is dropped.
NumberInput<long> ReadWholeNumber();
NumberInput<double> ReadDecimal();

// A file name of one word, up to white space, cut at kInputLimit bytes and in front of a NUL
// byte; empty at the end of input.
std::string ReadWord();

// The same for a name that may stand in quotes and hold blanks. A word that holds a double quote,
// or else a single one, loses its first character and goes on, one blank for any white space, up to
// the quote in a further word; what stands behind that quote in its word is dropped. Wanted: the
// quote is not looked for in the first word, so "name" in quotes waits for more. Typed answers and
// those piped in depend on it: what is taken here is not read as keys.
std::string ReadFileName();

} // namespace kva

#endif
