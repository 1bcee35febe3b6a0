#include "report/sections.h"

#include "report/html.h"
#include "report/numbertext.h"

#include <cmath>

namespace kva {

namespace {

constexpr Section kSections[] = {
    {"run", "What was run", "", "", 1, writeRunSection},
    {"data", "Data at a glance", "", "", 1, writeDataSection},
    {"diversity", "Diversity of the populations", "", "", 1, writeDiversitySection},
    {"alleles", "Allele frequencies", "", "", 1, writeAlleleSection},
    {"pairs", "Fst of pairs of populations", "--fst pairs", "-fst pairwise", 2, writePairSection},
    {"global", "F-statistics of all populations", "--fst global", "-fst global", 2,
     writeGlobalSection},
    {"tree", "Tree of the populations", "--distances population:DAN", "-dist population DAN", 3,
     writeTreeSection},
    {"populations", "Principal coordinates of the populations", "--distances population:DAN",
     "-dist population DAN", 3, writePopulationCoordinates},
    {"individuals", "Principal coordinates of the individuals", "--distances individual:DAN",
     "-dist individual DAN", 1, writeIndividualCoordinates},
    {"range", "Range of heterozygosity by sampling", "--het-range 1000", "-hetrange n=1000", 1,
     writeRangeSection},
    {"methods", "Methods and references", "", "", 1, writeMethodsSection},
};

} // namespace

std::span<const Section> reportSections() {
    return kSections;
}

Cell shortCell(const std::string& exact) {
    constexpr int kDigits = 4;
    const double value = numberOf(exact);
    return {std::isnan(value) ? exact : shortText(value, kDigits), exact};
}

std::string counted(std::size_t count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

} // namespace kva
