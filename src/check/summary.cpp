#include "check/summary.h"

#include <algorithm>
#include <map>

namespace kva {

namespace {

PopulationSummary populationOf(const LoadedData& data, int pop) {
    PopulationSummary summary;
    const LociObj& first = data.Daten->Loci.front();
    summary.name = orEmpty(data.Daten->GetPopName(pop));
    const int64_t slots = first.GetAnzDatenChromosome(pop);
    summary.individuals = (slots + 1) / 2;
    summary.group = first.GetGroupNummer(pop, 0);
    const auto info = first.InfoSlots(pop);
    for (std::size_t slot = 0; slot < info.size(); slot += 2) {
        summary.inbred += infoHaploid(info[slot]);
    }
    for (const LociObj& locus : data.Daten->Loci) {
        const auto alleles = locus.DataSlots(pop);
        summary.missing += std::count_if(alleles.begin(), alleles.end(),
                                         [](int32_t allele) { return allele < 0; });
    }
    return summary;
}

// Copies of each allele, over all populations.
std::map<int32_t, int64_t> countCopies(const LociObj& locus, LocusSummary& summary) {
    std::map<int32_t, int64_t> copies;
    for (int pop = 1; pop <= locus.AnzPop; ++pop) {
        const int64_t before = summary.copies;
        for (const int32_t allele : locus.DataSlots(pop)) {
            if (allele < 0) {
                ++summary.missing;
            } else {
                ++copies[allele];
                ++summary.copies;
            }
        }
        summary.populations += summary.copies > before ? 1 : 0;
    }
    return copies;
}

void findGrid(const std::map<int32_t, int64_t>& copies, LocusSummary& summary) {
    std::map<int32_t, int64_t> remainders;
    for (const auto& [allele, count] : copies) {
        remainders[allele % summary.repeat] += count;
    }
    for (const auto& [remainder, count] : remainders) {
        if (count > summary.onGrid) {
            summary.remainder = remainder;
            summary.onGrid = count;
        }
    }
}

LocusSummary locusOf(const LociObj& locus) {
    LocusSummary summary;
    summary.name = locus.LociName;
    summary.repeat = locus.LociRepeatMuster;
    summary.rest = locus.LociRepeatRest;
    const std::map<int32_t, int64_t> copies = countCopies(locus, summary);
    summary.alleles = static_cast<int64_t>(copies.size());
    if (!copies.empty()) {
        summary.smallest = copies.begin()->first;
        summary.largest = copies.rbegin()->first;
    }
    if (summary.repeat > 0) {
        findGrid(copies, summary);
    }
    return summary;
}

} // namespace

DataSummary summaryOf(const LoadedData& data) {
    DataSummary summary;
    summary.columns = static_cast<unsigned char>(data.DatenFormat);
    summary.headerRows = data.KopfZeilen;
    if (!data.Daten || data.Daten->AnzLoci == 0) {
        return summary;
    }
    for (int pop = 1; pop <= data.AnzPop; ++pop) {
        summary.populations.push_back(populationOf(data, pop));
        summary.individuals += summary.populations.back().individuals;
        summary.missing += summary.populations.back().missing;
    }
    for (const LociObj& locus : data.Daten->Loci) {
        summary.loci.push_back(locusOf(locus));
        summary.alleles += summary.loci.back().copies + summary.loci.back().missing;
    }
    return summary;
}

} // namespace kva
