// The screens of the menu, drawn as plain text. A screen is a rule, the lines of the current
// menu with the states of the settings, and an end that all menus share:
//
//     __________________________________________________________
//          (+) ... all distances on
//          (-) ... all distances off
//
//          (p) ... Distances                      POP_OFF IND_OFF
//          (s) ... Fst,Fit,Fis                    OFF
//          (m) ... back to main menu
//
//          (!) ... Run
//          (q) ... Quit
//     Please enter command:
//
// A line is a row of a table: its label, what follows the label, and when the line is there. The
// lines of flags, distances and exports take both from their catalogues. The spacing of the labels
// is the program's face.
#include "control/CMenu.h"

#include "control/flags.h"
#include "distance/measures.h"
#include "formats/exports.h"

#include <algorithm>
#include <iostream>
#include <span>
#include <vector>

namespace kva {

namespace {

constexpr const char* kRule = "__________________________________________________________";
constexpr int32_t kMenuLimit = 7; // from here on no number is a menu's

using State = void (*)(const CMenuAllg&);     // prints a state
using Condition = bool (*)(const CMenuAllg&); // true: the line is there

struct ScreenLine {
    const char* Text;         // null: Value prints whole lines
    State Value = nullptr;    // null: nothing follows
    Condition When = nullptr; // null: always
};

void writeLines(std::span<const ScreenLine> lines, const CMenuAllg& menu) {
    for (const ScreenLine& line : lines) {
        if (line.When != nullptr && !line.When(menu)) {
            continue;
        }
        if (line.Text != nullptr) {
            std::cout << line.Text;
        }
        if (line.Value != nullptr) {
            line.Value(menu);
        }
        if (line.Text != nullptr) {
            std::cout << '\n';
        }
    }
}

// --- Conditions -------------------------------------------------------------------------

bool isNameChosen(const CMenuAllg& menu) {
    return menu.DateiAnzahl > 0;
}

bool isNoNameChosen(const CMenuAllg& menu) {
    return menu.DateiAnzahl < 1;
}

// Wanted: also after a failed open, which leaves an object without data; the main screen
// says "!Data loaded!" then, too.
bool isDataLoaded(const CMenuAllg& menu) {
    return menu.DatenObjekt != nullptr;
}

bool isSomethingToRemove(const CMenuAllg& menu) {
    return isNameChosen(menu) || isDataLoaded(menu);
}

bool isRichnessMinimal(const CMenuAllg& menu) {
    return menu.RichnessRef <= 0;
}

bool isPairwise(const CMenuAllg& menu) {
    return !hasBit(menu.FstMask, FstBit::Global | FstBit::NoPairs);
}

bool isHeterogeneity(const CMenuAllg& menu) {
    return (menu.FstMask & (FstBit::LocusTable | FstBit::Heterogeneity)) != 0;
}

// --- States -----------------------------------------------------------------------------

const char* onOffWord(uint32_t mask, uint32_t bit) {
    return hasBit(mask, bit) ? "ON" : "OFF";
}

// Label and state of a flag.
template <FlagWord Word, uint32_t Bit> void label(const CMenuAllg& menu) {
    const Flag& flag = flagOf(Word, Bit);
    std::cout << flag.Label << flag.States[hasBit(menu.*maskOf(Word), Bit) ? 1 : 0];
}

template <FlagWord Word, uint32_t Bit> constexpr ScreenLine flagLine(Condition when = nullptr) {
    return {"", label<Word, Bit>, when};
}

template <auto Field> void number(const CMenuAllg& menu) {
    std::cout << menu.*Field;
}

void chosenFile(const CMenuAllg& menu) {
    std::cout << menu.DateiListe[0] << " (" << menu.DateiAnzahl << ")";
}

void distancesOn(const CMenuAllg& menu) {
    std::cout << (hasBit(menu.GeneralMask, GeneralBit::PopDistances) ? "pairwise Pops. " : "")
              << (hasBit(menu.GeneralMask, GeneralBit::IndDistances) ? "pairwise Indiv. " : "")
              << (hasBit(menu.GeneralMask, GeneralBit::FStatistics) ? "pairwise Fst" : "");
}

void richnessIndividuals(const CMenuAllg& menu) {
    if (menu.RichnessRef > 0) {
        std::cout << " " << menu.RichnessRef * 0.5 << " ";
    }
}

void popAndInd(const CMenuAllg& menu) {
    std::cout << (hasBit(menu.GeneralMask, GeneralBit::PopDistances) ? "POP_ON" : "POP_OFF")
              << (hasBit(menu.GeneralMask, GeneralBit::IndDistances) ? " IND_ON" : " IND_OFF");
}

void bootstraps(const CMenuAllg& menu) {
    if (menu.Bootstraps == 1) {
        std::cout << "No bootstrapping!";
    } else {
        std::cout << menu.Bootstraps;
    }
}

void bootLoci(const CMenuAllg& menu) {
    if (menu.BootLoci < 2) {
        std::cout << "Use all loci";
    } else {
        std::cout << menu.BootLoci;
    }
}

void permutations(const CMenuAllg& menu) {
    if (menu.Permutationen < 1) {
        std::cout << "No permutation";
    } else {
        std::cout << menu.Permutationen;
    }
}

void pairwise(const CMenuAllg& menu) {
    std::cout << (isPairwise(menu) ? "ON" : "OFF");
}

void heterozygosity(const CMenuAllg& menu) {
    if (hasBit(menu.FstMask, FstBit::HObs)) {
        std::cout << "Hobs";
    } else if (hasBit(menu.FstMask, FstBit::HExp)) {
        std::cout << "Hexp";
    } else {
        std::cout << "Hexp only for inbred Pop.";
    }
}

void heterogeneity(const CMenuAllg& menu) {
    std::cout << (isHeterogeneity(menu) ? "Bootstrap" : "No");
}

void imFile(const CMenuAllg& menu) {
    std::cout << (menu.IMDateiName.empty() ? "No" : menu.IMDateiName);
}

void fStatistics(const CMenuAllg& menu) {
    std::cout << onOffWord(menu.GeneralMask, GeneralBit::FStatistics);
}

// A line for each distance, with its key and its state.
void measures(const CMenuAllg& menu) {
    for (const Measure& measure : allMeasures()) {
        std::cout << "  (" << measure.Key << ")    " << measure.MenuLine
                  << onOffWord(menu.PopDistMask, measure.Bit) << '\n';
    }
}

// A line for each export, by their keys.
void exports(const CMenuAllg& menu) {
    std::vector<Export> rows(allExports().begin(), allExports().end());
    std::ranges::sort(rows, {}, &Export::Key);
    for (const Export& row : rows) {
        std::cout << row.MenuLine << onOffWord(menu.GeneralMask, row.Bit) << '\n';
    }
}

// --- Menus ------------------------------------------------------------------------------

constexpr ScreenLine kMain[] = {
    {"     (i) ... Inputfile:none (KVA will use testdata.dat)", nullptr, isNoNameChosen},
    {"     (i) ... Inputfile:", chosenFile, isNameChosen},
    {"     (X) ... Remove Data from Memory", nullptr, isSomethingToRemove},
    {"     (s) ... Show Data-Information", nullptr, isDataLoaded},
    {"****** ;-) ******", nullptr, isDataLoaded},
    {"!Data loaded!", nullptr, isDataLoaded},
    {"****** ;-) ******", nullptr, isDataLoaded},
    {""},
    {"     (d) ... Distance settings  ", distancesOn},
    {"     (c) ... Data conversion settings  "},
    {"     (a) ... Number of ind's for allelic richness:", richnessIndividuals},
    {"                                    : Minimal sample number per locus", nullptr,
     isRichnessMinimal},
    {"     (r) ... Heterozygosity range settings"},
};

constexpr ScreenLine kDistances[] = {
    {"     (+) ... all distances on"},
    {"     (-) ... all distances off"},
    {""},
    {"     (p) ... Distances                      ", popAndInd},
    {"     (s) ... Fst,Fit,Fis                    ", fStatistics},
    {"     (m) ... back to main menu"},
};

// Behind the lines of Info::Distances.
constexpr ScreenLine kDistanceSettings[] = {
    flagLine<FlagWord::General, GeneralBit::MinusLog>(),
    {"             This option will only used for Dps, Dfs, Dkf, D"},
    flagLine<FlagWord::Distances, DistBit::PerLocus>(),
    {"     (n) ... Number of bootstraps         : ", bootstraps},
    {""},
    {"     (r) ... Number of loci used by boots.: ", bootLoci},
    {"     (b) ... back to distance menu"},
    {"     (m) ... back to main menu"},
};

// Behind the lines of Info::FStatistics.
constexpr ScreenLine kFStatistics[] = {
    {""},
    {"     (n) ... Number of permutations    : ", permutations},
    flagLine<FlagWord::FStatistics, FstBit::RandomDiscard>(isPairwise),
    {"             (only for pairwise Fst)", nullptr, isPairwise},
    {""},
    {"     (b) ... back to distance menu"},
    {"     (m) ... back to main menu"},
};

constexpr ScreenLine kConversion[] = {
    {" Setings for data conversion:"},
    {""},
    {nullptr, exports},
    {"     (f) ... Locus information for IM  : ", imFile},
    flagLine<FlagWord::General, GeneralBit::RepeatSteps>(),
    {""},
    {"     (m) ... back to main menu"},
};

constexpr ScreenLine kHetRange[] = {
    flagLine<FlagWord::General, GeneralBit::HetRange>(),
    {""},
    {"     (n) ... Number of permutations       : ", number<&CMenuAllg::HetRandomisierungen>},
    flagLine<FlagWord::HetRange, HetRangeBit::RandomDiscard>(),
    {"             I recommend to use this only with individual sampling!"},
    flagLine<FlagWord::HetRange, HetRangeBit::CorrectZero>(),
    {""},
    flagLine<FlagWord::HetRange, HetRangeBit::Linked>(),
    flagLine<FlagWord::HetRange, HetRangeBit::Individuals>(),
    {""},
    {""},
    {"     (m) ... back to main menu"},
};

constexpr ScreenLine kEnd[] = {
    {""},
    {"     (!) ... Run"},
    {"     (q) ... Quit"},
};

struct Screen {
    int32_t Nummer;
    const char* Opening; // behind the rule
    int Lead;            // what WriteInformation shows before the lines
    std::span<const ScreenLine> Zeilen;
};

constexpr Screen kScreens[] = {
    {Menu::Main, "\n", Info::Nothing, kMain},
    {Menu::Distances, "\n", Info::Nothing, kDistances},
    {Menu::DistanceSettings, "", Info::Distances, kDistanceSettings},
    {Menu::FStatistics, "\n     (c) ... ", Info::FStatistics, kFStatistics},
    {Menu::Conversion, "\n", Info::Nothing, kConversion},
    {Menu::HetRange, "\n", Info::Nothing, kHetRange},
};

// --- Information ------------------------------------------------------------------------

constexpr ScreenLine kDistanceInfo[] = {
    {""},
    flagLine<FlagWord::General, GeneralBit::PopDistances>(),
    flagLine<FlagWord::General, GeneralBit::IndDistances>(),
    {nullptr, measures},
};

// Follows a label on its line.
constexpr ScreenLine kFStatisticsInfo[] = {
    flagLine<FlagWord::General, GeneralBit::FStatistics>(),
    flagLine<FlagWord::FStatistics, FstBit::Global>(),
    {"     (g) Fst calculated pairwise       : ", pairwise},
    flagLine<FlagWord::FStatistics, FstBit::Beta>(),
    {""},
    {"     (1) Calculation based on          : ", heterozygosity},
    flagLine<FlagWord::FStatistics, FstBit::Genotypes>(),
    {"", nullptr, isPairwise},
    flagLine<FlagWord::FStatistics, FstBit::PerLocus>(isPairwise),
    {"     (7) Heterogeneity among loci      : ", heterogeneity},
    {"          (l) Number of loci per replica  : ", number<&CMenuAllg::ReplikaLoci>,
     isHeterogeneity},
    {"          (a) Number of replica           : ", number<&CMenuAllg::Replikate>,
     isHeterogeneity},
};

constexpr const char* kHelp =
    "Online Information for F-Statistic Menu of KVA\n"
    "\n Help for Command:"
    "\n (g) .. KVA can calculate F-Statistic Global (over all populations),"
    "\n        or between all population pairs.\n"
    "\n (1) .. Observed Heterosygosity is the standard or F-Statistics"
    "\n        sometimes this value is not a good measure for real (obs.)"
    "\n        Heterozygosity, therefore you can choose genediversity (Hexp) as a"
    "\n        better measurement for the reality or AUTO, so that KVA can decide"
    "\n        between this options.\n"
    "\n (6) .. This option is only possible for pairwise Fst's\n"
    "\n (7) .. Calculate the heterogeneity among loci, by mean across N Loci,"
    "\n        and makes M replicas. KVA gives the 99% and 95% confidenz intervall."
    "\n (l) .. Number of choosen loci per replica (N)."
    "\n        0 ... KVA use all loci, >0 ... KVA takes given number of loci"
    "\n        <0... KVA takes (number of loci)-given number\n"
    "\n   (b) ... back to menu\n"
    "Please enter command:";

void showVersions(CMenuAllg& menu) {
    int a = 0;
    int b = 0;
    menu.GetVersion(a, b, 0);
    std::cout << "\n     Menu-Maker Version:" << a << "." << b
              << "\n     KVAnalyzer-Code-Version:" << kVersion << std::endl;
}

// No line end follows.
void showData(const AnalyseDataObj& run) {
    const int64_t pops = run.AnzPop;
    std::cout << "\nInformation in file:" << run.DateiName << "\n\n";
    std::cout << " Loci:\t\t\t\t" << run.AnzLoci << '\n';
    std::cout << " Populations:\t\t" << pops << '\n';
    std::cout << " Max.Chromosomes:\t" << run.MaxChromosomen << '\n';
    std::cout << " Columnformat:\t\t" << static_cast<int>(run.DatenFormat) << "\n\n";
    std::cout << " Number of tests:\t\t" << (pops * pops - pops) / 2 << std::flush;
}

// Any key leads back.
void showHelp() {
    std::cout << '\n' << kRule << '\n' << kHelp << std::flush;
    CMenuAllg::GetTaste();
}

} // namespace

int CMenuAllg::WriteHeader(int arg) {
    if (arg != 0) {
        return 1;
    }
    std::cout << "\nWelcome to KVAnalyzer " << kVersion << " !" << std::endl;
    return 0;
}

int CMenuAllg::WriteMenu(int arg) {
    if (arg != 0) {
        return 1;
    }
    if (MenuNummer >= kMenuLimit) {
        return 2;
    }
    std::cout << '\n' << kRule;
    const auto* screen = std::ranges::find(kScreens, MenuNummer, &Screen::Nummer);
    if (screen != std::end(kScreens)) {
        std::cout << screen->Opening;
        WriteInformation(screen->Lead);
        writeLines(screen->Zeilen, *this);
    }
    writeLines(kEnd, *this);
    std::cout << "Please enter command:" << std::flush;
    return 0;
}

int CMenuAllg::WriteInformation(int was) {
    switch (was) {
    case Info::Versions:
        showVersions(*this);
        break;
    case Info::Distances:
        writeLines(kDistanceInfo, *this);
        break;
    case Info::FStatistics:
        writeLines(kFStatisticsInfo, *this);
        break;
    case Info::Daten:
        if (DatenObjekt) {
            showData(*DatenObjekt);
        }
        break;
    case Info::VersionNumber:
        std::cout << kVersion << std::flush;
        break;
    case Info::Help:
        showHelp();
        break;
    default:
        break;
    }
    return 0;
}

} // namespace kva
