// DistanceRun: the replicates of the distances between populations or between individuals, in
// the current folder. What differs between the two stands in a DistanceKind.
#ifndef KVA_DISTANCE_DISTANCERUN_H
#define KVA_DISTANCE_DISTANCERUN_H

#include "distance/measures.h"
#include "distance/replicatewriter.h"
#include "distance/samples.h"
#include "fstat/randsci.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kva {

class Run;

// Where populations and individuals differ.
struct DistanceKind {
    const char* Announcement; // on the console, argument of DistanceBegin
    const char* LogText;      // entry of the finished pass in the log
    const char* MatrixEnd;    // behind the stem in the name of a matrix file
    const char* SheetEnd;     // the same for the sheets of single loci; null: there are none
    const char* PassMark;     // on the console for each locus taken
    bool PassNumber;          // with a bootstrap, the number of the pass stands before the mark
    bool Nexus;               // whether there can be NEXUS files
    SampleRules Rules;        // what is taken from the allele tables
    UnitKind Replicate;       // where each replicate has a stream of its own
};

// All files of one call of an engine: the matrices of all selected measures and, where they are
// asked for, their sheets of single loci.
class DistanceRun {
  public:
    // run: NOT OWNED, it outlives the object. labels: of the matrix rows. samples: as many as
    // labels.
    DistanceRun(Run& run, const DistanceKind& kind, Samples samples,
                std::vector<std::string> labels);
    DistanceRun(const DistanceRun&) = delete;
    DistanceRun& operator=(const DistanceRun&) = delete;
    ~DistanceRun() = default;

    // Creates the files in the current folder and writes all replicates, as many as
    // Run::Bootstraps. Seeds the random stream from the clock, always; with more than one
    // replicate draws a locus for each place of each, with Run::Spreading on a stream of its own. A
    // file that cannot be opened is left out. 0; -3 if no measure is selected.
    long run();

  private:
    // The text of a replicate, a piece for each file.
    struct Texts {
        std::vector<std::string> Matrices; // by measure
        std::vector<std::string> Sheets;   // the same; none without perLocus()
    };

    struct TextWriter;

    // Creates the matrix files, empty or with the NEXUS head, and opens the sheets.
    void createFiles();
    // Writes the replicates one after the other, right into the files.
    void writeInOrder();
    // Writes them on several threads, each replicate into texts first.
    void writeInUnits();
    // The loci of a replicate, from 0: drawn with replacement, BootLoci of them if that is above 0,
    // else as many as there are; without a bootstrap all loci in order. marks: they are told on the
    // console.
    std::vector<std::size_t> drawLoci(bool marks) const;
    // The stream of a replicate, from 0, with Run::Spreading.
    void startReplicate(std::size_t replicate) const;
    ReplicateShape shape() const;
    LocusSheets locusSheets(std::vector<ResultFile> files) const;
    bool bootstrapping() const; // more than one replicate
    bool inUnits() const;       // replicates are written on several threads
    bool nexus() const;         // the matrices are NEXUS files
    bool perLocus() const;      // there are sheets of single loci
    // Opens the matrix file of a measure; `mode` as fopen takes it. Closed if that fails.
    ResultFile openMatrix(const Measure& measure, const char* mode) const;

    Run& Source;                        // NOT OWNED
    DistanceKind Kind;                  // populations or individuals
    Samples Prepared;                   // samples of all loci
    std::vector<std::string> Labels;    // of the matrix rows
    CellRules Rules;                    // from the settings
    std::vector<Measure> Measures;      // selected, in the order of the output
    std::vector<ResultFile> SheetFiles; // in the order of Measures; none without perLocus()
};

} // namespace kva

#endif
