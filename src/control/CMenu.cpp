// The loop of the menu, its keys and its prompts.
//
// Keys are rows of a table for each menu, or of the catalogues of flags, distances and exports.
// They are read from the same stream as the answers to the prompts, so that
//
//     dpn50b!q
//
// typed on one line goes to the settings of the distances, asks for the bootstraps, takes 50 for
// an answer, goes back, runs and quits.
#include "control/CMenu.h"

#include "control/CMenuEingabe.h"
#include "control/flags.h"
#include "control/frontend.h"
#include "distance/measures.h"
#include "formats/exports.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string_view>

namespace kva {

namespace {

constexpr char kQuit = 'q';

// --- Prompts for numbers ------------------------------------------------------------

struct NumberQuestion {
    const char* Text;
    int32_t ScalarSettings::*Field;
    int32_t (*Rule)(int32_t); // what is stored of an answer
};

template <int32_t Otherwise> int32_t positiveOr(int32_t entered) {
    return entered > 0 ? entered : Otherwise;
}

int32_t notNegative(int32_t entered) {
    return std::max(entered, 0);
}

int32_t asEntered(int32_t entered) {
    return entered;
}

// Up to the next multiple of 200, from which the confidence limits can be read; the last one
// below 2^31 bounds it.
int32_t wholeReplicas(int32_t entered) {
    constexpr long kStep = 200;
    constexpr long kLast = INT32_MAX / kStep * kStep;
    const long replicas = std::labs(long{entered});
    const long multiple = (replicas + kStep - 1) / kStep * kStep;
    return replicas == 0 ? ScalarSettings{}.Replikate
                         : static_cast<int32_t>(std::min(multiple, kLast));
}

constexpr NumberQuestion kBootstraps{"\nPlease input new number of bootstraps"
                                     "\n(1=no bootstraping):",
                                     &ScalarSettings::Bootstraps, positiveOr<1>};
constexpr NumberQuestion kBootLoci{"\nPlease input number of used loci by bootstrapping"
                                   "\n(-1=no bootstraping):",
                                   &ScalarSettings::BootLoci, positiveOr<-1>};
constexpr NumberQuestion kPermutations{
    "\nPlease enter the new number of permutations:", &ScalarSettings::Permutationen, notNegative};
constexpr NumberQuestion kReplicaLoci{"\nPlease enter the new number of loci"
                                      "\n 0          =  number of available loci (NL)"
                                      "\n-1,-2,-3..  =  NL-1, NL-2, NL-3, ..."
                                      "\n 1, 2, 3..  =  1, 2, 3, ..."
                                      "\n used for heterogeneity calculation: ",
                                      &ScalarSettings::ReplikaLoci, asEntered};
constexpr NumberQuestion kReplicas{
    "\nPlease enter the new number of replicas:", &ScalarSettings::Replikate, wholeReplicas};
constexpr NumberQuestion kRandomisations{"\nPlease input new number of randomisations:",
                                         &ScalarSettings::HetRandomisierungen, notNegative};

// Tells of a word where a number is wanted, on a line of its own; the end of input has no word.
void tellNotANumber(const std::string& word) {
    if (!word.empty()) {
        std::cout << "Not a number: " << word << std::endl;
    }
}

template <const NumberQuestion& Question> void ask(CMenuAllg& menu) {
    std::cout << Question.Text << std::flush;
    const NumberInput<long> answer = ReadWholeNumber();
    std::cout << std::endl;
    if (answer.Value) {
        menu.*Question.Field = Question.Rule(NearestInt32(*answer.Value));
    }
    tellNotANumber(answer.Word);
}

// Individuals are entered, gene copies stored. No line end follows a good answer.
void askRichness(CMenuAllg& menu) {
    std::cout << "\nPlease enter reference numbers of individuals for allelic richness."
                 "\n   (-1: take minimal sample number per locus): "
              << std::flush;
    const NumberInput<double> answer = ReadDecimal();
    if (answer.Value) {
        menu.RichnessRef = positiveOr<-1>(TruncatedInt32(2.0 * *answer.Value));
        return;
    }
    std::cout << std::endl;
    tellNotANumber(answer.Word);
}

// --- Files ----------------------------------------------------------------------------

void chooseFile(CMenuAllg& menu, const std::string& name) {
    menu.DateiListe[0] = name;
    menu.DateiAnzahl = 1;
}

// The data of the old file go at once; the new one is opened at the next run.
void askDataFile(CMenuAllg& menu) {
    menu.DatenObjekt.reset();
    std::cout << "\nPlease enter the filename:" << std::flush;
    const std::string name = ReadFileName();
    if (!name.empty()) {
        chooseFile(menu, name);
    }
}

void askIMFile(CMenuAllg& menu) {
    std::cout << "\nPlease enter the filename of IM Information file (n=no):" << std::endl;
    const std::string name = ReadWord();
    menu.IMDateiName = name == "n" ? "" : name;
}

void removeData(CMenuAllg& menu) {
    menu.DatenObjekt.reset();
    menu.DateiListe = {};
    menu.DateiAnzahl = 0;
}

void reportSideFile(const std::string& name) {
    std::cout << std::endl
              << "!!!!!!!!!!!!!!!Error!!!!!!!!!!!!!!!!" << std::endl
              << "Can't read IMInfofile: " << name << std::endl
              << std::endl
              << "!!!!!!!!!!!!!!!Error!!!!!!!!!!!!!!!!" << std::endl;
}

// First load of the chosen file. False if it does not open; the object then stays, without data.
// Without a result folder the object goes, so that the next run tries again.
bool loadChosen(CMenuAllg& menu, InputFile& daten) {
    menu.DatenObjekt = std::make_unique<AnalyseDataObj>();
    const LoadResult outcome =
        LoadFirst(*menu.DatenObjekt, menu.DateiListe[0], menu.IMDateiName, reportSideFile, daten);
    if (outcome == LoadResult::NoFolder) {
        menu.DatenObjekt.reset();
    }
    return outcome != LoadResult::NoFile;
}

// --- Keys -----------------------------------------------------------------------------

struct KeyRow {
    std::string_view Characters; // each of them is the key
    void (*Action)(CMenuAllg&);
};

template <int32_t Nummer> void goTo(CMenuAllg& menu) {
    menu.MenuNummer = Nummer;
}

template <auto Word, uint32_t Bits> void setBits(CMenuAllg& menu) {
    menu.*Word |= Bits;
}

template <auto Word, uint32_t Bits> void clearBits(CMenuAllg& menu) {
    menu.*Word &= ~Bits;
}

// Observed, expected, expected for inbred populations only.
void cycleHeterozygosity(CMenuAllg& menu) {
    constexpr uint32_t kAll = FstBit::HObs | FstBit::HExp | FstBit::HAuto;
    uint32_t next = FstBit::HObs;
    if (hasBit(menu.FstMask, FstBit::HObs)) {
        next = FstBit::HExp;
    } else if (hasBit(menu.FstMask, FstBit::HExp)) {
        next = FstBit::HAuto;
    }
    menu.FstMask = (menu.FstMask & ~kAll) | next;
}

// Global only, global and pairwise, pairwise only.
void cycleGlobal(CMenuAllg& menu) {
    constexpr uint32_t kGlobalOnly = FstBit::Global | FstBit::NoPairs;
    if (hasBit(menu.FstMask, kGlobalOnly)) {
        menu.FstMask &= ~FstBit::NoPairs;
    } else if (hasBit(menu.FstMask, FstBit::Global)) {
        menu.FstMask &= ~FstBit::Global;
    } else {
        menu.FstMask |= kGlobalOnly;
    }
}

void toggleHardyWeinberg(CMenuAllg& menu) {
    constexpr uint32_t kWhole = FstBit::Genotypes | FstBit::Linked;
    menu.FstMask =
        hasBit(menu.FstMask, FstBit::Genotypes) ? menu.FstMask ^ kWhole : menu.FstMask | kWhole;
}

void showVersions(CMenuAllg& menu) {
    menu.WriteInformation(Info::Versions);
}

void showData(CMenuAllg& menu) {
    if (menu.DatenObjekt) {
        menu.WriteInformation(Info::Daten);
    }
}

void run(CMenuAllg& menu) {
    menu.DoWork(0);
}

constexpr uint32_t kAllDistances = GeneralBit::PopDistances | GeneralBit::FStatistics;

// In every menu, before its own keys; kQuit in either case comes before them.
constexpr KeyRow kEverywhere[] = {
    {"vV", showVersions},
    {"!", run},
};

// Wanted: `a` and `X` here, and `f` of the conversion, are known in one case alone; the other one
// is answered as unknown, and keys that are piped in depend on it.
constexpr KeyRow kMain[] = {
    {"dD", goTo<Menu::Distances>},
    {"cC", goTo<Menu::Conversion>},
    {"rR", goTo<Menu::HetRange>},
    {"iI", askDataFile},
    {"sS", showData},
    {"a", askRichness},
    {"X", removeData},
};

constexpr KeyRow kDistances[] = {
    {"+", setBits<&CMenuAllg::GeneralMask, kAllDistances>},
    {"-", clearBits<&CMenuAllg::GeneralMask, kAllDistances>},
    {"mM", goTo<Menu::Main>},
    {"pP", goTo<Menu::DistanceSettings>},
    {"sS", goTo<Menu::FStatistics>},
};

constexpr KeyRow kDistanceSettings[] = {
    {"nN", ask<kBootstraps>},
    {"rR", ask<kBootLoci>},
    {"bB", goTo<Menu::Distances>},
    {"mM", goTo<Menu::Main>},
};

constexpr KeyRow kFStatistics[] = {
    {"1", cycleHeterozygosity},    {"gG", cycleGlobal},       {"4", toggleHardyWeinberg},
    {"nN", ask<kPermutations>},    {"lL", ask<kReplicaLoci>}, {"aA", ask<kReplicas>},
    {"bB", goTo<Menu::Distances>}, {"mM", goTo<Menu::Main>},
};

constexpr KeyRow kConversion[] = {
    {"f", askIMFile}, // one case alone, see kMain
    {"mM", goTo<Menu::Main>},
};

constexpr KeyRow kHetRange[] = {
    {"nN", ask<kRandomisations>},
    {"mM", goTo<Menu::Main>},
};

std::span<const KeyRow> keysOf(int32_t menuNumber) {
    switch (menuNumber) {
    case Menu::Main:
        return kMain;
    case Menu::Distances:
        return kDistances;
    case Menu::DistanceSettings:
        return kDistanceSettings;
    case Menu::FStatistics:
        return kFStatistics;
    case Menu::Conversion:
        return kConversion;
    case Menu::HetRange:
        return kHetRange;
    default:
        return {};
    }
}

// Acts on the key; false if it is not in the table.
bool press(CMenuAllg& menu, std::span<const KeyRow> keys, char pressed) {
    const auto row = std::ranges::find_if(keys, [pressed](const KeyRow& key) {
        return key.Characters.find(pressed) != std::string_view::npos;
    });
    if (row == keys.end()) {
        return false;
    }
    row->Action(menu);
    return true;
}

// Switches the flag, distance or export of the key in the current menu; false if it has none.
bool toggle(CMenuAllg& menu, char pressed) {
    for (const Flag& flag : allFlags()) {
        if (flag.MenuNumber == menu.MenuNummer &&
            flag.Keys.find(pressed) != std::string_view::npos) {
            menu.*maskOf(flag.Word) ^= flag.Bit;
            return true;
        }
    }
    for (const Measure& measure : allMeasures()) {
        if (menu.MenuNummer == Menu::DistanceSettings && measure.Key == pressed) {
            menu.PopDistMask ^= measure.Bit;
            return true;
        }
    }
    for (const Export& row : allExports()) {
        if (menu.MenuNummer == Menu::Conversion && row.Key == pressed) {
            menu.GeneralMask ^= row.Bit;
            return true;
        }
    }
    return false;
}

} // namespace

int CMenuAllg::Run(int arg) {
    if (arg != 0) {
        return 1;
    }
    MenuNummer = Menu::Main;
    std::cout << "KVA can now also handle command line arguments!" << std::endl
              << "If you are interested in this function" << std::endl
              << "please read the documentation!" << std::endl;
    WriteHeader(0);
    do {
        WriteMenu(0);
    } while (AnalyseCommand(0) != 0);
    std::cout << std::endl << "Program halted" << std::flush;
    return 0;
}

char CMenuAllg::GetTaste() {
    char key = '\n';
    while (key == '\n') {
        if (!std::cin.get(key)) {
            return kQuit;
        }
    }
    return key;
}

int CMenuAllg::AnalyseCommand(int /*arg*/) {
    const char key = GetTaste();
    if (key == kQuit || key == 'Q') {
        return 0;
    }
    if (!press(*this, kEverywhere, key) && !press(*this, keysOf(MenuNummer), key) &&
        !toggle(*this, key)) {
        std::cout << std::endl << "Unknown command!" << std::flush;
    }
    return -1;
}

int CMenuAllg::GetVersion(int& a, int& b, int /*arg*/) {
    a = 1;
    b = 2;
    return 0;
}

int CMenuAllg::DoWork(int /*arg*/) {
    if (DateiAnzahl < 1) {
        chooseFile(*this, "testdata.dat");
        std::cout << std::endl << "Using Testdata!" << std::flush;
    }
    InputFile daten; // open until the run is over
    if (DatenObjekt) {
        // Wanted: a failed open before this is not guarded; the passes tell that nothing is there.
        DatenObjekt->LinkResultNew();
    } else if (!loadChosen(*this, daten)) {
        return 0;
    }
    if (DatenObjekt) {
        WriteInformation(Info::Daten);
        StartRun(*DatenObjekt, *this, *this);
    }
    std::cout << std::endl;
    return 0;
}

} // namespace kva
