// Means of the sample statistics over the populations of a group.
#include "stats/GroupMeans.h"

#include "data/diversity.h"
#include "data/randomdiscard.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>

namespace kva {

namespace {

constexpr double kNoValue = -1.0;
constexpr double kNoPopulation = -1.5;
constexpr double kNoLocus = -2.0;

constexpr int kNoAllele = -1;
constexpr int kNoPopulationExtreme = -2;
constexpr int kNoLocusExtreme = -3;
constexpr int kMinStart = 100000; // wanted: the smallest allele of a group never exceeds it

// The populations of a group (from 1) at a locus (from 1) of the tables.
struct Members {
    const SampleTables& tab;
    int locus;
    std::span<const int32_t> populations;
};

// Visits the tables of a group's populations in order.
template <class Visit> void forEachTable(const Members& of, Visit visit) {
    for (const int32_t pop : of.populations) {
        visit(of.tab[pop][of.locus - 1]);
    }
}

template <class Value> double meanOf(const Members& of, Value value) {
    double sum = 0.0;
    int values = 0;
    forEachTable(of, [&](const AllelCount& table) {
        const double v = value(table);
        if (v >= 0) { // drops what is not a number, too
            sum += v;
            ++values;
        }
    });
    return values > 0 ? sum / values : kNoValue;
}

// The extreme of a field of the tables, from `start` on.
template <class Choose>
int extremeOf(const Members& of, int32_t AllelCount::*field, int32_t start, Choose choose) {
    int32_t extreme = start;
    bool found = false;
    forEachTable(of, [&](const AllelCount& table) {
        if (table.*field >= 0) {
            extreme = choose(extreme, table.*field);
            found = true;
        }
    });
    return found ? extreme : kNoAllele;
}

int largest(const Members& of) {
    return extremeOf(of, &AllelCount::MaxAllel, 0,
                     [](int32_t a, int32_t b) { return std::max(a, b); });
}

int smallest(const Members& of) {
    return extremeOf(of, &AllelCount::MinAllel, kMinStart,
                     [](int32_t a, int32_t b) { return std::min(a, b); });
}

// --- The statistics of a table ---------------------------------------------------------

double het(const AllelCount& table) {
    return table.CalcHet();
}
double mean(const AllelCount& table) {
    return table.CalcMean();
}
double var(const AllelCount& table) {
    return table.CalcVar(table.CalcMean());
}
double varRD(const AllelCount& table) {
    return rdVar(table, table.CalcMean());
}

// No guard for a sample without data: 1 - (-1)/(-1) is 0, and counts.
double fis(const AllelCount& table) {
    return inbreeding(table.CalcHetobs(), table.CalcHsk(1));
}

// --- One group by its number ------------------------------------------------------------

// What a group operation is asked: a locus in the tables, and the group.
struct Question {
    const LociObj& object;
    const SampleTables& tab;
    int locus;
    int gruppe;
};

std::vector<int32_t> populationsOf(const Question& of) {
    std::vector<int32_t> populations;
    for (int pop = 1; pop <= of.object.AnzPop; ++pop) {
        if (of.object.GetGroupNummer(pop, 0) == of.gruppe) {
            populations.push_back(pop);
        }
    }
    return populations;
}

template <class Value> double groupMean(const Question& of, Value value) {
    if (of.object.AnzPop == 0) {
        return kNoPopulation;
    }
    return meanOf({of.tab, of.locus, populationsOf(of)}, value);
}

int groupExtreme(const Question& of, int (*extreme)(const Members&)) {
    if (of.object.AnzPop == 0) {
        return kNoPopulationExtreme;
    }
    return extreme({of.tab, of.locus, populationsOf(of)});
}

// A group operation of the locus object, or `noLocus` for a bad locus number.
template <class Result, class... Rest>
Result onLocus(const Datensatz& daten,
               Result (LociObj::*operation)(const SampleTables&, int, Rest...) const,
               Result noLocus, const SampleTables& tab, int locus, Rest... rest) {
    const LociObj* const object = daten.Locus(locus);
    return object != nullptr ? (object->*operation)(tab, locus, rest...) : noLocus;
}

} // namespace

// --- All groups ------------------------------------------------------------------------

GroupIndex::GroupIndex(const LociObj& locus) : Pops(static_cast<std::size_t>(locus.AnzPop)) {
    std::iota(Pops.begin(), Pops.end(), 1);
    const auto group = [&locus](int32_t pop) { return locus.GetGroupNummer(pop, 0); };
    std::ranges::stable_sort(Pops, {}, group);
    std::ranges::transform(Pops, std::back_inserter(Groups), group);
}

std::span<const int32_t> GroupIndex::populations(int gruppe) const {
    const auto [first, last] = std::equal_range(Groups.begin(), Groups.end(), gruppe);
    return {Pops.begin() + (first - Groups.begin()), Pops.begin() + (last - Groups.begin())};
}

GroupStatistics groupStatistics(const SampleTables& tab, int locus,
                                std::span<const int32_t> populations) {
    const Members of{tab, locus, populations};
    return {meanOf(of, het), meanOf(of, rdHet), meanOf(of, var), meanOf(of, varRD),
            smallest(of),    meanOf(of, mean),  largest(of)};
}

// --- LociObj ---------------------------------------------------------------------------

double LociObj::CalcHet(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, het);
}

double LociObj::CalcVar(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, var);
}

double LociObj::CalcMean(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, mean);
}

double LociObj::CalcHsk(const SampleTables& tab, int locus, int gruppe, int korrigiert) const {
    return groupMean({*this, tab, locus, gruppe},
                     [korrigiert](const AllelCount& t) { return t.CalcHsk(korrigiert); });
}

double LociObj::CalcFisk(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, fis);
}

double LociObj::CalcRDHet(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, rdHet);
}

double LociObj::CalcRDMean(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, rdMean);
}

double LociObj::CalcRDVar(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, varRD);
}

double LociObj::CalcRDAllele(const SampleTables& tab, int locus, int gruppe) const {
    return groupMean({*this, tab, locus, gruppe}, rdAlleles);
}

int LociObj::CalcMax(const SampleTables& tab, int locus, int gruppe) const {
    return groupExtreme({*this, tab, locus, gruppe}, largest);
}

int LociObj::CalcMin(const SampleTables& tab, int locus, int gruppe) const {
    return groupExtreme({*this, tab, locus, gruppe}, smallest);
}

// --- Datensatz: the same on a locus ------------------------------------------------------

double Datensatz::CalcHet(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcHet, kNoLocus, tab, locus, gruppe);
}

double Datensatz::CalcVar(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcVar, kNoLocus, tab, locus, gruppe);
}

double Datensatz::CalcMean(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcMean, kNoLocus, tab, locus, gruppe);
}

double Datensatz::CalcHsk(const SampleTables& tab, int locus, int gruppe, int korrigiert) const {
    return onLocus(*this, &LociObj::CalcHsk, kNoLocus, tab, locus, gruppe, korrigiert);
}

double Datensatz::CalcFisk(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcFisk, kNoLocus, tab, locus, gruppe);
}

double Datensatz::CalcRDHetG(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcRDHet, kNoLocus, tab, locus, gruppe);
}

double Datensatz::CalcRDMeanG(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcRDMean, kNoLocus, tab, locus, gruppe);
}

double Datensatz::CalcRDVarG(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcRDVar, kNoLocus, tab, locus, gruppe);
}

double Datensatz::CalcRDAlleleG(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcRDAllele, kNoLocus, tab, locus, gruppe);
}

int Datensatz::CalcMax(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcMax, kNoLocusExtreme, tab, locus, gruppe);
}

int Datensatz::CalcMin(const SampleTables& tab, int locus, int gruppe) const {
    return onLocus(*this, &LociObj::CalcMin, kNoLocusExtreme, tab, locus, gruppe);
}

} // namespace kva
