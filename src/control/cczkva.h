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

class CCommandZeileKVA : public ScalarSettings {
  public:
    // Takes what main got. 1 after a run; 0 if there is no argument; -1 after an error,
    // told on the console, that stopped it before the pipeline. After a run the process
    // stays in the result folder until the object goes.
    int Analyse(int argc, char** argv);

    // Takes one option with its values, in one text. 1 if it was taken; 0 if the text
    // does not begin with "-"; -1 if it is null or unknown, or its file name is a lone
    // blank ("No Filename!" on the console).
    int AnalyseCommando(const char* option);

    std::string DatenName;                       // data file, from -i; empty: none given
    std::string IMDateiName;                     // IM information file, from -fim; empty: none
    std::unique_ptr<AnalyseDataObj> DatenObjekt; // null until Analyse has read all options
    uint32_t GeneralMask = kCommandLineDefaults.GeneralMask;
    uint32_t DistWort = kCommandLineDefaults.PopDistMask; // both PopDistMask and IndDistMask
    uint32_t FstMask = kCommandLineDefaults.FstMask;
    uint32_t HetRangeMask = kCommandLineDefaults.HetRangeMask;

  private:
    bool readOptions(int argc, char** argv);
    bool load(InputFile& daten);
};

} // namespace kva

#endif
