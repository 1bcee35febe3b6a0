// The distances straight from their definition, slow and obvious: square arrays of sums, for each
// allele of the pool two linear searches per pair, every cell found in the triangles anew. The
// engine must give the same bytes.
#ifndef KVA_TESTS_DISTANCE_PLAIN_DISTANCES_H
#define KVA_TESTS_DISTANCE_PLAIN_DISTANCES_H

#include "control/AnalyseDataObj.h"
#include "support/datasets.h"

#include <array>
#include <string>
#include <vector>

namespace kva_test {

using namespace kva;

// The outputs in their order.
enum Output { POSA, FSS, ADA, KSC, DMS, ASD, CAS, DAN, DSG };
constexpr int kOutputs = 9;
extern const std::array<const char*, kOutputs> kStems;
extern const std::array<uint32_t, kOutputs> kBits; // in PopDistMask

class PlainDistances {
  public:
    // Of the populations or of the individuals of a run whose tables are counted.
    PlainDistances(const AnalyseDataObj& run, bool individuals);

    // Sums the loci (from 0) in their order, from 0.
    void sum(const std::vector<int>& loci);

    // The matrix of an output as its file holds it; for nexus with head and end.
    std::string matrix(int output, bool nexus = false) const;

    // The block of an output's sheet of single loci.
    const std::string& sheet(int output) const { return Sheets[static_cast<std::size_t>(output)]; }

    double cell(int output, int r, int c) const;

  private:
    // Sums of one pair over the loci.
    struct Pair {
        std::array<double, 10> Summe{};
        std::array<double, 10> Nenner{};
    };
    // What a pair has at one locus.
    struct AtLocus {
        double Dad = -1.0, Dmu = -1.0, D1 = -1.0;
        double S = 0.0, I = 0.0, U = 0.0, SK = 0.0, B = 0.0, Jxy = 0.0, Jx = 0.0, Jy = 0.0;
    };

    void startSheets();
    void addLocus(int locus);
    void addPair(int i, int j, int locus);
    void addMeans(const AllelCount& a, const AllelCount& b, int locus, AtLocus& at, Pair& pair);
    void addAllele(int allele, const AllelCount& a, const AllelCount& b, bool withD, AtLocus& at,
                   Pair& pair) const;
    void writeSheetCells(const AtLocus& at);
    double variance(const AllelCount& table, double mean) const;
    double sim(double similarity) const;
    double similarityCell(int layer, int r, int c) const;
    double valueCell(int output, int r, int c) const;
    double neiCell(int r, int c) const;
    double neiLogCell(int r, int c) const;
    const AllelCount& table(int sample, int locus) const;
    std::size_t place(int i, int j) const {
        return static_cast<std::size_t>(i) * static_cast<std::size_t>(N) +
               static_cast<std::size_t>(j);
    }
    const Pair& at(int i, int j) const { return Pairs[place(i, j)]; }
    std::vector<std::string> labels() const;

    const AnalyseDataObj& Run;
    bool Individuals;
    int N; // samples
    std::vector<Pair> Pairs;
    std::array<std::string, kOutputs> Sheets;
};

// The files that a whole pass must leave, by their names in "Distance_data", for the settings of
// the run and a seed of the random stream.
struct PlainFile {
    std::string Name;
    std::string Bytes;
};
std::vector<PlainFile> plainPass(const AnalyseDataObj& run, bool individuals, int bootstraps,
                                 long seed);

// The first of these files that differs from what the pass left, as text; empty if all are the
// same.
std::string distanceDifference(LoadedRun& run, bool individuals, int bootstraps, long seed);

} // namespace kva_test

#endif
