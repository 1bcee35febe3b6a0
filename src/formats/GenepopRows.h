// The rows of an individual in the five files of the Genepop export, byte for byte those of
// Datensatz::MakeGenePopLine, and drawn for alike.
//
// The same few alleles come again and again. So the texts of an allele, as a place of a Genepop
// field and as a cell of a sheet, are made once and kept for each locus, and a row is copies of
// them, one behind the other, in room that is enough for any.
#ifndef KVA_FORMATS_GENEPOPROWS_H
#define KVA_FORMATS_GENEPOPROWS_H

#include "data/allelcount.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

class Datensatz;

// A text of at most `Size` bytes.
template <std::size_t Size> class ShortText {
  public:
    ShortText() = default;
    explicit ShortText(std::string_view words)
        : Length(static_cast<uint8_t>(words.copy(Bytes.data(), Size))) {}

    // Result: the place behind the text. All bytes are copied, which takes less than to look how
    // many count: there must be room for `Size`.
    char* put(char* out) const {
        std::memcpy(out, Bytes.data(), Size);
        return out + Length;
    }

  private:
    std::array<char, Size> Bytes{};
    uint8_t Length = 0;
};

// An allele of a locus as the files show it.
struct AlleleText {
    int32_t Number = 0;   // as in the data; negative: missing
    bool Present = false; // it has a place in the pool's table
    ShortText<10> Place;  // "%.2d" of the place, from 1; "00" without one
    ShortText<12> Cell;   // "\t%d" of the number
};

// Texts of alleles of one locus. Each number has a place here; a number that comes to the place of
// another drives it out.
class TextShelf {
  public:
    TextShelf();

    // The text of an allele, valid until the next call. `pool` is the locus's table of the pool,
    // always the same.
    const AlleleText& of(int32_t number, const AllelCount& pool) {
        AlleleText& kept = Kept[static_cast<uint32_t>(number) % kPlaces];
        if (kept.Number != number) {
            kept = made(number, pool);
        }
        return kept;
    }

  private:
    static constexpr uint32_t kPlaces = 64;

    static AlleleText made(int32_t number, const AllelCount& pool);

    std::array<AlleleText, kPlaces> Kept;
};

// The rows of one individual, each with its line end.
struct GenepopRowTexts {
    std::string_view Genepop;
    std::string_view GenepopRD;
    std::string_view TwoColumns;
    std::string_view OneColumn;
    std::string_view OneColumn2;
    std::string_view Structure;
    std::string_view Structure2;
};

class GenepopRows {
  public:
    // `pool` is entry 0 of PopAllele. Both are NOT OWNED.
    GenepopRows(const Datensatz& data, const LocusTables& pool);

    // The rows of an individual (from 0) of a population (from 1) that is there, valid until the
    // next call. Random numbers are drawn as MakeGenePopLine does.
    GenepopRowTexts of(int pop, int ind);

  private:
    static constexpr std::size_t kRows = 7;

    // First and second alleles have shelves of their own, so that neither drives out the other.
    struct LocusTexts {
        TextShelf First;
        TextShelf Second;
    };

    // Where the rows end while they grow.
    struct Ends {
        char* Genepop;
        char* GenepopRD;
        char* TwoColumns;
        char* OneColumn;
        char* OneColumn2;
        char* Structure;
        char* Structure2;
    };

    Ends begin(int pop, int ind); // the rows with their labels alone

    const Datensatz& Data;
    const LocusTables& Pool;
    std::vector<LocusTexts> Texts;             // by locus
    std::array<std::vector<char>, kRows> Room; // by row, in the order of GenepopRowTexts
    std::string Label;
};

} // namespace kva

#endif
