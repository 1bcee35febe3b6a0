#include "hetrange/HetReplika.h"

#include "fstat/randsci.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kva {

namespace {

constexpr double kNearlyOne = 0.999999; // a heterozygosity above it counts as 1
constexpr double kNoHMin = 1.0;         // minimum of H while no replicate counted
constexpr double kNoVMin = 100.0;       // minimum of V while no replicate counted

} // namespace

// --- The sample --------------------------------------------------------------------

HetStichprobe::HetStichprobe(int32_t rows, int32_t places)
    : Places(static_cast<std::size_t>(std::max(places, 0))),
      Indices(static_cast<std::size_t>(std::max(rows, 0)) * Places, 0) {}

std::span<int32_t> HetStichprobe::Row(int32_t row) {
    return std::span(Indices).subspan(static_cast<std::size_t>(row) * Places, Places);
}

std::span<const int32_t> HetStichprobe::Row(int32_t row) const {
    return std::span(Indices).subspan(static_cast<std::size_t>(row) * Places, Places);
}

std::vector<std::span<int32_t>> HetStichprobe::Stretches(std::size_t length) {
    if (length == Places) {
        return {std::span(Indices)};
    }
    std::vector<std::span<int32_t>> stretches;
    for (std::size_t row = 0; row < Indices.size(); row += Places) {
        stretches.push_back(std::span(Indices).subspan(row, length));
    }
    return stretches;
}

void HetStichprobe::MarkPast(std::size_t first, int32_t missing) {
    for (std::size_t row = 0; row < Indices.size(); row += Places) {
        std::ranges::fill(std::span(Indices).subspan(row, Places).subspan(first), missing);
    }
}

// --- The table of a replicate ----------------------------------------------------------

void HetTable::Load(const LociObj& locus, int pop, const AllelCount& alleles) {
    const std::span<const int32_t> entries = locus.DataSlots(pop);
    const std::span<const int32_t> infos = locus.InfoSlots(pop);
    Codes.assign(entries.size() + 1, 0);
    Haploid.assign(entries.size() + 1, 0);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        Haploid[i] = static_cast<uint8_t>(infoHaploid(infos[i]));
        Codes[i] = entries[i] < 0 ? 0 : alleles.GetAllelNummer(entries[i]);
    }
    const auto flagged = std::count(Haploid.begin(), Haploid.end() - 1, 1);
    AnyHaploid = flagged > 0;
    AllHaploid = flagged == std::ssize(entries);
    const auto codes = static_cast<std::size_t>(alleles.AnzAllele) + 1;
    Numbers.assign(codes, 0.0);
    for (std::size_t code = 1; code < codes; ++code) {
        Numbers[code] = alleles.Allele[code - 1].Nummer;
    }
    Counts.assign(codes, 0);
    New.assign(codes, 1);
    Order.assign(codes, 0);
    Seen = 0;
    Clr();
}

void HetTable::Clr() {
    int32_t* const counts = Counts.data();
    std::size_t* const isNew = New.data();
    for (const int32_t code : seenCodes()) {
        counts[code] = 0;
        isNew[code] = 1;
    }
    counts[0] = 0;
    isNew[0] = 0; // what is missing is no allele
    Seen = 0;
    Copies = 0;
    HaploidCopies = 0;
    Chromosomes = 0;
}

void HetTable::Add(std::span<const int32_t> row, bool randomDiscard) {
    const std::size_t places = row.size() / 2 * 2;
    const bool uniform = !AnyHaploid || (AllHaploid && !randomDiscard);
    if (uniform) { // no flag to look at
        addUniform(row.first(places));
    } else {
        for (std::size_t k = 0; k < places; k += 2) {
            addPair(row[k], row[k + 1], randomDiscard);
        }
    }
    Copies = static_cast<int32_t>(places) - Counts[0];
    Chromosomes = 2 * Copies - (uniform && AnyHaploid ? Copies : HaploidCopies);
}

// The hot loop: everything it touches is local. A code is put behind the others and stays there if
// it is the first of its kind, without a branch that would be guessed wrong.
void HetTable::addUniform(std::span<const int32_t> row) {
    const int32_t* const codes = Codes.data();
    int32_t* const counts = Counts.data();
    std::size_t* const isNew = New.data();
    int32_t* const order = Order.data();
    std::size_t seen = Seen;
    for (std::size_t k = 0; k < row.size(); k += 2) {
        for (const int32_t place : {row[k], row[k + 1]}) {
            const int32_t code = codes[place];
            order[seen] = code;
            seen += isNew[code];
            isNew[code] = 0;
            ++counts[code];
        }
    }
    Seen = seen;
}

void HetTable::addPair(int32_t first, int32_t second, bool randomDiscard) {
    const uint8_t* const haploid = Haploid.data();
    if (randomDiscard && haploid[first] != 0) {
        const int32_t kept = rand2() < 0.5F ? second : first;
        addEntry(kept, haploid[first]); // both copies take the flag of the first entry
        addEntry(kept, haploid[first]);
    } else {
        addEntry(first, haploid[first]);
        addEntry(second, haploid[second]);
    }
}

void HetTable::addEntry(int32_t place, int32_t haploid) {
    const int32_t* const codes = Codes.data();
    int32_t* const counts = Counts.data();
    std::size_t* const isNew = New.data();
    const int32_t code = codes[place];
    Order[Seen] = code;
    Seen += std::exchange(isNew[code], 0);
    ++counts[code];
    HaploidCopies += code != 0 ? haploid : 0;
}

// Sums over the alleles in the order of their first appearance.
HetTable::Sums HetTable::sums() const {
    const int32_t* const counts = Counts.data();
    const double* const numbers = Numbers.data();
    Sums result;
    for (const int32_t code : seenCodes()) {
        const double n = counts[code];
        const double p = n / Copies;
        result.Squares += p * p;
        result.Numbers += numbers[code] * n;
    }
    return result;
}

double HetTable::deviations(double mean) const {
    const int32_t* const counts = Counts.data();
    const double* const numbers = Numbers.data();
    double sum = 0.0;
    for (const int32_t code : seenCodes()) {
        const double deviation = numbers[code] - mean;
        sum += counts[code] * (deviation * deviation);
    }
    return sum;
}

HetStatistics HetTable::Statistics() const {
    HetStatistics result;
    if (Copies == 0) {
        return result;
    }
    result.A = static_cast<double>(Seen);
    result.n = Chromosomes / 2;
    if (Chromosomes > 2) {
        const double C = Chromosomes;
        const double factor = C / (C - 2.0);
        const Sums total = sums();
        result.H = std::min(factor * (1.0 - total.Squares), 1.0);
        result.V = factor * deviations(total.Numbers / Copies) / Copies;
    }
    return result;
}

// --- Running statistics ------------------------------------------------------------------

void HetSpan::add(double value) {
    Min = std::min(Min, value);
    Summe += value;
    Max = std::max(Max, value);
}

void HetBereich::Add(int replikat, const HetStatistics& wert) {
    if (replikat < 1) {
        addFirst(wert);
    } else {
        addLater(wert);
    }
}

// A first heterozygosity of exactly 0 does not count, a later one does: wanted.
void HetBereich::addFirst(const HetStatistics& wert) {
    if (wert.H <= 0) {
        H = {kNoHMin, 0.0, 0.0};
        Anzahl = 0;
    } else {
        H.start(wert.H);
        Anzahl = 1;
    }
    if (wert.V < 0) {
        V = {kNoVMin, 0.0, 0.0};
    } else {
        V.start(wert.V);
    }
    A.start(wert.A);
}

void HetBereich::addLater(const HetStatistics& wert) {
    if (wert.H >= 0) {
        H.add(wert.H);
        Anzahl += 1;
    }
    if (wert.V >= 0) {
        V.add(wert.V);
    }
    // Wanted as it stands: the number of alleles keeps the value of the first replicate, as
    // long as every later one has an allele at all; and it is set here, not summed.
    if (wert.A < 0) {
        A.Min = std::min(A.Min, wert.A);
        A.Summe = wert.A;
        A.Max = std::max(A.Max, wert.A);
    }
}

double correctHeterozygosity(double H, int32_t n) {
    const double copies = n;
    if (H == 0) {
        const double m = copies + 1;
        H = n <= 1 ? -1.0 : copies * ((1 - 1 / (m * m) - copies * copies / (m * m)) / (copies - 1));
    }
    if (H > kNearlyOne) { // also for the value just found
        H = n <= 1 ? -1.0 : 1 - 2 / (copies * (copies + 1));
    }
    return H;
}

} // namespace kva
