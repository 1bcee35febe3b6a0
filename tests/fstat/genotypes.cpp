#include "fstat/genotypes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <gtest/gtest.h>

using namespace kva;

namespace kva_test {

namespace {

class GenotypeMaker {
  public:
    explicit GenotypeMaker(uint32_t seed) : Stream(seed) {}

    Datensatz make() {
        Datensatz daten;
        const int loci = pick(1, 5);
        const int populations = pick(2, 6);
        const bool large = chance(5);
        daten.init(loci);
        for (int pop = 1; pop <= populations; ++pop) {
            Sizes.push_back(large && chance(50) ? oneOf({23, 24, 25, 62, 63, 64, 126, 128, 135})
                                                : pick(0, 12));
            daten.AddPopulation("P", 2 * Sizes.back());
        }
        for (int locus = 1; locus <= loci; ++locus) {
            fill(daten, locus, chance(10) ? oneOf({63, 64, 65, 70, 255, 256, 300}) : pick(1, 12));
        }
        return daten;
    }

  private:
    // The stream's own bits, since distributions differ between libraries.
    int pick(int low, int high) {
        return low + static_cast<int>(Stream() % static_cast<uint32_t>(high - low + 1));
    }
    bool chance(int percent) { return pick(1, 100) <= percent; }
    int oneOf(const std::vector<int>& values) { return values[Stream() % values.size()]; }

    void fill(Datensatz& daten, int locus, int alleles) {
        const int missing = pick(0, 2) * 15;
        const int haploid = chance(30) ? 40 : 0;
        const bool spread = chance(30); // few alleles of each population are shared
        for (int pop = 1; pop <= static_cast<int>(Sizes.size()); ++pop) {
            const int own = spread ? pick(1, alleles) : 1;
            const auto allele = [&] { return chance(missing) ? -1 : 100 + pick(own, alleles); };
            for (int tier = 0; tier < Sizes[static_cast<std::size_t>(pop) - 1]; ++tier) {
                const int first = allele();
                daten.AddTier(locus, pop, first, allele(), 0);
                for (int slot = 2 * tier; slot < 2 * tier + 2; ++slot) {
                    daten.Loci[static_cast<std::size_t>(locus) - 1].SetInfoChromosom(
                        pop, slot, chance(haploid) ? 1 : 0);
                }
            }
        }
    }

    std::mt19937 Stream;
    std::vector<int> Sizes; // individuals of each population
};

} // namespace

Datensatz randomGenotypes(uint32_t seed) {
    return GenotypeMaker(seed).make();
}

std::vector<SlotOf> slotsAt(const CodedData& data, std::span<const int32_t> places) {
    std::vector<SlotOf> slots;
    for (const int32_t place : places) {
        std::size_t pop = 0;
        while (place >= data.pairPlace(pop) + data.slots(pop) / 2) {
            ++pop;
        }
        const int32_t first = 2 * (place - data.pairPlace(pop));
        slots.push_back({static_cast<int32_t>(pop), first});
        slots.push_back({static_cast<int32_t>(pop), first + 1});
    }
    return slots;
}

void addSlots(const Datensatz& daten, std::size_t locus, std::span<const SlotOf> slots,
              std::span<AllelCount* const> tables) {
    const LociObj& from = daten.Loci[locus];
    for (const SlotOf& slot : slots) {
        for (AllelCount* const table : tables) {
            table->AddAllel(from.GetDataChromosom(slot.Pop + 1, slot.Slot),
                            from.isHaploid(slot.Pop + 1, slot.Slot));
        }
    }
}

std::optional<VarianceComponents> plainComponents(const AllelCount& pool, const AllelCount& t1,
                                                  const AllelCount& t2) {
    const double nA = t1.AnzGesamt * 0.5;
    const double nB = t2.AnzGesamt * 0.5;
    const double S = nA + nB;
    const double H1 = t1.CalcHetobs();
    const double H2 = t2.CalcHetobs();
    if (nA <= 0.0 || nB <= 0.0 || S <= 2.0 || H1 < 0.0 || H2 < 0.0 || pool.AnzAllele == 0) {
        return std::nullopt;
    }
    const double nc = 2.0 * nA * nB / S;
    double a = 0.0;
    double b = 0.0;
    for (int row = 0; row < pool.AnzAllele; ++row) {
        const int allel = pool.Allele[static_cast<std::size_t>(row)].Nummer;
        const double p1 = std::max(t1.GetFrequenz(t1.GetAllelNummer(allel) - 1), 0.0);
        const double p2 = std::max(t2.GetFrequenz(t2.GetAllelNummer(allel) - 1), 0.0);
        const double pbar = (nA * p1 + nB * p2) / S;
        const double s2 =
            2.0 * (nA * ((p1 - pbar) * (p1 - pbar)) + nB * ((p2 - pbar) * (p2 - pbar))) / S;
        const double x = pbar * (1.0 - pbar) - s2 / 2.0;
        a += S * (s2 - 2.0 * x / (S - 2.0)) / (2.0 * nc);
        b += S * x / (S - 2.0);
    }
    const double H = (nA * H1 + nB * H2) / S;
    a += S * H / (2.0 * nc * (S - 2.0));
    b -= (S / (S - 2.0) + 1.0) * H / 2.0;
    return VarianceComponents{a, b, H};
}

void expectSameBits(const std::optional<VarianceComponents>& fast,
                    const std::optional<VarianceComponents>& plain) {
    ASSERT_EQ(fast.has_value(), plain.has_value());
    if (fast) {
        const auto bits = [](const VarianceComponents& v) {
            return std::array{std::bit_cast<uint64_t>(v.a), std::bit_cast<uint64_t>(v.b),
                              std::bit_cast<uint64_t>(v.c)};
        };
        EXPECT_EQ(bits(*fast), bits(*plain));
    }
}

} // namespace kva_test
