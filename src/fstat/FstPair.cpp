// Fst, Fit and Fis of population pairs (Weir and Cockerham 1984), and the sheet with
// Fst per locus and pair:
//
//      		fca8	fca23
//      P01	P02	 0.07821	n.d.
#include "base/pairindex.h"
#include "fstat/passes.h"
#include "fstat/wc84.h"
#include "output/sheet.h"
#include "run/run.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace kva {

namespace {

// The tables of one locus: the alleles to sum over and the two samples.
struct PairTables {
    const AllelCount& pool;
    const AllelCount& t1;
    const AllelCount& t2;
};

PairTables pairTables(const SampleTables& tab, long idx1, long idx2, std::size_t l) {
    return {tab[0][l], tab[idx1 + 1][l], tab[idx2 + 1][l]};
}

std::size_t rowsOf(const AllelCount& table) {
    return static_cast<std::size_t>(table.AnzAllele);
}

// Copies of an allele; 0 where the sample does not have it.
int32_t copiesOf(const AllelCount& table, int allel) {
    return std::max(table.GetAllelCount(table.GetAllelNummer(allel) - 1), 0);
}

// Room for the copies of each allele of a locus.
class AlleleCounts {
  public:
    void read(const PairTables& t) {
        const std::size_t steps = (rowsOf(t.pool) + kAlleleStep - 1) / kAlleleStep;
        sample1.assign(steps * kAlleleStep, 0);
        sample2.assign(steps * kAlleleStep, 0);
        fill(t.pool, t.t1, sample1);
        fill(t.pool, t.t2, sample2);
    }

    std::vector<int32_t> sample1;
    std::vector<int32_t> sample2;

  private:
    // One walk along both tables where both ascend; else each allele is looked up.
    static void fill(const AllelCount& pool, const AllelCount& sample,
                     std::vector<int32_t>& counts) {
        const bool ascending = pool.isSorted() && sample.isSorted();
        auto row = sample.Allele.begin();
        const auto end = row + sample.AnzAllele;
        auto count = counts.begin();
        for (const AllelEintrag& allele : std::span(pool.Allele).first(rowsOf(pool))) {
            if (!ascending) {
                *count = copiesOf(sample, allele.Nummer);
            } else {
                while (row != end && row->Nummer < allele.Nummer) {
                    ++row;
                }
                *count = row != end && row->Nummer == allele.Nummer ? row->Anzahl : 0;
            }
            ++count;
        }
    }
};

std::optional<VarianceComponents> locusComponents(const PairTables& t, HRule rule,
                                                  AlleleCounts& room) {
    const HRule choice = pairRule(rule, t.t1, t.t2);
    room.read(t);
    return pairComponents({t.t1.AnzGesamt, t.t2.AnzGesamt, sampleH(choice, t.t1),
                           sampleH(choice, t.t2), room.sample1, room.sample2});
}

void writeLocus(ResultFile& sheet, bool defined, double fst) {
    if (defined) {
        sheet.character('\t');
        sheet.fixed(fst, 5, 8);
    } else {
        writeTabNd(sheet);
    }
}

void storePair(FTriple& f, long i, long j, const FValues& values) {
    for (std::size_t s = 0; s < f.size(); ++s) {
        f[s](static_cast<int32_t>(i), static_cast<int32_t>(j)) = values[s];
        f[s](static_cast<int32_t>(j), static_cast<int32_t>(i)) = values[s];
    }
}

// The log-likelihood ratio of one locus, half of it: sum of c ln(c / (N e)).
double likelihoodRatio(const PairTables& t) {
    const double N1 = std::max(t.t1.AnzGesamt, 0);
    const double N2 = std::max(t.t2.AnzGesamt, 0);
    double G = 0.0;
    for (int32_t row = 0; row < t.pool.AnzAllele; ++row) {
        const int32_t allel = t.pool.Allele[row].Nummer;
        const double c1 = copiesOf(t.t1, allel);
        const double c2 = copiesOf(t.t2, allel);
        const double e = (c1 + c2) / (N1 + N2);
        G += c1 > 0.0 ? c1 * std::log(c1 / (N1 * e)) : 0.0;
        G += c2 > 0.0 ? c2 * std::log(c2 / (N2 * e)) : 0.0;
    }
    return G;
}

} // namespace

void estimatePair(const Run& run, long i, long j, FTriple& f, const SampleTables& tab, long nLoci,
                  long idx1, long idx2, ResultFile* locusFile, CMatrix& locusTable) {
    const HRule rule = hRule(run.FstMask);
    const bool toTable = (run.FstMask & (FstBit::LocusTable | FstBit::Heterogeneity)) != 0;
    const bool toFile = locusFile != nullptr && hasBit(run.FstMask, FstBit::PerLocus);
    const int32_t column =
        ConvertPoptoPoint(static_cast<int>(i), static_cast<int>(j), static_cast<int>(run.AnzPop));
    AlleleCounts room;
    FSums sums;
    for (long l = 0; l < nLoci; ++l) {
        const std::optional<VarianceComponents> v =
            locusComponents(pairTables(tab, idx1, idx2, static_cast<std::size_t>(l)), rule, room);
        const std::optional<double> fst = v ? locusFst(*v) : std::nullopt;
        if (v) {
            sums.add(*v);
        }
        const double value = fst.value_or(run.DistFehlerwert);
        if (toTable) {
            locusTable(static_cast<int32_t>(l), column) = value;
        }
        if (toFile) {
            writeLocus(*locusFile, fst.has_value(), value);
        }
    }
    storePair(f, i, j, sums.values(run.DistFehlerwert));
}

int estimatePairs(Run& run, FTriple& f, const SampleTables& tab, CMatrix& locusTable) {
    if (tab.empty()) {
        return 1;
    }
    ResultFile sheet;
    if (hasBit(run.FstMask, FstBit::PerLocus)) {
        sheet = run.OpenResult("Fst_per_locus.xls", "wb");
        sheet.character('\t');
        run.Daten->LociNamenK(sheet);
        if (run.DatenFormat == 2) {
            sheet.character('\t');
            run.Daten->LociNamenK2(sheet);
        }
    }
    for (CMatrix& matrix : f) {
        matrix.Fill(0.0);
    }
    for (int i = 0; i + 1 < run.AnzPop; ++i) {
        for (int j = i + 1; j < run.AnzPop; ++j) {
            sheet.text(orEmpty(run.Daten->GetPopName(i + 1)) + "\t" +
                       orEmpty(run.Daten->GetPopName(j + 1)));
            estimatePair(run, i, j, f, tab, run.AnzLoci, i, j, &sheet, locusTable);
            sheet.character('\n');
        }
    }
    return 0;
}

void logLikelihoodRatio(long i, long j, FTriple& f, const SampleTables& tab, long nLoci, long idx1,
                        long idx2) {
    double G = 0.0;
    for (long l = 0; l < nLoci; ++l) {
        const PairTables t = pairTables(tab, idx1, idx2, static_cast<std::size_t>(l));
        if (t.t1.AnzAllele > 0 && t.t2.AnzAllele > 0) {
            G += likelihoodRatio(t);
        }
    }
    storePair(f, i, j, {2.0 * G, 2.0 * G, 2.0 * G});
}

} // namespace kva
