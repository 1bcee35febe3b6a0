// The numbers of a result folder that the report shows, read once.
#ifndef KVA_REPORT_REPORTDATA_H
#define KVA_REPORT_REPORTDATA_H

#include "report/runrecord.h"
#include "results/tidy.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

// A row of the long table, kept.
struct ResultRow {
    std::string population1;
    std::string population2;
    std::string locus;
    std::string replicate;
    std::string value; // as its sheet prints it; empty: none
};

// Distances of one measure. Pairs are in the order 1 and 2, 1 and 3, 2 and 3, 1 and 4, ...: that of
// the lower triangle of a matrix, row by row.
struct PairDistances {
    std::string measure;             // "DAN"; empty: there are none
    std::vector<std::string> others; // further measures of the folder
    std::vector<std::string> labels;
    std::vector<std::string> texts; // of populations: cells as the sheet prints them, where there
                                    // is one replicate
    std::vector<double> values;     // of all loci; else means over the replicates; NaN: none
    std::size_t replicatesRead = 0; // 1: the values are those of the sheet
    std::vector<std::vector<double>> bootstrap; // values of each replicate; of populations alone

    // How many pairs have no finite value.
    std::size_t pairsWithout() const;

    // Whether there are three samples or more and a finite value of each pair, as a tree and
    // coordinates take it.
    bool canBeDrawn() const;

    // Whether a replicate has a finite value of each pair, as the support of a tree takes it.
    bool isWhole(const std::vector<double>& replicate) const;
};

// An allele of a locus.
struct AlleleCell {
    std::string allele;
    std::string count;     // gene copies, as the sheet prints them
    std::string frequency; // the same; empty: no such row
};

struct ReportData {
    std::string folder; // its name alone
    std::optional<RunRecord> record;
    std::string log; // KVA.log; empty: none
    std::vector<std::string> populations;
    std::vector<std::string> loci;
    std::vector<std::size_t> individuals; // of each population; empty: not known
    std::map<std::string, std::vector<ResultRow>, std::less<>> rows; // by statistic
    std::vector<std::vector<std::vector<AlleleCell>>> alleles;       // by sample (0: all), locus
    PairDistances ofPopulations;
    PairDistances ofIndividuals;
    std::vector<std::size_t> populationOf; // of each individual of the distances, from 0; or empty

    // The rows of a statistic, in the order of the sheet; none if its pass was not run.
    const std::vector<ResultRow>& of(std::string_view statistic) const;

    // The value of a row of a statistic; "" where there is none.
    std::string_view value(std::string_view statistic, std::size_t row = 0) const;

    // The name of a sample; 0: all populations together.
    std::string sampleName(std::size_t sample) const;

    // The cell of a statistic of samples; sample 0: all populations together. "" where there is
    // none.
    std::string_view cell(std::string_view statistic, std::size_t sample, std::size_t locus) const;

    // The "min", "mean" or "max" of the heterozygosity of a population (from 0) over the draws.
    std::string_view range(std::string_view which, std::size_t population, std::size_t locus) const;

    // The cells of a statistic of pairs (i > j, both from 0); "" where there is none.
    std::string_view pair(std::string_view statistic, std::size_t i, std::size_t j) const;

    // Tests of a statistic, in the order of the record; those of pairs only if there is one a pair.
    std::span<const RunRecord::Test> tests(std::string_view statistic) const;
    std::span<const RunRecord::Test> pairTests(std::string_view statistic) const;
};

// Place of the pair i > j, both from 0, in the order of PairDistances.
inline std::size_t trianglePlace(std::size_t i, std::size_t j) {
    return i * (i - 1) / 2 + j;
}

struct ReportRequest {
    std::filesystem::path folder;
    std::filesystem::path bootstrap; // folder with the replicates of distances; empty: none
    std::string measure;             // that is shown; empty: the first one of the folder
    std::optional<RunRecord> record; // of the folder
};

// Reads what the report shows. Result: what is wrong, a line each; empty: nothing.
std::vector<std::string> readReportData(const ReportRequest& request, ReportData& data);

} // namespace kva

#endif
