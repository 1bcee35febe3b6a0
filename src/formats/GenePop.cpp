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
#include "control/Ausgabe.h"
#include "formats/GenepopRows.h"
#include "formats/passes.h"
#include "fstat/randsci.h"
#include "run/passframe.h"
#include "run/run.h"

#include <string>

namespace kva {

namespace {

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
    open(files.Structure, data + ".struct");
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

void writePopulation(Files& files, const Datensatz& data, int pop, GenepopRows& rows) {
    files.Genepop.text("POP\n");
    files.GenepopRD.text("POP\n");
    const int individuals = data.GetIndividuals(pop);
    AUSGABE(Message::ExportedPopulation, pop);
    AUSGABE(Message::ExportedIndividuals, individuals);
    for (int ind = 0; ind < individuals; ++ind) {
        const GenepopRowTexts texts = rows.of(pop, ind);
        files.Genepop.text(texts.Genepop);
        files.GenepopRD.text(texts.GenepopRD);
        files.TwoColumns.text(texts.TwoColumns);
        files.OneColumn.text(texts.OneColumn);
        files.OneColumn.text(texts.OneColumn2);
        files.Structure.text(texts.Structure);
        files.Structure.text(texts.Structure2);
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
    GenepopRows rows(*run.Daten, run.PopAllele.front());
    for (int pop = 1; pop <= run.Daten->GetPopAnzahl(); ++pop) {
        writePopulation(files, *run.Daten, pop, rows);
    }
    return true;
}

} // namespace

long writeGenepop(Run& run) {
    constexpr PassFrame kFrame{.Folder = &Folder::FormatsData,
                               .Begin = Message::GenepopBegin,
                               .End = Message::GenepopEnd,
                               .LogText = "Make Genepop files...\n     and datasheet convertion...",
                               .NeedsTables = false};
    return runInFrame(run, kFrame, [&run] { return writeFiles(run) ? 0 : 1; });
}

} // namespace kva
