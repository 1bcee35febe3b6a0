#include "tool/ImportCommand.h"

#include "base/nearestword.h"
#include "base/newfile.h"
#include "imports/importtext.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <string>

namespace kva {

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int64_t kLargestFile = int64_t{1} << 30; // bytes

struct Options {
    std::string file;
    std::string output;
    std::string format; // empty: found by itself
    std::string repeat; // empty: not told
    std::string repeats;
    bool force = false;
    ImportOptions import;
};

int fail(int status, const std::string& text) {
    std::cerr << "kvatool import: " << text << '\n';
    return status;
}

int statusOf(const ImportRefusal& refusal) {
    return refusal.cause() == ImportRefusal::Cause::Option ? kWrongUsage : kFailed;
}

void tellDone(const Options& options, const ImportFormat& format, const Genotypes& data) {
    std::cout << options.output << ": " << data.populations.size() << " populations, "
              << data.individuals.size() << " individuals, " << data.loci.size()
              << " loci, read as " << format.title << '\n';
    for (const std::string& note : data.notes) {
        std::cout << "note: " << note << '\n';
    }
}

// The lengths of all loci, by the one of two options that is there.
std::vector<LocusLengths> lengthsBy(const Options& options, const Genotypes& data) {
    if (!options.repeat.empty()) {
        return std::vector<LocusLengths>(data.loci.size(), lengthsOfWord(options.repeat));
    }
    std::string table;
    const std::string failure = readWholeFile(options.repeats, table, kLargestFile);
    if (!failure.empty()) {
        refuseData(0, failure);
    }
    return lengthsOfTable(table, data.loci);
}

int import(const Options& options) {
    if (options.repeat.empty() == options.repeats.empty()) {
        return fail(kWrongUsage, "say the repeat length of all loci with --repeat (a number or "
                                 "unknown), or those of each with --repeats FILE");
    }
    std::string text;
    const std::string failure = readWholeFile(options.file, text, kLargestFile);
    if (!failure.empty()) {
        return fail(kFailed, "cannot read '" + options.file + "': " + failure);
    }
    std::string from = options.file; // what a refusal speaks of
    try {
        const ImportFormat& format = importFormatOf(text, options.format);
        from += " (read as " + std::string(format.title) + ")";
        const Genotypes data = importText(text, format, options.import);
        from = options.repeats.empty() ? options.file : options.repeats;
        const std::vector<LocusLengths> lengths = lengthsBy(options, data);
        from = options.file;
        const std::string unwritten =
            writeWholeFile(options.output, dataFileOf(data, lengths), options.force);
        if (!unwritten.empty()) {
            return fail(kFailed, "cannot write '" + options.output + "': " + unwritten);
        }
        tellDone(options, format, data);
    } catch (const ImportRefusal& refusal) {
        return fail(statusOf(refusal), from + ": " + refusal.what());
    }
    return 0;
}

// Refuses words that are not known, naming the nearest.
CLI::Validator knownWord(const std::string& what, const std::vector<std::string>& known) {
    return CLI::Validator(
        [what, known](const std::string& word) { return unknownWord(what, word, known); }, "");
}

std::vector<std::string> formatNames() {
    std::vector<std::string> names;
    for (const ImportFormat& format : allImportFormats()) {
        names.emplace_back(format.name);
    }
    return names;
}

void addFormatOptions(CLI::App& command, ImportOptions& import) {
    command
        .add_option("--missing", import.missing,
                    "Words for a missing allele, between commas (none: there is none)")
        ->delimiter(',')
        ->allow_extra_args(false);
    command
        .add_option(
            "--populations", import.populations,
            "Names of the populations, between commas; or numbers; of Genepop also first or "
            "last: the label of their first or last individual")
        ->delimiter(',')
        ->allow_extra_args(false);
    command
        .add_option("--ploidy", import.ploidy,
                    "Gene copies of an individual, 1 or 2 (GenAlEx, long table)")
        ->check(CLI::Range(1, 2));
    command.add_option("--rows", import.rows, "Rows of an individual, 1 or 2 (STRUCTURE)")
        ->check(CLI::Range(1, 2));
    CLI::Option* const column =
        command.add_option("--pop-column", import.populationColumn,
                           "Column of the population, from 1; 0: none (STRUCTURE)");
    column->check(CLI::Range(0, 1000));
    command
        .add_option(
            "--pop-digits", import.populationDigits,
            "The population is the label without so many digits at its end (STRUCTURE; 3 in "
            "kva's own files)")
        ->check(CLI::Range(1, 9))
        ->excludes(column);
    command
        .add_option("--locus-column", import.locusColumn,
                    "Column of the first allele, from 1 (STRUCTURE)")
        ->check(CLI::Range(1, 1000));
    command
        .add_option("--half-missing", import.halfMissing,
                    "Individuals whose second alleles are all missing: inbred or keep (STRUCTURE)")
        ->check(knownWord("word of --half-missing", {"inbred", "keep"}));
}

} // namespace

void addImportCommand(CLI::App& app, int& status) {
    CLI::App* const command =
        app.add_subcommand("import", "Makes a data file from the file of another program");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "The file of the other program")->required();
    command->add_option("-o,--output", options->output, "The data file to write")->required();
    command
        ->add_option(
            "--format", options->format,
            "Format of FILE: genepop, structure, fstat, genetix, genalex or long; found by "
            "itself without")
        ->check(knownWord("format", formatNames()));
    command->add_option("--repeat", options->repeat,
                        "Repeat length of all loci in base pairs, or unknown");
    command->add_option("--repeats", options->repeats,
                        "Table with a line for each locus: name, repeat length, rest length");
    command->add_flag("--force", options->force, "Replace the data file if it is there");
    addFormatOptions(*command, options->import);
    command->footer(
        "Examples:\n"
        "  kvatool import cats.gen -o data.txt --repeat 2 --populations last\n"
        "  kvatool import cats.str -o data.txt --repeats repeats.txt --rows 2 "
        "--pop-column 2 --locus-column 4 --missing -9\n"
        "\n"
        "Exit status: 0 done, 1 the file cannot be read, understood or written, 2 wrong\n"
        "usage, or an option is missing that tells what the format cannot.");
    command->callback([options, &status] { status = import(*options); });
}

} // namespace kva
