#include "support/randomdata.h"

namespace kva_test {

namespace {

// A number from 0 to below n.
int below(const ByteSource& bytes, int n) {
    return bytes() % n;
}

// The alleles that a locus has, in base pairs.
std::vector<int> allelesOfLocus(const ByteSource& bytes, int repeat) {
    std::vector<int> alleles(static_cast<std::size_t>(1 + below(bytes, 6)));
    for (int& allele : alleles) {
        allele = 100 + repeat * below(bytes, 20);
    }
    return alleles;
}

std::string cell(int allele) {
    return allele < 0 ? "" : std::to_string(allele);
}

} // namespace

RandomDataSet randomDataSet(const ByteSource& bytes, const Oddities& oddities) {
    RandomDataSet data;
    const int loci = 1 + below(bytes, 5);
    std::vector<std::vector<int>> alleles;
    for (int l = 0; l < loci; ++l) {
        data.repeats.push_back(1 + below(bytes, 4));
        alleles.push_back(allelesOfLocus(bytes, data.repeats.back()));
    }
    const int pops = 2 + below(bytes, 4);
    for (int p = 0; p < pops; ++p) {
        RandomPopulation& population = data.populations.emplace_back();
        population.name = "N" + std::to_string(p);
        population.group = 1 + below(bytes, 2);
        population.inbred = oddities.inbred ? below(bytes, 4) : 0;
        population.individuals.resize(1 + below(bytes, 8));
        const int emptyLocus = oddities.missing ? below(bytes, 4 * loci) : loci;
        for (std::vector<Genotype>& individual : population.individuals) {
            for (int l = 0; l < loci; ++l) {
                Genotype genotype{};
                for (int& allele : genotype) {
                    const std::vector<int>& known = alleles[static_cast<std::size_t>(l)];
                    allele = known[bytes() % known.size()];
                    const bool gone = oddities.missing && (l == emptyLocus || bytes() < 20);
                    allele = gone ? -1 : allele;
                }
                individual.push_back(genotype);
            }
        }
    }
    return data;
}

std::string dataFile(const RandomDataSet& data, int columns, const std::string& lineEnd) {
    std::string rows[3] = {std::to_string(columns) + "\t\t", "\t\t", "\t\t"};
    for (std::size_t l = 0; l < data.repeats.size(); ++l) {
        for (int c = 0; c < columns; ++c) {
            rows[0] += "\t" + std::to_string(data.repeats[l]);
            rows[1] += "\t50";
            rows[2] += "\tL" + std::to_string(l) + (c == 0 ? "" : "b");
        }
    }
    std::string text;
    for (const std::string& row : rows) {
        text += row + lineEnd;
    }
    for (const RandomPopulation& population : data.populations) {
        int number = 0;
        for (const std::vector<Genotype>& individual : population.individuals) {
            const bool inbred = population.inbred > 0 && number % population.inbred == 0;
            const std::string head =
                population.name + (inbred ? "\th\t" : "\td\t") + std::to_string(population.group);
            ++number;
            for (int row = 0; row < 2 / columns; ++row) {
                text += head;
                for (const Genotype& genotype : individual) {
                    for (int c = 0; c < columns; ++c) {
                        text += "\t" + cell(genotype[row + c]);
                    }
                }
                text += lineEnd;
            }
        }
    }
    return text;
}

} // namespace kva_test
