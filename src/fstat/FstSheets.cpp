// Sheets of F-statistics. "FST_WC84.txt" has the shape of a distance matrix:
//
//      3
//             P01  0.00000  0.13077 -32767.00000
//
// the .xls sheets hold a row a population, name first, "n.d." where there is no value.
#include "fstat/FstSheets.h"

#include "output/sheet.h"
#include "run/run.h"

namespace kva {

namespace {

constexpr double kSignificant = 0.05; // largest corrected p-value that is shown

// Calls cell(row, column) for all cells of a sheet with a row a population; `label` writes
// the head of a row.
template <class Label, class Cell>
void writeRows(const Run& run, ResultFile& sheet, Label&& label, Cell&& cell) {
    for (int32_t row = 0; row < run.AnzPop; ++row) {
        label(orEmpty(run.Daten->GetPopName(row + 1)));
        for (int32_t column = 0; column < run.AnzPop; ++column) {
            cell(row, column);
        }
        sheet.character('\n');
    }
}

// Rows of a sheet: the whole name, then the cells.
template <class Cell> void writeSheetRows(const Run& run, ResultFile& sheet, Cell&& cell) {
    writeRows(
        run, sheet, [&](const std::string& name) { sheet.text(name); }, cell);
}

// A matrix: the number of populations, then rows of the name cut to 10 characters and the cells.
void writeMatrix(const Run& run, ResultFile& file, const CMatrix& matrix) {
    file.print("%d\n", run.AnzPop);
    writeRows(
        run, file, [&](const std::string& name) { file.text(populationLabel(name)); },
        [&](int32_t row, int32_t column) {
            file.character(' ');
            file.fixed(matrix(row, column), 5, 8);
        });
}

void writeTabValue(ResultFile& sheet, bool defined, double value) {
    if (defined) {
        writeTabReal(sheet, value);
    } else {
        writeTabNd(sheet);
    }
}

// A sheet of means: a cell is undefined where it is so in `tester`.
void writeMeanSheet(const Run& run, ResultFile sheet, const CMatrix& matrix,
                    const CMatrix& tester) {
    sheet.print("%d\n", run.AnzPop);
    writeSheetRows(run, sheet, [&](int32_t row, int32_t column) {
        writeTabValue(sheet, tester(row, column) != run.DistFehlerwert, matrix(row, column));
    });
    sheet.character('\n');
}

// The cell of a p-value: below the diagonal stands the corrected one.
void writePCell(ResultFile& sheet, int32_t row, int32_t column, double p) {
    if (column < row && p > kSignificant) {
        sheet.text("\tn.s.");
    } else {
        writeTabReal(sheet, p);
    }
}

// A row of "GlobFst.xls": its words over all loci and for one locus, its places in the tables.
struct GlobalRow {
    const char* allLoci;
    const char* oneLocus;
    std::size_t wert;
    int pValue; // -1: none
};

constexpr GlobalRow kGlobalRows[] = {
    {"global Fst over all loci:", "global Fst:", FRow::Fst, 0},
    {"global Fit over all loci:", "global Fit: ", FRow::Fit, -1},
    {"global Fis over all loci:", "global Fis: ", FRow::Fis, -1},
    {"Gst over all loci:", "Gst:", FRow::Gst, 1},
    {"Gst' over all loci:", "Gst':", FRow::GstStrich, 2},
};

// Writes "\tvalue", with permutations also "\tp", and the line end.
class GlobalRowEnd {
  public:
    GlobalRowEnd(const Run& run, ResultFile& sheet) : Source(run), Sheet(sheet) {}

    template <class PValue> void write(const GlobalRow& zeile, double wert, PValue&& pValue) {
        writeTabReal(Sheet, wert);
        if (Source.Permutationen > 0 && zeile.pValue >= 0) {
            const double p = pValue(zeile.pValue);
            writeTabValue(Sheet, p != Source.DistFehlerwert, p);
        }
        Sheet.character('\n');
    }

  private:
    const Run& Source;
    ResultFile& Sheet;
};

void writeGlobalLocus(const Run& run, ResultFile& sheet, const GlobalResult& result, int32_t l) {
    const std::string name = orEmpty(run.Daten->GetLociName(l + 1));
    sheet.text("Locus: " + name);
    if (run.DatenFormat == 2) {
        sheet.text("  /  " + orEmpty(run.Daten->GetLociName2OrFirst(l + 1)));
    }
    sheet.character('\n');
    for (const GlobalRow& zeile : kGlobalRows) {
        sheet.text(name + "\t" + zeile.oneLocus);
        GlobalRowEnd(run, sheet)
            .write(zeile, result.locus(static_cast<int32_t>(zeile.wert), l),
                   [&](int p) { return result.pLocus(p, l); });
    }
}

} // namespace

bool writeFstMatrices(Run& run, const FTriple& f) {
    const char* const names[] = {"FST_WC84.txt", "FIT_WC84.txt", "FIS_WC84.txt"};
    for (std::size_t s = 0; s < f.size(); ++s) {
        ResultFile file = run.OpenResult(names[s], "wb+");
        if (s == 0 && !file.isOpen()) {
            return false;
        }
        writeMatrix(run, file, f[s]);
        file.character('\n');
    }
    return true;
}

bool writeFstMeans(Run& run, const FTriple& f, const CMatrix& untergrenze,
                   const CMatrix& obergrenze) {
    const char* const names[] = {"FST_WC84_MEAN.xls", "FIT_WC84_MEAN.xls", "FIS_WC84_MEAN.xls"};
    for (std::size_t s = 0; s < f.size(); ++s) {
        ResultFile sheet = run.OpenResult(names[s], "wb+");
        if (s == 0 && !sheet.isOpen()) {
            return false;
        }
        writeMeanSheet(run, std::move(sheet), f[s], f[s]);
    }
    if (hasBit(run.FstMask, FstBit::Confidence)) {
        writeMeanSheet(run, run.OpenResult("FST_WC84_OG.xls", "wb+"), obergrenze, f[0]);
        writeMeanSheet(run, run.OpenResult("FST_WC84_UG.xls", "wb+"), untergrenze, f[0]);
    }
    return true;
}

bool writeFstPValues(Run& run, const FTriple& f, const FTriple& p) {
    ResultFile sheet = run.OpenResult("FST_WC84-pValue.xls", "wb+");
    if (!sheet.isOpen()) {
        return false;
    }
    const CMatrix& fst = f[0];
    sheet.text("Fst-values:\n");
    writeSheetRows(run, sheet, [&](int32_t row, int32_t column) {
        writeTabValue(sheet, fst(row, column) != run.DistFehlerwert, fst(row, column));
    });
    sheet.text("\n\nP-values:\n");
    writeSheetRows(run, sheet, [&](int32_t row, int32_t column) {
        if (fst(row, column) == run.DistFehlerwert) {
            writeTabNd(sheet);
        } else {
            writePCell(sheet, row, column, p[0](row, column));
        }
    });
    sheet.character('\n');
    return true;
}

void writeGlobalFst(Run& run, const GlobalResult& result) {
    const bool tested = run.Permutationen > 0;
    ResultFile sheet = run.OpenResult("GlobFst.xls", "wb+");
    sheet.text("Global Fst of Datafile: " + run.DateiKurzName + "\n");
    if (tested) {
        sheet.print("Number of permutations is: %d\n", run.Permutationen);
    }
    sheet.character('\n');
    sheet.text(tested ? "\tValues\tp-Values\n" : "");
    for (const GlobalRow& zeile : kGlobalRows) {
        sheet.text(zeile.allLoci);
        GlobalRowEnd(run, sheet).write(zeile, result.values[zeile.wert], [&](int p) {
            return result.pValues[p];
        });
    }
    sheet.text(tested ? "\t\tValues\tp-Values\n" : "");
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        writeGlobalLocus(run, sheet, result, l);
    }
}

void writeBetaSheets(Run& run, const CMatrix& beta) {
    ResultFile sheet = run.OpenResult("Beta_POP.xls", "wb+");
    ResultFile file = run.OpenResult("Betaij_POP.txt", "wb+");
    for (int pop = 1; pop <= run.AnzPop; ++pop) {
        sheet.text("\t" + orEmpty(run.Daten->GetPopName(pop)));
    }
    sheet.character('\n');
    writeSheetRows(run, sheet,
                   [&](int32_t row, int32_t column) { writeTabReal(sheet, beta(row, column)); });
    CMatrix pairs = beta;
    for (int32_t pop = 0; pop < run.AnzPop; ++pop) {
        pairs(pop, pop) = 0.0;
    }
    writeMatrix(run, file, pairs);
}

} // namespace kva
