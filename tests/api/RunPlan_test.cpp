#include "api/RunPlan.h"

#include "distance/measures.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

using namespace kva;

using api::Settings;

namespace {

// What is said of wrong settings; empty where they are taken.
std::string refusalOf(const Settings& settings) {
    try {
        planOf(settings);
    } catch (const WrongWord& wrong) {
        return wrong.what();
    }
    return {};
}

} // namespace

TEST(RunPlan, OfNoSettingsIsThatOfTheCommandLine) {
    const RunPlan plan = planOf({});
    EXPECT_EQ(plan.Masks.GeneralMask, kCommandLineDefaults.GeneralMask);
    EXPECT_EQ(plan.Masks.PopDistMask, kCommandLineDefaults.PopDistMask);
    EXPECT_EQ(plan.Masks.FstMask, kCommandLineDefaults.FstMask);
    EXPECT_EQ(plan.Masks.HetRangeMask, kCommandLineDefaults.HetRangeMask);
    EXPECT_EQ(plan.Scalars.Permutationen, 10000);
    EXPECT_EQ(plan.Scalars.RichnessRef, -1);
    EXPECT_EQ(plan.Seed, 1U);
}

TEST(RunPlan, PairsOfFstLeaveGlobalAndBetaAway) {
    Settings settings;
    settings.fstPairs = true;
    const RunPlan plan = planOf(settings);
    EXPECT_TRUE(hasBit(plan.Masks.GeneralMask, GeneralBit::FStatistics));
    EXPECT_EQ(plan.Masks.FstMask & (FstBit::NoPairs | FstBit::Global | FstBit::Beta), 0U);
}

TEST(RunPlan, GlobalFstLeavesPairsAway) {
    Settings settings;
    settings.fstGlobal = true;
    EXPECT_EQ(planOf(settings).Masks.FstMask & (FstBit::NoPairs | FstBit::Global | FstBit::Beta),
              FstBit::NoPairs | FstBit::Global);
}

TEST(RunPlan, AllDistancesAreThoseOfAllMeasures) {
    Settings named;
    for (const Measure& measure : allMeasures()) {
        named.individualDistances.insert(measure.Stem);
    }
    Settings all;
    all.individualDistances = {"all"};
    EXPECT_EQ(planOf(all).IndividualMeasures, planOf(named).IndividualMeasures);
    EXPECT_TRUE(hasBit(planOf(all).Masks.GeneralMask, GeneralBit::IndDistances));
    EXPECT_FALSE(hasBit(planOf(all).Masks.GeneralMask, GeneralBit::PopDistances));
}

TEST(RunPlan, ReferenceOfTheRichnessIsTwoGeneCopiesAnIndividual) {
    Settings settings;
    settings.rarefy = 7.5;
    EXPECT_EQ(planOf(settings).Scalars.RichnessRef, 15);
}

TEST(RunPlan, UnknownNamesTellTheNearest) {
    Settings settings;
    settings.populationDistances = {"DAM"};
    EXPECT_NE(refusalOf(settings).find("unknown distance 'DAM', the nearest known one is 'DAN'"),
              std::string::npos);
    settings = {};
    settings.formats = {"arlekin"};
    EXPECT_NE(refusalOf(settings).find("'arlequin'"), std::string::npos);
}

TEST(RunPlan, NumbersOutOfTheirRangeAreRefused) {
    const struct {
        void (*Set)(Settings& settings);
        const char* Name;
    } kWrong[] = {
        {[](Settings& s) { s.permutations = -1; }, "permutations"},
        {[](Settings& s) { s.sequentialHits = -1; }, "sequentialHits"},
        {[](Settings& s) { s.bootstrap = 0; }, "bootstrap"},
        {[](Settings& s) { s.hetRange = -1; }, "hetRange"},
        {[](Settings& s) { s.threads = 0; }, "threads"},
        {[](Settings& s) { s.threads = 1025; }, "threads"},
        {[](Settings& s) { s.rarefy = 2e9; }, "rarefy"},
        {[](Settings& s) { s.rarefy = std::numeric_limits<double>::quiet_NaN(); }, "rarefy"},
    };
    for (const auto& wrong : kWrong) {
        Settings settings;
        wrong.Set(settings);
        EXPECT_EQ(refusalOf(settings).rfind(wrong.Name, 0), 0U) << wrong.Name;
    }
}

TEST(RunPlan, SettingsWithoutAMeaningAreRefused) {
    const std::string range = "hetLinked, hetIndividuals, hetThin and hetUncorrected need hetRange";
    const std::string pairs = "sequentialHits, fstLoci and thin need fstPairs";
    const std::string bootstrap = "bootstrap needs populationDistances or individualDistances";
    const struct {
        void (*Set)(Settings& settings);
        std::string Words;
    } kWrong[] = {
        {[](Settings& s) { s.hetLinked = true; }, range},
        {[](Settings& s) { s.hetIndividuals = true; }, range},
        {[](Settings& s) { s.hetThin = true; }, range},
        {[](Settings& s) { s.hetUncorrected = true; }, range},
        {[](Settings& s) { s.sequentialHits = 1; }, pairs},
        {[](Settings& s) { s.fstLoci = true; }, pairs},
        {[](Settings& s) { s.fstGlobal = s.fstBeta = s.thin = true; }, pairs},
        {[](Settings& s) {
             s.fstPairs = s.thin = true;
             s.sequentialHits = 1;
         },
         "sequentialHits and thin do not go together"},
        {[](Settings& s) { s.bootstrap = 2; }, bootstrap},
        {[](Settings& s) { s.imInformation = "x"; }, "imInformation needs the format im"},
        {[](Settings& s) {
             s.imInformation = "x";
             s.formats = {"arlequin", "msvar"};
         },
         "imInformation needs the format im"},
    };
    for (const auto& wrong : kWrong) {
        Settings settings;
        wrong.Set(settings);
        EXPECT_EQ(refusalOf(settings), wrong.Words) << &wrong - kWrong;
    }
}

TEST(RunPlan, SettingsBesideTheOneThatTheyNeedAreTaken) {
    void (*const kRight[])(Settings & settings) = {
        [](Settings& s) {
            s.hetRange = 0;
            s.hetLinked = s.hetIndividuals = s.hetThin = s.hetUncorrected = true;
        },
        [](Settings& s) { s.fstPairs = s.fstLoci = s.thin = true; },
        [](Settings& s) {
            s.fstPairs = true;
            s.sequentialHits = 1;
        },
        [](Settings& s) {
            s.bootstrap = 2;
            s.populationDistances = {"DAN"};
        },
        [](Settings& s) {
            s.bootstrap = 2;
            s.individualDistances = {"DAN"};
        },
        [](Settings& s) { s.bootstrap = 1; }, // no bootstrap
        [](Settings& s) {
            s.imInformation = "x";
            s.formats = {"im"};
        },
        [](Settings& s) {
            s.imInformation = "x";
            s.formats = {"all"};
        },
    };
    for (const auto& right : kRight) {
        Settings settings;
        right(settings);
        EXPECT_EQ(refusalOf(settings), "") << &right - kRight;
    }
}
