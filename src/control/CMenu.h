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
constexpr int32_t Main = 0;
constexpr int32_t Distances = 1;
constexpr int32_t DistanceSettings = 2;
constexpr int32_t FStatistics = 4;
constexpr int32_t Conversion = 5;
constexpr int32_t HetRange = 6;
} // namespace Menu

// What CMenuAllg::WriteInformation can show.
namespace Info {
constexpr int Nothing = 0;
constexpr int Versions = 3;
constexpr int Distances = 4;
constexpr int FStatistics = 5;
constexpr int Daten = 6;
constexpr int VersionNumber = 7;
constexpr int Help = 8; // no key calls it
} // namespace Info

class CMenuAllg : public AnalyseSettings, public ScalarSettings {
  public:
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

    // Reads one key and acts on it. `arg` is ignored. 0 to leave the menu, -1 to go on.
    virtual int AnalyseCommand(int arg);

    // What `was` of Info names; nothing for any other number. 0. In CMenu_.cpp.
    virtual int WriteInformation(int was);

    // The version of the menu: `a` before the point, `b` behind it. 0.
    virtual int GetVersion(int& a, int& b, int arg);

    // One run: the first load of the chosen file, or the next result folder of loaded data,
    // and then all passes. `arg` is ignored. 0. Leaves the process in the result folder until
    // DatenObjekt goes.
    virtual int DoWork(int arg);

    virtual ~CMenuAllg() = default;

    // The menu, until the user quits or the input ends. 0; 1 at once if `arg` is not 0.
    int Run(int arg);

    // The next key from standard input, line ends passed over; 'q' at the end of input.
    static char GetTaste();

    int32_t MenuReserve = 1; // carried; read by nothing
    int32_t MenuNummer = Menu::Main;
    std::array<std::string, 10> DateiListe;      // data files as typed; only entry 0 is used
    std::string IMDateiName;                     // IM information file; empty: none
    int32_t DateiAnzahl = 0;                     // names in DateiListe, 0 or 1
    std::unique_ptr<AnalyseDataObj> DatenObjekt; // null until a run, and after keys i and X
};

} // namespace kva

#endif
