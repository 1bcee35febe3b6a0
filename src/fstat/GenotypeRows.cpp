#include "fstat/GenotypeRows.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace kva {

namespace {

// Individuals whose bytes cannot exceed a byte: a weight is 4 at most.
constexpr std::size_t kMostRows = 63;

} // namespace

GenotypeRows::GenotypeRows(const CodedData& data) {
    LocusPlace next{0, 0};
    for (std::size_t l = 0; l < data.loci(); ++l) {
        Loci.push_back(next);
        const auto alleles = static_cast<uint32_t>(data.locus(l).Alleles);
        for (uint32_t k = 0; k < alleles; ++k) {
            Alleles.push_back({next.Column + kTallyColumns + k, static_cast<uint32_t>(l)});
        }
        next.Column += kTallyColumns + alleles;
        next.Bit += alleles;
    }
    Loci.push_back(next);
    Chunks = (next.Column + 2) / kChunk + 1; // so that three columns at least are to spare
    Words = (next.Bit + 63) / 64;
    ByteStep = static_cast<std::ptrdiff_t>(Chunks);
    BitStep = static_cast<std::ptrdiff_t>(1 + 2 * Words);
    read(data);
}

void GenotypeRows::read(const CodedData& data) {
    const std::size_t pairs = data.loci() == 0 ? 0 : data.locus(0).Pairs.size();
    Rows.assign(pairs * Chunks, Chunk{});
    Bits.assign(pairs * (1 + 2 * Words), 0);
    for (std::size_t l = 0; l < data.loci(); ++l) {
        const std::vector<CodedPair>& ofLocus = data.locus(l).Pairs;
        std::ptrdiff_t place = 0;
        for (const CodedPair& pair : ofLocus) {
            readIndividual(pair, place, l);
            ++place;
        }
    }
    readWholes(data);
}

void GenotypeRows::readIndividual(const CodedPair& pair, std::ptrdiff_t place, std::size_t l) {
    Chunk* const row = bytesAt(place);
    uint64_t* const ahead = bitsAt(place);
    uint64_t* const both = ahead + 1;
    const auto add = [row](std::size_t column, int32_t n) {
        Bytes& chunk = row[column / kChunk].Of;
        chunk[column % kChunk] = static_cast<uint8_t>(chunk[column % kChunk] + n);
    };
    const auto set = [](uint64_t* bits, std::size_t bit) {
        bits[bit / 64] |= uint64_t{1} << bit % 64;
    };
    const uint32_t tally = tallyColumn(l);
    add(tally, pair.Sum.Copies);
    add(tally + 1, pair.Sum.Weight);
    add(tally + 2, pair.Sum.Typed);
    add(tally + 3, pair.Sum.Hetero);
    for (const uint32_t code : {pair.First, pair.Second}) {
        if (code != kMissingCode) {
            add(tally + kTallyColumns + code - 1, 1);
            set(both, firstBit(l) + code - 1);
        }
    }
    if (pair.First != kMissingCode) {
        const std::size_t bit = firstBit(l) + pair.First - 1;
        set(both + Words, bit);
        if (pair.First > pair.Second && pair.Second != kMissingCode) {
            *ahead = std::max(*ahead, bit / 64 - (firstBit(l) + pair.Second - 1) / 64);
        }
    }
}

void GenotypeRows::readWholes(const CodedData& data) {
    Wholes.assign(data.populations() * columns(), 0);
    Present.assign(data.populations() * Words, 0);
    std::vector<int32_t> places;
    for (std::size_t pop = 0; pop < data.populations(); ++pop) {
        places.resize(data.slots(pop) / 2);
        std::iota(places.begin(), places.end(), data.pairPlace(pop));
        sum(places, {0, loci()}, Wholes.data() + pop * columns());
        for (const int32_t place : places) {
            for (std::size_t word = 0; word < Words; ++word) {
                Present[pop * Words + word] |= bitsAt(place)[1 + word];
            }
        }
    }
}

void GenotypeRows::setAll(LociRange loci, uint64_t* bits) const {
    const uint32_t begin = Loci[loci.Begin].Bit;
    const uint32_t end = Loci[loci.End].Bit;
    std::fill(bits + beginWord(loci), bits + endWord(loci), ~uint64_t{0});
    if (begin % 64 != 0) {
        bits[begin / 64] &= ~uint64_t{0} << begin % 64;
    }
    if (end % 64 != 0) {
        bits[end / 64] &= ~(~uint64_t{0} << end % 64);
    }
}

FreshAlleles* GenotypeRows::findFirst(std::span<const int32_t> places, LociRange loci,
                                      uint64_t* open, FreshAlleles* out) const {
    const std::size_t begin = beginWord(loci);
    const std::size_t end = endWord(loci);
    const std::size_t words = Words;
    const std::ptrdiff_t step = BitStep;
    const uint64_t* const rows = Bits.data();
    for (const int32_t place : places) {
        const uint64_t* const row = rows + place * step;
        const uint64_t* const both = row + 1;
        const uint64_t* const firsts = both + words;
        for (std::size_t word = begin; word < end; ++word) {
            if ((both[word] & open[word]) == 0) {
                continue;
            }
            if (row[0] != 0) {
                for (std::size_t w = std::min(word + row[0], end - 1); w > word; --w) {
                    *out = {w, firsts[w] & open[w], 0};
                    open[w] &= ~firsts[w];
                    out += out->Firsts != 0 ? 1 : 0;
                }
            }
            const uint64_t fresh = both[word] & open[word];
            *out = {word, fresh & firsts[word], fresh & ~firsts[word]};
            open[word] ^= fresh;
            ++out;
        }
    }
    return out;
}

void GenotypeRows::sum(std::span<const int32_t> places, LociRange loci, int32_t* sums) const {
    std::size_t chunk = Loci[loci.Begin].Column / kChunk;
    const std::size_t end = (Loci[loci.End].Column + kChunk - 1) / kChunk;
    for (; chunk + 8 <= end; chunk += 8) {
        sumChunks<8>(places, chunk, sums);
    }
    if (chunk + 4 <= end) {
        sumChunks<4>(places, chunk, sums);
        chunk += 4;
    }
    if (chunk + 2 <= end) {
        sumChunks<2>(places, chunk, sums);
        chunk += 2;
    }
    if (chunk < end) {
        sumChunks<1>(places, chunk, sums);
    }
}

// Byte by byte in registers, and as wider numbers before a byte can overflow.
template <std::size_t Wide>
void GenotypeRows::sumChunks(std::span<const int32_t> places, std::size_t chunk,
                             int32_t* sums) const {
    const Chunk* const rows = Rows.data() + chunk;
    const std::ptrdiff_t step = ByteStep;
    sums += chunk * kChunk;
    bool first = true;
    do {
        const std::span<const int32_t> some = places.first(std::min(places.size(), kMostRows));
        Bytes total[Wide] = {};
        for (const int32_t place : some) {
            const Chunk* const row = rows + place * step;
            for (std::size_t k = 0; k < Wide; ++k) {
                total[k] += row[k].Of;
            }
        }
        uint8_t bytes[Wide * kChunk];
        std::memcpy(bytes, total, sizeof bytes);
        for (std::size_t k = 0; k < Wide * kChunk; ++k) {
            sums[k] = (first ? 0 : sums[k]) + bytes[k];
        }
        places = places.subspan(some.size());
        first = false;
    } while (!places.empty());
}

} // namespace kva
