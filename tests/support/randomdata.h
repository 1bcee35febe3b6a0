// Random data sets, made of a stream of bytes: of a seeded generator in the tests of properties, of
// a fuzzer's input in its harness.
#ifndef KVA_TESTS_SUPPORT_RANDOMDATA_H
#define KVA_TESTS_SUPPORT_RANDOMDATA_H

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kva_test {

// The next byte.
using ByteSource = std::function<uint8_t()>;

// The two alleles of an individual at a locus; -1: missing.
using Genotype = std::array<int, 2>;

struct RandomPopulation {
    std::string name;
    int group = 0;
    int inbred = 0; // each so-maniest individual is haploid (inbred), from the first on; 0: none
    std::vector<std::vector<Genotype>> individuals; // [individual][locus]
};

struct RandomDataSet {
    std::vector<int> repeats; // of each locus
    std::vector<RandomPopulation> populations;
};

// What a data set may have besides plain diploid genotypes.
struct Oddities {
    bool missing = true; // now and then an allele, a genotype or a whole population at a locus
    bool inbred = false; // individuals that are marked so
};

// 2 to 5 populations of 1 to 8 individuals, 1 to 5 loci of 1 to 6 alleles. Names are N0, N1 and so
// on: no two are alike.
RandomDataSet randomDataSet(const ByteSource& bytes, const Oddities& oddities);

// The data file: three header rows; `columns` per locus, 1 or 2.
std::string dataFile(const RandomDataSet& data, int columns, const std::string& lineEnd);

} // namespace kva_test

#endif
