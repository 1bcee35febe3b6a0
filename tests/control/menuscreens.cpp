#include "control/menuscreens.h"

#include "support/support.h"

#include <stdexcept>

using namespace kva;

namespace kva_test {

Pressed press(CMenuAllg& menu, const std::string& keys) {
    Typed typed(keys);
    StdoutCapture console;
    const int result = menu.AnalyseCommand(0);
    return {result, console.text(), typed.rest()};
}

std::string session(CMenuAllg& menu, const std::string& keys) {
    const Typed typed(keys);
    StdoutCapture console;
    menu.Run(0);
    return console.text();
}

std::string changed(std::string text, std::string_view old, std::string_view now) {
    const std::size_t place = text.find(old);
    if (place == std::string::npos || text.find(old, place + 1) != std::string::npos) {
        throw std::logic_error("not there once: " + std::string(old));
    }
    return text.replace(place, old.size(), now);
}

std::string chosenScreen(const std::string& file) {
    return changed(kMainScreen, "none (KVA will use testdata.dat)\n",
                   file + " (1)\n     (X) ... Remove Data from Memory\n");
}

std::string loadedScreen(const std::string& file) {
    return changed(chosenScreen(file), "from Memory\n", R"(from Memory
     (s) ... Show Data-Information
****** ;-) ******
!Data loaded!
****** ;-) ******
)");
}

const char* const kWelcome = R"(KVA can now also handle command line arguments!
If you are interested in this function
please read the documentation!

Welcome to KVAnalyzer 4.05 !
)";

const char* const kHalted = "\nProgram halted";

const char* const kUnknown = "\nUnknown command!";

const char* const kMainScreen = R"(
__________________________________________________________
     (i) ... Inputfile:none (KVA will use testdata.dat)

     (d) ... Distance settings  
     (c) ... Data conversion settings  
     (a) ... Number of ind's for allelic richness:
                                    : Minimal sample number per locus
     (r) ... Heterozygosity range settings

     (!) ... Run
     (q) ... Quit
Please enter command:)";

const char* const kDistanceScreen = R"(
__________________________________________________________
     (+) ... all distances on
     (-) ... all distances off

     (p) ... Distances                      POP_OFF IND_OFF
     (s) ... Fst,Fit,Fis                    OFF
     (m) ... back to main menu

     (!) ... Run
     (q) ... Quit
Please enter command:)";

const char* const kDistanceSettingsScreen = R"(
__________________________________________________________
     (c) ... Pairwise populations distances calc: OFF
     (i) ... Pairwise individual distances calc : OFF
  (1)    Dps, Proportion of shared allels : ON
  (2)    Dfs, Fuzzy set similarity        : OFF
  (3)    Dad, Absolute difference algorithm:OFF
  (4)    Dkf, Kinship coefficient         : OFF
  (5)    Dmu, Delta mu squared            : ON
  (6)    D1 , Average squared difference  : OFF
  (7)    Dc , Chord distance              : ON
  (8)    Da , Nei's-distance (1983)       : ON
  (9)    D  , Nei standard genetic distance:OFF
     (l) ... Use -ln(similarity factor) 
      instead of 1-(similarity factor)    : OFF
             This option will only used for Dps, Dfs, Dkf, D
     (o) ... Distance per population pair and locus: OFF
     (n) ... Number of bootstraps         : No bootstrapping!

     (r) ... Number of loci used by boots.: Use all loci
     (b) ... back to distance menu
     (m) ... back to main menu

     (!) ... Run
     (q) ... Quit
Please enter command:)";

const char* const kFStatisticsScreen = R"(
__________________________________________________________
     (c) ... Fst/Fis/Fit distances calc: OFF
     (g) Fst calculated global         : ON
     (g) Fst calculated pairwise       : OFF
     (h) Betai/ij calculation          : ON

     (1) Calculation based on          : Hobs
     (4) Assume Hardy-Weinberg         : No
     (7) Heterogeneity among loci      : No

     (n) ... Number of permutations    : 10000

     (b) ... back to distance menu
     (m) ... back to main menu

     (!) ... Run
     (q) ... Quit
Please enter command:)";

const char* const kConversionScreen = R"(
__________________________________________________________
 Setings for data conversion:

     (1) ... Make msvar (Beaumont)     : OFF
     (2) ... Make Migrate/LAMARC       : ON
     (3) ... Make Arlequin format      : ON
     (4) ... Make IM-format            : OFF
     (f) ... Locus information for IM  : No
     (r) ... Reduce to stepsize        : OFF

     (m) ... back to main menu

     (!) ... Run
     (q) ... Quit
Please enter command:)";

const char* const kHetRangeScreen = R"(
__________________________________________________________
     (c) ... Calculate Heterozygosityrange: OFF

     (n) ... Number of permutations       : 1000
     (r) ... Randomdiscard inbred data    : OFF
             I recommend to use this only with individual sampling!
     (0) ... correct Min(=0) and Max(=1) Heterozygosity
             with by min/max value        : ON

     (l) ... Loci are linked              : OFF
     (s) ... Sample individuals  instead of chromosomes:OFF


     (m) ... back to main menu

     (!) ... Run
     (q) ... Quit
Please enter command:)";

} // namespace kva_test
