#include "report/html.h"
#include "report/sections.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace kva {

namespace {

// A paper that the text can cite, in the order of the list.
enum Paper {
    BenjaminiHochberg,
    BesagClifford,
    Bowcock,
    CavalliBodmer,
    CavalliEdwards,
    DavisonHinkley,
    DuboisPrade,
    Efron,
    Felsenstein,
    GoldsteinA,
    GoldsteinB,
    Gower,
    Heck,
    Hedrick,
    Holm,
    Hurlbert,
    Nei1973,
    Nei1978,
    NeiEtAl,
    SaitouNei,
    Salmon,
    WeirCockerham,
    Papers, // how many there are
};

struct Reference {
    const char* cited;
    const char* text;
};

constexpr std::array<Reference, Papers> kReferences = {{
    {"Benjamini & Hochberg 1995",
     "Benjamini Y, Hochberg Y (1995). Controlling the false discovery rate: a practical and "
     "powerful approach to multiple testing. Journal of the Royal Statistical Society B "
     "57:289-300."},
    {"Besag & Clifford 1991",
     "Besag J, Clifford P (1991). Sequential Monte Carlo p-values. Biometrika 78:301-304."},
    {"Bowcock et al. 1994",
     "Bowcock AM et al. (1994). High resolution of human evolutionary trees with polymorphic "
     "microsatellites. Nature 368:455-457."},
    {"Cavalli-Sforza & Bodmer 1971",
     "Cavalli-Sforza LL, Bodmer WF (1971). The Genetics of Human Populations. Freeman."},
    {"Cavalli-Sforza & Edwards 1967",
     "Cavalli-Sforza LL, Edwards AWF (1967). Phylogenetic analysis: models and estimation "
     "procedures. American Journal of Human Genetics 19:233-257."},
    {"Davison & Hinkley 1997",
     "Davison AC, Hinkley DV (1997). Bootstrap Methods and their Application. Cambridge University "
     "Press."},
    {"Dubois & Prade 1980",
     "Dubois D, Prade H (1980). Fuzzy Sets and Systems: Theory and Applications. Academic Press."},
    {"Efron 1979",
     "Efron B (1979). Bootstrap methods: another look at the jackknife. Annals of Statistics "
     "7:1-26."},
    {"Felsenstein 1985",
     "Felsenstein J (1985). Confidence limits on phylogenies: an approach using the bootstrap. "
     "Evolution 39:783-791."},
    {"Goldstein et al. 1995a",
     "Goldstein DB et al. (1995a). Genetic absolute dating based on microsatellites and the origin "
     "of modern humans. PNAS 92:6723-6727."},
    {"Goldstein et al. 1995b",
     "Goldstein DB et al. (1995b). An evaluation of genetic distances for use with microsatellite "
     "loci. Genetics 139:463-471."},
    {"Gower 1966",
     "Gower JC (1966). Some distance properties of latent root and vector methods used in "
     "multivariate analysis. Biometrika 53:325-338."},
    {"Heck et al. 1975",
     "Heck KL, van Belle G, Simberloff D (1975). Explicit calculation of the rarefaction diversity "
     "measurement and the determination of sufficient sample size. Ecology 56:1459-1461."},
    {"Hedrick 2005",
     "Hedrick PW (2005). A standardized genetic differentiation measure. Evolution 59:1633-1638."},
    {"Holm 1979",
     "Holm S (1979). A simple sequentially rejective multiple test procedure. Scandinavian Journal "
     "of Statistics 6:65-70."},
    {"Hurlbert 1971",
     "Hurlbert SH (1971). The nonconcept of species diversity. Ecology 52:577-586."},
    {"Nei 1973",
     "Nei M (1973). Analysis of gene diversity in subdivided populations. PNAS 70:3321-3323."},
    {"Nei 1978",
     "Nei M (1978). Estimation of average heterozygosity and genetic distance from a small number "
     "of individuals. Genetics 89:583-590."},
    {"Nei et al. 1983",
     "Nei M, Tajima F, Tateno Y (1983). Accuracy of estimated phylogenetic trees from molecular "
     "data. Journal of Molecular Evolution 19:153-170."},
    {"Saitou & Nei 1987",
     "Saitou N, Nei M (1987). The neighbor-joining method: a new method for reconstructing "
     "phylogenetic trees. Molecular Biology and Evolution 4:406-425."},
    {"Salmon et al. 2011",
     "Salmon JK, Moraes MA, Dror RO, Shaw DE (2011). Parallel random numbers: as easy as 1, 2, 3. "
     "Proceedings of SC11."},
    {"Weir & Cockerham 1984",
     "Weir BS, Cockerham CC (1984). Estimating F-statistics for the analysis of population "
     "structure. Evolution 38:1358-1370."},
}};

struct MeasureText {
    const char* stem;
    const char* name;
    Paper paper; // Papers: none
};

constexpr MeasureText kMeasureTexts[] = {
    {"POSA", "the proportion of shared alleles", Bowcock},
    {"FSS", "the fuzzy set similarity", DuboisPrade},
    {"ADA", "the absolute difference of the mean alleles", Papers},
    {"KSC", "the kinship coefficient", CavalliBodmer},
    {"DMS", "delta mu squared", GoldsteinA},
    {"ASD", "the average squared difference", GoldsteinB},
    {"CAS", "the chord distance", CavalliEdwards},
    {"DAN", "the distance Da", NeiEtAl},
    {"DSG", "the standard genetic distance", Nei1978},
};

// The paragraph, sentence by sentence, and what it cites.
class Methods {
  public:
    explicit Methods(const ReportData& data) : Data(data) {
        program();
        diversity();
        fStatistics();
        adjustment();
        distances();
        coordinates();
        range();
    }

    const std::string& text() const { return Text; }

    std::string references() const {
        std::string list = "<ul id=\"references\">\n";
        for (std::size_t p = 0; p < Papers; ++p) {
            if (Cited[p]) {
                list += "<li>" + escaped(kReferences[p].text) + "</li>\n";
            }
        }
        return list + "</ul>\n";
    }

  private:
    // " (Nei 1978; Holm 1979)"
    std::string cite(std::initializer_list<Paper> papers) {
        std::string names;
        for (const Paper paper : papers) {
            if (paper != Papers) {
                Cited[paper] = true;
                names += (names.empty() ? "" : "; ") + escaped(kReferences[paper].cited);
            }
        }
        return names.empty() ? "" : " (" + names + ")";
    }

    void say(const std::string& sentence) { Text += (Text.empty() ? "" : " ") + sentence; }

    std::string setting(const char* name) const {
        return Data.record ? escaped(Data.record->setting(name)) : "";
    }

    void program() {
        say(counted(Data.populations.size(), "population") +
            (Data.populations.size() == 1 ? " was" : " were") + " analysed at " +
            (Data.loci.size() == 1 ? "one locus" : std::to_string(Data.loci.size()) + " loci") +
            " with the program kva" +
            (Data.record ? ", version " + escaped(Data.record->version) : "") + ".");
        if (Data.record && !Data.record->seed.empty()) {
            say("Random numbers were those of Philox4x32-10" + cite({Salmon}) + ", seed " +
                escaped(Data.record->seed) + ".");
        }
    }

    void diversity() {
        say("Expected heterozygosity was estimated without bias" + cite({Nei1978}) +
            "; allelic richness is that of rarefaction" + cite({Hurlbert}) + " with its variance" +
            cite({Heck}) + ".");
    }

    void fStatistics() {
        const bool several = Data.populations.size() > 1; // else the sheets hold no value
        const bool pairs = several && !Data.of("fst_pairwise").empty();
        const bool global = several && !Data.of("fst_global").empty();
        if (!pairs && !global) {
            return;
        }
        const std::string of = pairs && global ? "of pairs of populations and of all together"
                               : pairs         ? "of pairs of populations"
                                               : "of all populations together";
        say("F-statistics " + of + " were estimated after" + afterName(WeirCockerham) + ".");
        if (global) {
            say("Beside them stand Gst" + cite({Nei1973}) + " and Gst'" + cite({Hedrick}) + ".");
        }
        tests(pairs);
    }

    // " Weir & Cockerham (1984)"
    std::string afterName(Paper paper) {
        Cited[paper] = true;
        std::string name = kReferences[paper].cited;
        const std::size_t blank = name.rfind(' ');
        return " " + escaped(name.substr(0, blank)) + " (" + name.substr(blank + 1) + ")";
    }

    void tests(bool pairs) {
        const std::string permutations = setting("permutations");
        if (!permutations.empty() && permutations != "0") {
            const std::string moved =
                setting("resample") == "alleles" ? "single alleles" : "genotypes";
            say("They were tested by " + permutations + " permutations of " + moved +
                "; p is (hits + 1) / (permutations + 1)" + cite({DavisonHinkley}) + ".");
            const std::string hits = setting("sequential_hits");
            if (hits != "0" && !hits.empty()) {
                say("The test of a pair ended after " + hits + " hits" + cite({BesagClifford}) +
                    ".");
            }
        } else if (pairs && !Data.of("fst_pairwise_p").empty()) {
            say("They were tested by permutations.");
        } else if (!Data.of("permutations_global").empty()) {
            say("They were tested by " + escaped(Data.of("permutations_global")[0].value) +
                " permutations.");
        }
    }

    void adjustment() {
        if (!Data.pairTests("fst_pairwise").empty()) {
            say("p-values of pairs were adjusted for their number after" + afterName(Holm) +
                " and after" + afterName(BenjaminiHochberg) + ".");
        } else if (!Data.of("fst_pairwise_p").empty()) {
            say("p-values of pairs were multiplied by the number of pairs (Bonferroni).");
        }
    }

    std::string nameOf(const std::string& measure) {
        for (const MeasureText& row : kMeasureTexts) {
            if (measure == row.stem) {
                return std::string(row.name) + cite({row.paper});
            }
        }
        return measure;
    }

    void distances() {
        const PairDistances& of = Data.ofPopulations;
        if (of.measure.empty()) {
            return;
        }
        if (!of.canBeDrawn()) {
            say("Populations were compared by " + nameOf(of.measure) + ".");
            return;
        }
        std::string tree = "The tree of the populations is that of neighbour joining" +
                           cite({SaitouNei}) + " from " + nameOf(of.measure);
        const auto whole =
            std::count_if(of.bootstrap.begin(), of.bootstrap.end(),
                          [&of](const auto& replicate) { return of.isWhole(replicate); });
        if (whole > 0) {
            tree += "; its support is the share of " + std::to_string(whole) +
                    " bootstrap replicates over loci" + cite({Efron, Felsenstein}) +
                    " that have the split";
        }
        say(tree + ".");
    }

    void coordinates() {
        const PairDistances& individuals = Data.ofIndividuals;
        const bool ofPopulations = Data.ofPopulations.canBeDrawn();
        const bool ofIndividuals = individuals.canBeDrawn();
        if (!individuals.measure.empty() && !ofIndividuals) {
            say("Individuals were compared by " + nameOf(individuals.measure) + ".");
        }
        if (!ofPopulations && !ofIndividuals) {
            return;
        }
        const std::string begin = "Principal coordinates" + cite({Gower}) + " are ";
        if (!ofPopulations) {
            say(begin + "those of the individuals from " + nameOf(individuals.measure) + ".");
            return;
        }
        const bool other = ofIndividuals && individuals.measure != Data.ofPopulations.measure;
        say(begin + "of the distances of " +
            (ofIndividuals ? "populations and individuals" : "the populations") +
            (other ? ", those of the individuals from " + nameOf(individuals.measure) : "") + ".");
    }

    void range() {
        if (Data.of("heterozygosity_range").empty()) {
            return;
        }
        const std::string draws = setting("het_range");
        say("The range of heterozygosity that sampling alone produces was found by drawing each "
            "population anew with replacement" +
            (draws.empty() ? "" : ", " + draws + " times") + cite({Efron}) + ".");
    }

    const ReportData& Data;
    std::string Text; // HTML
    std::array<bool, Papers> Cited{};
};

} // namespace

bool writeMethodsSection(const ReportData& data, std::string& html) {
    const Methods methods(data);
    html += "<p id=\"methods-text\">" + methods.text() + "</p>\n<h3>References</h3>\n" +
            methods.references();
    return true;
}

} // namespace kva
