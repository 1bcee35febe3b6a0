#include "report/reportdata.h"

#include "base/newfile.h"
#include "report/allelerows.h"
#include "report/distancerows.h"
#include "results/results.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kva {

namespace {

namespace fs = std::filesystem;

// The statistics whose rows are kept as they are.
constexpr std::array<std::string_view, 47> kKept = {
    "heterozygosity_expected",
    "heterozygosity_expected_rd",
    "heterozygosity_observed",
    "allelic_richness",
    "allelic_richness_reference",
    "allelic_richness_variance",
    "gene_copies",
    "allele_number_observed",
    "fis_population",
    "gst",
    "report_limit_gap_steps",
    "report_limit_gap_length",
    "report_limit_allele_short",
    "report_limit_allele_long",
    "report_monomorphic",
    "report_step_found",
    "report_step_too_small",
    "report_step_too_large",
    "report_step_expected",
    "report_step_incompatible",
    "report_gap_large",
    "report_allele_short",
    "report_allele_long",
    "permutations_global",
    "fst_global",
    "fst_global_p",
    "fst_global_locus",
    "fst_global_locus_p",
    "fit_global",
    "fit_global_locus",
    "fis_global",
    "fis_global_locus",
    "gst_global",
    "gst_global_p",
    "gst_global_locus",
    "gst_global_locus_p",
    "gst_prime_global",
    "gst_prime_global_p",
    "gst_prime_global_locus",
    "gst_prime_global_locus_p",
    "fst_global_heterogeneity",
    "fit_global_heterogeneity",
    "fis_global_heterogeneity",
    "fst_pairwise",
    "fst_pairwise_p",
    "fst_pairwise_p_bonferroni",
    "heterozygosity_range",
};

ResultRow keptRow(const TidyRow& row) {
    return {std::string(row.place.population1), std::string(row.place.population2),
            std::string(row.place.locus), std::string(row.place.replicate), std::string(row.value)};
}

// --- All rows ---------------------------------------------------------------------------------

// Sorts the rows of a folder: those of kKept and of alleles, those of distances.
class RowTaker {
  public:
    RowTaker(ReportData& data, const std::string& measure)
        : Data(data), Populations(data.ofPopulations, measure, true),
          Individuals(data.ofIndividuals, measure, false) {}

    void operator()(const TidyRow& row) {
        if (row.statistic != Statistic) {
            Statistic = row.statistic;
            findPlace();
        }
        if (Kept != nullptr) {
            Kept->push_back(keptRow(row));
        } else if (Distances != nullptr) {
            Distances->take(row);
        }
    }

    void finish() {
        Populations.finish();
        Individuals.finish();
    }

  private:
    void findPlace() {
        Kept = nullptr;
        Distances = nullptr;
        const bool allele = Statistic == "allele_count" || Statistic == "allele_frequency";
        if (allele || std::find(kKept.begin(), kKept.end(), Statistic) != kKept.end()) {
            Kept = &Data.rows[Statistic];
            return;
        }
        const std::string measure = measureOf(Statistic);
        DistanceTaker& taker = isOfIndividuals(Statistic) ? Individuals : Populations;
        if (!measure.empty() && taker.wants(measure)) {
            Distances = &taker;
        }
    }

    ReportData& Data;
    DistanceTaker Populations;
    DistanceTaker Individuals;
    std::string Statistic; // of the last row
    std::vector<ResultRow>* Kept = nullptr;
    DistanceTaker* Distances = nullptr;
};

// --- What the rows tell -----------------------------------------------------------------------

// Names in the order of the data: those of the expected heterozygosity and of Gst, which every run
// writes.
void takeNames(ReportData& data) {
    for (const ResultRow& row : data.of("gst")) {
        data.loci.push_back(row.locus);
    }
    const std::vector<ResultRow>& rows = data.of("heterozygosity_expected");
    for (std::size_t r = data.loci.size(); !data.loci.empty() && r < rows.size();
         r += data.loci.size()) {
        data.populations.push_back(rows[r].population1);
    }
}

// The bytes of a file of the folder; none where it is not there. A fault where it cannot be read.
std::string textOf(const fs::path& folder, const char* name, std::vector<std::string>& faults) {
    constexpr int64_t kMost = int64_t{1} << 31U;
    std::error_code error;
    std::string text;
    if (fs::exists(folder / name, error)) {
        const std::string failure = readWholeFile((folder / name).string(), text, kMost);
        if (!failure.empty()) {
            faults.push_back(std::string(name) + ": cannot be read: " + failure);
        }
    }
    return text;
}

// The individuals of each population: the lines behind each "POP" of the Genepop file that every
// run writes. Nothing where that is empty or has other populations.
std::vector<std::size_t> individualsOf(std::string_view genepop, std::size_t populations) {
    std::vector<std::size_t> sizes;
    while (!genepop.empty()) {
        const std::string_view line = genepop.substr(0, genepop.find('\n'));
        genepop.remove_prefix(std::min(line.size() + 1, genepop.size()));
        if (line == "POP" || line == "POP\r") {
            sizes.push_back(0);
        } else if (!sizes.empty() && line.find_first_not_of("\r ") != std::string_view::npos) {
            ++sizes.back();
        }
    }
    return sizes.size() == populations ? sizes : std::vector<std::size_t>();
}

// Those of the individuals, in the order of the data; nothing where the sizes do not add up to
// them.
std::vector<std::size_t> populationsOfIndividuals(const std::vector<std::size_t>& sizes,
                                                  std::size_t individuals) {
    std::vector<std::size_t> result;
    for (std::size_t population = 0; population < sizes.size(); ++population) {
        result.insert(result.end(), sizes[population], population);
    }
    return result.size() == individuals ? result : std::vector<std::size_t>();
}

// The name of a folder, also of one that is given as "." or with a slash at its end.
std::string nameOf(const fs::path& folder) {
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(folder, error);
    return (error ? folder : whole).filename().string();
}

// Reads the replicates of the second folder.
std::vector<std::string> readBootstrap(const ReportRequest& request, ReportData& data) {
    const std::string wanted =
        request.measure.empty() ? data.ofPopulations.measure : request.measure;
    PairDistances found;
    DistanceTaker taker(found, wanted, true);
    std::string statistic;
    bool taken = false;
    std::vector<std::string> faults = readResults(request.bootstrap, [&](const TidyRow& row) {
        if (row.statistic != statistic) {
            statistic = row.statistic;
            const std::string measure = measureOf(statistic);
            taken = !measure.empty() && !isOfIndividuals(statistic) && taker.wants(measure);
        }
        if (taken) {
            taker.take(row);
        }
    });
    if (!faults.empty()) {
        return faults;
    }
    taker.finish();
    const std::string place = request.bootstrap.string();
    if (found.bootstrap.empty()) {
        return {place + ": holds no bootstrap replicates of distances of populations" +
                (wanted.empty() ? "" : ", measure " + wanted)};
    }
    PairDistances& into = data.ofPopulations;
    const std::vector<std::string>& names = into.measure.empty() ? data.populations : into.labels;
    if (found.labels != names) {
        return {place + ": is not of the same data, its populations are others"};
    }
    if (into.measure.empty()) {
        into = std::move(found);
    } else {
        into.bootstrap = std::move(found.bootstrap);
    }
    return {};
}

bool hasMeasure(const PairDistances& distances) {
    return !distances.measure.empty();
}

} // namespace

const std::vector<ResultRow>& ReportData::of(std::string_view statistic) const {
    static const std::vector<ResultRow> none;
    const auto found = rows.find(statistic);
    return found == rows.end() ? none : found->second;
}

std::string_view ReportData::value(std::string_view statistic, std::size_t row) const {
    const std::vector<ResultRow>& found = of(statistic);
    return row < found.size() ? std::string_view(found[row].value) : std::string_view();
}

std::string ReportData::sampleName(std::size_t sample) const {
    return sample == 0 ? "Total" : populations[sample - 1];
}

// The sheets of one statistic go through the samples, all populations together in front;
// Summary.xls through the loci, without that.
std::string_view ReportData::cell(std::string_view statistic, std::size_t sample,
                                  std::size_t locus) const {
    const std::vector<ResultRow>& found = of(statistic);
    if (found.size() == (populations.size() + 1) * loci.size()) {
        return found[sample * loci.size() + locus].value;
    }
    if (sample > 0 && found.size() == populations.size() * loci.size()) {
        return found[locus * populations.size() + sample - 1].value;
    }
    return {};
}

std::string_view ReportData::range(std::string_view which, std::size_t population,
                                   std::size_t locus) const {
    const std::vector<ResultRow>& found = of("heterozygosity_range");
    std::size_t place = population * loci.size() + locus;
    for (const std::string_view one : {"min", "mean", "max"}) {
        if (one != which) {
            place += populations.size() * loci.size();
            continue;
        }
        return found.size() == 3 * populations.size() * loci.size() &&
                       found[place].replicate == which
                   ? found[place].value
                   : std::string_view();
    }
    return {};
}

std::string_view ReportData::pair(std::string_view statistic, std::size_t i, std::size_t j) const {
    const std::vector<ResultRow>& found = of(statistic);
    const std::size_t n = populations.size();
    return found.size() == n * (n - 1) / 2 && i < n ? found[trianglePlace(i, j)].value
                                                    : std::string_view();
}

std::span<const RunRecord::Test> ReportData::tests(std::string_view statistic) const {
    if (!record) {
        return {};
    }
    const auto found = record->tests.find(statistic);
    return found == record->tests.end() ? std::span<const RunRecord::Test>() : found->second;
}

std::span<const RunRecord::Test> ReportData::pairTests(std::string_view statistic) const {
    const std::span<const RunRecord::Test> found = tests(statistic);
    const std::size_t n = populations.size();
    return found.size() == n * (n - 1) / 2 ? found : std::span<const RunRecord::Test>();
}

std::size_t PairDistances::pairsWithout() const {
    return static_cast<std::size_t>(std::count_if(
        values.begin(), values.end(), [](double value) { return !std::isfinite(value); }));
}

bool PairDistances::canBeDrawn() const {
    return labels.size() >= 3 && pairsWithout() == 0;
}

bool PairDistances::isWhole(const std::vector<double>& replicate) const {
    return replicate.size() == values.size() &&
           std::all_of(replicate.begin(), replicate.end(),
                       [](double value) { return std::isfinite(value); });
}

std::vector<std::string> readReportData(const ReportRequest& request, ReportData& data) {
    const std::string wanted = measureName(request.measure);
    data.folder = nameOf(request.folder);
    data.record = request.record;
    RowTaker taker(data, wanted);
    std::vector<std::string> faults =
        readResults(request.folder, [&taker](const TidyRow& row) { taker(row); });
    if (!faults.empty()) {
        return faults;
    }
    taker.finish();
    takeNames(data);
    if (data.populations.empty() || data.loci.empty()) {
        return {request.folder.string() +
                ": holds no data: the sheets name no population or locus"};
    }
    takeAlleles(data);
    data.log = textOf(request.folder, "KVA.log", faults);
    data.individuals = individualsOf(textOf(request.folder, "Formats&Data/Genepop.gen", faults),
                                     data.populations.size());
    if (!faults.empty()) {
        return faults;
    }
    data.populationOf =
        populationsOfIndividuals(data.individuals, data.ofIndividuals.labels.size());
    if (!request.bootstrap.empty()) {
        ReportRequest upperRequest = request;
        upperRequest.measure = wanted;
        faults = readBootstrap(upperRequest, data);
    }
    if (faults.empty() && !wanted.empty() && !hasMeasure(data.ofPopulations) &&
        !hasMeasure(data.ofIndividuals)) {
        faults.push_back(request.folder.string() + ": holds no distances " + wanted);
    }
    return faults;
}

} // namespace kva
