// CMenuAllg: the interactive menu. It draws the current menu, reads one key and acts on it,
// until the user quits. The settings survive runs and new files, and a loaded file can be run
// again and again.
//
// State of the data side:
//
//     nothing chosen   DateiAnzahl 0, no DatenObjekt           at the start, key X
//     file chosen      DateiAnzahl 1, no DatenObjekt           key i
//     loaded           DateiAnzahl 1, DatenObjekt with data    key !
//     failed           DateiAnzahl 1, DatenObjekt without      key ! on a file that does not open
//
// From loaded the key ! leads to loaded again, with a new result folder. The keys i and X leave
// every state.
#ifndef KVA_CONTROL_CMENU_H
#define KVA_CONTROL_CMENU_H

#include "base/settings.h"
#include "control/AnalyseDataObj.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace kva {

// Values of CMenuAllg::MenuNummer; 3 is not used.
namespace Menu {
constexpr int32_t Main = 0;             // the file, and the ways to the other menus
constexpr int32_t Distances = 1;        // distances and F-statistics, on and off
constexpr int32_t DistanceSettings = 2; // which distances, bootstraps
constexpr int32_t FStatistics = 4;      // their settings and permutations
constexpr int32_t Conversion = 5;       // files for other programs
constexpr int32_t HetRange = 6;         // range of heterozygosity
} // namespace Menu

// What CMenuAllg::WriteInformation can show.
namespace Info {
constexpr int Nothing = 0;       // shows nothing
constexpr int Versions = 3;      // versions of menu and program
constexpr int Distances = 4;     // the settings of the distances
constexpr int FStatistics = 5;   // the settings of the F-statistics
constexpr int Daten = 6;         // shape of the loaded file; nothing without DatenObjekt
constexpr int VersionNumber = 7; // the version of the program alone
constexpr int Help = 8;          // no key calls it
} // namespace Info

// The menu with its settings, the files it was given and the data it runs.
class CMenuAllg : public AnalyseSettings, public ScalarSettings {
  public:
    // The defaults of all settings, no file chosen.
    CMenuAllg() = default;
    CMenuAllg(const CMenuAllg&) = delete;
    CMenuAllg& operator=(const CMenuAllg&) = delete;

    // A derived menu can replace a screen or the handling of the keys; the order of these
    // operations stands.

    // The welcome line. 0; 1, and nothing, if `arg` is not 0. In CMenu_.cpp.
    virtual int WriteHeader(int arg);

    // The screen of the current menu. 0; nothing is drawn if `arg` is not 0 (1) or if
    // MenuNummer is 7 or more (2). In CMenu_.cpp.
    virtual int WriteMenu(int arg);

    // Reads one key from standard input and acts on it; a prompt that it opens reads its answer
    // there, too. An unknown key is told on the console. `arg` is ignored. 0 to leave the menu, -1
    // to go on.
    virtual int AnalyseCommand(int arg);

    // Prints what `was` of Info names; nothing for any other number. 0. In CMenu_.cpp.
    virtual int WriteInformation(int was);

    // The version of the menu, 1.2: `a` before the point, `b` behind it. `arg` is ignored. 0.
    virtual int GetVersion(int& a, int& b, int arg);

    // One run: the first load of the chosen file ("testdata.dat" if there is none), or the next
    // result folder of loaded data, and then all passes. `arg` is ignored. 0, also for a file that
    // does not open. Leaves the process in the result folder until DatenObjekt goes.
    virtual int DoWork(int arg);

    virtual ~CMenuAllg() = default;

    // The menu, until the user quits or the input ends. 0; 1 at once if `arg` is not 0.
    int Run(int arg);

    // The next key, a byte of standard input, line ends passed over; 'q' at the end of input.
    static char GetTaste();

    int32_t MenuReserve = 1;                     // carried; read by nothing
    int32_t MenuNummer = Menu::Main;             // the current menu, one of Menu
    std::array<std::string, 10> DateiListe;      // data files as typed; only entry 0 is used
    std::string IMDateiName;                     // IM information file; empty: none
    int32_t DateiAnzahl = 0;                     // names in DateiListe, 0 or 1
    std::unique_ptr<AnalyseDataObj> DatenObjekt; // null until a run, and after keys i and X
};

} // namespace kva

#endif
