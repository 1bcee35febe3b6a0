#include "data/lociclass.h"

#include "base/globals.h"
#include "output/resultfile.h"

#include <algorithm>
#include <utility>

namespace kva {

namespace {

constexpr int kNoPlace = -10;   // no such locus or population
constexpr int kBlockFull = -20; // no room in the block
constexpr int kNoLocus = -2;    // no such locus in a read
constexpr int kNoSlot = -1;     // no such slot

SlotBlock newBlock(int capacity, int32_t filler) {
    const int32_t slots = std::max(capacity, 0);
    return {slots, 0, std::vector<int32_t>(static_cast<std::size_t>(slots) + 1, filler)};
}

void append(SlotBlock& block, int32_t value) {
    block.Slots[block.Belegt] = value;
    ++block.Belegt;
}

int32_t& slot(std::vector<SlotBlock>& blocks, int pop, int i) {
    return blocks[pop - 1].Slots[i];
}

int32_t slot(const std::vector<SlotBlock>& blocks, int pop, int i) {
    return blocks[pop - 1].Slots[i];
}

std::span<const int32_t> usedSlots(const std::vector<SlotBlock>& blocks, int pop) {
    if (pop < 1 || pop > static_cast<int>(blocks.size())) {
        return {};
    }
    const SlotBlock& block = blocks[pop - 1];
    return {block.Slots.data(), static_cast<std::size_t>(block.Belegt)};
}

} // namespace

const std::string& orEmpty(const std::string* name) {
    static const std::string none;
    return name != nullptr ? *name : none;
}

// --- LociObj: building -------------------------------------------------------------

int LociObj::AddPopulation(const std::string& name, int kapazitaet) {
    DataChromosom.push_back(newBlock(kapazitaet, -1));
    InfoChromosom.push_back(newBlock(kapazitaet, 0));
    PopNamen.add(name);
    return ++AnzPop;
}

int LociObj::AddTier(int pop, int allel, int info) {
    if (pop < 1 || pop > AnzPop) {
        return kNoPlace;
    }
    SlotBlock& data = DataChromosom[pop - 1];
    if (data.Belegt >= data.Kapazitaet) {
        return kBlockFull;
    }
    append(data, allel);
    append(InfoChromosom[pop - 1], info);
    return 0;
}

int LociObj::AddTier(int pop, int allel1, int allel2, int info) {
    if (pop < 1 || pop > AnzPop) {
        return kNoPlace;
    }
    SlotBlock& data = DataChromosom[pop - 1];
    if (data.Belegt + 1 >= data.Kapazitaet) {
        return kBlockFull;
    }
    SlotBlock& infos = InfoChromosom[pop - 1];
    append(data, allel1);
    append(data, allel2);
    append(infos, info);
    append(infos, info);
    return 0;
}

// --- LociObj: slots ------------------------------------------------------------------

bool LociObj::hasSlot(int pop, int i) const {
    return pop >= 1 && pop <= AnzPop && i >= 0 && i <= DataChromosom[pop - 1].Belegt;
}

int LociObj::GetDataChromosom(int pop, int i) const {
    return hasSlot(pop, i) ? slot(DataChromosom, pop, i) : kNoSlot;
}

int LociObj::GetInfoChromosom(int pop, int i) const {
    return hasSlot(pop, i) ? slot(InfoChromosom, pop, i) : kNoSlot;
}

int LociObj::SetDataChromosom(int pop, int i, int wert) {
    return hasSlot(pop, i) ? slot(DataChromosom, pop, i) = wert : kNoSlot;
}

int LociObj::SetInfoChromosom(int pop, int i, int wert) {
    return hasSlot(pop, i) ? slot(InfoChromosom, pop, i) = wert : kNoSlot;
}

int LociObj::SetInfoChromosom(int pop, int i, int gruppe, int typ) {
    return SetInfoChromosom(pop, i, infoValue(gruppe, typ == 1));
}

int LociObj::isHaploid(int pop, int i) const {
    return hasSlot(pop, i) ? infoHaploid(slot(InfoChromosom, pop, i)) : 0;
}

int LociObj::GetGroupNummer(int pop, int i) const {
    return hasSlot(pop, i) ? infoGroup(slot(InfoChromosom, pop, i)) : 0;
}

int LociObj::TestGroup(int gruppe) const {
    for (int pop = 1; pop <= AnzPop; ++pop) {
        if (GetGroupNummer(pop, 0) == gruppe) {
            return gruppe;
        }
    }
    return 0;
}

int LociObj::GetAnzDatenChromosome(int pop) const {
    return pop >= 1 && pop <= AnzPop ? DataChromosom[pop - 1].Belegt : kNoSlot;
}

std::span<const int32_t> LociObj::DataSlots(int pop) const {
    return usedSlots(DataChromosom, pop);
}
std::span<const int32_t> LociObj::InfoSlots(int pop) const {
    return usedSlots(InfoChromosom, pop);
}

// --- LociObj: names and lengths ---------------------------------------------------------

void LociObj::SetLociName(const std::string& name) {
    LociName = name;
    NameSet = true;
}

void LociObj::SetLociName2(const std::string& name) {
    LociName2 = name;
    Name2Set = true;
}

const std::string* LociObj::GetPopName(int pop) const {
    return pop >= 1 && pop <= AnzPop ? &PopNamen[pop - 1] : nullptr;
}

int LociObj::GetPopNummer(const std::string& name) const {
    const std::size_t place = PopNamen.find(name);
    return place == PopNamen.size() ? 0 : static_cast<int>(place) + 1;
}

int LociObj::SetLociRepeatMuster(int wert) {
    return std::exchange(LociRepeatMuster, wert);
}
int LociObj::SetLociRepeatRest(int wert) {
    return std::exchange(LociRepeatRest, wert);
}

// --- Datensatz: building ------------------------------------------------------------------

int Datensatz::init(int anzLoci) {
    AnzLoci = std::max(anzLoci, 0);
    Loci.clear();
    Loci.resize(AnzLoci);
    PopNames names;
    for (LociObj& locus : Loci) {
        locus.PopNamen = names.share();
    }
    return anzLoci;
}

int Datensatz::AddPopulation(const std::string& name, int kapazitaet) {
    int result = 0;
    for (LociObj& locus : Loci) {
        result = locus.AddPopulation(name, kapazitaet);
        if (result < 1) {
            break;
        }
    }
    return result;
}

int Datensatz::AddTier(int locus, int pop, int allel, int info) {
    LociObj* const place = Locus(locus);
    return place != nullptr ? place->AddTier(pop, allel, info) : kNoPlace;
}

int Datensatz::AddTier(int locus, int pop, int allel1, int allel2, int info) {
    LociObj* const place = Locus(locus);
    return place != nullptr ? place->AddTier(pop, allel1, allel2, info) : kNoPlace;
}

const LociObj* Datensatz::Locus(int locus) const {
    return locus >= 1 && locus <= AnzLoci ? &Loci[locus - 1] : nullptr;
}

LociObj* Datensatz::Locus(int locus) {
    return locus >= 1 && locus <= AnzLoci ? &Loci[locus - 1] : nullptr;
}

// --- Datensatz: shape and names --------------------------------------------------------------

int Datensatz::GetPopAnzahl() const {
    return Loci.empty() ? 0 : Loci.front().AnzPop;
}

const std::string* Datensatz::GetPopName(int pop) const {
    return Loci.empty() ? nullptr : Loci.front().GetPopName(pop);
}

int Datensatz::GetAnzDatenChromosome(int pop) const {
    return Loci.empty() ? kNoSlot : Loci.front().GetAnzDatenChromosome(pop);
}

int Datensatz::GetIndividuals(int pop) const {
    return GetAnzDatenChromosome(pop) / 2;
}

const std::string* Datensatz::GetLociName(int locus) const {
    const LociObj* const place = Locus(locus);
    return place != nullptr ? place->GetLociName() : nullptr;
}

const std::string* Datensatz::GetLociName2(int locus) const {
    const LociObj* const place = Locus(locus);
    return place != nullptr ? place->GetLociName2() : nullptr;
}

const std::string* Datensatz::GetLociName2OrFirst(int locus) const {
    const std::string* const second = GetLociName2(locus);
    return second != nullptr ? second : GetLociName(locus);
}

int Datensatz::SetLociName(int locus, const std::string& name) {
    LociObj* const place = Locus(locus);
    if (place == nullptr) {
        return kNoPlace;
    }
    place->SetLociName(name);
    return 0;
}

int Datensatz::SetLociName2(int locus, const std::string& name) {
    LociObj* const place = Locus(locus);
    if (place == nullptr) {
        return kNoPlace;
    }
    place->SetLociName2(name);
    return 0;
}

int Datensatz::GetLociNummer(const std::string& name) const {
    const auto found = std::find_if(Loci.begin(), Loci.end(), [&name](const LociObj& locus) {
        return locus.GetLociName() != nullptr && locus.LociName == name;
    });
    return found == Loci.end() ? 0 : static_cast<int>(found - Loci.begin()) + 1;
}

int Datensatz::GetLociRepeatMuster(int locus) const {
    const LociObj* const place = Locus(locus);
    return place != nullptr ? place->LociRepeatMuster : kNoLocus;
}

int Datensatz::GetLociRepeatRest(int locus) const {
    const LociObj* const place = Locus(locus);
    return place != nullptr ? place->LociRepeatRest : kNoLocus;
}

int Datensatz::SetLociRepeatMuster(int locus, int wert) {
    LociObj* const place = Locus(locus);
    return place != nullptr ? place->SetLociRepeatMuster(wert) : kNoLocus;
}

int Datensatz::SetLociRepeatRest(int locus, int wert) {
    LociObj* const place = Locus(locus);
    return place != nullptr ? place->SetLociRepeatRest(wert) : kNoLocus;
}

double& Datensatz::doubleOfLocus(int locus, double LociObj::*field) {
    LociObj* const place = Locus(locus);
    if (place != nullptr) {
        return place->*field;
    }
    Fehlerwert = -2.0; // a caller may have written through an earlier reference
    return Fehlerwert;
}

double& Datensatz::AccessInheritanceScalar(int locus) {
    return doubleOfLocus(locus, &LociObj::InheritanceScalar);
}

double& Datensatz::AccessMutationRate(int locus) {
    return doubleOfLocus(locus, &LociObj::MutationRate);
}

// --- Datensatz: genotypes ------------------------------------------------------------------------

int Datensatz::GetTierDaten(int locus, int pop, int tier, int& allel1, int& allel2) const {
    const LociObj* const place = Locus(locus);
    if (place == nullptr) {
        return kNoLocus;
    }
    allel1 = place->GetDataChromosom(pop, 2 * tier);
    allel2 = place->GetDataChromosom(pop, 2 * tier + 1);
    return 0;
}

int Datensatz::SetTierDaten(int locus, int pop, int tier, int allel1, int allel2) {
    LociObj* const place = Locus(locus);
    if (place == nullptr) {
        return kNoLocus;
    }
    place->SetDataChromosom(pop, 2 * tier, allel1);
    place->SetDataChromosom(pop, 2 * tier + 1, allel2);
    return 0;
}

int Datensatz::GetChromosomDaten(int locus, int pop, int i, int& allel) const {
    const LociObj* const place = Locus(locus);
    if (place == nullptr) {
        return kNoLocus;
    }
    allel = place->GetDataChromosom(pop, i);
    return 0;
}

int Datensatz::GetChromosomInfo(int locus, int pop, int i, int& info) const {
    const LociObj* const place = Locus(locus);
    if (place == nullptr) {
        return kNoLocus;
    }
    info = place->GetInfoChromosom(pop, i);
    return 0;
}

int Datensatz::GetGroupNummer(int pop, int i, int locus) const {
    const LociObj* const place = Locus(locus);
    return place != nullptr ? place->GetGroupNummer(pop, i) : 0;
}

int Datensatz::TestGroup(int gruppe) const {
    return Loci.empty() ? 0 : Loci.front().TestGroup(gruppe);
}

// --- Datensatz: sheet heads ------------------------------------------------------------------

void Datensatz::LociNamen(ResultFile& f, int beide) const {
    for (int locus = 1; locus <= AnzLoci; ++locus) {
        f.character('\t');
        f.text(orEmpty(GetLociName(locus)));
        f.character('\t');
        if (beide != 0) {
            f.text(orEmpty(GetLociName2OrFirst(locus)));
        }
    }
    f.character('\n');
}

void Datensatz::writeNames(ResultFile& f, bool second) const {
    for (int locus = 1; locus <= AnzLoci; ++locus) {
        f.text(orEmpty(second ? GetLociName2OrFirst(locus) : GetLociName(locus)));
        f.character('\t');
    }
    f.character('\n');
}

void Datensatz::LociNamenK(ResultFile& f) const {
    f.character('\t');
    writeNames(f, false);
}

void Datensatz::LociNamenK2(ResultFile& f) const {
    f.character('\t');
    writeNames(f, true);
}

void Datensatz::LociNamenKS(ResultFile& f, const char* titel) const {
    f.print("\t%s\t", titel);
    writeNames(f, false);
}

void Datensatz::LociNamenKS2(ResultFile& f, const char* titel) const {
    f.print("\t%s\t", titel);
    writeNames(f, true);
}

} // namespace kva
