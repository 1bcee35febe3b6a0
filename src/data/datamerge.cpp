// What a program built on the library may want beyond the passes: access to single
// individuals, the merge of a second data set, and the data written as a data file:
//
//      2			2	.	4	.
//      			50	.	60	.
//      			L1	L1b	L2	L2b
//      North	d	1	100	102	-1	-1
//      South	h	2	104	104	200	204
//
// The "." in the first two rows fills the second column of a locus, which a reader passes over.
#include "data/loadeddata.h"
#include "output/resultfile.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace kva {

namespace {

constexpr int kNothingLoaded = -1;
constexpr int kNoSize = -2;

bool sameText(const std::string* a, const std::string* b) {
    return orEmpty(a) == orEmpty(b);
}

} // namespace

// --- Access ----------------------------------------------------------------------------

int LoadedData::GetTierDaten(int locus, int pop, int ind, int& a1, int& a2) const {
    return Daten ? Daten->GetTierDaten(locus, pop, ind, a1, a2) : kNothingLoaded;
}

// It changes the data, though not the pointer.
// NOLINTNEXTLINE(readability-make-member-function-const)
int LoadedData::SetTierDaten(int locus, int pop, int ind, int a1, int a2) {
    return Daten ? Daten->SetTierDaten(locus, pop, ind, a1, a2) : kNothingLoaded;
}

int LoadedData::GetTierInfo(int pop, int ind, int& haploid, int& gruppe, int locus) const {
    if (!Daten) {
        return kNothingLoaded;
    }
    const int slot = 2 * (ind - 1);
    const LociObj* const place = Daten->Locus(locus);
    haploid = place != nullptr ? place->isHaploid(pop, slot) : 0;
    gruppe = Daten->GetGroupNummer(pop, slot, 1);
    return 0;
}

int LoadedData::GetAnzIndividuuen(int pop, int& anzahl) const {
    if (!Daten) {
        return kNothingLoaded;
    }
    anzahl = Daten->GetIndividuals(pop);
    return 0;
}

int LoadedData::GetGesamtIndividuuenAnzahl() const {
    int sum = 0;
    for (int pop = 1; Daten && pop <= Daten->GetPopAnzahl(); ++pop) {
        sum += Daten->GetIndividuals(pop);
    }
    return sum;
}

int LoadedData::ConvertIndividAnzahl(int gesamt, int& pop, int& ind) const {
    if (!Daten) {
        return kNothingLoaded;
    }
    int rest = gesamt;
    for (int population = 1; Daten->GetAnzDatenChromosome(population) >= 0; ++population) {
        const int size = Daten->GetIndividuals(population);
        rest -= size;
        if (rest < 0 || size == 0) {
            pop = population;
            ind = size + rest;
            return 0;
        }
    }
    return kNoSize;
}

const std::string* LoadedData::GetPopName(int pop) const {
    return Daten ? Daten->GetPopName(pop) : nullptr;
}

void LoadedData::GetLociInfo(int locus, const std::string** name, const std::string** name2,
                             int& muster, int& rest) const {
    if (!Daten || name == nullptr || name2 == nullptr) {
        return;
    }
    *name = Daten->GetLociName(locus);
    *name2 = Daten->GetLociName2(locus);
    muster = Daten->GetLociRepeatMuster(locus);
    rest = Daten->GetLociRepeatRest(locus);
}

// --- Merge ------------------------------------------------------------------------------

int Datensatz::AddLoci(const std::string& name, const std::string* name2, const Datensatz* neu,
                       int locus) {
    const LociObj* const source = neu != nullptr ? neu->Locus(locus) : nullptr;
    if (source == nullptr) {
        return -2;
    }
    if (Loci.empty()) {
        return -1;
    }
    LociObj added;
    added.SetLociName(name);
    if (name2 != nullptr) {
        added.SetLociName2(*name2);
    }
    LociObj& first = Loci.front();
    added.PopNamen = first.PopNamen.share();
    for (int pop = 1; pop <= first.AnzPop; ++pop) {
        const int slots = first.GetAnzDatenChromosome(pop);
        added.AddPopulation(*first.GetPopName(pop), slots);
        for (int i = 0; i < slots; ++i) {
            added.AddTier(pop, source->GetDataChromosom(pop, i), source->GetInfoChromosom(pop, i));
        }
    }
    added.SetLociRepeatMuster(source->LociRepeatMuster);
    added.SetLociRepeatRest(source->LociRepeatRest);
    Loci.push_back(std::move(added)); // only now: `neu` may be this very data set
    return ++AnzLoci;
}

int Datensatz::AddNewDatensatz(const Datensatz* neu) {
    if (neu == nullptr) {
        return -1;
    }
    if (Loci.empty() || neu->Loci.empty()) {
        return -2;
    }
    std::unordered_set<std::string> known;
    for (int locus = 1; locus <= AnzLoci; ++locus) {
        known.insert(orEmpty(GetLociName(locus)));
    }
    // Two new loci of one name both go in: only the names from before count.
    for (int locus = 1; locus <= neu->AnzLoci; ++locus) {
        const std::string name = orEmpty(neu->GetLociName(locus));
        if (known.count(name) == 0) {
            AddLoci(name, neu->GetLociName2(locus), neu, locus); // both have loci
        }
    }
    int largest = 0;
    for (const LociObj& locus : Loci) {
        for (int pop = 1; pop <= locus.AnzPop; ++pop) {
            largest = std::max(largest, locus.GetAnzDatenChromosome(pop));
        }
    }
    return largest;
}

int LoadedData::CompareSamples(const LoadedData& other) const {
    if (AnzPop != other.AnzPop) {
        return kNoSize;
    }
    for (int pop = 1; pop <= AnzPop; ++pop) {
        int here = 0;
        int there = 0;
        if (GetAnzIndividuuen(pop, here) != other.GetAnzIndividuuen(pop, there) || here != there ||
            !sameText(GetPopName(pop), other.GetPopName(pop))) {
            return pop;
        }
    }
    return 0;
}

void LoadedData::CopyOf(const LoadedData& other) {
    Daten = other.Daten ? std::make_unique<Datensatz>(*other.Daten) : nullptr;
    AnzLoci = other.AnzLoci;
    AnzPop = other.AnzPop;
    KopfSpalten = other.KopfSpalten;
    KopfZeilen = other.KopfZeilen;
    MaxChromosomen = other.MaxChromosomen;
    DatenFormat = other.DatenFormat;
    DateiName = other.DateiName;
    DataBytes = other.DataBytes;
}

int LoadedData::AddLociOf(const LoadedData& other) {
    const int largest = Daten ? Daten->AddNewDatensatz(other.Daten.get()) : kNoSize;
    AnzLoci = Daten ? Daten->AnzLoci : 0;
    AnzPop = Daten ? Daten->GetPopAnzahl() : 0;
    if (largest <= 0) {
        return largest - 1;
    }
    MaxChromosomen = largest;
    return 0;
}

// --- Save -----------------------------------------------------------------------------------

namespace {

// A header row of lengths: `start`, then the length and a dot for every locus.
void writeLengths(ResultFile& file, const char* start, const Datensatz& daten,
                  int32_t LociObj::*length) {
    file.text(start);
    for (const LociObj& locus : daten.Loci) {
        file.print("\t%d\t.", locus.*length);
    }
    file.character('\n');
}

void writeNames(ResultFile& file, const Datensatz& daten) {
    file.text("\t\t");
    for (int locus = 1; locus <= daten.AnzLoci; ++locus) {
        file.character('\t');
        file.text(orEmpty(daten.GetLociName(locus)));
        file.character('\t');
        file.text(orEmpty(daten.GetLociName2OrFirst(locus)));
    }
    file.character('\n');
}

// `tier` counts from 0.
void writeIndividual(ResultFile& file, const Datensatz& daten, int pop, int tier) {
    file.text(*daten.GetPopName(pop));
    file.text(daten.Loci.front().isHaploid(pop, 2 * tier) != 0 ? "\th" : "\td");
    file.print("\t%d", daten.GetGroupNummer(pop, 2 * tier, 1));
    for (const LociObj& locus : daten.Loci) {
        for (const int slot : {2 * tier, 2 * tier + 1}) {
            file.character('\t');
            file.integer(locus.GetDataChromosom(pop, slot));
        }
    }
    file.character('\n');
}

} // namespace

int LoadedData::SaveDataAs(const std::string& filename) const {
    constexpr int kAlways = -1;
    if (!Daten) {
        return kAlways;
    }
    ResultFile file(filename, "wb+", filename, nullptr);
    writeLengths(file, "2\t\t", *Daten, &LociObj::LociRepeatMuster);
    writeLengths(file, "\t\t", *Daten, &LociObj::LociRepeatRest);
    writeNames(file, *Daten);
    Daten->ForEachTier([&](int pop, int tier) { writeIndividual(file, *Daten, pop, tier); });
    return kAlways;
}

} // namespace kva
