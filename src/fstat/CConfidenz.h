// CConfidenz: keeps the tails of a stream of values, without the stream, for 95 % and
// 99 % limits (percentiles) and the mean.
//
// Init announces the number of values; DatenUebergabe takes them one by one; then the
// limits can be read.
#ifndef KVA_FSTAT_CCONFIDENZ_H
#define KVA_FSTAT_CCONFIDENZ_H

#include <cstdint>
#include <limits>
#include <vector>

namespace kva {

// Comparison of two doubles for qsort: -1, 0 or 1, ascending.
int SortDaten(const void* a, const void* b);

class CConfidenz {
  public:
    // Sets up for n values: 10. For n below 1 drops everything: 0, or -10 if there was
    // nothing to drop.
    int Init(int n);

    // Takes a value. 0; -1 if none is expected, -2 if all have been given, with nothing changed.
    int DatenUebergabe(double x);

    // The trunc(0.025 n)-th largest value into `oben`, the trunc(0.025 n)-th smallest into
    // `unten`. 0; -1 with both untouched unless all values have been given, and at least 40.
    int GetIntervall95(double& oben, double& unten) const;

    // The (trunc(0.005 n) + 1)-th largest and smallest value, likewise: wanted, counted in another
    // way than the 95 % limits; the numbers of "LocusFHeterogeneity.xls" depend on it. Whether all
    // values have been given is not tested. Always 0; both untouched without Init.
    int GetIntervall99(double& oben, double& unten) const;

    // Mean of the values; -1.0 unless all have been given. Without Init it is no number.
    double GetMittel() const;

    // Largest values, AnzBehalten entries. Once full they ascend; entry 0 is scratch and
    // the others are the true extremes so far.
    std::vector<double> ObereDaten;
    std::vector<double> UntereDaten; // smallest values, likewise; the last entry is scratch
    double Summe = 0.0;              // of all values given
    int32_t AnzBehalten = 0;         // size of each array: trunc(0.025 n + 1)
    int32_t LetzterIndex = -1;       // AnzBehalten - 1
    int32_t AnzErwartet = 0;         // values announced
    int32_t AnzErhalten = 0;         // values given
    int32_t FuellPos = 0;            // place filled next; LetzterIndex once the arrays are full
    double StartOben = std::numeric_limits<double>::lowest(); // filler of ObereDaten
    double StartUnten = std::numeric_limits<double>::max();   // filler of UntereDaten

  private:
    void sortIn(); // sorts both full arrays, with the value just given

    bool Sortiert = false; // both arrays ascend but for the value just given
};

} // namespace kva

#endif
