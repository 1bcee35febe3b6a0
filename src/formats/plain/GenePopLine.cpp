// The lines of one individual in the five files of the Genepop export, built in one walk over its
// loci.
//
// The plain reading, which only the tests reach, of what GenepopRows.h does faster in the export.
#include "formats/GenePop.h"

#include "data/lociclass.h"
#include "formats/digits.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <array>

namespace kva {

namespace {

constexpr std::size_t kFieldStep = 5; // room of a genotype in a Genepop line
constexpr int kMissing = -9;          // of the structure file

// --- Random discarding ----------------------------------------------------------------

struct Allel {
    int Nummer; // as in the data; negative: missing
    int Platz;  // from 1 in the pool's table; 0: missing
};

// A genotype after random discarding.
struct Choice {
    std::array<Allel, 2> Keep;
    std::array<Allel, 2> Discarded;
    bool OneCopy; // a single gene copy stands in Keep, twice
};

Allel find(int number, const AllelCount& table) {
    return {number, table.GetAllelNummer(number)};
}

Choice choose(Allel first, Allel second, bool haploid) {
    if (!haploid) {
        return {{first, second}, {first, second}, false};
    }
    if ((first.Platz == 0) != (second.Platz == 0)) {
        const Allel present = first.Platz > 0 ? first : second;
        return {{present, present}, {present, present}, true};
    }
    // Two equal alleles, or two missing ones, use up a random number, too.
    if (InternRand() < 0.5F) {
        return {{second, second}, {first, first}, true};
    }
    return {{first, first}, {second, second}, true};
}

// --- Lines ------------------------------------------------------------------------------

void appendCell(std::string& line, int number) {
    line += '\t';
    appendNumber(line, number);
}

// Writes " %.2d%.2d" at `position`. What stands there already goes: wanted, fields have a fixed
// step, and what a place above 99 makes too long is overwritten by the field behind it.
void putField(std::string& line, std::size_t position, const std::array<Allel, 2>& genotype) {
    line.resize(position);
    line += ' ';
    appendPadded(line, genotype[0].Platz, 2);
    appendPadded(line, genotype[1].Platz, 2);
}

void appendStructureCell(std::string& line, int allele) {
    appendCell(line, allele < 0 ? kMissing : allele);
}

// Which groups of lines are complete, so wanted.
struct Wanted {
    explicit Wanted(const GenepopLines& z)
        : RD(z.GenepopRD != nullptr && z.GenepopRD2 != nullptr),
          TwoColumns(z.TwoColumns != nullptr && z.TwoColumns2 != nullptr),
          RowPairs(z.OneColumn != nullptr && z.OneColumn2 != nullptr && z.Structure != nullptr &&
                   z.Structure2 != nullptr) {}

    bool RD;
    bool TwoColumns;
    bool RowPairs;
};

// "North\td\t1"
std::string sheetLabel(const std::string& name, bool haploid, int group) {
    std::string label = name;
    label += haploid ? "\th" : "\td";
    appendCell(label, group);
    return label;
}

// "%s%3.3d": no blank between name and number.
std::string structureLabel(const std::string& name, int ind) {
    std::string label = name;
    appendPadded(label, ind, 3);
    return label;
}

void startLines(const GenepopLines& lines, Wanted wanted, const std::string& genepop,
                const std::string& sheet, const std::string& structure) {
    if (wanted.RD) {
        *lines.GenepopRD = genepop;
        *lines.GenepopRD2 = genepop;
    }
    if (wanted.TwoColumns) {
        *lines.TwoColumns = sheet;
        *lines.TwoColumns2 = sheet;
    }
    if (wanted.RowPairs) {
        *lines.OneColumn = sheet;
        *lines.OneColumn2 = sheet;
        *lines.Structure = structure;
        *lines.Structure2 = structure;
    }
}

void appendGenotype(const GenepopLines& lines, Wanted wanted, std::size_t field,
                    const Choice& genotype) {
    const auto& [kept, discarded, oneCopy] = genotype;
    if (wanted.RD) {
        putField(*lines.GenepopRD, field, kept);
        putField(*lines.GenepopRD2, field, discarded);
    }
    if (wanted.TwoColumns) {
        appendCell(*lines.TwoColumns, kept[0].Nummer);
        appendCell(*lines.TwoColumns, kept[1].Nummer);
        appendCell(*lines.TwoColumns2, discarded[0].Nummer);
        appendCell(*lines.TwoColumns2, discarded[1].Nummer);
    }
    if (wanted.RowPairs) {
        appendCell(*lines.OneColumn, kept[0].Nummer);
        appendCell(*lines.OneColumn2, kept[1].Nummer);
        appendStructureCell(*lines.Structure, kept[0].Nummer);
        appendStructureCell(*lines.Structure2, oneCopy ? kMissing : kept[1].Nummer);
    }
}

} // namespace

std::string Datensatz::MakeGenePopLine(int pop, int ind, int ersterLocus, int letzterLocus,
                                       const LocusTables& pool, const GenepopLines& lines) const {
    const int begin = std::min(std::max(ersterLocus - 1, 0), AnzLoci - 1);
    const bool ranged = letzterLocus <= AnzLoci && ersterLocus <= letzterLocus;
    const int end = ranged ? letzterLocus : AnzLoci;
    const LociObj* const first = Locus(begin + 1);
    if (first == nullptr || first->GetPopName(pop) == nullptr) {
        return {};
    }
    const int slot = 2 * ind;
    const std::string& name = *first->GetPopName(pop);
    std::string genepop = name + ",";
    const std::size_t labelEnd = genepop.size();
    const Wanted wanted(lines);
    startLines(lines, wanted, genepop,
               sheetLabel(name, first->isHaploid(pop, slot) == 1, first->GetGroupNummer(pop, slot)),
               structureLabel(name, ind));
    for (int l = begin; l < end; ++l) {
        const LociObj& locus = Loci[l];
        const AllelCount& table = pool[l];
        const Allel a1 = find(locus.GetDataChromosom(pop, slot), table);
        const Allel a2 = find(locus.GetDataChromosom(pop, slot + 1), table);
        const std::size_t field = labelEnd + kFieldStep * static_cast<std::size_t>(l - begin);
        putField(genepop, field, {a1, a2});
        appendGenotype(lines, wanted, field, choose(a1, a2, locus.isHaploid(pop, slot) == 1));
    }
    return genepop;
}

} // namespace kva
