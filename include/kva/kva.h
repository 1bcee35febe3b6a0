// libkva: the population genetics of microsatellite data, as kva and kvatool compute it, for other
// programs. A data set is loaded from a file or from memory, passes are chosen and run, and the
// results come as values:
//
//      #include <kva/kva.h>
//
//      const auto data = kva::api::loadFile("testdata.dat");
//      kva::api::Settings settings;
//      settings.fstPairs = true;
//      settings.permutations = 1000;
//      const auto result = kva::api::run(*data, settings);      // after a look at both
//      const kva::api::Matrix fst = result->fst();
//
// Nothing here prints, writes a file or changes the working folder. What goes wrong is an Error in
// the place of a value: no exception leaves loading and running, and none but std::bad_alloc the
// look-ups of a Result. All functions may be called from several threads at once, also run() on one
// data set.
#ifndef KVA_KVA_H
#define KVA_KVA_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kva::api {

// The version of the library, as "4.05".
std::string version();

// --- Errors ------------------------------------------------------------------------------

enum class ErrorKind {
    File,      // the data file cannot be read
    Data,      // the data cannot be used
    Settings,  // a setting is out of its range, or has no meaning beside another one
    Cancelled, // the progress callback ended the run, or threw
    Memory,    // there is not enough
    Internal,  // a fault of the library
};

struct Error {
    ErrorKind kind;
    std::string text; // for a user, without a line end
};

// A value, or the error in its place.
template <class T> class Outcome {
  public:
    Outcome(T value) : Held(std::move(value)) {}
    Outcome(Error error) : Held(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<T>(Held); }

    // Only where there is a value.
    const T& operator*() const { return *std::get_if<T>(&Held); }
    const T* operator->() const { return std::get_if<T>(&Held); }

    // Only where there is none.
    const Error& error() const { return *std::get_if<Error>(&Held); }

  private:
    std::variant<T, Error> Held;
};

// --- Data --------------------------------------------------------------------------------

struct Population {
    std::string name;
    std::int64_t individuals = 0;
    std::int64_t inbred = 0; // individuals of type "h"
    std::int32_t group = 0;  // 0 or less: none
};

struct Locus {
    std::string name;
    std::int32_t repeat = 0;  // length of a repeat in base pairs; below 1: unknown
    std::int64_t alleles = 0; // different ones
    std::int64_t copies = 0;  // gene copies that are typed
    std::int64_t missing = 0; // ... that are not
};

enum class Severity { Error, Warning, Note };

// What kvatool check would tell of the data. An error is data that are read otherwise than they
// stand, not data that cannot be read.
struct Finding {
    Severity severity;
    std::string name;    // "split-population"
    std::string text;    // what it is, what it means, what to do
    std::int64_t count;  // how many
    std::int64_t row;    // of the first, from 1; 0: the whole file
    std::int64_t column; // of the first, from 1; 0: the whole row
};

// A loaded data set, which never changes. Copies share it.
class DataSet {
  public:
    const std::string& name() const;
    const std::vector<Population>& populations() const;
    const std::vector<Locus>& loci() const;
    const std::vector<Finding>& findings() const;
    const std::vector<std::string>& warnings() const; // lines that the reader told

    struct Content; // of the library
    explicit DataSet(std::shared_ptr<const Content> content) : Held(std::move(content)) {}
    const Content& content() const { return *Held; }

  private:
    std::shared_ptr<const Content> Held;
};

// Loads a data file as kva reads it (docs/file-formats.md). No pipe, no device.
Outcome<DataSet> loadFile(const std::string& file);

// The same of the bytes of a data file, which are not kept. name: of the data set, for the exports
// and in messages.
Outcome<DataSet> loadText(std::string_view bytes, const std::string& name = "data.txt");

// --- Settings ----------------------------------------------------------------------------

enum class Resample { Genotypes, Alleles };
enum class Heterozygosity { Observed, Expected, Inbred };

// What a run computes beside the allele counts and the descriptive statistics, which are always
// there. The defaults are those of kvatool run; docs/statistics.md has the formulas.
struct Settings {
    // F-statistics
    bool fstPairs = false;
    bool fstGlobal = false;
    bool fstBeta = false;
    std::int32_t permutations = 10000;       // of the tests; 0: no tests
    std::int32_t sequentialHits = 0;         // end the test of a pair; 0: all permutations are made
    Resample resample = Resample::Genotypes; // what the permutations move
    Heterozygosity heterozygosity =
        Heterozygosity::Observed; // Inbred: expected in inbred ones only
    bool fstLoci = false;         // also Fst of each pair and locus
    bool thin = false;            // inbred data, at random, before the tests of pairs

    // Genetic distances, by name: POSA FSS ADA KSC DMS ASD CAS DAN DSG, or "all". CAS and DAN come
    // together.
    std::set<std::string> populationDistances;
    std::set<std::string> individualDistances;
    std::int32_t bootstrap = 1; // replicates over loci; 1: none
    bool minusLog = false;      // -ln of a similarity, not 1 minus it
    bool distanceLoci = false;  // also those of populations by each locus
    bool nexus = false;         // matrices of individuals as NEXUS, without a bootstrap

    // Range of heterozygosity by sampling, from so many draws; nothing: none
    std::optional<std::int32_t> hetRange;
    bool hetLinked = false;      // the loci are linked
    bool hetIndividuals = false; // whole individuals are drawn
    bool hetThin = false;        // inbred data are thinned at random
    bool hetUncorrected = false; // a heterozygosity of 0 or 1 stays

    // Files for other programs, by name: msvar arlequin migrate im, or "all"
    std::set<std::string> formats;
    std::string imInformation; // the text of an IM information file; empty: none

    double rarefy = -1;     // reference of the allelic richness, in individuals; negative: the
                            // smallest sample of each locus
    std::uint64_t seed = 1; // the same seed gives the same results
    unsigned threads = 1;   // 1 to 1024; the results are the same for any number
};

// --- Results -----------------------------------------------------------------------------

// A number, with what it belongs to: empty where it is of no population, pair, locus or replicate.
// The digits are those of the sheet that holds it.
struct Row {
    std::string statistic;   // docs/results-table.md lists them
    std::string population1; // "Total": all populations together; or an individual
    std::string population2;
    std::string locus;
    std::string replicate;
    double value; // NaN: none
};

// A permutation test: of a pair of populations, of a locus over all of them, or of both over all.
struct Test {
    std::string statistic;   // "fst_pairwise"
    std::string population1; // empty: not of a pair
    std::string population2;
    std::string locus; // empty: over all loci
    std::int64_t hits; // permutations that reach the observed value
    std::int64_t permutations;
    bool endedByHits; // Settings::sequentialHits
    double p;         // NaN: there is no observed value
    double error;     // Monte Carlo standard error of p
    double holm;      // p adjusted for the number of pairs; NaN: not of a pair
    double benjaminiHochberg;
};

// A symmetric matrix of values between populations or individuals.
struct Matrix {
    std::vector<std::string> names;
    std::vector<double> cells; // row by row; NaN: no value

    std::size_t size() const { return names.size(); }
    double at(std::size_t i, std::size_t j) const { return cells[i * size() + j]; } // from 0
};

// The results of a run, which never change. Copies share them.
class Result {
  public:
    // The texts of all sheets, exports and the log, by their paths in the result folder of kva:
    // "F-Statistic/FST_WC84.txt".
    const std::map<std::string, std::string, std::less<>>& sheets() const;

    const std::vector<Test>& tests() const;
    const std::vector<std::string>& warnings() const; // passes and sheets that went wrong

    // The numbers of all sheets, or those of one statistic, in the order of docs/results-table.md.
    std::vector<Row> rows(std::string_view statistic = {}) const;

    // The value of a statistic at a population and a locus; NaN where there is none. The first, if
    // names come twice.
    double value(std::string_view statistic, std::string_view population,
                 std::string_view locus = {}) const;

    // The matrix of a statistic of pairs; without rows where it was not computed. replicate: empty:
    // the first. diagonal: its cells.
    Matrix matrix(std::string_view statistic, std::string_view replicate = {},
                  double diagonal = 0) const;

    Matrix fst() const { return matrix("fst_pairwise"); }

    // name: as in Settings; of populations, or of individuals.
    Matrix distances(const std::string& name, bool individuals = false) const;

    // The p-values of the tests of pairs, with NaN in the diagonal. statistic: "fst_pairwise",
    // "fit_pairwise", "fis_pairwise".
    Matrix pValues(std::string_view statistic = "fst_pairwise") const;

    struct Content; // of the library
    explicit Result(std::shared_ptr<const Content> content) : Held(std::move(content)) {}

  private:
    std::shared_ptr<const Content> Held;
};

// --- Running -----------------------------------------------------------------------------

struct Progress {
    std::string pass;
    double share; // of the pass that is done, 0 to 1; passes that are not spread tell 0 alone
};

// Is told of the progress and ends the run with false. It is called in threads of the run, never in
// two at once, at times many times a second. An exception ends the run, too.
using ProgressCallback = std::function<bool(const Progress& progress)>;

// Runs the passes. The numbers are those of `kvatool run` with the same settings and seed.
Outcome<Result> run(const DataSet& data, const Settings& settings,
                    const ProgressCallback& progress = nullptr);

} // namespace kva::api

#endif
