#include "report/allelerows.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kva {

namespace {

// Takes the rows of one sheet of alleles. They come line by line, each with an allele of each
// locus, so that a population that has the name of the one before it is known by alleles that begin
// again.
class AlleleTaker {
  public:
    AlleleTaker(ReportData& data, std::string AlleleCell::*field)
        : Data(data), Field(field), Last(data.loci.size() - 1) {}

    void take(const TidyRow& row) {
        const std::size_t l = placeOf(row.place.locus);
        if (l == Data.loci.size()) {
            return;
        }
        const double allele = numberOf(row.place.replicate);
        if (Seen.empty() || row.place.population1 != Name || allele <= Seen[l]) {
            goTo(row.place.population1);
        }
        Seen[l] = allele;
        if (Sample >= Data.alleles.size()) {
            return;
        }
        std::vector<AlleleCell>& cells = Data.alleles[Sample][l];
        const auto at = std::find_if(cells.begin(), cells.end(), [&row](const AlleleCell& cell) {
            return cell.allele == row.place.replicate;
        });
        if (at != cells.end()) {
            (*at).*Field = row.value;
            return;
        }
        AlleleCell cell{std::string(row.place.replicate), {}, {}};
        cell.*Field = row.value;
        cells.push_back(std::move(cell));
    }

  private:
    // The place of a locus, looked for from behind the last one; the number of loci: none.
    std::size_t placeOf(std::string_view locus) {
        const std::size_t n = Data.loci.size();
        for (std::size_t step = 1; step <= n; ++step) {
            const std::size_t l = (Last + step) % n;
            if (Data.loci[l] == locus) {
                Last = l;
                return l;
            }
        }
        return n;
    }

    void goTo(std::string_view name) {
        Seen.assign(Data.loci.size(), -std::numeric_limits<double>::infinity());
        Name = name;
        Sample = Begun ? Sample + 1 : 0;
        Begun = true;
        while (Sample > 0 && Sample < Data.alleles.size() && Data.populations[Sample - 1] != name) {
            ++Sample; // a population without any allele
        }
    }

    ReportData& Data;
    std::string AlleleCell::*Field;
    std::string Name;
    std::vector<double> Seen; // last allele of each locus in this sample
    std::size_t Last;         // place of the locus of the last row
    std::size_t Sample = 0;
    bool Begun = false;
};

} // namespace

void takeAlleles(ReportData& data) {
    data.alleles.assign(data.populations.size() + 1,
                        std::vector<std::vector<AlleleCell>>(data.loci.size()));
    const std::pair<std::string_view, std::string AlleleCell::*> fields[] = {
        {"allele_count", &AlleleCell::count}, {"allele_frequency", &AlleleCell::frequency}};
    for (const auto& [statistic, field] : fields) {
        AlleleTaker taker(data, field);
        for (const ResultRow& row : data.of(statistic)) {
            taker.take({statistic,
                        {row.population1, row.population2, row.locus, row.replicate},
                        row.value});
        }
    }
    data.rows.erase("allele_count");
    data.rows.erase("allele_frequency");
}

} // namespace kva
