#include "results/catalogue.h"

#include "results/cellvalue.h"
#include "results/layouts.h"

#include <algorithm>

namespace kva {

namespace {

constexpr std::string_view kCounts = "Allelecount";
constexpr std::string_view kSingle = "Single_data";
constexpr std::string_view kGroups = "Group_data";
constexpr std::string_view kDistances = "Distance_data";
constexpr std::string_view kFst = "F-Statistic";
constexpr std::string_view kRanges = "Resampling_data";

const SheetRule kSheets[] = {
    // folder, name, layout, statistic, replicate, what is no value
    {kCounts, "Allelecount.xls", &kAlleleList, "allele_count"},
    {kCounts, "Allelefrequencies.xls", &kAlleleList, "allele_frequency"},

    {kSingle, "Hetexp.xls", &kClosedTable, "heterozygosity_expected"},
    {kSingle, "HetRDexp.xls", &kClosedTable, "heterozygosity_expected_rd"},
    {kSingle, "Thetaexp.xls", &kClosedTable, "theta"},
    {kSingle, "ThetaRDexp.xls", &kClosedTable, "theta_rd"},
    {kSingle, "Shannon.xls", &kClosedTable, "shannon"},
    {kSingle, "Mean.xls", &kClosedTable, "allele_mean_rd"},
    {kSingle, "Var.xls", &kClosedTable, "allele_variance"},
    {kSingle, "VarRD.xls", &kClosedTable, "allele_variance_rd"},
    {kSingle, "Varrepeat.xls", &kClosedTable, "repeat_variance"},
    {kSingle, "VarRDrepeat.xls", &kClosedTable, "repeat_variance_rd"},
    {kSingle, "VarrepeatKorr.xls", &kClosedTable, "repeat_variance_corrected"},
    {kSingle, "VarRDrepeatKorr.xls", &kClosedTable, "repeat_variance_rd_corrected"},
    {kSingle, "MinAllele.xls", &kClosedTable, "allele_min"},
    {kSingle, "MaxAllele.xls", &kClosedTable, "allele_max"},
    {kSingle, "AllelicRichness.xls", &kRichness},
    {kSingle, "NumChromosomes.xls", &kClosedTable, "gene_copies"},
    {kSingle, "NumChromosomeseffective.xls", &kClosedTable, "gene_copies_effective"},
    {kSingle, "NumAlleles.xls", &kClosedTable, "allele_number_rd"},
    {kSingle, "NumAllelesExpSMM.xls", &kClosedTable, "allele_number_expected_smm"},
    {kSingle, "NumAllelesExpIAM.xls", &kClosedTable, "allele_number_expected_iam"},
    {kSingle, "GST.xls", &kGst},

    {"", "Errorreport.txt", &kErrorReport},
    {"", "Summary.xls", &kSummary},

    {kGroups, "Hetexpgroup.xls", &kClosedTable, "group_heterozygosity_expected"},
    {kGroups, "HetexpRDgroup.xls", &kClosedTable, "group_heterozygosity_expected_rd"},
    {kGroups, "Vargroup.xls", &kClosedTable, "group_allele_variance"},
    {kGroups, "VarRDgroup.xls", &kClosedTable, "group_allele_variance_rd"},
    {kGroups, "Varrepeatgroup.xls", &kClosedTable, "group_repeat_variance"},
    {kGroups, "VarRDrepeatgroup.xls", &kClosedTable, "group_repeat_variance_rd"},
    {kGroups, "SumGrp*.xls", &kGroupSummary},

    {kDistances, "POSA_Pop.txt", &kPopulationMatrices, "distance_posa"},
    {kDistances, "FSS_Pop.txt", &kPopulationMatrices, "distance_fss"},
    {kDistances, "ADA_Pop.txt", &kPopulationMatrices, "distance_ada"},
    {kDistances, "KSC_Pop.txt", &kPopulationMatrices, "distance_ksc"},
    {kDistances, "DMS_Pop.txt", &kPopulationMatrices, "distance_dms"},
    {kDistances, "ASD_Pop.txt", &kPopulationMatrices, "distance_asd"},
    {kDistances, "CAS_Pop.txt", &kPopulationMatrices, "distance_cas"},
    {kDistances, "DAN_Pop.txt", &kPopulationMatrices, "distance_dan"},
    {kDistances, "DSG_Pop.txt", &kPopulationMatrices, "distance_dsg"},
    {kDistances, "POSA_Pop_Loci.xls", &kPairColumns, "distance_posa_locus"},
    {kDistances, "FSS_Pop_Loci.xls", &kPairColumns, "distance_fss_locus"},
    {kDistances, "ADA_Pop_Loci.xls", &kPairColumns, "distance_ada_locus"},
    {kDistances, "KSC_Pop_Loci.xls", &kPairColumns, "distance_ksc_locus"},
    {kDistances, "DMS_Pop_Loci.xls", &kPairColumns, "distance_dms_locus"},
    {kDistances, "ASD_Pop_Loci.xls", &kPairColumns, "distance_asd_locus"},
    {kDistances, "CAS_Pop_Loci.xls", &kPairColumns, "distance_cas_locus"},
    {kDistances, "DAN_Pop_Loci.xls", &kPairColumns, "distance_dan_locus"},
    {kDistances, "DSG_Pop_Loci.xls", &kPairColumns, "distance_dsg_locus"},
    {kDistances, "POSA_Ind.txt", &kIndividualMatrices, "distance_posa_individuals"},
    {kDistances, "FSS_Ind.txt", &kIndividualMatrices, "distance_fss_individuals"},
    {kDistances, "ADA_Ind.txt", &kIndividualMatrices, "distance_ada_individuals"},
    {kDistances, "KSC_Ind.txt", &kIndividualMatrices, "distance_ksc_individuals"},
    {kDistances, "DMS_Ind.txt", &kIndividualMatrices, "distance_dms_individuals"},
    {kDistances, "ASD_Ind.txt", &kIndividualMatrices, "distance_asd_individuals"},
    {kDistances, "CAS_Ind.txt", &kIndividualMatrices, "distance_cas_individuals"},
    {kDistances, "DAN_Ind.txt", &kIndividualMatrices, "distance_dan_individuals"},
    {kDistances, "DSG_Ind.txt", &kIndividualMatrices, "distance_dsg_individuals"},

    {kFst, "GlobFst.xls", &kGlobalF},
    {kFst, "FST_WC84.txt", &kPopulationMatrix, "fst_pairwise"},
    {kFst, "FIT_WC84.txt", &kPopulationMatrix, "fit_pairwise"},
    {kFst, "FIS_WC84.txt", &kPopulationMatrix, "fis_pairwise"},
    {kFst, "FST_WC84-pValue.xls", &kPValues},
    {kFst, "FST_WC84_MEAN.xls", &kSquareSheet, "fst_pairwise_thinned", "mean"},
    {kFst, "FST_WC84_UG.xls", &kSquareSheet, "fst_pairwise_thinned", "lower 95 %",
     isUnreachedLimit},
    {kFst, "FST_WC84_OG.xls", &kSquareSheet, "fst_pairwise_thinned", "upper 95 %",
     isUnreachedLimit},
    {kFst, "FIT_WC84_MEAN.xls", &kSquareSheet, "fit_pairwise_thinned", "mean"},
    {kFst, "FIS_WC84_MEAN.xls", &kSquareSheet, "fis_pairwise_thinned", "mean"},
    {kFst, "Fst_per_locus.xls", &kPairRows, "fst_pairwise_locus"},
    {kFst, "LocusFHeterogeneity.xls", &kHeterogeneity},
    {kFst, "Beta_POP.xls", &kBeta},

    {kRanges, "HetRangeMin.xls", &kOpenTable, "heterozygosity_range", "min"},
    {kRanges, "HetRangeMean.xls", &kOpenTable, "heterozygosity_range", "mean"},
    {kRanges, "HetRangeMax.xls", &kOpenTable, "heterozygosity_range", "max"},
    {kRanges, "VarRangeMin.xls", &kOpenTable, "allele_variance_range", "min"},
    {kRanges, "VarRangeMean.xls", &kOpenTable, "allele_variance_range", "mean"},
    {kRanges, "VarRangeMax.xls", &kOpenTable, "allele_variance_range", "max"},
    {kRanges, "AlleleRangeMin.xls", &kOpenTable, "allele_number_range", "min", isNegative},
    {kRanges, "AlleleRangeMean.xls", &kOpenTable, "allele_number_range", "mean"},
    {kRanges, "AlleleRangeMax.xls", &kOpenTable, "allele_number_range", "max", isNegative},
    {kRanges, "*_HetRange.xls", &kReplicateTable, "heterozygosity_draw"},
    {kRanges, "*_VarRange.xls", &kReplicateTable, "allele_variance_draw"},
    {kRanges, "*_AlleleRange.xls", &kReplicateTable, "allele_number_draw", "", isNegative},
};

} // namespace

std::span<const SheetRule> catalogue() {
    return kSheets;
}

std::vector<std::string_view> statisticsOf(const SheetRule& rule) {
    return rule.layout->statistics != nullptr ? rule.layout->statistics()
                                              : std::vector{rule.statistic};
}

std::vector<std::string_view> catalogueStatistics() {
    std::vector<std::string_view> all;
    for (const SheetRule& rule : kSheets) {
        for (const std::string_view name : statisticsOf(rule)) {
            if (std::find(all.begin(), all.end(), name) == all.end()) {
                all.push_back(name);
            }
        }
    }
    return all;
}

std::optional<std::string_view> partOf(const SheetRule& rule, std::string_view fileName) {
    const std::size_t star = rule.name.find('*');
    if (star == std::string_view::npos) {
        return fileName == rule.name ? std::optional<std::string_view>("") : std::nullopt;
    }
    const std::string_view before = rule.name.substr(0, star);
    const std::string_view after = rule.name.substr(star + 1);
    if (fileName.size() < before.size() + after.size() || !fileName.starts_with(before) ||
        !fileName.ends_with(after)) {
        return std::nullopt;
    }
    return fileName.substr(star, fileName.size() - before.size() - after.size());
}

} // namespace kva
