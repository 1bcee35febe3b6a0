// "LocusFHeterogeneity.xls":
//
//      Heterogeneity in F-Statistics among loci
//      calculated by resampling (with replacement) over all loci
//
//      Analysis takes 8 Loci out of 9 Loci total.
//      KVA made 1000 replikas.
//
// and a table, here without the mean and the upper limit of the 99 % part:
//
//      			Fst				Fst
//      		95% lower	mean	95% upper		99% lower
//      P01	P02	0.069180	0.130774	0.183466		0.050404
#include "fstat/FstHeterogeneity.h"

#include "base/console.h"
#include "data/ftriple.h"
#include "fstat/CConfidenz.h"
#include "fstat/randsci.h"
#include "run/run.h"

#include <array>
#include <span>

namespace kva {

namespace {

constexpr const char* kOfPairs = "made";
constexpr const char* kOfAll = "makes";

void writeHead(const Run& run, ResultFile& sheet, const char* verb) {
    sheet.text("Heterogeneity in F-Statistics among loci\n"
               "calculated by resampling (with replacement) over all loci\n\n");
    sheet.print("Analysis takes %d Loci out of %d Loci total.\n",
                lociPerReplica(run.ReplikaLoci, run.AnzLoci), run.AnzLoci);
    sheet.print("KVA %s %d replikas.\n\n", verb, run.Replikate);
}

// Says that a row has no values, since no locus is defined.
void tellNoLocus(Run& run, const std::string& row) {
    const std::string line =
        "No locus with a defined Fst, heterogeneity among loci is n.d.: " + row;
    console() << '\n' << line << std::endl;
    run.LogDatei.text(line + "\n");
    run.LogDatei.flush();
}

// A locus drawn among those where `value` is defined.
template <class Value> int32_t drawLocus(const Run& run, Value&& value) {
    int32_t l = drawIndex(run.AnzLoci);
    while (value(l) == run.DistFehlerwert) {
        l = drawIndex(run.AnzLoci);
    }
    return l;
}

template <class Value> bool anyDefined(const Run& run, Value&& value) {
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        if (value(l) != run.DistFehlerwert) {
            return true;
        }
    }
    return false;
}

// Limits of one statistic.
struct Limits {
    double lower = 0.0;
    double upper = 0.0;
};

Limits limits95(const CConfidenz& values) {
    Limits limits;
    values.GetIntervall95(limits.upper, limits.lower); // complete by now
    return limits;
}

Limits limits99(const CConfidenz& values) {
    Limits limits;
    values.GetIntervall99(limits.upper, limits.lower);
    return limits;
}

void writeTriple(ResultFile& sheet, const Limits& limits, double mean) {
    sheet.print("%f\t%f\t%f\t", limits.lower, mean, limits.upper);
}

// The rest of a row: the 95 % triples of all statistics, then those of 99 %.
void writeTriples(ResultFile& sheet, std::span<const CConfidenz> values) {
    for (std::size_t s = 0; s < values.size(); ++s) {
        sheet.text(s > 0 ? "\t" : "");
        writeTriple(sheet, limits95(values[s]), values[s].GetMittel());
    }
    for (const CConfidenz& value : values) {
        sheet.character('\t');
        writeTriple(sheet, limits99(value), value.GetMittel());
    }
}

// The rest of a row without values, for `statistics` F-statistics.
void writeNoTriples(ResultFile& sheet, int statistics) {
    for (int triple = 0; triple < 2 * statistics; ++triple) {
        sheet.text(triple > 0 ? "\t" : "");
        sheet.text("n.d.\tn.d.\tn.d.\t");
    }
}

// One pair: replicas of the mean Fst of the drawn loci.
void writePair(Run& run, ResultFile& sheet, const CMatrix& locusTable, int32_t pair,
               const std::string& label) {
    const auto fst = [&](int32_t l) { return locusTable(l, pair); };
    if (!anyDefined(run, fst)) {
        writeNoTriples(sheet, 1);
        tellNoLocus(run, label);
        return;
    }
    const int32_t loci = lociPerReplica(run.ReplikaLoci, run.AnzLoci);
    std::array<CConfidenz, 1> values;
    values[0].Init(run.Replikate);
    for (int32_t replica = 0; replica < run.Replikate; ++replica) {
        double sum = 0.0;
        for (int32_t n = 0; n < loci; ++n) {
            sum += fst(drawLocus(run, fst));
        }
        values[0].DatenUebergabe(sum / loci);
    }
    writeTriples(sheet, values);
}

// All populations: replicas of the mean Fst, Fit and Fis of the drawn loci.
std::array<CConfidenz, 3> globalReplicas(const Run& run, const CMatrix& locusTable) {
    const int32_t loci = lociPerReplica(run.ReplikaLoci, run.AnzLoci);
    std::array<CConfidenz, 3> values;
    for (CConfidenz& value : values) {
        value.Init(run.Replikate);
    }
    for (int32_t replica = 0; replica < run.Replikate; ++replica) {
        FValues sum = {0.0, 0.0, 0.0};
        for (int32_t n = 0; n < loci; ++n) {
            const int32_t locus =
                drawLocus(run, [&](int32_t l) { return locusTable(FRow::Fst, l); });
            for (std::size_t s = 0; s < sum.size(); ++s) {
                sum[s] += locusTable(static_cast<int32_t>(s), locus);
            }
        }
        for (std::size_t s = 0; s < sum.size(); ++s) {
            values[s].DatenUebergabe(sum[s] / loci);
        }
    }
    return values;
}

} // namespace

int32_t lociPerReplica(int32_t replicaLoci, int32_t anzLoci) {
    int32_t loci = replicaLoci < 1 ? replicaLoci + anzLoci : replicaLoci;
    if (loci > anzLoci) {
        loci = anzLoci - 1;
    }
    if (loci < 1) {
        loci = anzLoci > 1 ? 2 : 1;
    }
    return loci;
}

void writePairHeterogeneity(Run& run, const CMatrix& locusTable, ResultFile& sheet) {
    writeHead(run, sheet, kOfPairs);
    sheet.text("\t\t\tFst\t\t\t\tFst\n"
               "\t\t95% lower\tmean\t95% upper\t\t99% lower\tmean\t99% upper");
    int32_t pair = 0;
    for (int i = 1; i < run.AnzPop; ++i) {
        for (int j = i + 1; j <= run.AnzPop; ++j) {
            const std::string& first = orEmpty(run.Daten->GetPopName(i));
            const std::string& second = orEmpty(run.Daten->GetPopName(j));
            sheet.print("\n%s\t%s\t", first.c_str(), second.c_str());
            std::string both = first;
            both.append(" and ").append(second);
            writePair(run, sheet, locusTable, pair, both);
            ++pair;
        }
    }
}

void writeGlobalHeterogeneity(Run& run, const CMatrix& locusTable, ResultFile& sheet) {
    if (hasBit(run.FstMask, FstBit::NoPairs)) {
        writeHead(run, sheet, kOfAll);
    }
    sheet.text("\n\n\t\tFst\t\t\t\tFit\t\t\t\tFis\t\t\t\tFst\t\t\t\tFit\t\t\t\tFis\n");
    for (const char* const percent : {"95", "99"}) {
        for (int s = 0; s < 3; ++s) {
            sheet.text(percent[1] == '5' && s == 0 ? "\t" : "\t\t");
            sheet.print("%s%% lower\tmean\t%s%% upper", percent, percent);
        }
    }
    sheet.text("\nGlobal:\t");
    if (anyDefined(run, [&](int32_t l) { return locusTable(FRow::Fst, l); })) {
        writeTriples(sheet, globalReplicas(run, locusTable));
    } else {
        writeNoTriples(sheet, 3);
        tellNoLocus(run, "Global");
    }
    sheet.character('\n');
}

} // namespace kva
