#include "control/CMenu.h"

#include "control/frontend.h"
#include "control/menuscreens.h"
#include "support/datasets.h"
#include "support/support.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

// All settings of a menu; what a row does not name has the value of the start.
struct Settings {
    int32_t menu = 0;
    uint32_t general = 0xC31FF;
    uint32_t popDist = 0xA3;
    uint32_t indDist = 0xA3;
    uint32_t fst = 0x9A39;
    uint32_t het = 0x803;
    int32_t bootstraps = 1;
    int32_t bootLoci = -1;
    int32_t permutations = 10000;
    int32_t richness = -1;
    int32_t randomisations = 1000;
    int32_t replicaLoci = -1;
    int32_t replicas = 1000;

    bool operator==(const Settings&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Settings& s) {
    return out << "menu " << s.menu << std::hex << " general " << s.general << " popDist "
               << s.popDist << " indDist " << s.indDist << " fst " << s.fst << " het " << s.het
               << std::dec << " bootstraps " << s.bootstraps << " bootLoci " << s.bootLoci
               << " permutations " << s.permutations << " richness " << s.richness
               << " randomisations " << s.randomisations << " replicaLoci " << s.replicaLoci
               << " replicas " << s.replicas;
}

Settings settingsOf(const CMenuAllg& m) {
    return {m.MenuNummer,          m.GeneralMask, m.PopDistMask, m.IndDistMask,   m.FstMask,
            m.HetRangeMask,        m.Bootstraps,  m.BootLoci,    m.Permutationen, m.RichnessRef,
            m.HetRandomisierungen, m.ReplikaLoci, m.Replikate};
}

// Keys pressed one after the other in a menu, with what they print.
struct Keys {
    int32_t menu;
    const char* keys;
    Settings expected;
    const char* console = "";
};

std::ostream& operator<<(std::ostream& out, const Keys& row) {
    return out << "menu " << row.menu << " " << testing::PrintToString(std::string(row.keys));
}

class MenuKeys : public testing::TestWithParam<Keys> {};

const char* const kVersions = "\n     Menu-Maker Version:1.2\n     KVAnalyzer-Code-Version:4.05\n";

} // namespace

TEST_P(MenuKeys, ChangeTheSettings) {
    CMenuAllg menu;
    menu.MenuNummer = GetParam().menu;
    std::string console;
    for (std::string keys = GetParam().keys; !keys.empty();) {
        Pressed pressed = press(menu, keys);
        EXPECT_EQ(pressed.result, -1);
        console += pressed.console;
        keys = std::move(pressed.rest);
    }
    EXPECT_EQ(settingsOf(menu), GetParam().expected);
    EXPECT_EQ(console, GetParam().console);
}

#define KEYS(name, ...) INSTANTIATE_TEST_SUITE_P(name, MenuKeys, testing::ValuesIn(__VA_ARGS__))

TEST(CMenuAllg, StartsWithNothingChosen) {
    const CMenuAllg menu;
    EXPECT_EQ(settingsOf(menu), Settings{});
    EXPECT_EQ(menu.MenuReserve, 1);
    EXPECT_EQ(menu.DateiAnzahl, 0);
    EXPECT_EQ(menu.DateiListe.size(), 10U);
    EXPECT_EQ(menu.IMDateiName, "");
    EXPECT_EQ(menu.DatenObjekt, nullptr);
}

// --- Keys ---------------------------------------------------------------------------------

namespace {

const Keys kMainKeys[] = {
    {0, "d", {.menu = 1}}, {0, "D", {.menu = 1}},   {0, "c", {.menu = 5}},   {0, "C", {.menu = 5}},
    {0, "r", {.menu = 6}}, {0, "R", {.menu = 6}},   {0, "sS", {}}, // without data nothing happens
    {0, "X", {}},          {0, "v", {}, kVersions}, {0, "V", {}, kVersions},
};

const Keys kDistanceKeys[] = {
    {1, "+", {.menu = 1, .general = 0xC75FF}},
    {1, "++", {.menu = 1, .general = 0xC75FF}},
    {1, "+-", {.menu = 1}},
    {1, "-", {.menu = 1}},
    {1, "m", {.menu = 0}},
    {1, "M", {.menu = 0}},
    {1, "p", {.menu = 2}},
    {1, "P", {.menu = 2}},
    {1, "s", {.menu = 4}},
    {1, "S", {.menu = 4}},
    {1, "v", {.menu = 1}, kVersions},
};

const Keys kDistanceSettingsKeys[] = {
    {2, "c", {.menu = 2, .general = 0xC35FF}},
    {2, "C", {.menu = 2, .general = 0xC35FF}},
    {2, "i", {.menu = 2, .general = 0xC39FF}},
    {2, "I", {.menu = 2, .general = 0xC39FF}},
    {2, "l", {.menu = 2, .general = 0xCB1FF}},
    {2, "L", {.menu = 2, .general = 0xCB1FF}},
    {2, "o", {.menu = 2, .popDist = 0x4A3}},
    {2, "O", {.menu = 2, .popDist = 0x4A3}},
    {2, "x", {.menu = 2, .popDist = 0x8A3}},
    {2, "X", {.menu = 2, .popDist = 0x8A3}},
    {2, "1", {.menu = 2, .popDist = 0xA1}},
    {2, "2", {.menu = 2, .popDist = 0xA7}},
    {2, "3", {.menu = 2, .popDist = 0xAB}},
    {2, "4", {.menu = 2, .popDist = 0xB3}},
    {2, "5", {.menu = 2, .popDist = 0x83}},
    {2, "6", {.menu = 2, .popDist = 0xE3}},
    {2, "7", {.menu = 2, .popDist = 0x23}},
    {2, "8", {.menu = 2, .popDist = 0x23}}, // the chord distance and Nei's are one setting
    {2, "9", {.menu = 2, .popDist = 0x1A3}},
    {2, "78", {.menu = 2}},
    {2, "cciilloxXO112233445566998877", {.menu = 2}}, // twice is back again
    {2, "b", {.menu = 1}},
    {2, "B", {.menu = 1}},
    {2, "m", {.menu = 0}},
    {2, "M", {.menu = 0}},
    {2, "V", {.menu = 2}, kVersions},
};

const Keys kFStatisticsKeys[] = {
    {4, "c", {.menu = 4, .general = 0xC71FF}},
    {4, "C", {.menu = 4, .general = 0xC71FF}},
    {4, "1", {.menu = 4, .fst = 0x9A3A}}, // Hobs 1, Hexp 2, Hexp for inbred only 4
    {4, "11", {.menu = 4, .fst = 0x9A3C}},
    {4, "111", {.menu = 4}},
    {4, "g", {.menu = 4, .fst = 0x8A39}},  // global and pairwise
    {4, "gg", {.menu = 4, .fst = 0x8239}}, // pairwise only
    {4, "GGG", {.menu = 4}},               // global only
    {4, "h", {.menu = 4, .fst = 0x1A39}},
    {4, "H", {.menu = 4, .fst = 0x1A39}},
    {4, "4", {.menu = 4, .fst = 0x9A21}},
    {4, "44", {.menu = 4}},
    {4, "6", {.menu = 4, .fst = 0x9A79}},
    {4, "7", {.menu = 4, .fst = 0xDA39}},
    {4, "r", {.menu = 4, .fst = 0x9AB9}},
    {4, "R", {.menu = 4, .fst = 0x9AB9}},
    {4, "cChHrR6677", {.menu = 4}},
    {4, "b", {.menu = 1}},
    {4, "B", {.menu = 1}},
    {4, "m", {.menu = 0}},
    {4, "M", {.menu = 0}},
};

const Keys kConversionKeys[] = {
    {5, "1", {.menu = 5, .general = 0xE31FF}},
    {5, "2", {.menu = 5, .general = 0x431FF}},
    {5, "3", {.menu = 5, .general = 0x831FF}},
    {5, "4", {.menu = 5, .general = 0x4C31FF}},
    {5, "r", {.menu = 5, .general = 0x1C31FF}},
    {5, "R", {.menu = 5, .general = 0x1C31FF}},
    {5, "11223344rR", {.menu = 5}},
    {5, "m", {.menu = 0}},
    {5, "M", {.menu = 0}},
};

const Keys kHetRangeKeys[] = {
    {6, "c", {.menu = 6, .general = 0x2C31FF}},
    {6, "C", {.menu = 6, .general = 0x2C31FF}},
    {6, "r", {.menu = 6, .het = 0x4803}},
    {6, "R", {.menu = 6, .het = 0x4803}},
    {6, "0", {.menu = 6, .het = 0x3}},
    {6, "l", {.menu = 6, .het = 0x1803}},
    {6, "L", {.menu = 6, .het = 0x1803}},
    {6, "s", {.menu = 6, .het = 0x2803}},
    {6, "S", {.menu = 6, .het = 0x2803}},
    {6, "cCrR00lLsS", {.menu = 6}},
    {6, "m", {.menu = 0}},
    {6, "M", {.menu = 0}},
};

} // namespace

KEYS(Main, kMainKeys);
KEYS(Distances, kDistanceKeys);
KEYS(DistanceSettings, kDistanceSettingsKeys);
KEYS(FStatistics, kFStatisticsKeys);
KEYS(Conversion, kConversionKeys);
KEYS(HetRange, kHetRangeKeys);

TEST(AnalyseCommand, CyclesTheHeterozygosityFromNoStateToHobs) {
    CMenuAllg menu;
    menu.MenuNummer = 4;
    menu.FstMask = 0;
    press(menu, "1");
    EXPECT_EQ(menu.FstMask, 0x1U);
    menu.FstMask = 0x7; // of several states the first counts, and one is left
    press(menu, "1");
    EXPECT_EQ(menu.FstMask, 0x2U);
}

// 0x8 off: both go on. 0x8 on and 0x10 off: both flip.
TEST(AnalyseCommand, HardyWeinbergTogglesTwoBits) {
    CMenuAllg menu;
    menu.MenuNummer = 4;
    menu.FstMask = 0x10;
    press(menu, "4");
    EXPECT_EQ(menu.FstMask, 0x18U);
    menu.FstMask = 0x8;
    press(menu, "4");
    EXPECT_EQ(menu.FstMask, 0x10U);
}

TEST(AnalyseCommand, CyclesGlobalFromNoPairsAloneToGlobalOnly) {
    CMenuAllg menu;
    menu.MenuNummer = 4;
    menu.FstMask = 0x1000;
    press(menu, "g");
    EXPECT_EQ(menu.FstMask, 0x1800U);
}

TEST(AnalyseCommand, QuitsFromEveryMenu) {
    for (const int32_t number : {0, 1, 2, 3, 4, 5, 6}) {
        for (const char* const key : {"q", "Q", "\n\nq", "", "\n"}) { // also at the end of input
            CMenuAllg menu;
            menu.MenuNummer = number;
            const Pressed pressed = press(menu, key);
            EXPECT_EQ(pressed.result, 0);
            EXPECT_EQ(pressed.console, "");
        }
    }
}

TEST(AnalyseCommand, IgnoresItsArgument) {
    CMenuAllg menu;
    const Typed typed("d");
    EXPECT_EQ(menu.AnalyseCommand(5), -1);
    EXPECT_EQ(menu.MenuNummer, 1);
}

// Every byte that is no key of the menu, nor of all menus, nor a line end.
TEST(AnalyseCommand, TellsOfUnknownKeysAndChangesNothing) {
    const std::pair<int32_t, std::string_view> menus[] = {{0, "dDcCrRiIsSaX"},
                                                          {1, "+-mMpPsS"},
                                                          {2, "cCiIlLoOxX123456789nNrRbBmM"},
                                                          {3, ""},
                                                          {4, "cC1gGhH467rRnNlLaAbBmM"},
                                                          {5, "1234rRfmM"},
                                                          {6, "cCrR0lLsSnNmM"}};
    for (const auto& [number, keys] : menus) {
        for (int byte = 0; byte < 256; ++byte) {
            const char key = static_cast<char>(byte);
            if (std::string_view("qQvV!\n").find(key) != std::string_view::npos ||
                keys.find(key) != std::string_view::npos) {
                continue;
            }
            CMenuAllg menu;
            menu.MenuNummer = number;
            const Pressed pressed = press(menu, std::string(1, key));
            EXPECT_EQ(pressed.result, -1);
            EXPECT_EQ(pressed.console, kUnknown) << "menu " << number << " byte " << byte;
            EXPECT_EQ(settingsOf(menu), Settings{.menu = number});
        }
    }
}

TEST(GetTaste, PassesLineEndsOver) {
    const Typed typed("\n\n\na\nb");
    EXPECT_EQ(CMenuAllg::GetTaste(), 'a');
    EXPECT_EQ(CMenuAllg::GetTaste(), 'b');
}

TEST(GetTaste, GivesBlanksAndOtherBytesAsTheyAre) {
    const Typed typed(std::string(" \r\t\0\xff", 5));
    EXPECT_EQ(CMenuAllg::GetTaste(), ' ');
    EXPECT_EQ(CMenuAllg::GetTaste(), '\r');
    EXPECT_EQ(CMenuAllg::GetTaste(), '\t');
    EXPECT_EQ(CMenuAllg::GetTaste(), '\0');
    EXPECT_EQ(CMenuAllg::GetTaste(), '\xff');
}

TEST(GetTaste, QuitsAtTheEndOfInputAgainAndAgain) {
    const Typed typed("");
    EXPECT_EQ(CMenuAllg::GetTaste(), 'q');
    EXPECT_EQ(CMenuAllg::GetTaste(), 'q');
}

TEST(GetVersion, IsOnePointTwo) {
    CMenuAllg menu;
    int a = 0;
    int b = 0;
    EXPECT_EQ(menu.GetVersion(a, b, 9), 0);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
}

// --- Prompts for numbers ----------------------------------------------------------------------

namespace {

#define BOOTSTRAPS "\nPlease input new number of bootstraps\n(1=no bootstraping):"
#define BOOT_LOCI "\nPlease input number of used loci by bootstrapping\n(-1=no bootstraping):"
#define PERMUTATIONS "\nPlease enter the new number of permutations:"
#define REPLICA_LOCI                                                                               \
    "\nPlease enter the new number of loci\n 0          =  number of available loci (NL)\n"        \
    "-1,-2,-3..  =  NL-1, NL-2, NL-3, ...\n 1, 2, 3..  =  1, 2, 3, ...\n"                          \
    " used for heterogeneity calculation: "
#define REPLICAS "\nPlease enter the new number of replicas:"
#define RANDOMISATIONS "\nPlease input new number of randomisations:"
#define RICHNESS                                                                                   \
    "\nPlease enter reference numbers of individuals for allelic richness.\n"                      \
    "   (-1: take minimal sample number per locus): "

const Keys kBootstrapAnswers[] = {
    {2, "n50", {.menu = 2, .bootstraps = 50}, BOOTSTRAPS "\n"},
    {2, "N\n 1", {.menu = 2, .bootstraps = 1}, BOOTSTRAPS "\n"},
    {2, "n0", {.menu = 2, .bootstraps = 1}, BOOTSTRAPS "\n"},
    {2, "n-5", {.menu = 2, .bootstraps = 1}, BOOTSTRAPS "\n"},
    {2, "n2147483648", {.menu = 2, .bootstraps = 2147483647}, BOOTSTRAPS "\n"},
    {2, "n99999999999999999999", {.menu = 2, .bootstraps = 2147483647}, BOOTSTRAPS "\n"},
    {2, "n-99999999999999999999", {.menu = 2, .bootstraps = 1}, BOOTSTRAPS "\n"},
    {2, "nmany", {.menu = 2}, BOOTSTRAPS "\nNot a number: many\n"},
    {2,
     "n7nmany",
     {.menu = 2, .bootstraps = 7},
     BOOTSTRAPS "\n" BOOTSTRAPS "\nNot a number: many\n"}, // the setting stays as it was
};

const Keys kBootLociAnswers[] = {
    {2, "r5", {.menu = 2, .bootLoci = 5}, BOOT_LOCI "\n"},
    {2, "R1", {.menu = 2, .bootLoci = 1}, BOOT_LOCI "\n"},
    {2, "r0", {.menu = 2, .bootLoci = -1}, BOOT_LOCI "\n"},
    {2, "r-7", {.menu = 2, .bootLoci = -1}, BOOT_LOCI "\n"},
    {2, "r99999999999", {.menu = 2, .bootLoci = 2147483647}, BOOT_LOCI "\n"},
    {2, "r5ra l l", {.menu = 2, .bootLoci = 5}, BOOT_LOCI "\n" BOOT_LOCI "\nNot a number: a\n"},
};

const Keys kPermutationAnswers[] = {
    {4, "n100", {.menu = 4, .permutations = 100}, PERMUTATIONS "\n"},
    {4, "N0", {.menu = 4, .permutations = 0}, PERMUTATIONS "\n"},
    {4, "n-1", {.menu = 4, .permutations = 0}, PERMUTATIONS "\n"},
    {4, "n99999999999", {.menu = 4, .permutations = 2147483647}, PERMUTATIONS "\n"},
    {4, "nx", {.menu = 4}, PERMUTATIONS "\nNot a number: x\n"},
};

const Keys kReplicaLociAnswers[] = {
    {4, "l3", {.menu = 4, .replicaLoci = 3}, REPLICA_LOCI "\n"},
    {4, "L0", {.menu = 4, .replicaLoci = 0}, REPLICA_LOCI "\n"},
    {4, "l-3", {.menu = 4, .replicaLoci = -3}, REPLICA_LOCI "\n"},
    {4, "l99999999999", {.menu = 4, .replicaLoci = 2147483647}, REPLICA_LOCI "\n"},
    {4, "l-99999999999", {.menu = 4, .replicaLoci = -2147483647 - 1}, REPLICA_LOCI "\n"},
    {4, "l.", {.menu = 4}, REPLICA_LOCI "\nNot a number: .\n"},
};

// Multiples of 200; the last one that 32 bits hold is 10737418 x 200 = 2147483600.
const Keys kReplicaAnswers[] = {
    {4, "a1", {.menu = 4, .replicas = 200}, REPLICAS "\n"},
    {4, "A200", {.menu = 4, .replicas = 200}, REPLICAS "\n"},
    {4, "a201", {.menu = 4, .replicas = 400}, REPLICAS "\n"},
    {4, "a-300", {.menu = 4, .replicas = 400}, REPLICAS "\n"},
    {4, "a-200", {.menu = 4, .replicas = 200}, REPLICAS "\n"},
    {4, "a2000a0", {.menu = 4, .replicas = 1000}, REPLICAS "\n" REPLICAS "\n"},
    {4, "a2147483599", {.menu = 4, .replicas = 2147483600}, REPLICAS "\n"},
    {4, "a2147483601", {.menu = 4, .replicas = 2147483600}, REPLICAS "\n"},
    {4, "a99999999999", {.menu = 4, .replicas = 2147483600}, REPLICAS "\n"},
    {4, "a-99999999999", {.menu = 4, .replicas = 2147483600}, REPLICAS "\n"},
    {4, "a400a-", {.menu = 4, .replicas = 400}, REPLICAS "\n" REPLICAS "\nNot a number: -\n"},
};

const Keys kRandomisationAnswers[] = {
    {6, "n50", {.menu = 6, .randomisations = 50}, RANDOMISATIONS "\n"},
    {6, "N0", {.menu = 6, .randomisations = 0}, RANDOMISATIONS "\n"},
    {6, "n-50", {.menu = 6, .randomisations = 0}, RANDOMISATIONS "\n"},
    {6, "n99999999999", {.menu = 6, .randomisations = 2147483647}, RANDOMISATIONS "\n"},
    {6, "nx y\n", {.menu = 6}, RANDOMISATIONS "\nNot a number: x\n"},
};

// Twice the number entered, truncated: 2.3 gives 4.6, so 4; 0.4 gives 0.8, so 0, so -1.
const Keys kRichnessAnswers[] = {
    {0, "a5", {.richness = 10}, RICHNESS},
    {0, "a2.5", {.richness = 5}, RICHNESS},
    {0, "a2.3", {.richness = 4}, RICHNESS},
    {0, "a0.5", {.richness = 1}, RICHNESS},
    {0, "a5a0.4", {.richness = -1}, RICHNESS RICHNESS},
    {0, "a5a0", {.richness = -1}, RICHNESS RICHNESS},
    {0, "a5a-1", {.richness = -1}, RICHNESS RICHNESS},
    {0, "a1e300", {.richness = 2147483647}, RICHNESS},
    {0, "a1e999", {.richness = 2147483647}, RICHNESS},
    {0, "a5a-1e999", {.richness = -1}, RICHNESS RICHNESS},
    {0, "a5afew", {.richness = 10}, RICHNESS RICHNESS "\nNot a number: few\n"},
    {0, "a5anan", {.richness = 10}, RICHNESS RICHNESS "\nNot a number: nan\n"},
};

} // namespace

KEYS(Bootstraps, kBootstrapAnswers);
KEYS(BootLoci, kBootLociAnswers);
KEYS(Permutations, kPermutationAnswers);
KEYS(ReplicaLoci, kReplicaLociAnswers);
KEYS(Replicas, kReplicaAnswers);
KEYS(Randomisations, kRandomisationAnswers);
KEYS(Richness, kRichnessAnswers);

TEST(AnalyseCommand, APromptLeavesTheRestOfTheLine) {
    CMenuAllg menu;
    menu.MenuNummer = 2;
    EXPECT_EQ(press(menu, "n 50b\n").rest, "b\n");
    EXPECT_EQ(press(menu, "r5 x").rest, " x");
}

TEST(AnalyseCommand, AWordForANumberTakesTheLineWithIt) {
    CMenuAllg menu;
    menu.MenuNummer = 2;
    EXPECT_EQ(press(menu, "nmany 1 2 3\nb\n").rest, "b\n");
}

TEST(AnalyseCommand, TheEndOfInputAtAPromptKeepsTheSetting) {
    CMenuAllg menu;
    menu.MenuNummer = 4;
    const Typed typed("n");
    StdoutCapture console;
    EXPECT_EQ(menu.AnalyseCommand(0), -1);
    EXPECT_EQ(console.text(), PERMUTATIONS "\n");
    EXPECT_EQ(menu.Permutationen, 10000);
    EXPECT_EQ(menu.AnalyseCommand(0), 0); // and then quits
}

// --- Files --------------------------------------------------------------------------------

TEST(AnalyseCommand, ChoosesADataFile) {
    CMenuAllg menu;
    const Pressed pressed = press(menu, "i\ncats.txt\nq");
    EXPECT_EQ(pressed.console, "\nPlease enter the filename:");
    EXPECT_EQ(pressed.rest, "\nq");
    EXPECT_EQ(menu.DateiListe[0], "cats.txt");
    EXPECT_EQ(menu.DateiAnzahl, 1);
    EXPECT_EQ(menu.DatenObjekt, nullptr);
    press(menu, "I'my cats.txt'"); // in quotes, of two words
    EXPECT_EQ(menu.DateiListe[0], "my cats.txt");
    EXPECT_EQ(menu.DateiAnzahl, 1);
}

TEST(AnalyseCommand, TheEndOfInputChoosesNoFile) {
    CMenuAllg menu;
    press(menu, "i\n");
    EXPECT_EQ(menu.DateiAnzahl, 0);
}

TEST(AnalyseCommand, AChosenFileTakesTheDataAway) {
    CMenuAllg menu;
    menu.DatenObjekt = std::make_unique<AnalyseDataObj>();
    press(menu, "icats.txt\n");
    EXPECT_EQ(menu.DatenObjekt, nullptr);
}

TEST(AnalyseCommand, RemovesFileAndDataButNoSetting) {
    CMenuAllg menu;
    press(menu, "icats.txt\n");
    menu.DatenObjekt = std::make_unique<AnalyseDataObj>();
    menu.IMDateiName = "im.txt";
    menu.Bootstraps = 9;
    EXPECT_EQ(press(menu, "X").console, "");
    EXPECT_EQ(menu.DatenObjekt, nullptr);
    EXPECT_EQ(menu.DateiAnzahl, 0);
    EXPECT_EQ(menu.DateiListe[0], "");
    EXPECT_EQ(menu.IMDateiName, "im.txt");
    EXPECT_EQ(menu.Bootstraps, 9);
}

TEST(AnalyseCommand, ChoosesAnIMFile) {
    CMenuAllg menu;
    menu.MenuNummer = 5;
    const Pressed pressed = press(menu, "fim.txt x");
    EXPECT_EQ(pressed.console, "\nPlease enter the filename of IM Information file (n=no):\n");
    EXPECT_EQ(pressed.rest, " x");
    EXPECT_EQ(menu.IMDateiName, "im.txt");
}

TEST(AnalyseCommand, TheWordNForgetsTheIMFile) {
    CMenuAllg menu;
    menu.MenuNummer = 5;
    press(menu, "fim.txt");
    press(menu, "f\nn\n");
    EXPECT_EQ(menu.IMDateiName, "");
    press(menu, "fno\n"); // another word is a name
    EXPECT_EQ(menu.IMDateiName, "no");
    press(menu, "fN\n");
    EXPECT_EQ(menu.IMDateiName, "N");
}

// --- Runs ---------------------------------------------------------------------------------

namespace {

const char* const kReading = "\nRead Loci/Pop Information!\n....\n"; // a dot for each row

std::string informationOf(const std::string& name) {
    return "\nInformation in file:" + name +
           "\n\n Loci:\t\t\t\t2\n Populations:\t\t2\n Max.Chromosomes:\t4\n Columnformat:\t\t2\n"
           "\n Number of tests:\t\t1";
}

// What the passes print for the two populations with the settings of `menu`, without the menu.
std::string passesOf(const CMenuAllg& menu) {
    LoadedRun run(kTwoPops);
    StdoutCapture console;
    StartRun(*run, menu, menu);
    return console.text();
}

// What they print on an object that loaded nothing.
std::string passesWithoutData(const CMenuAllg& menu) {
    AnalyseDataObj run;
    StdoutCapture console;
    StartRun(run, menu, menu);
    return console.text();
}

// Works in a folder with "data.txt" and "other.txt", the same two populations.
class MenuRun : public testing::Test {
  protected:
    MenuRun() {
        writeFile("data.txt", tabbed(kTwoPops));
        writeFile("other.txt", tabbed(kTwoPops));
    }

    // The console of the first run of a chosen file.
    std::string firstRun(const std::string& name) {
        return kReading + informationOf(name) + passesOf(menu) + "\n";
    }

    // The console of each further one.
    std::string nextRun(const std::string& name) {
        return informationOf(name) + passesOf(menu) + "\n";
    }

    const TempFolder folder{TempFolder::Enter::yes};
    CMenuAllg menu;
};

const char* const kNotOpened = "\nWrong Filename or Path!\n";

} // namespace

TEST_F(MenuRun, LoadsShowsTheDataAndRuns) {
    press(menu, "idata.txt\n");
    const std::string expected = firstRun("data.txt");
    EXPECT_EQ(press(menu, "!").console, expected);
    EXPECT_TRUE(fs::exists(folder / "data.txt_KVAresult00/Allelecount/Allelecount.xls"));
    EXPECT_NE(menu.DatenObjekt, nullptr);
    EXPECT_EQ(fs::current_path(), folder / "data.txt_KVAresult00");
}

TEST_F(MenuRun, RunsFromEveryMenu) {
    press(menu, "idata.txt\n");
    for (const int32_t number : {0, 1, 2, 4, 5, 6}) {
        menu.MenuNummer = number;
        EXPECT_EQ(press(menu, "!").result, -1);
        EXPECT_EQ(menu.MenuNummer, number);
    }
    EXPECT_TRUE(fs::exists(folder / "data.txt_KVAresult05/KVA.log"));
}

TEST_F(MenuRun, WithoutAFileTakesTheTestData) {
    writeFile("testdata.dat", tabbed(kTwoPops));
    const std::string expected = "\nUsing Testdata!" + firstRun("testdata.dat");
    EXPECT_EQ(press(menu, "!").console, expected);
    EXPECT_EQ(menu.DateiAnzahl, 1);
    EXPECT_EQ(menu.DateiListe[0], "testdata.dat");
    EXPECT_TRUE(fs::exists(folder / "testdata.dat_KVAresult00/KVA.log"));
}

TEST_F(MenuRun, TestDataThatAreNotThereAreToldOf) {
    EXPECT_EQ(press(menu, "!").console, "\nUsing Testdata!\nWrong Filename or Path!\n");
    EXPECT_NE(menu.DatenObjekt, nullptr); // the object stays
}

TEST_F(MenuRun, ASecondRunMakesAFolderAndReadsNothing) {
    press(menu, "idata.txt\n");
    press(menu, "!");
    const std::string log = readFile(folder / "data.txt_KVAresult00/KVA.log");
    fs::remove(folder / "data.txt"); // not read again
    const std::string expected = nextRun("data.txt");
    EXPECT_EQ(press(menu, "!").console, expected);
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult01/KVA.log"), log);
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult00/KVA.log"), log);
}

TEST_F(MenuRun, AChangedSettingTakesEffectInTheNextRun) {
    press(menu, "idata.txt\n");
    press(menu, "!");
    menu.MenuNummer = 4;
    press(menu, "c");
    press(menu, "n77");
    press(menu, "!");
    const std::string before = readFile(folder / "data.txt_KVAresult00/KVA.log");
    const std::string after = readFile(folder / "data.txt_KVAresult01/KVA.log");
    EXPECT_EQ(before.find("Number of permutations"), std::string::npos);
    EXPECT_NE(after.find("Number of permutations\t: 77\n"), std::string::npos);
}

TEST_F(MenuRun, HandsAllSettingsOver) {
    press(menu, "idata.txt\n");
    menu.PopDistMask = 0x1;
    menu.IndDistMask = 0x0;
    menu.FstMask = 0x239;
    menu.HetRangeMask = 0x3;
    menu.BootLoci = 11;
    menu.RichnessRef = 12;
    menu.HetRandomisierungen = 13;
    menu.ReplikaLoci = 14;
    menu.Replikate = 200;
    press(menu, "!");
    const AnalyseDataObj& data = *menu.DatenObjekt;
    EXPECT_EQ(data.GeneralMask, 0xC31FFU);
    EXPECT_EQ(data.PopDistMask, 0x1U);
    EXPECT_EQ(data.IndDistMask, 0x0U);
    EXPECT_EQ(data.FstMask, 0x239U);
    EXPECT_EQ(data.HetRangeMask, 0x3U);
    EXPECT_EQ(data.BootLoci, 11);
    EXPECT_EQ(data.RichnessRef, 12);
    EXPECT_EQ(data.HetRandomisierungen, 13);
    EXPECT_EQ(data.ReplikaLoci, 14);
    EXPECT_EQ(data.Replikate, 200);
}

TEST_F(MenuRun, AFileChosenAfterARunIsLoadedByTheNext) {
    press(menu, "idata.txt\n");
    press(menu, "!");
    EXPECT_EQ(press(menu, "iother.txt\n").console, "\nPlease enter the filename:");
    EXPECT_EQ(menu.DatenObjekt, nullptr);
    EXPECT_EQ(fs::current_path(), folder.path()); // the old object leads back
    const std::string expected = firstRun("other.txt");
    EXPECT_EQ(press(menu, "!").console, expected);
    EXPECT_TRUE(fs::exists(folder / "other.txt_KVAresult00/KVA.log"));
    EXPECT_FALSE(fs::exists(folder / "data.txt_KVAresult01"));
}

TEST_F(MenuRun, AfterARemovalTheTestDataAreNext) {
    press(menu, "idata.txt\n");
    press(menu, "!");
    EXPECT_EQ(press(menu, "X").console, "");
    EXPECT_EQ(fs::current_path(), folder.path());
    EXPECT_EQ(press(menu, "!").console, "\nUsing Testdata!\nWrong Filename or Path!\n");
}

TEST_F(MenuRun, ShowsTheDataAgain) {
    press(menu, "idata.txt\n");
    press(menu, "!");
    EXPECT_EQ(press(menu, "s").console, informationOf("data.txt"));
    EXPECT_EQ(press(menu, "S").console, informationOf("data.txt"));
}

// --- Runs that fail ---------------------------------------------------------------------------

TEST_F(MenuRun, AFileThatDoesNotOpenLeavesAnObjectWithoutData) {
    press(menu, "iabsent.txt\n");
    EXPECT_EQ(press(menu, "!").console, kNotOpened);
    ASSERT_NE(menu.DatenObjekt, nullptr);
    EXPECT_EQ(menu.DatenObjekt->Daten, nullptr);
    EXPECT_EQ(menu.DatenObjekt->DateiName, "absent.txt");
}

// Nothing guards it: the passes meet an empty object, also once the file is there.
TEST_F(MenuRun, ARunAfterThatMeetsAnEmptyObject) {
    press(menu, "iabsent.txt\n");
    press(menu, "!");
    writeFile("absent.txt", tabbed(kTwoPops));
    const std::string expected = "\nInformation in file:absent.txt\n\n Loci:\t\t\t\t0\n"
                                 " Populations:\t\t0\n Max.Chromosomes:\t0\n Columnformat:\t\t0\n"
                                 "\n Number of tests:\t\t0" +
                                 passesWithoutData(menu) + "\n";
    EXPECT_EQ(press(menu, "!").console, expected);
    EXPECT_FALSE(fs::exists("absent.txt_KVAresult00"));
    EXPECT_TRUE(readFile("KVA.log").starts_with("KVAnalyser-Log\n"));
    EXPECT_NE(readFile("KVA.log").find("\nFilename: absent.txt\n"), std::string::npos);
}

TEST_F(MenuRun, TheKeyIIsAWayOutOfAFailedOpen) {
    press(menu, "iabsent.txt\n");
    press(menu, "!");
    press(menu, "idata.txt\n");
    const std::string expected = firstRun("data.txt");
    EXPECT_EQ(press(menu, "!").console, expected);
}

TEST_F(MenuRun, TheKeyXIsAWayOutOfAFailedOpen) {
    writeFile("testdata.dat", tabbed(kTwoPops));
    press(menu, "iabsent.txt\n");
    press(menu, "!");
    press(menu, "X");
    const std::string expected = "\nUsing Testdata!" + firstRun("testdata.dat");
    EXPECT_EQ(press(menu, "!").console, expected);
}

// With "_KVAresult00" the name is longer than a file name can be: nothing is loaded.
TEST_F(MenuRun, WithoutAResultFolderNoPassRunsAndTheNextRunTriesAgain) {
    const std::string name(250, 'n');
    writeFile(name, tabbed(kTwoPops));
    press(menu, "i" + name + "\n");
    for (int run = 0; run < 2; ++run) {
        const Pressed pressed = press(menu, "!");
        EXPECT_EQ(pressed.result, -1);
        EXPECT_NE(pressed.console.find("Cannot make result folder"), std::string::npos);
        EXPECT_EQ(pressed.console.find("Count Allels"), std::string::npos);
        EXPECT_EQ(menu.DatenObjekt, nullptr);
    }
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST_F(MenuRun, WithoutAFurtherResultFolderNoPassRunsAndTheDataStay) {
    fs::create_directory("sub");
    writeFile("sub/data.txt", tabbed(kTwoPops));
    press(menu, "isub/data.txt\n");
    press(menu, "!");
    const std::string expected = nextRun("sub/data.txt");
    fs::remove_all(folder / "sub");
    const std::string stem = (folder / "sub/data.txt_KVAresult").string();
    EXPECT_EQ(press(menu, "!").console, "\n!! ERROR Can't change into result folder ERROR !!\n"
                                        "Cannot make result folder " +
                                            stem + "00: No such file or directory\n" +
                                            informationOf("sub/data.txt") + "\n");
    fs::create_directory(folder / "sub");
    EXPECT_EQ(press(menu, "!").console, expected);
}

TEST_F(MenuRun, ARefusedFileRunsOnNothing) {
    writeFile("empty.txt", "");
    press(menu, "iempty.txt\n");
    EXPECT_NE(press(menu, "!").console.find("\n Loci:\t\t\t\t0\n Populations:\t\t0\n"),
              std::string::npos);
    EXPECT_TRUE(fs::exists(folder / "empty.txt_KVAresult00/KVA.log"));
}

// --- The IM information file ---------------------------------------------------------------

TEST_F(MenuRun, AnIMFileThatDoesNotOpenIsToldOfBehindTheReading) {
    press(menu, "idata.txt\n");
    menu.IMDateiName = "im.txt";
    const std::string expected = std::string(kReading) +
                                 "\n!!!!!!!!!!!!!!!Error!!!!!!!!!!!!!!!!\n"
                                 "Can't read IMInfofile: im.txt\n"
                                 "\n"
                                 "!!!!!!!!!!!!!!!Error!!!!!!!!!!!!!!!!\n" +
                                 nextRun("data.txt");
    EXPECT_EQ(press(menu, "!").console, expected);
}

TEST_F(MenuRun, AnIMFileIsOpenedWhereTheDataFileIs) {
    writeFile("im.txt", tabbed(kTwoPops));
    press(menu, "idata.txt\n");
    menu.IMDateiName = "im.txt";
    EXPECT_EQ(press(menu, "!").console.find("IMInfofile"), std::string::npos);
}

TEST_F(MenuRun, AChangedIMFileHasNoEffectUntilTheDataGo) {
    press(menu, "idata.txt\n");
    press(menu, "!");
    menu.IMDateiName = "im.txt"; // does not open
    EXPECT_EQ(press(menu, "!").console.find("IMInfofile"), std::string::npos);
    press(menu, "idata.txt\n");
    EXPECT_NE(press(menu, "!").console.find("Can't read IMInfofile: im.txt\n"), std::string::npos);
}

TEST_F(MenuRun, AnAbsentDataFileComesBeforeTheIMFile) {
    press(menu, "iabsent.txt\n");
    menu.IMDateiName = "im.txt";
    EXPECT_EQ(press(menu, "!").console, kNotOpened);
}

// --- Sessions -----------------------------------------------------------------------------

TEST(Run, RefusesAnArgument) {
    CMenuAllg menu;
    const Typed typed("q");
    StdoutCapture console;
    EXPECT_EQ(menu.Run(1), 1);
    EXPECT_EQ(console.text(), "");
}

TEST(Run, QuitsAtOnceWithoutAnObject) {
    CMenuAllg menu;
    EXPECT_EQ(session(menu, "q\n"), std::string(kWelcome) + kMainScreen + kHalted);
    EXPECT_EQ(menu.DatenObjekt, nullptr);
}

TEST(Run, GivesZeroAndStartsInTheMainMenu) {
    CMenuAllg menu;
    menu.MenuNummer = 5;
    const Typed typed("q");
    const StdoutCapture swallowed;
    EXPECT_EQ(menu.Run(0), 0);
    EXPECT_EQ(menu.MenuNummer, 0);
}

TEST(Run, HaltsAtTheEndOfInput) {
    CMenuAllg menu;
    EXPECT_EQ(session(menu, ""), std::string(kWelcome) + kMainScreen + kHalted);
}

TEST(Run, WalksThroughAllMenus) {
    const std::string expected = std::string(kWelcome) + kMainScreen           //
                                 + kDistanceScreen + kDistanceSettingsScreen   // d p
                                 + kDistanceScreen + kFStatisticsScreen        // b s
                                 + kDistanceScreen + kMainScreen               // b m
                                 + kConversionScreen + kMainScreen             // c m
                                 + kHetRangeScreen + kMainScreen               // r m
                                 + kDistanceScreen + kDistanceSettingsScreen   // d p
                                 + kMainScreen + kDistanceScreen               // m d
                                 + kFStatisticsScreen + kMainScreen + kHalted; // s m q
    CMenuAllg ahead;
    EXPECT_EQ(session(ahead, "dpbsbmcmrmdpmdsmq\n"), expected);
    CMenuAllg byLine;
    EXPECT_EQ(session(byLine, "d\np\nb\ns\nb\nm\nc\nm\nr\nm\nd\np\nm\nd\ns\nm\nq\n"), expected);
}

TEST(Run, TellsOfAnUnknownKeyAndDrawsTheMenuAgain) {
    CMenuAllg menu;
    EXPECT_EQ(session(menu, "dxq"), std::string(kWelcome) + kMainScreen + kDistanceScreen +
                                        kUnknown + kDistanceScreen + kHalted);
}

TEST(Run, TellsOfAWordForANumberAndDrawsTheMenuAgain) {
    CMenuAllg menu;
    EXPECT_EQ(session(menu, "r\nn\nlots of them\nq\n"),
              std::string(kWelcome) + kMainScreen + kHetRangeScreen + RANDOMISATIONS +
                  "\nNot a number: lots\n" + kHetRangeScreen + kHalted);
}

TEST(Run, AnAnswerAndTheKeysBehindItStandOnOneLine) {
    CMenuAllg menu;
    EXPECT_EQ(session(menu, "rn50mq\n"),
              std::string(kWelcome) + kMainScreen + kHetRangeScreen + RANDOMISATIONS + "\n" +
                  changed(kHetRangeScreen, "1000", "50") + kMainScreen + kHalted);
}

// Key g: global and pairwise, pairwise only, global only.
TEST(Run, ShowsTheCycleOfGlobalAndPairwise) {
    const std::string both =
        changed(changed(changed(kFStatisticsScreen, "pairwise       : OFF", "pairwise       : ON"),
                        "Weinberg         : No\n",
                        "Weinberg         : No\n\n     (6) Fst per locus and pair        : no\n"),
                ": 10000\n",
                ": 10000\n     (r) ... Random discarding of data\n"
                "             if necessary before permutation:  no\n"
                "             (only for pairwise Fst)\n");
    CMenuAllg menu;
    EXPECT_EQ(session(menu, "dsgggq"),
              std::string(kWelcome) + kMainScreen + kDistanceScreen + kFStatisticsScreen + both +
                  changed(both, "global         : ON", "global         : OFF") +
                  kFStatisticsScreen + kHalted);
}

TEST_F(MenuRun, ASessionOfTwoRunsAndANewFile) {
    const std::string expected = std::string(kWelcome) + kMainScreen                          //
                                 + "\nPlease enter the filename:" + chosenScreen("data.txt")  //
                                 + firstRun("data.txt") + loadedScreen("data.txt")            //
                                 + informationOf("data.txt") + loadedScreen("data.txt")       //
                                 + nextRun("data.txt") + loadedScreen("data.txt")             //
                                 + "\nPlease enter the filename:" + chosenScreen("other.txt") //
                                 + firstRun("other.txt") + loadedScreen("other.txt")          //
                                 + kMainScreen + kHalted;
    EXPECT_EQ(session(menu, "i\ndata.txt\n!\ns\n!\ni other.txt\n!\nX\nq\n"), expected);
    EXPECT_TRUE(fs::exists("data.txt_KVAresult01"));
    EXPECT_TRUE(fs::exists("other.txt_KVAresult00"));
}

TEST_F(MenuRun, ASessionWithAFailedOpen) {
    const std::string expected = std::string(kWelcome) + kMainScreen                           //
                                 + "\nPlease enter the filename:" + chosenScreen("absent.txt") //
                                 + kNotOpened + loadedScreen("absent.txt")                     //
                                 + "\nPlease enter the filename:" + chosenScreen("data.txt")   //
                                 + firstRun("data.txt") + loadedScreen("data.txt") + kHalted;
    EXPECT_EQ(session(menu, "iabsent.txt !q"),
              std::string(kWelcome) + kMainScreen +
                  "\nPlease enter the filename:" + chosenScreen("absent.txt") + kUnknown +
                  chosenScreen("absent.txt") + kNotOpened + loadedScreen("absent.txt") + kHalted);
    CMenuAllg again;
    EXPECT_EQ(session(again, "iabsent.txt\n!idata.txt\n!q"), expected);
}

// --- Menus derived from this one ----------------------------------------------------------

namespace {

// Replaces all that can be replaced.
class OwnMenu : public CMenuAllg {
  public:
    int WriteHeader(int /*arg*/) override { return say("header"); }
    int WriteMenu(int /*arg*/) override { return say("menu"); }
    int WriteInformation(int was) override { return say("info" + std::to_string(was)); }
    int GetVersion(int& a, int& b, int /*arg*/) override {
        a = 7;
        b = 8;
        return 0;
    }
    int DoWork(int /*arg*/) override { return say("work"); }

  private:
    static int say(const std::string& text) {
        std::cout << "[" << text << "]";
        return 0;
    }
};

// Replaces one screen.
class OwnMainScreen : public CMenuAllg {
  public:
    int WriteMenu(int arg) override {
        if (MenuNummer != 0) {
            return CMenuAllg::WriteMenu(arg);
        }
        std::cout << "[my screen]";
        return 0;
    }
};

// Leaves at the first key, whatever it is.
class Impatient : public CMenuAllg {
  public:
    int AnalyseCommand(int /*arg*/) override { return 0; }
};

class OwnVersion : public CMenuAllg {
  public:
    int GetVersion(int& a, int& b, int /*arg*/) override {
        a = 7;
        b = 8;
        return 0;
    }
};

// Tells when it goes.
class Watched : public CMenuAllg {
  public:
    explicit Watched(bool& told) : gone(told) {}
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    ~Watched() override { gone = true; }

  private:
    bool& gone;
};

class OwnInformation : public CMenuAllg {
  public:
    int WriteInformation(int was) override {
        std::cout << "[info" << was << "]\n";
        return 0;
    }
};

} // namespace

TEST(DerivedMenu, ReplacesScreensInformationAndRuns) {
    OwnMenu menu;
    EXPECT_EQ(session(menu, "v!q"), "KVA can now also handle command line arguments!\n"
                                    "If you are interested in this function\n"
                                    "please read the documentation!\n"
                                    "[header][menu][info3][menu][work][menu]\nProgram halted");
}

TEST(DerivedMenu, ReplacesOneScreen) {
    OwnMainScreen menu;
    EXPECT_EQ(session(menu, "dmq"),
              std::string(kWelcome) + "[my screen]" + kDistanceScreen + "[my screen]" + kHalted);
}

TEST(DerivedMenu, ReplacesTheHandlingOfKeys) {
    Impatient menu;
    EXPECT_EQ(session(menu, "dpq"), std::string(kWelcome) + kMainScreen + kHalted);
}

TEST(DerivedMenu, ReplacesTheVersionThatIsShown) {
    OwnVersion menu;
    EXPECT_EQ(press(menu, "v").console,
              "\n     Menu-Maker Version:7.8\n     KVAnalyzer-Code-Version:4.05\n");
}

TEST(DerivedMenu, ItsInformationStandsInTheScreens) {
    OwnInformation menu;
    menu.MenuNummer = 4;
    StdoutCapture console;
    menu.WriteMenu(0);
    EXPECT_TRUE(console.text().find("\n     (c) ... [info5]\n\n     (n)") != std::string::npos);
}

TEST(DerivedMenu, ItsInformationIsShownBeforeARun) {
    const TempFolder folder(TempFolder::Enter::yes);
    writeFile("data.txt", tabbed(kTwoPops));
    OwnInformation menu;
    press(menu, "idata.txt\n");
    EXPECT_NE(press(menu, "!").console.find(std::string(kReading) + "[info6]\n"),
              std::string::npos);
}

TEST(DerivedMenu, GoesWhollyThroughItsBase) {
    bool gone = false;
    {
        const std::unique_ptr<CMenuAllg> menu = std::make_unique<Watched>(gone);
        EXPECT_FALSE(gone);
    }
    EXPECT_TRUE(gone);
}
