// The import of one foreign format (KVA_FUZZ_FORMAT): the first byte chooses the options, the
// others are the file. What is imported is what the reader of data files takes from the new one.
#include "harness.h"

#include "data/loadeddata.h"
#include "imports/importtext.h"

#include <set>
#include <string>

using namespace kva;

namespace {

ImportOptions optionsOf(unsigned bits) {
    ImportOptions options;
    if ((bits & 1U) != 0) {
        options.missing = {"-9", "0", "NA"};
    }
    if ((bits & 2U) != 0) {
        options.populations = {"numbers"};
    }
    if ((bits & 4U) != 0) {
        options.halfMissing = "inbred";
    }
    if ((bits & 8U) != 0) {
        options.locusColumn = 3;
    }
    options.rows = (bits & 16U) != 0 ? 1 : 2;
    if ((bits & 32U) != 0) {
        options.populationDigits = 3;
    } else {
        options.populationColumn = 2;
    }
    if ((bits & 64U) != 0) {
        options.ploidy = 1;
    }
    return options;
}

void compare(const Genotypes& data, std::string file) {
    const kva_fuzz::Stream stream =
        kva_fuzz::streamOf(reinterpret_cast<const uint8_t*>(file.data()), file.size());
    LoadedData read;
    kva_fuzz::require(read.CheckDataFile(stream.get()) == 0 && read.GetDataFile(stream.get()) == 0,
                      "a data file that is written can be read");
    kva_fuzz::require(read.AnzLoci == std::ssize(data.loci), "the loci are those of the file");
    std::set<std::size_t> populations;
    for (const ImportedIndividual& individual : data.individuals) {
        populations.insert(individual.population);
    }
    kva_fuzz::require(read.AnzPop == std::ssize(populations), "so are the populations");
    kva_fuzz::require(read.GetGesamtIndividuuenAnzahl() == std::ssize(data.individuals),
                      "so are the individuals");
    int pop = 0;
    for (const std::size_t population : populations) {
        ++pop;
        int place = 0;
        for (const ImportedIndividual& individual : data.individuals) {
            if (individual.population != population) {
                continue;
            }
            for (int locus = 1; locus <= read.AnzLoci; ++locus) {
                int first = 0;
                int second = 0;
                read.GetTierDaten(locus, pop, place, first, second);
                kva_fuzz::require((Genotype{first, second} == individual.loci[locus - 1]),
                                  "so is each genotype");
            }
            ++place;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const kva_fuzz::Quiet quiet;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    try {
        const Genotypes genotypes =
            importText(text, importFormatOf(text, KVA_FUZZ_FORMAT), optionsOf(data[0]));
        compare(genotypes,
                dataFileOf(genotypes, std::vector<LocusLengths>(genotypes.loci.size(), {2, 100})));
        importFormatOf(text, ""); // what it looks like, if anything
    } catch (const ImportRefusal& refusal) {
        kva_fuzz::require(std::string(refusal.what()).find('\n') == std::string::npos,
                          "a refusal is a line");
    }
    return 0;
}
