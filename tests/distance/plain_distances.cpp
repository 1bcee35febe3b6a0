#include "distance/plain_distances.h"

#include "fstat/randsci.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace kva;

namespace kva_test {

const std::array<const char*, kOutputs> kStems = {"POSA", "FSS", "ADA", "KSC", "DMS",
                                                  "ASD",  "CAS", "DAN", "DSG"};
const std::array<uint32_t, kOutputs> kBits = {0x2, 0x4, 0x8, 0x10, 0x20, 0x40, 0x80, 0x80, 0x100};

namespace {

// Layers of the sums, given out in the order of the outputs.
enum Layer { LPS, LFS, LAD, LKF, LMU, LD1, LDC, LDA, LD, LD2 };

constexpr double kPi = 3.141592654;

std::string printed(const char* format, double value) {
    char text[400];
    (void)std::snprintf(text, sizeof text, format, value);
    return text;
}

// The place of an allele, -1 if it is not there.
int searched(const AllelCount& table, int allele) {
    for (int row = 0; row < table.AnzAllele; ++row) {
        if (table.Allele[static_cast<std::size_t>(row)].Nummer == allele) {
            return row;
        }
    }
    return -1;
}

double frequency(const AllelCount& table, int row) {
    return double(table.Allele[static_cast<std::size_t>(row)].Anzahl) / table.AnzGesamt;
}

std::string name(const std::string* given) {
    return given != nullptr ? *given : std::string();
}

} // namespace

PlainDistances::PlainDistances(const AnalyseDataObj& run, bool individuals)
    : Run(run), Individuals(individuals), N(individuals ? run.AnzInd : run.AnzPop) {}

const AllelCount& PlainDistances::table(int sample, int locus) const {
    const auto l = static_cast<std::size_t>(locus);
    return Individuals ? Run.IndAllele[static_cast<std::size_t>(sample)][l]
                       : Run.PopAllele[static_cast<std::size_t>(sample) + 1][l];
}

double PlainDistances::sim(double similarity) const {
    return (Run.GeneralMask & 0x8000U) != 0 ? -std::log(similarity) : 1.0 - similarity;
}

// --- Sums ------------------------------------------------------------------------------

void PlainDistances::sum(const std::vector<int>& loci) {
    Pairs.assign(static_cast<std::size_t>(N) * static_cast<std::size_t>(N), Pair());
    startSheets();
    for (const int locus : loci) {
        addLocus(locus);
    }
}

void PlainDistances::startSheets() {
    std::string head = Run.DatenFormat == 2 ? "\t" : "";
    std::string second = head;
    for (int i = 1; i < Run.AnzPop; ++i) {
        for (int j = i + 1; j <= Run.AnzPop; ++j) {
            head.append("\t").append(name(Run.Daten->GetPopName(i)));
            second.append("\t").append(name(Run.Daten->GetPopName(j)));
        }
    }
    Sheets.fill(head + "\n" + second + "\n");
}

void PlainDistances::addLocus(int locus) {
    for (std::string& sheet : Sheets) {
        sheet += name(Run.Daten->GetLociName(locus + 1));
        if (Run.DatenFormat == 2) {
            sheet.append("\t").append(name(Run.Daten->GetLociName2(locus + 1)));
        }
    }
    if (Run.PopAllele[0][static_cast<std::size_t>(locus)].AnzAllele >= 1) {
        for (int i = 0; i < N - 1; ++i) {
            for (int j = i + 1; j < N; ++j) {
                addPair(i, j, locus);
            }
        }
    }
    for (std::string& sheet : Sheets) {
        sheet += "\n";
    }
}

void PlainDistances::addPair(int i, int j, int locus) {
    const AllelCount& a = table(i, locus);
    const AllelCount& b = table(j, locus);
    if (a.AnzAllele < 1 || b.AnzAllele < 1) {
        for (std::string& sheet : Sheets) {
            sheet += "\tn.d.";
        }
        return;
    }
    const double ni = a.AnzGesamt;
    const double nj = b.AnzGesamt;
    const bool withD = !Individuals || (ni > 1 && nj > 1);
    Pair& pair = Pairs[place(i, j)];
    AtLocus at;
    pair.Nenner[LPS] += 1.0;
    pair.Nenner[LKF] += 1.0;
    pair.Nenner[LDC] += 1.0;
    if (withD) {
        pair.Nenner[LD2] += 1.0;
    }
    addMeans(a, b, locus, at, pair);
    const AllelCount& pool = Run.PopAllele[0][static_cast<std::size_t>(locus)];
    for (int row = 0; row < pool.AnzAllele; ++row) {
        addAllele(pool.Allele[static_cast<std::size_t>(row)].Nummer, a, b, withD, at, pair);
    }
    const double chord = 2.0 * (1.0 - at.B);
    pair.Summe[LDC] += std::sqrt(chord < 0.0 ? 0.0 : chord);
    pair.Summe[LDA] += at.B;
    if (withD) {
        at.Jx = (at.Jx * ni - 1.0) / (ni - 1.0);
        at.Jy = (at.Jy * nj - 1.0) / (nj - 1.0);
        pair.Summe[LD] += at.Jx;
        pair.Summe[LD2] += at.Jy;
    }
    writeSheetCells(at);
}

double PlainDistances::variance(const AllelCount& table, double mean) const {
    if (Individuals) {
        return 0.0;
    }
    return table.isHaploid() && table.RDDurchlauf >= 1 ? table.RDVar / table.RDDurchlauf
                                                       : table.CalcVar(mean);
}

void PlainDistances::addMeans(const AllelCount& a, const AllelCount& b, int locus, AtLocus& at,
                              Pair& pair) {
    const double mi = a.CalcMean();
    const double mj = b.CalcMean();
    if (mi <= -1.0 || mj <= -1.0) {
        return;
    }
    int length = Run.Daten->GetLociRepeatMuster(locus + 1);
    if (length < 1 || Individuals) {
        length = 1;
    }
    const double r = length;
    at.Dad = std::fabs(mi - mj) / r;
    at.Dmu = (mi - mj) * (mi - mj) / (r * r);
    at.D1 = (variance(a, mi) + (mi - mj) * (mi - mj) + variance(b, mj)) / (r * r);
    pair.Nenner[LAD] += 1.0;
    pair.Nenner[LMU] += 1.0;
    pair.Nenner[LD1] += 1.0;
    pair.Summe[LAD] += at.Dad;
    pair.Summe[LMU] += at.Dmu;
    pair.Summe[LD1] += at.D1;
}

void PlainDistances::addAllele(int allele, const AllelCount& a, const AllelCount& b, bool withD,
                               AtLocus& at, Pair& pair) const {
    const int pi = searched(a, allele);
    const int pj = searched(b, allele);
    const double x = pi >= 0 ? frequency(a, pi) : 0.0;
    const double y = pj >= 0 ? frequency(b, pj) : 0.0;
    if (pi >= 0 && pj >= 0) {
        at.S += std::min(x, y);
        pair.Summe[LPS] += std::min(x, y);
        at.I += 1.0;
        pair.Summe[LFS] += 1.0;
        at.SK += x * y;
        pair.Summe[LKF] += x * y;
        at.B += std::sqrt(x * y);
    }
    if (pi >= 0 || pj >= 0) {
        at.U += 1.0;
        pair.Nenner[LFS] += 1.0;
    }
    if (withD && pi >= 0 && pj >= 0) {
        at.Jxy += x * y;
        pair.Nenner[LD] += x * y;
    }
    if (withD && pi >= 0) {
        at.Jx += x * x;
    }
    if (withD && pj >= 0) {
        at.Jy += y * y;
    }
}

void PlainDistances::writeSheetCells(const AtLocus& at) {
    const double chord = 2.0 * (1.0 - at.B);
    const std::array<double, kOutputs> cells = {sim(at.S),
                                                sim(at.I / at.U),
                                                at.Dad,
                                                sim(at.SK),
                                                at.Dmu,
                                                at.D1,
                                                2.0 * std::sqrt(chord < 0.0 ? 0.0 : chord) / kPi,
                                                1.0 - at.B,
                                                sim(at.Jxy / std::sqrt(at.Jx * at.Jy))};
    for (std::size_t output = 0; output < kOutputs; ++output) {
        const bool difference = output == ADA || output == DMS || output == ASD;
        Sheets[output] += difference && cells[output] == -1.0 ? std::string("\tn.d.")
                                                              : printed("\t%f", cells[output]);
    }
}

// --- Cells -------------------------------------------------------------------------------

double PlainDistances::similarityCell(int layer, int r, int c) const {
    const auto k = static_cast<std::size_t>(layer);
    if ((Run.GeneralMask & 0x8000U) == 0) {
        if (at(r, c).Nenner[k] > 0) {
            return 1.0 - at(r, c).Summe[k] / at(r, c).Nenner[k];
        }
        if (r == c) {
            return 0.0;
        }
        if (at(c, r).Nenner[k] <= 0) {
            return Run.DistFehlerwert;
        }
        return 1.0 - at(c, r).Summe[k] / at(c, r).Nenner[k];
    }
    if (r == c) {
        return 0.0;
    }
    const Pair& pair = at(std::min(r, c), std::max(r, c));
    if (pair.Nenner[k] <= 0) {
        return Run.DistFehlerwert;
    }
    return pair.Summe[k] == 0 ? Run.DistUnendlich : -std::log(pair.Summe[k] / pair.Nenner[k]);
}

double PlainDistances::valueCell(int output, int r, int c) const {
    const auto k = static_cast<std::size_t>(output == DAN ? LDC : output); // loci counted
    const auto value = [&](const Pair& pair) {
        if (output == CAS) {
            return 2.0 * pair.Summe[k] / (pair.Nenner[k] * kPi);
        }
        if (output == DAN) {
            return 1.0 - pair.Summe[LDA] / pair.Nenner[k];
        }
        return pair.Summe[k] / pair.Nenner[k];
    };
    if (at(r, c).Nenner[k] > 0) {
        return value(at(r, c));
    }
    if (r == c) {
        return 0.0;
    }
    return at(c, r).Nenner[k] <= 0 ? Run.DistFehlerwert : value(at(c, r));
}

double PlainDistances::neiCell(int r, int c) const {
    if (r == c) {
        return 0.0;
    }
    const Pair& pair = at(std::min(r, c), std::max(r, c));
    if (pair.Nenner[LD2] <= 0) {
        return Run.DistFehlerwert;
    }
    return 1.0 - pair.Nenner[LD] / std::sqrt(pair.Summe[LD] * pair.Summe[LD2]);
}

double PlainDistances::neiLogCell(int r, int c) const {
    const auto value = [](const Pair& pair) {
        return -std::log(pair.Nenner[LD] / std::sqrt(pair.Summe[LD] * pair.Summe[LD2]));
    };
    if (at(r, c).Nenner[LD] > 0) {
        return value(at(r, c));
    }
    if (r == c) {
        return 0.0;
    }
    if (at(c, r).Nenner[LD] > 0) {
        return value(at(c, r));
    }
    return at(c, r).Nenner[LD2] <= 0 ? Run.DistFehlerwert : Run.DistUnendlich;
}

double PlainDistances::cell(int output, int r, int c) const {
    switch (output) {
    case POSA:
        return similarityCell(LPS, r, c);
    case FSS:
        return similarityCell(LFS, r, c);
    case KSC:
        return similarityCell(LKF, r, c);
    case DSG:
        return (Run.GeneralMask & 0x8000U) == 0 ? neiCell(r, c) : neiLogCell(r, c);
    default:
        return valueCell(output, r, c);
    }
}

// --- Files ---------------------------------------------------------------------------------

std::vector<std::string> PlainDistances::labels() const {
    std::vector<std::string> labels;
    char text[64];
    int p = 1;
    int k = 1;
    for (int row = 0; row < N; ++row) {
        if (!Individuals) {
            (void)std::snprintf(text, sizeof text, "%10.10s",
                                name(Run.Daten->GetPopName(row + 1)).c_str());
        } else {
            (void)std::snprintf(text, sizeof text, "%5.5s%3.3d",
                                name(Run.Daten->GetPopName(p)).c_str(), k);
            if (++k > Run.Daten->GetAnzDatenChromosome(p) / 2) {
                ++p;
                k = 1;
            }
        }
        labels.emplace_back(text);
    }
    return labels;
}

std::string PlainDistances::matrix(int output, bool nexus) const {
    std::string text = nexus ? "#NEXUS\n[!user defined distances]\nBegin distances;\n"
                               "Dimensions ntax=" +
                                   std::to_string(N) + ";\nformat triangle = both;\nmatrix\n"
                             : std::to_string(N) + "\n";
    const std::vector<std::string> label = labels();
    for (int r = 0; r < N; ++r) {
        text += label[static_cast<std::size_t>(r)];
        for (int c = 0; c < N; ++c) {
            text += printed(" %8.5f", cell(output, r, c));
        }
        if (nexus && r == N - 1) {
            text += ";\nend;\n[! nj with user defined distances]\nBegin paup;\n"
                    "dset distance=user;\nnj;\nend;\n";
        }
        text += "\n";
    }
    return nexus ? text : text + "\n";
}

namespace {

std::vector<int> drawnLoci(const AnalyseDataObj& run, int bootstraps) {
    std::vector<int> loci;
    const int passes = run.BootLoci > 0 && bootstraps > 1 ? run.BootLoci : run.AnzLoci;
    for (int pass = 0; pass < passes; ++pass) {
        int locus = pass;
        if (bootstraps > 1) {
            locus = static_cast<int>(std::floor(random2(static_cast<float>(run.AnzLoci))));
            locus = std::clamp(locus, 0, run.AnzLoci - 1);
        }
        loci.push_back(locus);
    }
    return loci;
}

} // namespace

std::vector<PlainFile> plainPass(const AnalyseDataObj& run, bool individuals, int bootstraps,
                                 long seed) {
    const bool nexus = individuals && (run.PopDistMask & 0x800U) != 0 && bootstraps < 2;
    const bool sheets = !individuals && (run.PopDistMask & 0x400U) != 0;
    std::array<std::string, kOutputs> matrices;
    std::array<std::string, kOutputs> loci;
    PlainDistances distances(run, individuals);
    srand2(seed);
    for (int replicate = 0; replicate < bootstraps; ++replicate) {
        distances.sum(drawnLoci(run, bootstraps));
        for (int output = 0; output < kOutputs; ++output) {
            matrices[static_cast<std::size_t>(output)] += distances.matrix(output, nexus);
            loci[static_cast<std::size_t>(output)] += distances.sheet(output);
        }
    }
    std::vector<PlainFile> files;
    for (std::size_t output = 0; output < kOutputs; ++output) {
        if ((run.PopDistMask & kBits[output]) == 0) {
            continue;
        }
        const std::string stem = kStems[output];
        files.push_back({stem + (individuals ? "_Ind.txt" : "_Pop.txt"), matrices[output]});
        if (sheets) {
            files.push_back({stem + "_Pop_Loci.xls", loci[output]});
        }
    }
    return files;
}

std::string distanceDifference(LoadedRun& run, bool individuals, int bootstraps, long seed) {
    for (const PlainFile& file : plainPass(*run, individuals, bootstraps, seed)) {
        const std::string bytes = run.resultFile("Distance_data/" + file.Name);
        if (bytes != file.Bytes) {
            return file.Name + "\nthe pass:\n" + bytes + "\nplainly:\n" + file.Bytes;
        }
    }
    return {};
}

} // namespace kva_test
