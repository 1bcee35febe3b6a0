#include "control/CMenu.h"

#include "control/menuscreens.h"
#include "support/support.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>

using namespace kva;

using namespace kva_test;

namespace {

std::string screen(CMenuAllg& menu, int32_t number) {
    menu.MenuNummer = number;
    StdoutCapture console;
    EXPECT_EQ(menu.WriteMenu(0), 0);
    return console.text();
}

std::string information(CMenuAllg& menu, int was) {
    StdoutCapture console;
    EXPECT_EQ(menu.WriteInformation(was), 0);
    return console.text();
}

// A setting, and the one place of a screen that it changes.
struct State {
    int32_t menu;
    const char* screen; // with the settings of the start
    void (*set)(CMenuAllg&);
    const char* old;
    const char* now;
};

std::ostream& operator<<(std::ostream& out, const State& state) {
    return out << testing::PrintToString(std::string(state.now));
}

class MenuState : public testing::TestWithParam<State> {};

} // namespace

// --- Screens at the start ---------------------------------------------------------------

TEST(WriteMenu, DrawsEachMenuWithTheSettingsOfTheStart) {
    CMenuAllg menu;
    EXPECT_EQ(screen(menu, 0), kMainScreen);
    EXPECT_EQ(screen(menu, 1), kDistanceScreen);
    EXPECT_EQ(screen(menu, 2), kDistanceSettingsScreen);
    EXPECT_EQ(screen(menu, 4), kFStatisticsScreen);
    EXPECT_EQ(screen(menu, 5), kConversionScreen);
    EXPECT_EQ(screen(menu, 6), kHetRangeScreen);
}

TEST(WriteMenu, OfANumberWithoutAMenuOnlyTheFrameIsDrawn) {
    CMenuAllg menu;
    const char* const frame = "\n__________________________________________________________"
                              "\n     (!) ... Run\n     (q) ... Quit\nPlease enter command:";
    EXPECT_EQ(screen(menu, 3), frame);
    EXPECT_EQ(screen(menu, -1), frame);
}

TEST(WriteMenu, DrawsNothingFromNumberSevenOn) {
    CMenuAllg menu;
    menu.MenuNummer = 7;
    StdoutCapture console;
    EXPECT_EQ(menu.WriteMenu(0), 2);
    EXPECT_EQ(console.text(), "");
}

TEST(WriteMenu, DrawsNothingForAnArgument) {
    CMenuAllg menu;
    StdoutCapture console;
    EXPECT_EQ(menu.WriteMenu(1), 1);
    menu.MenuNummer = 7;
    EXPECT_EQ(menu.WriteMenu(-1), 1);
    EXPECT_EQ(console.text(), "");
}

TEST(WriteHeader, WelcomesUnlessThereIsAnArgument) {
    CMenuAllg menu;
    StdoutCapture console;
    EXPECT_EQ(menu.WriteHeader(0), 0);
    EXPECT_EQ(menu.WriteHeader(1), 1);
    EXPECT_EQ(console.text(), "\nWelcome to KVAnalyzer 4.05 !\n");
}

// --- The main menu ------------------------------------------------------------------------

TEST(MainMenu, AChosenFileCanBeRemoved) {
    CMenuAllg menu;
    menu.DateiListe[0] = "my cats.txt";
    menu.DateiAnzahl = 1;
    EXPECT_EQ(screen(menu, 0), R"(
__________________________________________________________
     (i) ... Inputfile:my cats.txt (1)
     (X) ... Remove Data from Memory

     (d) ... Distance settings  
     (c) ... Data conversion settings  
     (a) ... Number of ind's for allelic richness:
                                    : Minimal sample number per locus
     (r) ... Heterozygosity range settings

     (!) ... Run
     (q) ... Quit
Please enter command:)");
}

TEST(MainMenu, LoadedDataCanBeShownToo) {
    CMenuAllg menu;
    menu.DateiListe[0] = "cats.txt";
    menu.DateiAnzahl = 1;
    menu.DatenObjekt = std::make_unique<AnalyseDataObj>();
    EXPECT_EQ(screen(menu, 0), R"(
__________________________________________________________
     (i) ... Inputfile:cats.txt (1)
     (X) ... Remove Data from Memory
     (s) ... Show Data-Information
****** ;-) ******
!Data loaded!
****** ;-) ******

     (d) ... Distance settings  
     (c) ... Data conversion settings  
     (a) ... Number of ind's for allelic richness:
                                    : Minimal sample number per locus
     (r) ... Heterozygosity range settings

     (!) ... Run
     (q) ... Quit
Please enter command:)");
}

TEST(MainMenu, LoadedDataWithoutANameCanBeRemoved) {
    CMenuAllg menu;
    menu.DatenObjekt = std::make_unique<AnalyseDataObj>();
    EXPECT_EQ(screen(menu, 0), changed(kMainScreen, "testdata.dat)\n", R"(testdata.dat)
     (X) ... Remove Data from Memory
     (s) ... Show Data-Information
****** ;-) ******
!Data loaded!
****** ;-) ******
)"));
}

TEST(MainMenu, ShowsTheRichnessInsteadOfTheMinimalSampleNumber) {
    CMenuAllg menu;
    menu.RichnessRef = 5; // gene copies
    EXPECT_EQ(screen(menu, 0), changed(kMainScreen,
                                       "richness:\n                                    "
                                       ": Minimal sample number per locus\n",
                                       "richness: 2.5 \n"));
}

TEST(MainMenu, ARichnessOfZeroIsTheMinimalSampleNumber) {
    CMenuAllg menu;
    menu.RichnessRef = 0;
    EXPECT_EQ(screen(menu, 0), kMainScreen);
}

// --- States -------------------------------------------------------------------------------

TEST_P(MenuState, IsShownInItsPlace) {
    CMenuAllg menu;
    GetParam().set(menu);
    EXPECT_EQ(screen(menu, GetParam().menu),
              changed(GetParam().screen, GetParam().old, GetParam().now));
}

#define STATES(name, ...) INSTANTIATE_TEST_SUITE_P(name, MenuState, testing::ValuesIn(__VA_ARGS__))

namespace {

const State kMainStates[] = {
    {0, kMainScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x400; }, "Distance settings  \n",
     "Distance settings  pairwise Pops. \n"},
    {0, kMainScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x800; }, "Distance settings  \n",
     "Distance settings  pairwise Indiv. \n"},
    {0, kMainScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x4000; }, "Distance settings  \n",
     "Distance settings  pairwise Fst\n"},
    {0, kMainScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x4C00; }, "Distance settings  \n",
     "Distance settings  pairwise Pops. pairwise Indiv. pairwise Fst\n"},
    {0, kMainScreen, [](CMenuAllg& m) { m.RichnessRef = 2147483647; },
     ":\n                                    : Minimal sample number per locus\n",
     ": 1.07374e+09 \n"}, // six digits, as the stream prints by itself
};

const State kDistanceStates[] = {
    {1, kDistanceScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x400; }, "POP_OFF IND_OFF",
     "POP_ON IND_OFF"},
    {1, kDistanceScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x800; }, "POP_OFF IND_OFF",
     "POP_OFF IND_ON"},
    {1, kDistanceScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x4000; },
     "Fst,Fit,Fis                    OFF", "Fst,Fit,Fis                    ON"},
};

const State kDistanceSettingsStates[] = {
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x400; },
     "populations distances calc: OFF", "populations distances calc: ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x800; },
     "individual distances calc : OFF", "individual distances calc : ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x2; }, "allels : ON",
     "allels : OFF"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x4; },
     "similarity        : OFF", "similarity        : ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x8; }, "algorithm:OFF",
     "algorithm:ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x10; },
     "coefficient         : OFF", "coefficient         : ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x20; },
     "mu squared            : ON", "mu squared            : OFF"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x40; },
     "squared difference  : OFF", "squared difference  : ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x80; },
     "Chord distance              : ON\n  (8)    Da , Nei's-distance (1983)       : ON",
     "Chord distance              : OFF\n  (8)    Da , Nei's-distance (1983)       : OFF"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask ^= 0x100; },
     "genetic distance:OFF", "genetic distance:ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x8000; },
     "1-(similarity factor)    : OFF", "1-(similarity factor)    : ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask |= 0x400; },
     "pair and locus: OFF", "pair and locus: ON"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.Bootstraps = 2; }, "No bootstrapping!", "2"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.Bootstraps = 0; }, "No bootstrapping!", "0"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.BootLoci = 2; }, "Use all loci", "2"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.BootLoci = 1; }, "Use all loci",
     "Use all loci"},
    {2, kDistanceSettingsScreen, [](CMenuAllg& m) { m.PopDistMask |= 0x800; }, "(m)",
     "(m)"}, // NEXUS is not shown
};

const State kConversionStates[] = {
    {5, kConversionScreen, [](CMenuAllg& m) { m.GeneralMask ^= 0x20000; }, "(Beaumont)     : OFF",
     "(Beaumont)     : ON"},
    {5, kConversionScreen, [](CMenuAllg& m) { m.GeneralMask ^= 0x80000; }, "LAMARC       : ON",
     "LAMARC       : OFF"},
    {5, kConversionScreen, [](CMenuAllg& m) { m.GeneralMask ^= 0x40000; },
     "Arlequin format      : ON", "Arlequin format      : OFF"},
    {5, kConversionScreen, [](CMenuAllg& m) { m.GeneralMask ^= 0x400000; },
     "IM-format            : OFF", "IM-format            : ON"},
    {5, kConversionScreen, [](CMenuAllg& m) { m.GeneralMask ^= 0x100000; }, "stepsize        : OFF",
     "stepsize        : ON"},
    {5, kConversionScreen, [](CMenuAllg& m) { m.IMDateiName = "im info.txt"; }, "for IM  : No",
     "for IM  : im info.txt"},
};

const State kHetRangeStates[] = {
    {6, kHetRangeScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x200000; }, "range: OFF",
     "range: ON"},
    {6, kHetRangeScreen, [](CMenuAllg& m) { m.HetRandomisierungen = 0; }, ": 1000", ": 0"},
    {6, kHetRangeScreen, [](CMenuAllg& m) { m.HetRangeMask ^= 0x4000; }, "inbred data    : OFF",
     "inbred data    : ON"},
    {6, kHetRangeScreen, [](CMenuAllg& m) { m.HetRangeMask ^= 0x800; }, "value        : ON",
     "value        : OFF"},
    {6, kHetRangeScreen, [](CMenuAllg& m) { m.HetRangeMask ^= 0x1000; },
     "linked              : OFF", "linked              : ON"},
    {6, kHetRangeScreen, [](CMenuAllg& m) { m.HetRangeMask ^= 0x2000; }, "chromosomes:OFF",
     "chromosomes:ON"},
};

} // namespace

STATES(Main, kMainStates);
STATES(Distances, kDistanceStates);
STATES(DistanceSettings, kDistanceSettingsStates);
STATES(Conversion, kConversionStates);
STATES(HetRange, kHetRangeStates);

// --- The menu of the F-statistics -------------------------------------------------------------

namespace {

const State kFStatisticsStates[] = {
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.GeneralMask |= 0x4000; }, "distances calc: OFF",
     "distances calc: ON"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask ^= 0x8000; }, "calculation          : ON",
     "calculation          : OFF"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask ^= 0x3; }, ": Hobs", ": Hexp"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask ^= 0x5; }, ": Hobs",
     ": Hexp only for inbred Pop."},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask |= 0x6; }, ": Hobs", ": Hobs"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask ^= 0x18; }, "Weinberg         : No",
     "Weinberg         : Yes"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask ^= 0x10; }, "Weinberg         : No",
     "Weinberg         : No"}, // the bit of the genotypes alone is shown
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask |= 0x4000; }, "loci      : No\n",
     "loci      : Bootstrap\n"
     "          (l) Number of loci per replica  : -1\n"
     "          (a) Number of replica           : 1000\n"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.FstMask |= 0x2000; }, "loci      : No\n",
     "loci      : Bootstrap\n"
     "          (l) Number of loci per replica  : -1\n"
     "          (a) Number of replica           : 1000\n"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.Permutationen = 0; }, ": 10000\n",
     ": No permutation\n"},
    {4, kFStatisticsScreen, [](CMenuAllg& m) { m.Permutationen = 1; }, ": 10000\n", ": 1\n"},
};

} // namespace

STATES(FStatistics, kFStatisticsStates);

// Global and pairwise: the lines of the keys 6 and r are there.
TEST(FStatisticsMenu, PairwiseFstShowsTwoMoreSettings) {
    CMenuAllg menu;
    menu.FstMask &= ~0x1000U;
    EXPECT_EQ(screen(menu, 4), R"(
__________________________________________________________
     (c) ... Fst/Fis/Fit distances calc: OFF
     (g) Fst calculated global         : ON
     (g) Fst calculated pairwise       : ON
     (h) Betai/ij calculation          : ON

     (1) Calculation based on          : Hobs
     (4) Assume Hardy-Weinberg         : No

     (6) Fst per locus and pair        : no
     (7) Heterogeneity among loci      : No

     (n) ... Number of permutations    : 10000
     (r) ... Random discarding of data
             if necessary before permutation:  no
             (only for pairwise Fst)

     (b) ... back to distance menu
     (m) ... back to main menu

     (!) ... Run
     (q) ... Quit
Please enter command:)");
}

TEST(FStatisticsMenu, PairwiseFstAloneShowsThemToo) {
    CMenuAllg menu;
    menu.FstMask &= ~0x1000U;
    const std::string both = screen(menu, 4);
    menu.FstMask &= ~0x800U;
    const std::string pairwise = changed(both, "global         : ON", "global         : OFF");
    EXPECT_EQ(screen(menu, 4), pairwise);
    menu.FstMask |= 0x1000U; // without the bit of the global Fst this one does not count
    EXPECT_EQ(screen(menu, 4), pairwise);
}

TEST(FStatisticsMenu, PairwiseSettingsAreYesOrNo) {
    CMenuAllg menu;
    menu.FstMask &= ~0x1000U;
    const std::string off = screen(menu, 4);
    menu.FstMask |= 0xC0;
    EXPECT_EQ(screen(menu, 4),
              changed(changed(off, "and pair        : no", "and pair        : yes"),
                      "permutation:  no", "permutation:  yes"));
}

TEST(FStatisticsMenu, HeterogeneityShowsItsNumbers) {
    CMenuAllg menu;
    menu.FstMask |= 0x4000;
    menu.ReplikaLoci = 3;
    menu.Replikate = 400;
    EXPECT_EQ(screen(menu, 4), changed(kFStatisticsScreen, "loci      : No\n",
                                       "loci      : Bootstrap\n"
                                       "          (l) Number of loci per replica  : 3\n"
                                       "          (a) Number of replica           : 400\n"));
}

// --- Information ------------------------------------------------------------------------------

TEST(WriteInformation, ShowsTheVersions) {
    CMenuAllg menu;
    EXPECT_EQ(information(menu, 3),
              "\n     Menu-Maker Version:1.2\n     KVAnalyzer-Code-Version:4.05\n");
    EXPECT_EQ(information(menu, 7), "4.05");
}

TEST(WriteInformation, ShowsTheSettingsThatStandInScreens) {
    CMenuAllg menu;
    EXPECT_EQ(std::string(kDistanceSettingsScreen).find(information(menu, 4)), 59U);
    EXPECT_EQ(std::string(kFStatisticsScreen).find(information(menu, 5)), 73U);
}

TEST(WriteInformation, OfOtherNumbersIsNothing) {
    CMenuAllg menu;
    for (const int was : {-1, 0, 1, 2, 9, 100}) {
        EXPECT_EQ(information(menu, was), "") << was;
    }
}

TEST(WriteInformation, WithoutDataHasNoneToShow) {
    CMenuAllg menu;
    EXPECT_EQ(information(menu, 6), "");
}

// 5 populations make 5 x 4 / 2 = 10 pairs.
TEST(WriteInformation, ShowsTheData) {
    CMenuAllg menu;
    menu.DatenObjekt = std::make_unique<AnalyseDataObj>();
    AnalyseDataObj& data = *menu.DatenObjekt;
    data.DateiName = "sub/cats.txt";
    data.AnzLoci = 9;
    data.AnzPop = 5;
    data.MaxChromosomen = 46;
    data.DatenFormat = 2;
    EXPECT_EQ(information(menu, 6), "\nInformation in file:sub/cats.txt\n"
                                    "\n"
                                    " Loci:\t\t\t\t9\n"
                                    " Populations:\t\t5\n"
                                    " Max.Chromosomes:\t46\n"
                                    " Columnformat:\t\t2\n"
                                    "\n"
                                    " Number of tests:\t\t10");
}

// P = 2^31 - 1: P (P - 1) / 2 = (2^31 - 1) (2^30 - 1) = 2^61 - 2^31 - 2^30 + 1.
TEST(WriteInformation, CountsThePairsOfAnyNumberOfPopulations) {
    CMenuAllg menu;
    menu.DatenObjekt = std::make_unique<AnalyseDataObj>();
    menu.DatenObjekt->AnzPop = 2147483647;
    EXPECT_TRUE(information(menu, 6).ends_with(" Number of tests:\t\t2305843005992468481"));
}

TEST(WriteInformation, ShowsTheHelpUntilAKeyIsPressed) {
    CMenuAllg menu;
    Typed typed("\nqx");
    EXPECT_EQ(information(menu, 8), R"(
__________________________________________________________
Online Information for F-Statistic Menu of KVA

 Help for Command:
 (g) .. KVA can calculate F-Statistic Global (over all populations),
        or between all population pairs.

 (1) .. Observed Heterosygosity is the standard or F-Statistics
        sometimes this value is not a good measure for real (obs.)
        Heterozygosity, therefore you can choose genediversity (Hexp) as a
        better measurement for the reality or AUTO, so that KVA can decide
        between this options.

 (6) .. This option is only possible for pairwise Fst's

 (7) .. Calculate the heterogeneity among loci, by mean across N Loci,
        and makes M replicas. KVA gives the 99% and 95% confidenz intervall.
 (l) .. Number of choosen loci per replica (N).
        0 ... KVA use all loci, >0 ... KVA takes given number of loci
        <0... KVA takes (number of loci)-given number

   (b) ... back to menu
Please enter command:)");
    EXPECT_EQ(typed.rest(), "x");
}
