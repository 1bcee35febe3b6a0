#include "report/sections.h"

#include "report/html.h"
#include "report/numbertext.h"

#include <cmath>

namespace kva {

namespace {

constexpr Section kSections[] = {
    {"run", "What was run", "", "", writeRunSection},
    {"data", "Data at a glance", "", "", writeDataSection},
    {"diversity", "Diversity of the populations", "", "", writeDiversitySection},
    {"alleles", "Allele frequencies", "", "", writeAlleleSection},
    {"pairs", "Fst of pairs of populations", "--fst pairs", "-fst pairwise", writePairSection},
    {"global", "F-statistics of all populations", "--fst global", "-fst global",
     writeGlobalSection},
    {"tree", "Tree of the populations", "--distances population:DAN", "-dist population DAN",
     writeTreeSection},
    {"populations", "Principal coordinates of the populations", "--distances population:DAN",
     "-dist population DAN", writePopulationCoordinates},
    {"individuals", "Principal coordinates of the individuals", "--distances individual:DAN",
     "-dist individual DAN", writeIndividualCoordinates},
    {"range", "Range of heterozygosity by sampling", "--het-range 1000", "-hetrange n=1000",
     writeRangeSection},
    {"methods", "Methods and references", "", "", writeMethodsSection},
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
