// Allele tables of shuffled samples: the slots of two or all populations are dealt
// out anew (MakeMix.h) and counted into tables in the order of the deal, which is the
// order in which a later sum over alleles runs.
//
// The plain reading, which only the tests reach, of what ShuffleTable.h does faster in the loops of
// the program.
#include "data/lociclass.h"
#include "fstat/plain/MakeMix.h"
#include "fstat/randsci.h"

namespace kva {

namespace {

// Places of the tables in `mix`.
constexpr std::size_t kPool = 0;     // both samples together
constexpr std::size_t kFirst = 1;    // first drawn sample
constexpr std::size_t kSecond = 2;   // second drawn sample
constexpr std::size_t kTestPool = 3; // both populations together, not shuffled
constexpr std::size_t kTestFirst = 4;
constexpr std::size_t kTestSecond = 5;

// Counts one entry, population from 0, into two tables. A slot outside the population
// counts as missing.
void addSlot(const LociObj& locus, long pop, long slot, AllelCount& pool, AllelCount& sample) {
    const int number = static_cast<int>(pop) + 1;
    const int place = static_cast<int>(slot);
    const int allel = locus.GetDataChromosom(number, place);
    const int haploid = locus.isHaploid(number, place);
    pool.AddAllel(allel, haploid);
    sample.AddAllel(allel, haploid);
}

struct PairMix {
    const Datensatz& daten;
    const SlotSheet& sheet;
    SampleTables& mix;

    // The entries of a drawn sample.
    void addSample(std::size_t l, const SampleMap& map, long size, std::size_t sample) const {
        for (std::size_t c = 0; c < static_cast<std::size_t>(size); ++c) {
            const int32_t pop = map[1][c];
            const long slot = sheetSlot(sheet, static_cast<int32_t>(l), pop, map[0][c]);
            addSlot(daten.Loci[l], pop, slot, mix[kPool][l], mix[sample][l]);
        }
    }

    // The entries of a population as the sheet gives them.
    void addTest(std::size_t l, long pop, long size, std::size_t sample) const {
        for (long c = 0; c < size; ++c) {
            const long slot = sheet[l][pop][c];
            addSlot(daten.Loci[l], pop, slot, mix[kTestPool][l], mix[sample][l]);
        }
    }
};

bool hasData(const SampleTables& quelle, long pop, std::size_t locus) {
    return quelle[pop + 1][locus].AnzGesamt > 0;
}

// Both forms of the pair mix: `tables` of 6 also counts the test tables.
int mixPair(const Datensatz& daten, std::size_t tables, const SampleTables& quelle,
            SampleTables& mix, long pop1, long pop2, const SlotSheet& sheet, SampleMap& map1,
            SampleMap& map2, int genotypes, int linked, int permutation, int jackknife,
            std::vector<int32_t>& buffer) {
    const long n1 = daten.GetAnzDatenChromosome(static_cast<int>(pop1) + 1);
    const long n2 = daten.GetAnzDatenChromosome(static_cast<int>(pop2) + 1);
    const auto shuffle = [&] {
        MakeMix2(permutation, genotypes, linked, jackknife, n1, n2, pop1, pop2, map1, map2, buffer);
    };
    const PairMix pair{daten, sheet, mix};
    if (linked == 1) {
        shuffle();
    }
    for (std::size_t l = 0; l < daten.Loci.size(); ++l) {
        for (std::size_t table = 0; table < tables; ++table) {
            mix[table][l].Clr();
        }
        if (!hasData(quelle, pop1, l) || !hasData(quelle, pop2, l)) {
            continue; // empty tables: the estimator leaves the locus out
        }
        if (linked != 1) {
            shuffle();
        }
        pair.addSample(l, map1, n1, kFirst);
        pair.addSample(l, map2, n2, kSecond);
        if (tables > kTestPool) {
            pair.addTest(l, pop1, n1, kTestFirst);
            pair.addTest(l, pop2, n2, kTestSecond);
        }
    }
    return 0;
}

} // namespace

int Datensatz::AllelMix(const SampleTables& quelle, SampleTables& mix, long pop1, long pop2,
                        const SlotSheet& sheet, SampleMap& map1, SampleMap& map2, int genotypes,
                        int linked, int permutation, int jackknife,
                        std::vector<int32_t>& buffer) const {
    return mixPair(*this, kTestPool, quelle, mix, pop1, pop2, sheet, map1, map2, genotypes, linked,
                   permutation, jackknife, buffer);
}

int Datensatz::AllelMixE(const SampleTables& quelle, SampleTables& mix, long pop1, long pop2,
                         const SlotSheet& sheet, SampleMap& map1, SampleMap& map2, int genotypes,
                         int linked, int permutation, int jackknife,
                         std::vector<int32_t>& buffer) const {
    return mixPair(*this, kTestSecond + 1, quelle, mix, pop1, pop2, sheet, map1, map2, genotypes,
                   linked, permutation, jackknife, buffer);
}

int Datensatz::AllelMix(SampleTables& mix, long pop1, long pop2, int genotypes) const {
    const long step = genotypes != 0 ? 2 : 1;
    const long sizes[2] = {GetAnzDatenChromosome(static_cast<int>(pop1) + 1) / step,
                           GetAnzDatenChromosome(static_cast<int>(pop2) + 1) / step};
    const double border = static_cast<double>(sizes[0]) / static_cast<double>(sizes[0] + sizes[1]);
    for (std::size_t l = 0; l < Loci.size(); ++l) {
        for (const std::size_t table : {kPool, kFirst, kSecond}) {
            mix[table][l].Clr();
        }
        for (std::size_t sample = 0; sample < 2; ++sample) {
            for (long place = 0; place < sizes[sample]; ++place) {
                const bool second = rand2() <= border;
                const long unit = drawIndex(static_cast<int32_t>(sizes[second ? 1 : 0]));
                for (long slot = unit * step; slot < (unit + 1) * step; ++slot) {
                    addSlot(Loci[l], second ? pop2 : pop1, slot, mix[kPool][l],
                            mix[kFirst + sample][l]);
                }
            }
        }
    }
    return 0;
}

int Datensatz::CountMixGlobal(SampleTables& tab, std::vector<std::vector<int32_t>>& mapSlot,
                              std::vector<std::vector<int32_t>>& mapPop,
                              std::span<const int32_t> groessen, int gesamt,
                              std::vector<int32_t>& buffer, int linked, int genotypes) const {
    const int nPop = static_cast<int>(groessen.size());
    if (linked == 1) {
        MakeMixGlobal(nPop, mapSlot, mapPop, groessen, gesamt, buffer, genotypes);
    }
    for (std::size_t l = 0; l < Loci.size(); ++l) {
        tab[kPool][l].Clr();
        if (linked != 1) {
            MakeMixGlobal(nPop, mapSlot, mapPop, groessen, gesamt, buffer, genotypes);
        }
        for (std::size_t p = 0; p < groessen.size(); ++p) {
            tab[p + 1][l].Clr();
            for (std::size_t c = 0; c < mapSlot[p].size(); ++c) {
                addSlot(Loci[l], mapPop[p][c], mapSlot[p][c], tab[kPool][l], tab[p + 1][l]);
            }
        }
    }
    return 0;
}

} // namespace kva
