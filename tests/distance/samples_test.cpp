#include "distance/samples.h"

#include "support/datasets.h"

#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

namespace {

// L1: A has 100 3/4, 102 1/4; B 102 1/4, 104 3/4. The pool has 100, 102, 104.
Samples populations(LoadedRun& run) {
    run.counted();
    return prepareSamples(run->PopAllele, 1, 2, run->PopAllele[0], {2.0, 4.0}, kPopulationRules);
}

Samples individuals(LoadedRun& run, std::size_t count) {
    run.counted();
    const StdoutCapture swallowed;
    run->CountIAllels();
    return prepareSamples(run->IndAllele, 0, count, run->PopAllele[0],
                          std::vector<double>(run->Daten->Loci.size(), 1.0), kIndividualRules);
}

} // namespace

TEST(Samples, SharesStandInTheOrderOfThePool) {
    LoadedRun run(kTwoPops);
    const Samples samples = populations(run);
    ASSERT_EQ(samples.Loci.size(), 2U);
    const LocusSamples& locus = samples.Loci[0];
    EXPECT_EQ(locus.Pool, 3U);
    EXPECT_EQ(locus.First, (std::vector<std::size_t>{0, 2, 4}));
    ASSERT_EQ(locus.Shares.size(), 4U);
    EXPECT_EQ(locus.Shares[0].Place, 0U);
    EXPECT_EQ(locus.Shares[0].Share, 0.75);
    EXPECT_EQ(locus.Shares[1].Place, 1U);
    EXPECT_EQ(locus.Shares[2].Place, 1U);
    EXPECT_EQ(locus.Shares[2].Share, 0.25);
    EXPECT_EQ(locus.Shares[3].Place, 2U);
}

// A at L1: mean (3 x 100 + 102)/4, variance 8/6 x (3 x 0.25 + 2.25)/4 = 1, J' of
// J = 10/16: (10/4 - 1)/3 = 0.5.
TEST(Samples, MeanVarianceAndIdentity) {
    LoadedRun run(kTwoPops);
    const LocusSamples locus = populations(run).Loci[0];
    EXPECT_EQ(locus.Mean[0], 100.5);
    EXPECT_DOUBLE_EQ(locus.Variance[0], 1.0); // 8/6 is rounded
    EXPECT_EQ(locus.Identity[0], 0.5);
    EXPECT_EQ(locus.Repeat, 2.0);
    EXPECT_EQ(locus.Alleles[0], 2.0);
}

TEST(Samples, SampleWithoutDataIsNotTyped) {
    LoadedRun run(kWithGaps); // B has nothing at L2
    const LocusSamples locus = populations(run).Loci[1];
    EXPECT_EQ(locus.Typed, (std::vector<double>{1.0, 0.0}));
    EXPECT_EQ(locus.HasMean, (std::vector<double>{1.0, 0.0}));
    EXPECT_EQ(locus.InNei, (std::vector<double>{1.0, 0.0}));
    EXPECT_EQ(locus.First[1], locus.First[2]);
}

TEST(Samples, SampleThatIsNotThereIsNotTyped) {
    LoadedRun run(kTwoPops);
    run.counted();
    const Samples samples =
        prepareSamples(run->PopAllele, 1, 4, run->PopAllele[0], {1.0, 1.0}, kPopulationRules);
    EXPECT_EQ(samples.Loci[0].Typed, (std::vector<double>{1.0, 1.0, 0.0, 0.0}));
}

TEST(Samples, IndividualAlwaysHasTwoShares) {
    LoadedRun run(kWithGaps); // A: 100/102 and 100/-, at L1; B: nothing at L2
    const Samples samples = individuals(run, 4);
    EXPECT_EQ(samples.Loci[0].First, (std::vector<std::size_t>{0, 2, 4, 6, 8}));
    EXPECT_EQ(samples.Loci[0].Shares[2].Share, 1.0);
    EXPECT_EQ(samples.Loci[0].Shares[3].Share, 0.0); // the filler
    EXPECT_EQ(samples.Loci[0].Shares[3].Place, samples.Loci[0].Pool);
    EXPECT_EQ(samples.Loci[0].Alleles[1], 1.0);
    EXPECT_EQ(samples.Loci[1].Typed, (std::vector<double>{1.0, 1.0, 0.0, 0.0}));
}

TEST(Samples, SingleCopyOfAnIndividualIsNotInNeisDistance) {
    LoadedRun run(kWithGaps);
    EXPECT_EQ(individuals(run, 4).Loci[0].InNei, (std::vector<double>{1.0, 0.0, 1.0, 1.0}));
}

TEST(Samples, SingleCopyOfAPopulationIsInNeisDistanceAsNan) {
    LoadedRun run("2 . . 1 .\n. . . 0 .\n. . . L Lb\nA d 0 100 .\nB d 0 100 100\n");
    const LocusSamples locus = [&run] {
        run.counted();
        return prepareSamples(run->PopAllele, 1, 2, run->PopAllele[0], {1.0}, kPopulationRules)
            .Loci[0];
    }();
    EXPECT_EQ(locus.InNei[0], 1.0);
    EXPECT_NE(locus.Identity[0], locus.Identity[0]); // nan
}

TEST(Samples, IndividualsHaveNoVariance) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(individuals(run, 4).Loci[0].Variance, (std::vector<double>{0.0, 0.0, 0.0, 0.0}));
}

// The pool of L1 without B: B's 104 is left out, its 102 stays.
TEST(Samples, AnAlleleThatThePoolLacksIsLeftOut) {
    LoadedRun run(kTwoPops);
    run.counted();
    const Samples samples =
        prepareSamples(run->PopAllele, 2, 1, run->PopAllele[1], {2.0, 4.0}, kPopulationRules);
    ASSERT_EQ(samples.Loci[0].Shares.size(), 1U);
    EXPECT_EQ(samples.Loci[0].Shares[0].Share, 0.25);
    EXPECT_EQ(samples.Loci[0].Alleles[0], 1.0);
}

TEST(Samples, ATableThatIsNotThereIsASampleWithoutData) {
    LoadedRun run(kTwoPops);
    run.counted();
    SampleTables tables = run->PopAllele;
    tables[2].resize(1); // B without L2
    const Samples samples =
        prepareSamples(tables, 1, 2, run->PopAllele[0], {2.0, 4.0}, kPopulationRules);
    EXPECT_EQ(samples.Loci[0].Typed, (std::vector<double>{1.0, 1.0}));
    EXPECT_EQ(samples.Loci[1].Typed, (std::vector<double>{1.0, 0.0}));
}
