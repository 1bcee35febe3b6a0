// Counting: from the stored genotypes to the allele tables on which all statistics
// run, and the two count sheets of the folder "Allelecount".
//
// A sheet holds one block per sample ("Total", then the populations), each with a
// pair of columns per locus, the alleles ascending:
//
//      	fca8		fca23
//      Total	117	1	128	2
//      	119	5	130	2
#include "control/Ausgabe.h"
#include "output/passfolder.h"
#include "run/run.h"
#include "stats/passes.h"

#include <algorithm>

namespace kva {

namespace {

int longestTable(const LocusTables& tables) {
    int rows = 0;
    for (const AllelCount& table : tables) {
        rows = std::max(rows, table.AnzAllele);
    }
    return rows;
}

// The rows of one sample in one sheet; `cell` writes a table's pair of cells.
void writeRows(ResultFile& sheet, const LocusTables& tables,
               void (AllelCount::*cell)(ResultFile&, int) const) {
    const int rows = longestTable(tables);
    for (int row = 0; row < rows; ++row) {
        sheet.character('\t');
        for (const AllelCount& table : tables) {
            (table.*cell)(sheet, row);
        }
        sheet.character('\n');
    }
    sheet.character('\n');
}

void writeBlocks(ResultFile& zahl, ResultFile& freq, const std::string& label,
                 const LocusTables& tables) {
    if (zahl.isOpen()) {
        zahl.text(label);
        writeRows(zahl, tables, &AllelCount::AllelZahl);
    }
    if (freq.isOpen()) {
        freq.text(label);
        writeRows(freq, tables, &AllelCount::AllelFreq);
    }
}

// The sorted tables of all loci for population `pop`, or the pool for 0.
LocusTables countSample(const Datensatz& daten, int pop) {
    LocusTables tables(daten.Loci.size());
    for (std::size_t l = 0; l < tables.size(); ++l) {
        daten.Loci[l].AllelCountP(tables[l], pop, 0);
        tables[l].SortAllele();
    }
    return tables;
}

} // namespace

void LociObj::feed(AllelCount& tabelle, int pop) const {
    // Missing alleles go in, too: they keep the two entries of an individual together.
    tabelle.AddAllele(DataSlots(pop), InfoSlots(pop));
}

int LociObj::AllelCountP(AllelCount& tabelle, int pop, int flag) const {
    if (pop == 0 && flag != 0) {
        return 1;
    }
    if (pop >= 1 && flag == 0 && pop <= AnzPop) {
        feed(tabelle, pop);
        return 0;
    }
    // The pool. The pairing of entries runs on through population boundaries: wanted, it shows
    // in one-column data with an odd number of rows.
    for (int population = 1; population <= AnzPop; ++population) {
        feed(tabelle, population);
    }
    return 0;
}

LocusTables Datensatz::AllelCountLT(ResultFile& zahl, ResultFile& freq) const {
    LocusTables tables = countSample(*this, 0);
    writeBlocks(zahl, freq, "Total", tables);
    return tables;
}

LocusTables Datensatz::AllelCountPop(ResultFile& zahl, ResultFile& freq, int pop) const {
    LocusTables tables = countSample(*this, pop);
    writeBlocks(zahl, freq, "\n" + orEmpty(GetPopName(pop)), tables);
    return tables;
}

LocusTables Datensatz::AllelCountInd(int pop, int tier) const {
    constexpr int kRows = 3; // two alleles and the free row; there are very many such tables
    AllelCount empty;
    empty.init(kRows);
    LocusTables tables(Loci.size(), empty);
    for (std::size_t l = 0; l < tables.size(); ++l) {
        const int info = Loci[l].GetInfoChromosom(pop, 2 * tier);
        tables[l].AddAllel(Loci[l].GetDataChromosom(pop, 2 * tier), info);
        tables[l].AddAllel(Loci[l].GetDataChromosom(pop, 2 * tier + 1), info);
        tables[l].SortAllele();
    }
    return tables;
}

int countAlleles(Run& run) {
    AUSGABE(Message::CountBegin);
    PassFolder folder(run, Folder::Allelecount);
    if (!folder.entered() || !run.Daten) {
        return folder.status();
    }
    run.PopAllele.clear();
    ResultFile zahl;
    ResultFile freq;
    if (hasBit(run.GeneralMask, GeneralBit::CountSheet)) {
        zahl = run.OpenResult("Allelecount.xls", "wb");
        run.Daten->LociNamen(zahl, run.DatenFormat - 1);
    }
    if (hasBit(run.GeneralMask, GeneralBit::FrequencySheet)) {
        freq = run.OpenResult("Allelefrequencies.xls", "wb");
        run.Daten->LociNamen(freq, run.DatenFormat - 1);
    }
    run.PopAllele.reserve(run.Daten->GetPopAnzahl() + 1);
    run.PopAllele.push_back(run.Daten->AllelCountLT(zahl, freq));
    for (int pop = 1; pop <= run.Daten->GetPopAnzahl(); ++pop) {
        run.PopAllele.push_back(run.Daten->AllelCountPop(zahl, freq, pop));
        AUSGABE(Message::CountMark, "*");
    }
    zahl.close();
    freq.close();
    run.LogEntry("Count Allels...");
    AUSGABE(Message::CountEnd);
    return 0;
}

bool tablesReady(Run& run) {
    if (run.PopAllele.empty()) {
        countAlleles(run); // tells of a folder that cannot be entered
    }
    return !run.PopAllele.empty();
}

void countIndividualAlleles(Run& run) {
    run.IndAllele.clear();
    run.AnzInd = 0;
    if (!run.Daten) {
        return;
    }
    int slots = 0;
    for (int pop = 1; pop <= run.Daten->GetPopAnzahl(); ++pop) {
        slots += run.Daten->GetAnzDatenChromosome(pop);
    }
    run.AnzInd = slots / 2; // of the sum: odd rows of two populations make one more than there are
    run.IndAllele.reserve(run.AnzInd);
    run.Daten->ForEachTier([&run](int pop, int tier) {
        run.IndAllele.push_back(run.Daten->AllelCountInd(pop, tier));
        AUSGABE(Message::CountMark, "#");
    });
    run.IndAllele.resize(run.AnzInd, LocusTables(run.Daten->Loci.size()));
    run.LogEntry("Count Allels per Individual ...");
}

} // namespace kva
