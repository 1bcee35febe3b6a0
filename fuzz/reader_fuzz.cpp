// The reader: the bytes are a data file.
#include "harness.h"

#include "data/allelcount.h"
#include "data/lociclass.h"
#include "run/run.h"

using namespace kva;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const kva_fuzz::Quiet quiet;
    const kva_fuzz::Stream stream = kva_fuzz::streamOf(data, size);
    if (!stream) {
        return 0;
    }
    Run run;
    const bool taken = run.CheckDataFile(stream.get()) == 0;
    const int read = run.GetDataFile(stream.get());
    kva_fuzz::require(taken || read != 0, "a refused file is not read");
    kva_fuzz::require(run.AnzLoci >= 0 && run.AnzPop >= 0, "no negative numbers");
    if (!taken) {
        kva_fuzz::require(run.Daten->AnzLoci == 0, "a refused file has no loci");
        return 0;
    }
    for (int l = 1; l <= run.AnzLoci; ++l) {
        const LociObj* const locus = run.Daten->Locus(l);
        kva_fuzz::require(locus != nullptr, "each locus is there");
        for (int pop = 1; pop <= run.AnzPop; ++pop) {
            AllelCount table;
            locus->AllelCountP(table, pop, 0);
            kva_fuzz::require(table.AnzAllele <= locus->GetAnzDatenChromosome(pop),
                              "no more alleles than slots");
        }
    }
    return 0;
}
