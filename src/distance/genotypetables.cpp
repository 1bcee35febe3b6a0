#include "distance/genotypetables.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>

namespace kva {

namespace {

constexpr std::size_t kPairs = 4;      // summed side by side
constexpr std::size_t kMostCopies = 2; // of an individual at a locus
constexpr unsigned kFieldBits = 12;    // of a sum in a word
constexpr uint64_t kFieldMask = (uint64_t{1} << kFieldBits) - 1;
constexpr std::size_t kMostLoci = kFieldMask / 4; // that a field holds: no locus adds more than 4

// A quantity in the words of an entry.
struct Field {
    Quantity Name;
    std::size_t Word;
    unsigned Shift;
    double Unit; // of a step
};
constexpr std::array<Field, 10> kFields = {{
    {Quantity::Typed, 0, 0 * kFieldBits, 1.0},
    {Quantity::WithMean, 0, 1 * kFieldBits, 1.0},
    {Quantity::InNei, 0, 2 * kFieldBits, 1.0},
    {Quantity::Smaller, 0, 3 * kFieldBits, 0.5},
    {Quantity::Products, 0, 4 * kFieldBits, 0.25},
    {Quantity::NeiProducts, 1, 0 * kFieldBits, 0.25},
    {Quantity::Shared, 1, 1 * kFieldBits, 1.0},
    {Quantity::Alleles, 1, 2 * kFieldBits, 1.0},
    {Quantity::IdentityI, 1, 3 * kFieldBits, 1.0},
    {Quantity::IdentityJ, 1, 4 * kFieldBits, 1.0},
}};

// All that a locus adds for a sample follows from these.
using Genotype = std::array<double, 9>;

Genotype genotypeOf(const LocusSamples& locus, std::size_t sample) {
    Genotype genotype{locus.Typed[sample], locus.HasMean[sample], locus.Mean[sample],
                      locus.InNei[sample], locus.Identity[sample]};
    std::size_t place = 5;
    for (std::size_t e = locus.First[sample]; e < locus.First[sample + 1]; ++e) {
        genotype[place++] = locus.Shares[e].Share;
        genotype[place++] = static_cast<double>(locus.Shares[e].Place);
    }
    return genotype;
}

// Whether a sample has one gene copy or two, or none, so that the fields hold what it adds.
bool isIndividual(const LocusSamples& locus, std::size_t sample) {
    const std::size_t first = locus.First[sample];
    const std::size_t end = locus.First[sample + 1];
    double sum = 0.0;
    bool fits = end - first <= kMostCopies && locus.Variance[sample] == 0.0 &&
                (locus.Identity[sample] == 0.0 || locus.Identity[sample] == 1.0);
    for (std::size_t e = first; e < end; ++e) {
        const double share = locus.Shares[e].Share;
        fits = fits && (share == 0.0 || share == 0.5 || share == 1.0);
        sum += share;
    }
    return fits && sum <= 1.0;
}

// Appends a sample of one locus to another.
void appendSample(const LocusSamples& from, std::size_t sample, LocusSamples& to) {
    for (const auto column :
         {&LocusSamples::Typed, &LocusSamples::Alleles, &LocusSamples::HasMean, &LocusSamples::Mean,
          &LocusSamples::Variance, &LocusSamples::InNei, &LocusSamples::Identity}) {
        (to.*column).push_back((from.*column)[sample]);
    }
    for (std::size_t e = from.First[sample]; e < from.First[sample + 1]; ++e) {
        to.Shares.push_back(from.Shares[e]);
    }
    to.First.push_back(to.Shares.size());
}

} // namespace

std::optional<GenotypeTables> GenotypeTables::make(const Samples& samples, QuantitySet wanted,
                                                   std::size_t keepBytes, std::size_t replicates) {
    GenotypeTables tables(samples, wanted);
    std::size_t genotypes = 0;
    std::size_t entries = 0; // of whole tables
    for (const LocusSamples& locus : samples.Loci) {
        if (locus.Repeat != 1.0 || !tables.addLocus(locus)) {
            return std::nullopt;
        }
        const std::size_t number = tables.Loci.back().Genotypes.Typed.size();
        genotypes += number;
        entries += number * number;
    }
    const std::size_t pairs = samples.Count * samples.Loci.size() / 2; // of a row, on average
    tables.Kept = entries * sizeof(Entry) <= keepBytes;
    const bool pays =
        tables.Kept ? entries / replicates <= pairs * samples.Count : genotypes <= pairs / 2;
    return pays ? std::optional<GenotypeTables>(std::move(tables)) : std::nullopt;
}

GenotypeTables::GenotypeTables(const Samples& samples, QuantitySet wanted)
    : Count(samples.Count), Wanted(wanted), Maker(samples),
      OfGenotypes(samples.Count), Counts{Column(samples.Count + kPairs),
                                         Column(samples.Count + kPairs)} {
    if (Wanted.has(Quantity::Spread)) {
        Wanted.add(Quantity::Square);
    }
}

bool GenotypeTables::addLocus(const LocusSamples& locus) {
    constexpr std::size_t kEntrySteps = sizeof(Entry) / kStep;
    constexpr std::size_t kMostGenotypes = std::numeric_limits<uint16_t>::max() / kEntrySteps;
    Locus& added = Loci.emplace_back();
    LocusSamples& genotypes = added.Genotypes;
    genotypes.Pool = locus.Pool;
    genotypes.First.push_back(0);
    std::map<Genotype, std::size_t> numbers;
    for (std::size_t s = 0; s < Count; ++s) {
        if (!isIndividual(locus, s)) {
            return false;
        }
        const auto [known, isNew] = numbers.try_emplace(genotypeOf(locus, s), numbers.size());
        if (isNew) {
            appendSample(locus, s, genotypes);
        }
        added.Place.push_back(static_cast<uint16_t>(known->second * kEntrySteps));
    }
    added.Place.resize(Count + kPairs);
    added.Rows.resize(numbers.size());
    return numbers.size() <= kMostGenotypes;
}

const std::vector<GenotypeTables::Entry>& GenotypeTables::row(Locus& locus, std::size_t genotype) {
    std::vector<Entry>& entries = locus.Rows[genotype];
    if (entries.empty()) {
        if (!Kept) {
            entries.swap(locus.Rows[locus.Running]); // for its room
        }
        locus.Running = genotype;
        computeRow(locus.Genotypes, genotype, entries);
    }
    return entries;
}

void GenotypeTables::computeRow(const LocusSamples& genotypes, std::size_t genotype,
                                std::vector<Entry>& entries) {
    OfGenotypes.clear(Wanted);
    if (genotypes.Typed[genotype] > 0.0) {
        const LocusRow row = Maker.row(genotypes, genotype, 0);
        for (const Quantity quantity : kAllQuantities) {
            if (Wanted.has(quantity)) {
                ruleOf(quantity).Add(row, OfGenotypes.of(quantity));
            }
        }
    }
    entries.clear();
    entries.reserve(genotypes.Typed.size());
    for (std::size_t g = 0; g < genotypes.Typed.size(); ++g) {
        const auto added = [&](Quantity quantity) { return OfGenotypes.of(quantity)[g]; };
        Words counts{0, 0};
        for (const Field& field : kFields) {
            const auto steps = static_cast<uint64_t>(added(field.Name) / field.Unit);
            counts[field.Word] += steps << field.Shift;
        }
        entries.push_back({Doubles{added(Quantity::Chord), added(Quantity::Cosine)},
                           Doubles{added(Quantity::Difference), added(Quantity::Square)}, counts});
    }
}

void GenotypeTables::sum(std::size_t i, std::span<const std::size_t> loci, RowSums& sums) {
    constexpr std::size_t kEntrySteps = sizeof(Entry) / kStep;
    bool first = true;
    do {
        const auto some = loci.first(std::min(loci.size(), kMostLoci));
        Sources.clear();
        for (const std::size_t l : some) {
            Locus& locus = Loci[l];
            Sources.push_back(
                {row(locus, locus.Place[i] / kEntrySteps).data(), locus.Place.data()});
        }
        addSources(i, first, sums);
        addFields(i, first, sums);
        first = false;
        loci = loci.subspan(some.size());
    } while (!loci.empty());
    if (Wanted.has(Quantity::Spread)) {
        const double* const squares = sums.of(Quantity::Square);
        std::copy(squares, squares + Count, sums.of(Quantity::Spread));
    }
}

void GenotypeTables::addSources(std::size_t i, bool first, RowSums& sums) {
    double* const chords = sums.of(Quantity::Chord);
    double* const cosines = sums.of(Quantity::Cosine);
    double* const differences = sums.of(Quantity::Difference);
    double* const squares = sums.of(Quantity::Square);
    for (std::size_t begin = i + 1; begin < Count; begin += kPairs) {
        Entry total[kPairs]{};
        for (std::size_t p = 0; p < kPairs && !first; ++p) {
            const std::size_t j = begin + p;
            total[p].Roots = Doubles{chords[j], cosines[j]};
            total[p].Means = Doubles{differences[j], squares[j]};
        }
        for (const Source& source : Sources) {
            for (std::size_t p = 0; p < kPairs; ++p) {
                const Entry& entry = source.at(begin + p);
                total[p].Roots += entry.Roots;
                total[p].Means += entry.Means;
                total[p].Counts += entry.Counts;
            }
        }
        for (std::size_t p = 0; p < kPairs; ++p) {
            const std::size_t j = begin + p;
            chords[j] = total[p].Roots[0];
            cosines[j] = total[p].Roots[1];
            differences[j] = total[p].Means[0];
            squares[j] = total[p].Means[1];
            Counts[0][j] = total[p].Counts[0];
            Counts[1][j] = total[p].Counts[1];
        }
    }
}

void GenotypeTables::addFields(std::size_t i, bool first, RowSums& sums) const {
    for (const Field& field : kFields) {
        if (!Wanted.has(field.Name)) {
            continue;
        }
        const uint64_t* const counts = Counts[field.Word].data();
        double* const sum = sums.of(field.Name);
        for (std::size_t j = i + 1; j < Count; ++j) {
            const auto steps = static_cast<int32_t>(counts[j] >> field.Shift & kFieldMask);
            sum[j] = (first ? 0.0 : sum[j]) + steps * field.Unit;
        }
    }
}

} // namespace kva
