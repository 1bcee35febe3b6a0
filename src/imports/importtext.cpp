#include "imports/importtext.h"

#include "base/nearestword.h"
#include "data/datarows.h"

#include <algorithm>
#include <array>

namespace kva {

namespace {

constexpr ImportFormat kFormats[] = {
    {"genepop", "Genepop", looksLikeGenepop, readGenepop},
    {"genalex", "GenAlEx", looksLikeGenalex, readGenalex},
    {"long", "a long table", looksLikeLong, readLong},
    {"fstat", "FSTAT", looksLikeFstat, readFstat},
    {"genetix", "GENETIX", looksLikeGenetix, readGenetix},
    {"structure", "STRUCTURE", looksLikeStructure, readStructure},
};

bool isText(std::string_view text) {
    return text.find('\0') == std::string_view::npos && !text.starts_with("PK\x03\x04") &&
           !text.starts_with("\x1f\x8b");
}

// A name as a cell.
void checkName(const std::string& name, const std::string& what) {
    const bool control = std::any_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
    });
    if (name.empty() || control) {
        refuseData(0,
                   "the name " + quotedText(name) + " of a " + what +
                       (name.empty() ? " is empty" : " holds a tab or another control character"));
    }
}

void checkNames(const Genotypes& data) {
    for (const std::string& name : data.loci) {
        checkName(name, "locus");
    }
    for (const std::string& name : data.populations) {
        checkName(name, "population");
    }
    if (const std::string* const name = repeatedName(data.populations)) {
        refuseOption("two populations have the name " + quotedText(*name) +
                     "; name them with --populations");
    }
}

void addLength(std::string& text, int32_t length) {
    text += '\t';
    text += length < 0 ? std::string() : std::to_string(length);
    text += '\t';
}

std::string headOf(const Genotypes& data, const std::vector<LocusLengths>& lengths) {
    std::string repeats = "2\t\t";
    std::string rests = "\t\t";
    std::string names = "\t\t";
    for (std::size_t locus = 0; locus < data.loci.size(); ++locus) {
        addLength(repeats, lengths[locus].repeat);
        addLength(rests, lengths[locus].rest);
        names += "\t" + data.loci[locus];
        names += "\t" + data.loci[locus] + "_2";
    }
    std::string head = repeats + "\n";
    head += rests + "\n";
    head += names + "\n";
    return head;
}

std::string rowOf(const Genotypes& data, const ImportedIndividual& individual) {
    std::string row = data.populations[individual.population];
    row += individual.inbred ? "\th\t0" : "\td\t0";
    for (const Genotype& genotype : individual.loci) {
        for (const int32_t allele : genotype) {
            row += '\t';
            row += allele == kNoAllele ? std::string() : std::to_string(allele);
        }
    }
    return row + "\n";
}

} // namespace

std::span<const ImportFormat> allImportFormats() {
    return kFormats;
}

const ImportFormat& importFormatOf(std::string_view text, const std::string& name) {
    if (!isText(text)) {
        refuseData(0, "it is no plain text; save it as text or CSV first");
    }
    const Lines lines = linesOf(text);
    const auto* const format =
        std::find_if(std::begin(kFormats), std::end(kFormats), [&](const ImportFormat& row) {
            return name.empty() ? row.looksLike(lines) : name == row.name;
        });
    if (format == std::end(kFormats)) {
        if (!name.empty()) {
            std::vector<std::string> known;
            for (const ImportFormat& row : kFormats) {
                known.emplace_back(row.name);
            }
            refuseOption(unknownWord("format", name, known));
        }
        refuseData(0, lines.empty() ? "it holds no text"
                                    : "it looks like none of the known formats; name its format "
                                      "with --format");
    }
    return *format;
}

Genotypes importText(std::string_view text, const ImportFormat& format,
                     const ImportOptions& options) {
    const Lines lines = linesOf(text);
    if (lines.empty()) {
        refuseData(0, "it holds no text");
    }
    Genotypes data = format.read(lines, options);
    if (data.loci.empty() || data.individuals.empty()) {
        refuseData(0, data.loci.empty() ? "no locus in the file" : "no individual in the file");
    }
    checkNames(data);
    return data;
}

std::string dataFileOf(const Genotypes& data, const std::vector<LocusLengths>& lengths) {
    std::string text = headOf(data, lengths);
    if (std::ssize(text) >= kBlockSize) {
        refuseData(0,
                   "the names of the loci need more than the 200000 bytes of a data file's head; "
                   "shorten them or divide the loci among several files");
    }
    std::vector<std::vector<const ImportedIndividual*>> members(data.populations.size());
    for (const ImportedIndividual& individual : data.individuals) {
        members[individual.population].push_back(&individual);
    }
    for (const auto& population : members) {
        for (const ImportedIndividual* individual : population) {
            const std::string row = rowOf(data, *individual);
            if (std::ssize(row) >= kBlockSize) {
                refuseData(0, "a row would need more than 200000 bytes; divide the loci among "
                              "several files");
            }
            text += row;
        }
    }
    return text;
}

} // namespace kva
