#include "fstat/plain_tests.h"

#include "base/pairindex.h"
#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <span>

using namespace kva;

namespace kva_test {

namespace {

// Bit `bit` of the flags as 0 or 1.
int flag(const AnalyseDataObj& obj, uint32_t bit) {
    return (obj.FstMask & bit) != 0 ? 1 : 0;
}

// The store of a pairwise test.
struct Store {
    explicit Store(const AnalyseDataObj& obj, std::size_t tables)
        : mix(tables, LocusTables(static_cast<std::size_t>(obj.AnzLoci))),
          permuted(newFTriple(obj.AnzPop)), test(newFTriple(obj.AnzPop)) {
        const auto places = static_cast<std::size_t>(obj.MaxChromosomen);
        for (SampleMap* map : {&map1, &map2}) {
            *map = {std::vector<int32_t>(places), std::vector<int32_t>(places)};
        }
        std::vector<std::vector<long>> ofLocus;
        for (int pop = 1; pop <= obj.AnzPop; ++pop) {
            ofLocus.emplace_back();
            for (long slot = 0; slot < obj.Daten->GetAnzDatenChromosome(pop); ++slot) {
                ofLocus.back().push_back(slot);
            }
        }
        sheet.assign(static_cast<std::size_t>(obj.AnzLoci), ofLocus);
    }

    SampleTables mix;
    FTriple permuted;
    FTriple test;
    SampleMap map1;
    SampleMap map2;
    SlotSheet sheet;
    std::vector<int32_t> buffer;
};

// `p` holds hits; n permutations counted for the pair.
void finish(const AnalyseDataObj& obj, FTriple& p, int i, int j, double n) {
    const double m = (double(obj.AnzPop) * obj.AnzPop - obj.AnzPop) * 0.5;
    for (CMatrix& matrix : p) {
        const double c = matrix(i, j);
        matrix(j, i) = c != 0.0 ? m * c / n : m / n;
        matrix(i, j) = c != 0.0 ? c / n : 1.0 / n;
    }
}

void clear(FTriple& triple) {
    for (CMatrix& matrix : triple) {
        matrix.Fill(0.0);
    }
}

// The tails of one pair: whole lists, sorted after each change.
struct Lists {
    std::vector<double> lower;
    std::vector<double> upper;

    void add(double v) {
        if (v < lower.back()) {
            lower.back() = v;
            std::qsort(lower.data(), lower.size(), sizeof(double), &SortFST);
        }
        if (v > upper.front()) {
            upper.front() = v;
            std::qsort(upper.data(), upper.size(), sizeof(double), &SortFST);
        }
    }
};

} // namespace

void plainPairTest(const AnalyseDataObj& obj, FTriple& p, const FTriple& f, CMatrix& locusTable) {
    Store s(obj, 3);
    clear(p);
    InternStartRDGen();
    for (int k = 0; k < obj.Permutationen; ++k) {
        if (k % 50 == 0) {
            InternStartRDGen();
        }
        clear(s.permuted);
        for (int i = 0; i < obj.AnzPop; ++i) {
            for (int j = i + 1; j < obj.AnzPop; ++j) {
                obj.Daten->AllelMix(obj.PopAllele, s.mix, i, j, s.sheet, s.map1, s.map2,
                                    flag(obj, 0x8), flag(obj, 0x10), flag(obj, 0x20),
                                    flag(obj, 0x100), s.buffer);
                obj.FST_SINGLE_WC84(i, j, s.permuted, s.mix, obj.AnzLoci, 0, 1, nullptr,
                                    locusTable);
                for (std::size_t t = 0; t < 3; ++t) {
                    p[t](i, j) += f[t](i, j) <= s.permuted[t](i, j) ? 1.0 : 0.0;
                }
            }
        }
    }
    for (int i = 0; i < obj.AnzPop; ++i) {
        for (int j = i + 1; j < obj.AnzPop; ++j) {
            finish(obj, p, i, j, obj.Permutationen);
        }
    }
}

void plainDiscardTest(const AnalyseDataObj& obj, FTriple& p, FTriple& f, CMatrix& untergrenze,
                      CMatrix& obergrenze, CMatrix& locusTable) {
    Store s(obj, 6);
    const bool limits = flag(obj, 0x200) != 0;
    const auto k1 = static_cast<std::size_t>(
        std::max(2.0, std::floor(obj.Permutationen * obj.FstAlpha * 0.5 + 1.0)));
    const auto pops = static_cast<std::size_t>(obj.AnzPop);
    std::vector<Lists> lists(
        pops * pops, {std::vector<double>(k1, 100000.0), std::vector<double>(k1, -100000.0)});
    CMatrix valid;
    valid.Resize(obj.AnzPop, obj.AnzPop);
    clear(p);
    clear(f);
    InternStartRDGen();
    const auto onPair = [&](int i, int j) {
        obj.Daten->AllelMixE(obj.PopAllele, s.mix, i, j, s.sheet, s.map1, s.map2, flag(obj, 0x8),
                             flag(obj, 0x10), flag(obj, 0x20), flag(obj, 0x100), s.buffer);
        const SampleTables testTables(s.mix.begin() + 3, s.mix.end());
        obj.FST_SINGLE_WC84(i, j, s.test, testTables, obj.AnzLoci, 0, 1, nullptr, locusTable);
        obj.FST_SINGLE_WC84(i, j, s.permuted, s.mix, obj.AnzLoci, 0, 1, nullptr, locusTable);
        if (s.test[0](i, j) == obj.DistFehlerwert) {
            return;
        }
        valid(i, j) += 1.0;
        if (limits) {
            lists[static_cast<std::size_t>(i) * pops + static_cast<std::size_t>(j)].add(
                flag(obj, 0x400) != 0 ? s.permuted[0](i, j) : s.test[0](i, j));
        }
        for (std::size_t t = 0; t < 3; ++t) {
            f[t](i, j) += s.test[t](i, j);
            p[t](i, j) += s.test[t](i, j) <= s.permuted[t](i, j) ? 1.0 : 0.0;
        }
    };
    for (int k = 0; k < obj.Permutationen; ++k) {
        if (k % 50 == 0) {
            InternStartRDGen();
        }
        obj.CreateNewDataSheetMix(s.sheet);
        for (int i = 0; i < obj.AnzPop; ++i) {
            for (int j = i + 1; j < obj.AnzPop; ++j) {
                onPair(i, j);
            }
        }
    }
    for (int i = 0; i < obj.AnzPop; ++i) {
        for (int j = i + 1; j < obj.AnzPop; ++j) {
            for (CMatrix& matrix : f) {
                matrix(i, j) = valid(i, j) == 0.0 ? obj.DistFehlerwert : matrix(i, j) / valid(i, j);
                matrix(j, i) = matrix(i, j);
            }
            finish(obj, p, i, j, valid(i, j));
            const Lists& list =
                lists[static_cast<std::size_t>(i) * pops + static_cast<std::size_t>(j)];
            if (limits) {
                untergrenze(i, j) = untergrenze(j, i) = list.lower[k1 - 2];
                obergrenze(i, j) = obergrenze(j, i) = list.upper[1];
            }
        }
    }
}

GlobalP plainGlobalTest(const AnalyseDataObj& obj, const std::array<double, 3>& observed,
                        const CMatrix& observedLocus) {
    const auto pops = static_cast<std::size_t>(obj.AnzPop);
    SampleTables tab(pops + 1, LocusTables(static_cast<std::size_t>(obj.AnzLoci)));
    std::vector<int32_t> sizes;
    std::vector<std::vector<int32_t>> mapSlot;
    int total = 0;
    for (int pop = 1; pop <= obj.AnzPop; ++pop) {
        sizes.push_back(obj.Daten->GetAnzDatenChromosome(pop));
        mapSlot.emplace_back(static_cast<std::size_t>(sizes.back()), -1);
        total += sizes.back();
    }
    std::vector<std::vector<int32_t>> mapPop = mapSlot;
    std::vector<int32_t> buffer;
    GlobalEstimate permuted(obj);
    CMatrix hits;
    hits.Resize(3, obj.AnzLoci + 1); // the last column: over all loci
    CMatrix valid;
    valid.Resize(3, obj.AnzLoci + 1);
    for (int k = 0; k < obj.Permutationen; ++k) {
        if (k % 1000 == 0) {
            InternStartRDGen();
        }
        obj.Daten->CountMixGlobal(tab, mapSlot, mapPop, sizes, total, buffer, flag(obj, 0x10),
                                  flag(obj, 0x8));
        permuted.take(obj, tab);
        const auto count = [&](int row, int column, double seen, double drawn, double tester) {
            if (tester != obj.DistFehlerwert) {
                valid(row, column) += 1.0;
                hits(row, column) += seen <= drawn ? 1.0 : 0.0;
            }
        };
        count(0, obj.AnzLoci, observed[0], permuted.fst, permuted.fst);
        count(1, obj.AnzLoci, observed[1], permuted.gst, permuted.gst);
        count(2, obj.AnzLoci, observed[2], permuted.gstStrich, permuted.gst);
        const CMatrix& drawnLocus = permuted.locus;
        for (int l = 0; l < obj.AnzLoci; ++l) {
            count(0, l, observedLocus(0, l), drawnLocus(0, l), drawnLocus(0, l));
            count(1, l, observedLocus(3, l), drawnLocus(3, l), drawnLocus(3, l));
            count(2, l, observedLocus(4, l), drawnLocus(4, l), drawnLocus(3, l));
        }
    }
    const auto pValue = [&](int row, int column) {
        const double n = valid(row, column);
        return n < 1.0 ? obj.DistFehlerwert : std::max(hits(row, column), 1.0) / n;
    };
    GlobalP p{pValue(0, obj.AnzLoci), pValue(1, obj.AnzLoci), pValue(2, obj.AnzLoci), {}};
    p.locus.Resize(3, obj.AnzLoci);
    for (int row = 0; row < 3; ++row) {
        for (int l = 0; l < obj.AnzLoci; ++l) {
            p.locus(row, l) = pValue(row, l);
        }
    }
    return p;
}

// --- The tests of the program beside these ------------------------------------------------

namespace {

// The bits of doubles, so that not-a-numbers compare, too.
bool sameBits(std::span<const double> a, std::span<const double> b) {
    return std::ranges::equal(a, b, [](double x, double y) {
        return std::bit_cast<uint64_t>(x) == std::bit_cast<uint64_t>(y);
    });
}

// Names of what differs.
class Differences {
  public:
    void compare(const char* what, const CMatrix& fast, const CMatrix& plain) {
        add(what, sameBits(fast.Daten, plain.Daten));
    }
    void compare(const char* what, const FTriple& fast, const FTriple& plain) {
        for (std::size_t s = 0; s < fast.size(); ++s) {
            compare(what, fast[s], plain[s]);
        }
    }
    void compare(const char* what, double fast, double plain) {
        add(what, sameBits({&fast, 1}, {&plain, 1}));
    }
    const std::string& names() const { return Names; }

  private:
    void add(const char* what, bool same) {
        if (!same) {
            Names.append(what).append("; ");
        }
    }
    std::string Names;
};

// What the tests of pairs are given.
struct Observed {
    explicit Observed(AnalyseDataObj& run) : f(newFTriple(run.AnzPop)) {
        const int pairs = run.AnzPop * (run.AnzPop - 1) / 2;
        locusTable.Resize(run.AnzLoci, std::max(pairs, 1));
        run.FST_PAIR_WC84(f, run.PopAllele, locusTable);
    }
    FTriple f;
    CMatrix locusTable;
};

} // namespace

std::string pairTestDifference(AnalyseDataObj& run) {
    Observed fast(run);
    CMatrix plainTable = fast.locusTable;
    FTriple p = newFTriple(run.AnzPop);
    FTriple plainP = p;
    run.FST_P_WC84(p, fast.f, run.PopAllele, fast.locusTable);
    const float next = rand2();
    plainPairTest(run, plainP, fast.f, plainTable);
    Differences differences;
    differences.compare("place in the random stream", next, rand2());
    differences.compare("p-values", p, plainP);
    differences.compare("values of the loci", fast.locusTable, plainTable);
    return differences.names();
}

std::string discardTestDifference(AnalyseDataObj& run) {
    Observed fast(run);
    Observed plain = fast;
    FTriple p = newFTriple(run.AnzPop);
    FTriple plainP = p;
    CMatrix limits[4];
    for (CMatrix& limit : limits) {
        limit.Resize(run.AnzPop, run.AnzPop);
    }
    run.FST_RD_WC84(p, fast.f, run.PopAllele, limits[0], limits[1], fast.locusTable);
    const float next = rand2();
    plainDiscardTest(run, plainP, plain.f, limits[2], limits[3], plain.locusTable);
    Differences differences;
    differences.compare("place in the random stream", next, rand2());
    differences.compare("p-values", p, plainP);
    differences.compare("means", fast.f, plain.f);
    differences.compare("lower limits", limits[0], limits[2]);
    differences.compare("upper limits", limits[1], limits[3]);
    differences.compare("values of the loci", fast.locusTable, plain.locusTable);
    return differences.names();
}

std::string globalTestDifference(AnalyseDataObj& run) {
    const GlobalEstimate seen = globalEstimate(run);
    GlobalP fast;
    fast.locus.Resize(3, run.AnzLoci);
    run.FST_GLOBAL_P_WC84(seen.fst, seen.gst, seen.gstStrich, seen.locus, fast.fst, fast.gst,
                          fast.gstStrich, fast.locus);
    const float next = rand2();
    const GlobalP plain = plainGlobalTest(run, {seen.fst, seen.gst, seen.gstStrich}, seen.locus);
    Differences differences;
    differences.compare("place in the random stream", next, rand2());
    differences.compare("p of Fst", fast.fst, plain.fst);
    differences.compare("p of Gst", fast.gst, plain.gst);
    differences.compare("p of Gst'", fast.gstStrich, plain.gstStrich);
    differences.compare("p of the loci", fast.locus, plain.locus);
    return differences.names();
}

} // namespace kva_test
