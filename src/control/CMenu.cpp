// The loop of the menu, its keys and its prompts.
//
// Keys are rows of a table for each menu. They are read from the same stream as the answers to
// the prompts, so that
//
//     dpn50b!q
//
// typed on one line goes to the settings of the distances, asks for the bootstraps, takes 50 for
// an answer, goes back, runs and quits.
#include "control/CMenu.h"

#include "control/CMenuEingabe.h"
#include "control/frontend.h"
#include "distance/measures.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string_view>

namespace kva {

namespace {

constexpr char kQuit = 'q';

// --- Prompts for numbers ------------------------------------------------------------

struct Zahlfrage {
    const char* Text;
    int32_t ScalarSettings::*Feld;
    int32_t (*Regel)(int32_t); // what is stored of an answer
};

template <int32_t Sonst> int32_t positiveOr(int32_t entered) {
    return entered > 0 ? entered : Sonst;
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

constexpr Zahlfrage kBootstraps{"\nPlease input new number of bootstraps"
                                "\n(1=no bootstraping):",
                                &ScalarSettings::Bootstraps, positiveOr<1>};
constexpr Zahlfrage kBootLoci{"\nPlease input number of used loci by bootstrapping"
                              "\n(-1=no bootstraping):",
                              &ScalarSettings::BootLoci, positiveOr<-1>};
constexpr Zahlfrage kPermutationen{
    "\nPlease enter the new number of permutations:", &ScalarSettings::Permutationen, notNegative};
constexpr Zahlfrage kReplikaLoci{"\nPlease enter the new number of loci"
                                 "\n 0          =  number of available loci (NL)"
                                 "\n-1,-2,-3..  =  NL-1, NL-2, NL-3, ..."
                                 "\n 1, 2, 3..  =  1, 2, 3, ..."
                                 "\n used for heterogeneity calculation: ",
                                 &ScalarSettings::ReplikaLoci, asEntered};
constexpr Zahlfrage kReplikate{
    "\nPlease enter the new number of replicas:", &ScalarSettings::Replikate, wholeReplicas};
constexpr Zahlfrage kRandomisierungen{"\nPlease input new number of randomisations:",
                                      &ScalarSettings::HetRandomisierungen, notNegative};

// Tells of a word where a number is wanted, on a line of its own; the end of input has no word.
void tellNotANumber(const std::string& word) {
    if (!word.empty()) {
        std::cout << "Not a number: " << word << std::endl;
    }
}

template <const Zahlfrage& Frage> void ask(CMenuAllg& menu) {
    std::cout << Frage.Text << std::flush;
    const Zahleingabe<long> answer = LiesGanzzahl();
    std::cout << std::endl;
    if (answer.Wert) {
        menu.*Frage.Feld = Frage.Regel(NearestInt32(*answer.Wert));
    }
    tellNotANumber(answer.Wort);
}

// Individuals are entered, gene copies stored. No line end follows a good answer.
void askRichness(CMenuAllg& menu) {
    std::cout << "\nPlease enter reference numbers of individuals for allelic richness."
                 "\n   (-1: take minimal sample number per locus): "
              << std::flush;
    const Zahleingabe<double> answer = LiesKommazahl();
    if (answer.Wert) {
        menu.RichnessRef = positiveOr<-1>(TruncatedInt32(2.0 * *answer.Wert));
        return;
    }
    std::cout << std::endl;
    tellNotANumber(answer.Wort);
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
    const std::string name = LiesDateiName();
    if (!name.empty()) {
        chooseFile(menu, name);
    }
}

void askIMFile(CMenuAllg& menu) {
    std::cout << "\nPlease enter the filename of IM Information file (n=no):" << std::endl;
    const std::string name = LiesWort();
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
    const Laden outcome =
        ErstesLaden(*menu.DatenObjekt, menu.DateiListe[0], menu.IMDateiName, reportSideFile, daten);
    if (outcome == Laden::KeinOrdner) {
        menu.DatenObjekt.reset();
    }
    return outcome != Laden::KeineDatei;
}

// --- Keys -----------------------------------------------------------------------------

struct Taste {
    std::string_view Zeichen; // each of them is the key
    void (*Wirkung)(CMenuAllg&);
};

template <int32_t Nummer> void goTo(CMenuAllg& menu) {
    menu.MenuNummer = Nummer;
}

template <auto Wort, uint32_t Bits> void toggle(CMenuAllg& menu) {
    menu.*Wort ^= Bits;
}

template <auto Wort, uint32_t Bits> void setBits(CMenuAllg& menu) {
    menu.*Wort |= Bits;
}

template <auto Wort, uint32_t Bits> void clearBits(CMenuAllg& menu) {
    menu.*Wort &= ~Bits;
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
    (void)menu.WriteInformation(Auskunft::Versionen);
}

void showData(CMenuAllg& menu) {
    if (menu.DatenObjekt) {
        (void)menu.WriteInformation(Auskunft::Daten);
    }
}

void run(CMenuAllg& menu) {
    (void)menu.DoWork(0);
}

template <uint32_t Bits> constexpr auto general = toggle<&CMenuAllg::GeneralMask, Bits>;
template <uint32_t Bits> constexpr auto dist = toggle<&CMenuAllg::PopDistMask, Bits>;
template <uint32_t Bits> constexpr auto fst = toggle<&CMenuAllg::FstMask, Bits>;
template <uint32_t Bits> constexpr auto het = toggle<&CMenuAllg::HetRangeMask, Bits>;

constexpr uint32_t kAllDistances = GeneralBit::PopDistances | GeneralBit::FStatistics;

// In every menu, before its own keys; kQuit in either case comes before them.
constexpr Taste kEverywhere[] = {
    {"vV", showVersions},
    {"!", run},
};

constexpr Taste kHaupt[] = {
    {"dD", goTo<Menue::Distanzen>},
    {"cC", goTo<Menue::Umwandlung>},
    {"rR", goTo<Menue::HetRange>},
    {"iI", askDataFile},
    {"sS", showData},
    {"a", askRichness}, // wanted: upper-case A is unknown
    {"X", removeData},  // wanted: lower-case x is unknown
};

constexpr Taste kDistanzen[] = {
    {"+", setBits<&CMenuAllg::GeneralMask, kAllDistances>},
    {"-", clearBits<&CMenuAllg::GeneralMask, kAllDistances>},
    {"mM", goTo<Menue::Haupt>},
    {"pP", goTo<Menue::DistanzEinstellung>},
    {"sS", goTo<Menue::FStatistik>},
};

// The keys of the distances themselves stand with them: toggleMeasure.
constexpr Taste kDistanzEinstellung[] = {
    {"cC", general<GeneralBit::PopDistances>},
    {"iI", general<GeneralBit::IndDistances>},
    {"lL", general<GeneralBit::MinusLog>},
    {"oO", dist<DistBit::PerLocus>},
    {"xX", dist<DistBit::Nexus>}, // wanted: the screen does not show this key
    {"nN", ask<kBootstraps>},
    {"rR", ask<kBootLoci>},
    {"bB", goTo<Menue::Distanzen>},
    {"mM", goTo<Menue::Haupt>},
};

constexpr Taste kFStatistik[] = {
    {"cC", general<GeneralBit::FStatistics>},
    {"1", cycleHeterozygosity},
    {"gG", cycleGlobal},
    {"hH", fst<FstBit::Beta>},
    {"4", toggleHardyWeinberg},
    {"6", fst<FstBit::PerLocus>},
    {"7", fst<FstBit::Heterogeneity>},
    {"rR", fst<FstBit::RandomDiscard>},
    {"nN", ask<kPermutationen>},
    {"lL", ask<kReplikaLoci>},
    {"aA", ask<kReplikate>},
    {"bB", goTo<Menue::Distanzen>},
    {"mM", goTo<Menue::Haupt>},
};

constexpr Taste kUmwandlung[] = {
    {"1", general<GeneralBit::Msvar>},
    {"2", general<GeneralBit::Migrate>},
    {"3", general<GeneralBit::Arlequin>},
    {"4", general<GeneralBit::IMFormat>},
    {"rR", general<GeneralBit::RepeatSteps>},
    {"f", askIMFile}, // wanted: upper-case F is unknown
    {"mM", goTo<Menue::Haupt>},
};

constexpr Taste kHetRange[] = {
    {"cC", general<GeneralBit::HetRange>},
    {"rR", het<HetRangeBit::RandomDiscard>},
    {"0", het<HetRangeBit::CorrectZero>},
    {"lL", het<HetRangeBit::Linked>},
    {"sS", het<HetRangeBit::Individuals>},
    {"nN", ask<kRandomisierungen>},
    {"mM", goTo<Menue::Haupt>},
};

std::span<const Taste> keysOf(int32_t menuNummer) {
    switch (menuNummer) {
    case Menue::Haupt:
        return kHaupt;
    case Menue::Distanzen:
        return kDistanzen;
    case Menue::DistanzEinstellung:
        return kDistanzEinstellung;
    case Menue::FStatistik:
        return kFStatistik;
    case Menue::Umwandlung:
        return kUmwandlung;
    case Menue::HetRange:
        return kHetRange;
    default:
        return {};
    }
}

// Acts on the key; false if it is not in the table.
bool press(CMenuAllg& menu, std::span<const Taste> keys, char pressed) {
    const auto row = std::ranges::find_if(keys, [pressed](const Taste& key) {
        return key.Zeichen.find(pressed) != std::string_view::npos;
    });
    if (row == keys.end()) {
        return false;
    }
    row->Wirkung(menu);
    return true;
}

// The same for the key of a distance.
bool toggleMeasure(CMenuAllg& menu, char pressed) {
    const auto row = std::ranges::find(allMeasures(), pressed, &Measure::Key);
    if (menu.MenuNummer != Menue::DistanzEinstellung || row == allMeasures().end()) {
        return false;
    }
    menu.PopDistMask ^= row->Bit;
    return true;
}

} // namespace

int CMenuAllg::Run(int arg) {
    if (arg != 0) {
        return 1;
    }
    MenuNummer = Menue::Haupt;
    std::cout << "KVA can now also handle command line arguments!" << std::endl
              << "If you are interested in this function" << std::endl
              << "please read the documentation!" << std::endl;
    (void)WriteHeader(0);
    do {
        (void)WriteMenu(0);
    } while (AnalyseCommand(0) != 0);
    std::cout << std::endl << "Program halted" << std::flush;
    return 0;
}

char CMenuAllg::GetTaste() {
    char taste = '\n';
    while (taste == '\n') {
        if (!std::cin.get(taste)) {
            return kQuit;
        }
    }
    return taste;
}

int CMenuAllg::AnalyseCommand(int /*arg*/) {
    const char taste = GetTaste();
    if (taste == kQuit || taste == 'Q') {
        return 0;
    }
    if (!press(*this, kEverywhere, taste) && !press(*this, keysOf(MenuNummer), taste) &&
        !toggleMeasure(*this, taste)) {
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
        (void)DatenObjekt->LinkResultNew(); // wanted: a failed open before this is not guarded
    } else if (!loadChosen(*this, daten)) {
        return 0;
    }
    if (DatenObjekt) {
        (void)WriteInformation(Auskunft::Daten);
        StarteLauf(*DatenObjekt, *this, *this);
    }
    std::cout << std::endl;
    return 0;
}

} // namespace kva
