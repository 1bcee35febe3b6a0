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
// spacing of the labels is the program's face.
#include "control/CMenu.h"

#include "distance/measures.h"

#include <algorithm>
#include <iostream>
#include <span>

namespace kva {

namespace {

constexpr const char* kRule = "__________________________________________________________";
constexpr int32_t kMenuLimit = 7; // from here on no number is a menu's

using State = void (*)(const CMenuAllg&);     // prints a state
using Condition = bool (*)(const CMenuAllg&); // true: the line is there

struct ScreenLine {
    const char* Text;
    State Value = nullptr;    // null: nothing follows
    Condition When = nullptr; // null: always
};

void writeLines(std::span<const ScreenLine> lines, const CMenuAllg& menu) {
    for (const ScreenLine& line : lines) {
        if (line.When != nullptr && !line.When(menu)) {
            continue;
        }
        std::cout << line.Text;
        if (line.Value != nullptr) {
            line.Value(menu);
        }
        std::cout << '\n';
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

template <auto Word, uint32_t Bit> void onOff(const CMenuAllg& menu) {
    std::cout << onOffWord(menu.*Word, Bit);
}

template <auto Word, uint32_t Bit> void yesNo(const CMenuAllg& menu) {
    std::cout << (hasBit(menu.*Word, Bit) ? "yes" : "no");
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

void hardyWeinberg(const CMenuAllg& menu) {
    std::cout << (hasBit(menu.FstMask, FstBit::Genotypes) ? "No" : "Yes");
}

void heterogeneity(const CMenuAllg& menu) {
    std::cout << (isHeterogeneity(menu) ? "Bootstrap" : "No");
}

void imFile(const CMenuAllg& menu) {
    std::cout << (menu.IMDateiName.empty() ? "No" : menu.IMDateiName);
}

template <uint32_t Bit> constexpr State general = onOff<&CMenuAllg::GeneralMask, Bit>;
template <uint32_t Bit> constexpr State dist = onOff<&CMenuAllg::PopDistMask, Bit>;
template <uint32_t Bit> constexpr State fst = onOff<&CMenuAllg::FstMask, Bit>;
template <uint32_t Bit> constexpr State het = onOff<&CMenuAllg::HetRangeMask, Bit>;

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
    {"     (s) ... Fst,Fit,Fis                    ", general<GeneralBit::FStatistics>},
    {"     (m) ... back to main menu"},
};

// Behind the lines of Info::Distances.
constexpr ScreenLine kDistanceSettings[] = {
    {"     (l) ... Use -ln(similarity factor) "},
    {"      instead of 1-(similarity factor)    : ", general<GeneralBit::MinusLog>},
    {"             This option will only used for Dps, Dfs, Dkf, D"},
    {"     (o) ... Distance per population pair and locus: ", dist<DistBit::PerLocus>},
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
    {"     (r) ... Random discarding of data", nullptr, isPairwise},
    {"             if necessary before permutation:  ",
     yesNo<&CMenuAllg::FstMask, FstBit::RandomDiscard>, isPairwise},
    {"             (only for pairwise Fst)", nullptr, isPairwise},
    {""},
    {"     (b) ... back to distance menu"},
    {"     (m) ... back to main menu"},
};

constexpr ScreenLine kConversion[] = {
    {" Setings for data conversion:"},
    {""},
    {"     (1) ... Make msvar (Beaumont)     : ", general<GeneralBit::Msvar>},
    {"     (2) ... Make Migrate/LAMARC       : ", general<GeneralBit::Migrate>},
    {"     (3) ... Make Arlequin format      : ", general<GeneralBit::Arlequin>},
    {"     (4) ... Make IM-format            : ", general<GeneralBit::IMFormat>},
    {"     (f) ... Locus information for IM  : ", imFile},
    {"     (r) ... Reduce to stepsize        : ", general<GeneralBit::RepeatSteps>},
    {""},
    {"     (m) ... back to main menu"},
};

constexpr ScreenLine kHetRange[] = {
    {"     (c) ... Calculate Heterozygosityrange: ", general<GeneralBit::HetRange>},
    {""},
    {"     (n) ... Number of permutations       : ", number<&CMenuAllg::HetRandomisierungen>},
    {"     (r) ... Randomdiscard inbred data    : ", het<HetRangeBit::RandomDiscard>},
    {"             I recommend to use this only with individual sampling!"},
    {"     (0) ... correct Min(=0) and Max(=1) Heterozygosity"},
    {"             with by min/max value        : ", het<HetRangeBit::CorrectZero>},
    {""},
    {"     (l) ... Loci are linked              : ", het<HetRangeBit::Linked>},
    {"     (s) ... Sample individuals  instead of chromosomes:", het<HetRangeBit::Individuals>},
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
    {"     (c) ... Pairwise populations distances calc: ", general<GeneralBit::PopDistances>},
    {"     (i) ... Pairwise individual distances calc : ", general<GeneralBit::IndDistances>},
};

// Follows a label on its line.
constexpr ScreenLine kFStatisticsInfo[] = {
    {"Fst/Fis/Fit distances calc: ", general<GeneralBit::FStatistics>},
    {"     (g) Fst calculated global         : ", fst<FstBit::Global>},
    {"     (g) Fst calculated pairwise       : ", pairwise},
    {"     (h) Betai/ij calculation          : ", fst<FstBit::Beta>},
    {""},
    {"     (1) Calculation based on          : ", heterozygosity},
    {"     (4) Assume Hardy-Weinberg         : ", hardyWeinberg},
    {"", nullptr, isPairwise},
    {"     (6) Fst per locus and pair        : ", yesNo<&CMenuAllg::FstMask, FstBit::PerLocus>,
     isPairwise},
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
    (void)menu.GetVersion(a, b, 0);
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

// A line for each distance, with its key and its state.
void showMeasures(const CMenuAllg& menu) {
    for (const Measure& measure : allMeasures()) {
        std::cout << "  (" << measure.Key << ")    " << measure.MenuLine
                  << onOffWord(menu.PopDistMask, measure.Bit) << '\n';
    }
}

// Any key leads back.
void showHelp() {
    std::cout << '\n' << kRule << '\n' << kHelp << std::flush;
    (void)CMenuAllg::GetTaste();
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
        (void)WriteInformation(screen->Lead);
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
        showMeasures(*this);
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
