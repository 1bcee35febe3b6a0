#include "distance/random_samples.h"

using namespace kva;

namespace kva_test {

namespace {

class TableMaker {
  public:
    explicit TableMaker(uint32_t seed)
        : Stream(seed), Loci(pick(1, 6)), Missing(pick(0, 3) * 15), Inbred(chance(30)),
          Tables(1, LocusTables(Loci)) {
        for (std::size_t l = 0; l < Loci; ++l) {
            Alleles.push_back(chance(5) ? 300 : pick(1, chance(50) ? 6 : 70));
            Repeats.push_back(static_cast<double>(pick(1, 4)));
            Absent.push_back(chance(8));
        }
    }

    RandomSamples make() {
        const std::size_t populations = pick(2, 6);
        for (std::size_t p = 0; p < populations; ++p) {
            Tables.emplace_back(Loci);
            const std::size_t size = chance(1) ? pick(127, 135) : pick(0, 12);
            for (std::size_t i = 0; i < size; ++i) {
                addIndividual();
            }
        }
        sort(Tables);
        sort(Individuals);
        const LocusTables pool = Tables[0];
        RandomSamples made;
        made.Populations = prepareSamples(Tables, 1, populations, pool, Repeats, kPopulationRules);
        made.Individuals = prepareSamples(Individuals, 0, Individuals.size(), pool,
                                          std::vector<double>(Loci, 1.0), kIndividualRules);
        const bool small = Individuals.size() < 40;
        const std::size_t draws = small && chance(2) ? pick(1022, 1100) : pick(0, small ? 8 : 3);
        for (std::size_t draw = 0; draw < draws; ++draw) {
            made.Loci.push_back(pick(0, Loci - 1));
        }
        return made;
    }

  private:
    // The stream's own bits, since distributions differ between libraries.
    std::size_t pick(std::size_t low, std::size_t high) {
        return low + Stream() % (high - low + 1);
    }
    bool chance(std::size_t percent) { return pick(1, 100) <= percent; }

    // To the pool, to the last population and as a sample of its own.
    void addIndividual() {
        Individuals.emplace_back(Loci);
        for (std::size_t l = 0; l < Loci; ++l) {
            const int haploid = Inbred && chance(50) ? 1 : 0;
            for (int entry = 0; entry < 2; ++entry) {
                const bool missing = Absent[l] || chance(Missing);
                const int allele = missing ? -1 : 100 + 2 * static_cast<int>(pick(1, Alleles[l]));
                for (LocusTables* tables : {&Tables[0], &Tables.back(), &Individuals.back()}) {
                    (*tables)[l].AddAllel(allele, haploid);
                }
            }
        }
    }

    static void sort(SampleTables& samples) {
        for (LocusTables& tables : samples) {
            for (AllelCount& table : tables) {
                table.SortAllele();
            }
        }
    }

    std::mt19937 Stream;
    std::size_t Loci;
    std::size_t Missing; // percent
    bool Inbred;
    SampleTables Tables; // the pool, and the populations
    SampleTables Individuals;
    std::vector<std::size_t> Alleles; // by locus
    std::vector<double> Repeats;
    std::vector<bool> Absent; // loci without data
};

} // namespace

RandomSamples randomSamples(uint32_t seed) {
    return TableMaker(seed).make();
}

} // namespace kva_test
