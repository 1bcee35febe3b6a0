// The data set for Genepop and structure, and as new data sheets. Five files of "Formats&Data"
// come from one walk, so that the same random choices stand in all of them. With D the name of
// the data file and an individual of population North in group 1:
//
//      Genepop.gen, GenepopRD.gen   North, 0102 0303      places in the pool's allele tables
//      D_2C_RD                      North	d	1	104	106	88	88
//      D_1C_RD                      the same in two rows, an allele of each locus in each
//      D.struct                     North000	104	88     two rows, -9 for missing
//
// Random discarding (RD): an individual flagged haploid ("h", inbred) keeps one of its two alleles
// at each locus and stands as a homozygote; in the structure file its second row is missing.
#include "formats/GenePop.h"

#include "control/Ausgabe.h"
#include "formats/digits.h"
#include "formats/passes.h"
#include "fstat/randsci.h"
#include "run/passframe.h"
#include "run/run.h"

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

// --- Files ------------------------------------------------------------------------------

struct Files {
    ResultFile Genepop;
    ResultFile GenepopRD;
    ResultFile TwoColumns;
    ResultFile Structure;
    ResultFile OneColumn;
};

// False at the first file that cannot be opened; those behind it are not tried. The structure
// file is not looked at: without it the others are written all the same.
bool openFiles(Run& run, Files& files) {
    const std::string& data = run.DateiKurzName;
    const auto open = [&run](ResultFile& file, const std::string& name) {
        file = run.OpenResult(name, "wb");
        return file.isOpen();
    };
    if (!open(files.Genepop, "Genepop.gen") || !open(files.GenepopRD, "GenepopRD.gen") ||
        !open(files.TwoColumns, data + "_2C_RD")) {
        return false;
    }
    (void)open(files.Structure, data + ".struct");
    return open(files.OneColumn, data + "_1C_RD");
}

void writeGenepopHead(ResultFile& file, const Datensatz& data, const std::string& title) {
    file.print("%sby KVAnalyzer %s\n", title.c_str(), kVersion);
    for (const LociObj& locus : data.Loci) {
        file.text(locus.LociName);
        file.character('\n');
    }
}

// A head line "`start`\t\t", a cell with the number `field` of each locus, and `behind`.
void writeNumberRow(ResultFile& file, const Datensatz& data, const char* start,
                    int32_t LociObj::*field, const char* behind) {
    file.text(start);
    file.text("\t\t");
    for (const LociObj& locus : data.Loci) {
        file.character('\t');
        file.integer(locus.*field);
        file.text(behind);
    }
    file.character('\n');
}

void writeTwoColumnHead(ResultFile& file, const Datensatz& data) {
    writeNumberRow(file, data, "2", &LociObj::LociRepeatMuster, "\t");
    writeNumberRow(file, data, "", &LociObj::LociRepeatRest, "\t");
    file.text("\t\t");
    data.LociNamen(file, 1);
}

void writeOneColumnHead(ResultFile& file, const Datensatz& data) {
    writeNumberRow(file, data, "1", &LociObj::LociRepeatMuster, "");
    writeNumberRow(file, data, "", &LociObj::LociRepeatRest, "");
    file.text("\t\t");
    for (const LociObj& locus : data.Loci) {
        file.character('\t');
        file.text(locus.LociName);
    }
    file.character('\n');
}

void writeHeads(Files& files, const Datensatz& data, const std::string& dataName) {
    writeGenepopHead(files.Genepop, data, "KVA-Output from file: " + dataName + "          ");
    writeGenepopHead(files.GenepopRD, data,
                     "KVA-Output Randomdiscaded from file: " + dataName + "      ");
    writeTwoColumnHead(files.TwoColumns, data);
    writeOneColumnHead(files.OneColumn, data);
}

void writeLine(ResultFile& file, const std::string& line) {
    file.text(line);
    file.character('\n');
}

void writePopulation(Files& files, const Datensatz& data, int pop, const LocusTables& pool) {
    std::array<std::string, 8> room;
    const GenepopLines lines{&room[0], &room[1], &room[2], &room[3],
                             &room[4], &room[5], &room[6], &room[7]};
    files.Genepop.text("POP\n");
    files.GenepopRD.text("POP\n");
    const int individuals = data.GetIndividuals(pop);
    AUSGABE(Message::ExportedPopulation, pop);
    AUSGABE(Message::ExportedIndividuals, individuals);
    for (int ind = 0; ind < individuals; ++ind) {
        writeLine(files.Genepop, data.MakeGenePopLine(pop, ind, 1, 0, pool, lines));
        writeLine(files.GenepopRD, *lines.GenepopRD);
        writeLine(files.TwoColumns, *lines.TwoColumns);
        writeLine(files.OneColumn, *lines.OneColumn);
        writeLine(files.OneColumn, *lines.OneColumn2);
        writeLine(files.Structure, *lines.Structure);
        writeLine(files.Structure, *lines.Structure2);
    }
}

// False if a file cannot be opened, or the alleles could not be counted.
bool writeFiles(Run& run) {
    InternStartRDGen();
    Files files;
    if (run.PopAllele.empty() || !openFiles(run, files)) {
        return false;
    }
    writeHeads(files, *run.Daten, run.DateiKurzName);
    for (int pop = 1; pop <= run.Daten->GetPopAnzahl(); ++pop) {
        writePopulation(files, *run.Daten, pop, run.PopAllele.front());
    }
    return true;
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
        const LociObj& locus = Loci[static_cast<std::size_t>(l)];
        const AllelCount& table = pool[static_cast<std::size_t>(l)];
        const Allel a1 = find(locus.GetDataChromosom(pop, slot), table);
        const Allel a2 = find(locus.GetDataChromosom(pop, slot + 1), table);
        const std::size_t field = labelEnd + kFieldStep * static_cast<std::size_t>(l - begin);
        putField(genepop, field, {a1, a2});
        appendGenotype(lines, wanted, field, choose(a1, a2, locus.isHaploid(pop, slot) == 1));
    }
    return genepop;
}

long writeGenepop(Run& run) {
    constexpr PassFrame kFrame{.Folder = &Folder::FormatsData,
                               .Begin = Message::GenepopBegin,
                               .End = Message::GenepopEnd,
                               .LogText = "Make Genepop files...\n     and datasheet convertion...",
                               .NeedsTables = false};
    return runInFrame(run, kFrame, [&run] { return writeFiles(run) ? 0 : 1; });
}

} // namespace kva
