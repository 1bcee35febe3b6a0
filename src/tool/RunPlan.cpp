#include "tool/RunPlan.h"

#include "base/nearestword.h"
#include "distance/measures.h"
#include "formats/exports.h"

#include <algorithm>
#include <cctype>

namespace kva {

namespace {

// A word and the bits that it stands for.
struct BitWord {
    std::string Text;
    uint32_t Bits;
};

// The bits of a word of an option.
uint32_t bitsOf(const char* what, const std::string& word, const std::vector<BitWord>& known) {
    const auto row = std::ranges::find(known, word, &BitWord::Text);
    if (row != known.end()) {
        return row->Bits;
    }
    std::vector<std::string> words;
    words.reserve(known.size());
    for (const BitWord& each : known) {
        words.push_back(each.Text);
    }
    throw WrongWord(unknownWord(what, word, words));
}

// The words and their bits together.
uint32_t bitsOf(const char* what, const std::vector<std::string>& words,
                const std::vector<BitWord>& known) {
    uint32_t bits = 0;
    for (const std::string& word : words) {
        bits |= bitsOf(what, word, known);
    }
    return bits;
}

std::string capitals(std::string word) {
    std::ranges::transform(word, word.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return word;
}

// The stems of the measures; small letters do as well.
uint32_t measureBit(const std::string& word) {
    std::vector<BitWord> known;
    for (const Measure& measure : allMeasures()) {
        known.push_back({measure.Stem, measure.Bit});
    }
    const std::string stem = capitals(word);
    const bool isKnown = std::ranges::find(known, stem, &BitWord::Text) != known.end();
    return bitsOf("distance", isKnown ? stem : word, known);
}

uint32_t allMeasureBits() {
    uint32_t bits = 0;
    for (const Measure& measure : allMeasures()) {
        bits |= measure.Bit;
    }
    return bits;
}

// Whose distances a word of --distances begins to list.
enum Whose : uint32_t { kPopulation = 1, kIndividual = 2, kAll = kPopulation | kIndividual };

} // namespace

void RunPlan::addFst(const std::vector<std::string>& words) {
    constexpr uint32_t kPairs = 1U << 31U; // no bit of the word of flags, where pairs are one off
    const uint32_t bits =
        bitsOf("F-statistic", words,
               {{"pairs", kPairs}, {"global", FstBit::Global}, {"beta", FstBit::Beta}});
    Masks.GeneralMask |= GeneralBit::FStatistics;
    Masks.FstMask &= ~(FstBit::Global | FstBit::Beta);
    Masks.FstMask |= FstBit::NoPairs | (bits & ~kPairs);
    if ((bits & kPairs) != 0) {
        Masks.FstMask &= ~FstBit::NoPairs;
    }
}

void RunPlan::addDistances(const std::vector<std::string>& words) {
    const std::vector<BitWord> kinds = {
        {"all", kAll}, {"population", kPopulation}, {"individual", kIndividual}};
    uint32_t whose = 0; // of the word before
    for (const std::string& word : words) {
        const std::size_t colon = word.find(':');
        uint32_t measures = 0;
        if (whose != 0 && colon == std::string::npos &&
            std::ranges::find(kinds, word, &BitWord::Text) == kinds.end()) {
            measures = measureBit(word);
        } else {
            whose = bitsOf("kind of distances", word.substr(0, colon), kinds);
            measures =
                colon == std::string::npos ? allMeasureBits() : measureBit(word.substr(colon + 1));
        }
        Masks.PopDistMask |= (whose & kPopulation) != 0 ? measures : 0;
        IndividualMeasures |= (whose & kIndividual) != 0 ? measures : 0;
    }
    Masks.GeneralMask |= (Masks.PopDistMask & allMeasureBits()) != 0 ? GeneralBit::PopDistances : 0;
    Masks.GeneralMask |= IndividualMeasures != 0 ? GeneralBit::IndDistances : 0;
}

void RunPlan::addFormats(const std::vector<std::string>& words) {
    std::vector<BitWord> known = {{"all", 0}};
    for (const Export& row : allExports()) {
        known.push_back({row.Keyword, row.Bit});
        known.front().Bits |= row.Bit;
    }
    Masks.GeneralMask |= bitsOf("format", words, known);
}

void RunPlan::setResampling(const std::string& word) {
    constexpr uint32_t kWhole = FstBit::Genotypes | FstBit::Linked;
    Masks.FstMask &= ~kWhole;
    Masks.FstMask |= bitsOf("unit of resampling", word, {{"genotypes", kWhole}, {"alleles", 0}});
}

void RunPlan::setHeterozygosity(const std::string& word) {
    Masks.FstMask &= ~(FstBit::HObs | FstBit::HExp | FstBit::HAuto);
    Masks.FstMask |=
        bitsOf("heterozygosity", word,
               {{"observed", FstBit::HObs}, {"expected", FstBit::HExp}, {"inbred", FstBit::HAuto}});
}

} // namespace kva
