#include "formats/GenepopRows.h"

#include "data/lociclass.h"
#include "formats/digits.h"
#include "fstat/randsci.h"

#include <algorithm>

namespace kva {

namespace {

constexpr std::size_t kFieldStep = 5;     // room of a genotype in a Genepop row
constexpr std::size_t kMostPerLocus = 24; // bytes in any row: two cells of twelve
constexpr std::size_t kMostBesides = 64;  // label without the name, line end, what put() asks for
constexpr std::string_view kMissingCell = "\t-9"; // of the structure file

// The parts of a row are written from `out` on. Result: the place behind.

char* putText(char* out, std::string_view words) {
    return out + words.copy(out, words.size());
}

// " %.2d%.2d"
char* putField(char* out, const AlleleText& first, const AlleleText& second) {
    *out = ' ';
    return second.Place.put(first.Place.put(out + 1));
}

char* putStructureCell(char* out, const AlleleText& allele) {
    return allele.Number < 0 ? putText(out, kMissingCell) : allele.Cell.put(out);
}

// The allele that an inbred individual keeps: the only one, or one drawn. Two equal alleles, or two
// missing ones, use up a random number, too.
const AlleleText& kept(const AlleleText& first, const AlleleText& second) {
    if (first.Present != second.Present) {
        return first.Present ? first : second;
    }
    return InternRand() < 0.5F ? second : first;
}

} // namespace

// --- Texts of alleles ---------------------------------------------------------------------

TextShelf::TextShelf() {
    int32_t ofAnotherPlace = 1;
    for (AlleleText& text : Kept) {
        text.Number = ofAnotherPlace++;
    }
}

AlleleText TextShelf::made(int32_t number, const AllelCount& pool) {
    const int32_t place = pool.GetAllelNummer(number);
    std::string digits;
    appendPadded(digits, place, 2);
    std::string cell = "\t";
    appendNumber(cell, number);
    return {number, place > 0, ShortText<10>(digits), ShortText<12>(cell)};
}

// --- Rows -----------------------------------------------------------------------------------

GenepopRows::GenepopRows(const Datensatz& data, const LocusTables& pool)
    : Data(data), Pool(pool), Texts(data.Loci.size()) {}

GenepopRows::Ends GenepopRows::begin(int pop, int ind) {
    const LociObj& locus = Data.Loci.front();
    const std::string& name = orEmpty(locus.GetPopName(pop));
    const std::size_t most = name.size() + kMostPerLocus * Data.Loci.size() + kMostBesides;
    for (std::vector<char>& room : Room) {
        room.resize(std::max(room.size(), most));
    }
    const auto labelled = [&](std::size_t row) { return putText(Room[row].data(), Label); };
    Ends end{};
    Label = name;
    Label += ',';
    end.Genepop = labelled(0);
    end.GenepopRD = labelled(1);
    Label = name;
    Label += locus.isHaploid(pop, 2 * ind) == 1 ? "\th\t" : "\td\t";
    appendNumber(Label, locus.GetGroupNummer(pop, 2 * ind));
    end.TwoColumns = labelled(2);
    end.OneColumn = labelled(3);
    end.OneColumn2 = labelled(4);
    Label = name;
    appendPadded(Label, ind, 3);
    end.Structure = labelled(5);
    end.Structure2 = labelled(6);
    return end;
}

GenepopRowTexts GenepopRows::of(int pop, int ind) {
    Ends end = begin(pop, ind);
    char* field = end.Genepop;
    char* fieldRD = end.GenepopRD;
    for (std::size_t l = 0; l < Texts.size(); ++l) {
        const LociObj& locus = Data.Loci[l];
        const int slot = 2 * ind;
        const AlleleText& first = Texts[l].First.of(locus.GetDataChromosom(pop, slot), Pool[l]);
        const AlleleText& second =
            Texts[l].Second.of(locus.GetDataChromosom(pop, slot + 1), Pool[l]);
        const bool inbred = locus.isHaploid(pop, slot) == 1;
        const AlleleText& one = inbred ? kept(first, second) : first;
        const AlleleText& other = inbred ? one : second;
        // Wanted: what a place above 99 makes too long is overwritten by the field behind it.
        end.Genepop = putField(field, first, second);
        end.GenepopRD = putField(fieldRD, one, other);
        field += kFieldStep;
        fieldRD += kFieldStep;
        end.TwoColumns = other.Cell.put(one.Cell.put(end.TwoColumns));
        end.OneColumn = one.Cell.put(end.OneColumn);
        end.OneColumn2 = other.Cell.put(end.OneColumn2);
        end.Structure = putStructureCell(end.Structure, one);
        end.Structure2 = inbred ? putText(end.Structure2, kMissingCell)
                                : putStructureCell(end.Structure2, other);
    }
    const auto finished = [this](std::size_t row, char* behind) {
        *behind = '\n';
        const char* const begin = Room[row].data();
        return std::string_view(begin, static_cast<std::size_t>(behind + 1 - begin));
    };
    return {finished(0, end.Genepop),   finished(1, end.GenepopRD),  finished(2, end.TwoColumns),
            finished(3, end.OneColumn), finished(4, end.OneColumn2), finished(5, end.Structure),
            finished(6, end.Structure2)};
}

} // namespace kva
