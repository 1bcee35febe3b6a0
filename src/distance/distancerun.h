// DistanceRun: the replicates of the distances between populations or between individuals, in
// the current folder. What differs between the two stands in a DistanceKind.
#ifndef KVA_DISTANCE_DISTANCERUN_H
#define KVA_DISTANCE_DISTANCERUN_H

#include "distance/distancefile.h"
#include "distance/locussheets.h"
#include "distance/measures.h"
#include "distance/rowsummer.h"
#include "distance/samples.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kva {

class Run;

// Where populations and individuals differ.
struct DistanceKind {
    const char* Announcement; // argument of message 48
    const char* LogText;      // entry in the log
    const char* MatrixEnd;    // behind the stem in the name of a matrix file
    const char* SheetEnd;     // the same for the sheets of single loci; null: there are none
    const char* PassMark;     // on the console for each locus taken
    bool PassNumber;          // with a bootstrap, the number of the pass stands before the mark
    bool Nexus;               // whether there can be NEXUS files
    SampleRules Rules;
};

class DistanceRun {
  public:
    // labels: of the matrix rows. samples: as many as labels.
    DistanceRun(Run& run, const DistanceKind& kind, Samples samples,
                std::vector<std::string> labels);
    DistanceRun(const DistanceRun&) = delete;
    DistanceRun& operator=(const DistanceRun&) = delete;
    ~DistanceRun() = default;

    // Creates the files and writes all replicates. 0; -3 if no measure is selected.
    long run();

  private:
    void createFiles();
    void writeReplicate();
    std::vector<int32_t> drawLoci();
    bool bootstrapping() const;
    bool nexus() const;
    bool perLocus() const;
    ResultFile openMatrix(const Measure& measure, const char* mode);

    Run& Lauf;
    DistanceKind Kind;
    Samples Prepared;
    std::vector<RowSummer> Sums; // one for each selected measure
    CellRules Rules;
    MatrixWriter Matrices;
    LocusSheets Sheets;
};

} // namespace kva

#endif
