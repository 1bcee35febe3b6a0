// CCommandZeileKVA: the command line. It turns the arguments into settings, loads the
// data file and runs the pipeline once. Options need no order and can be repeated; a
// later one adds to the same fields.
#ifndef KVA_CONTROL_CCZKVA_H
#define KVA_CONTROL_CCZKVA_H

#include "base/settings.h"
#include "control/AnalyseDataObj.h"
#include "control/frontend.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kva {

// The command line with the settings that it sets and the data it runs.
class CCommandZeileKVA : public ScalarSettings {
  public:
    // Takes what main got, argv[0] the program, and does all: options, load, run. 1 after a run; 0
    // if there is no argument; -1 after an error, told on the console, that stopped it before the
    // pipeline. After a run the process stays in the result folder until the object goes.
    int Analyse(int argc, char** argv);

    // Takes one option with its values, in one text, into the fields below and ScalarSettings.
    // 1 if it was taken; 0 if the text does not begin with "-"; -1 if it is null or unknown,
    // or its file name is a lone blank ("No Filename!" on the console).
    int AnalyseCommando(const char* option);

    std::string DatenName;                       // data file, from -i; empty: none given
    std::string IMDateiName;                     // IM information file, from -fim; empty: none
    std::unique_ptr<AnalyseDataObj> DatenObjekt; // null until Analyse has read all options
    // The words of AnalyseSettings.
    uint32_t GeneralMask = kCommandLineDefaults.GeneralMask;   // bits of GeneralBit
    uint32_t DistWort = kCommandLineDefaults.PopDistMask;      // both PopDistMask and IndDistMask
    uint32_t FstMask = kCommandLineDefaults.FstMask;           // bits of FstBit
    uint32_t HetRangeMask = kCommandLineDefaults.HetRangeMask; // bits of HetRangeBit

  private:
    // Takes all options. False if one other than the last is wrong, as the console says. What
    // stands before the first option is ignored.
    bool readOptions(int argc, char** argv);

    // Loads the data file, which `daten` then holds open, or makes the next result folder of data
    // already loaded. False if no pass may run, as the console says.
    bool load(InputFile& daten);
};

} // namespace kva

#endif
