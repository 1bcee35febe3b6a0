// LociObj and Datensatz: the genotypes of one data file, one locus after the
// other, and in each locus the same populations with the same individuals.
//
// Loci and populations count from 1; slots and individuals inside a population
// from 0. Individual i is always the slot pair 2i, 2i+1, in either column format.
// A slot of an odd last row has no partner: the slot behind the last reads as
// missing.
//
// Bound errors are results: -10 no such locus or population, -20 block full, -2 no
// such locus in a read, -1 no such slot, 0 or null no such name or group. Names handed out by
// pointer are owned by the locus, and valid until it changes. Nothing but the writers of
// sheets touches a file, and nothing but what says so draws a random number.
#ifndef KVA_DATA_LOCICLASS_H
#define KVA_DATA_LOCICLASS_H

#include "data/allelcount.h"
#include "data/popnames.h"
#include "data/slotmaps.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kva {

class ResultFile;
struct GenepopLines;

// The slots of one population at one locus, alleles or info values. The capacity is fixed; blocks
// never grow.
struct SlotBlock {
    int32_t Kapazitaet = 0;     // slots there is room for
    int32_t Belegt = 0;         // slots used, from the front
    std::vector<int32_t> Slots; // Kapazitaet + 1: one to read behind the last; unused ones hold -1
                                // in allele blocks and 0 in info blocks
};

// Info value of a slot: group x 2 + haploid bit. A group beyond its 31 bits takes the
// nearest one.
constexpr int32_t infoValue(int32_t group, bool haploid) {
    constexpr int32_t limit = int32_t{1} << 30;
    return std::clamp(group, -limit, limit - 1) * 2 + (haploid ? 1 : 0);
}

// The two parts of an info value: the group, and the haploid bit (0 or 1).
constexpr int32_t infoGroup(int32_t info) {
    return info >> 1;
}
constexpr int32_t infoHaploid(int32_t info) {
    return info & 1;
}

// A name as the getters below give it; empty where there is none (null).
const std::string& orEmpty(const std::string* name);

// One locus: the alleles of all individuals, population after population, its names and lengths.
class LociObj {
  public:
    // --- Building -------------------------------------------------------------

    // Appends a population with room for `kapazitaet` slots (none for a negative number). Result:
    // the new AnzPop, which is its number.
    int AddPopulation(const std::string& name, int kapazitaet);

    // Append one slot, or the two of an individual with the same info value (infoValue). Alleles
    // are numbers as in the data file, negative: missing. 0; -10 for a bad population; -20, and
    // nothing stored, if the block has no room for all.
    int AddTier(int pop, int allel, int info);
    int AddTier(int pop, int allel1, int allel2, int info);

    // --- Slots ------------------------------------------------------------------

    // Allele number or info value of slot i of a population; -1 if the population or i is outside.
    // i == Belegt is let through: unfilled slots read -1 as data and 0 as info.
    int GetDataChromosom(int pop, int i) const;
    int GetInfoChromosom(int pop, int i) const;

    // Store and return the value; -1, and nothing stored, under the same conditions as the reads.
    int SetDataChromosom(int pop, int i, int wert);
    int SetInfoChromosom(int pop, int i, int wert);
    // The value is gruppe x 2 + (1 if `typ` is exactly 1).
    int SetInfoChromosom(int pop, int i, int gruppe, int typ);

    // The haploid bit of slot i, 0 or 1; 0 outside the bounds.
    int isHaploid(int pop, int i) const;

    // The group number of slot i; 0: in no group, or outside the bounds.
    int GetGroupNummer(int pop, int i) const;

    // `gruppe` if the first individual of any population lies in it, else 0: a
    // population is taken to lie wholly in the group of its first individual.
    int TestGroup(int gruppe) const;

    // Slots used; -1 for a bad population.
    int GetAnzDatenChromosome(int pop) const;

    // All used slots of a population in order, for passes that run through them;
    // empty for a bad population.
    std::span<const int32_t> DataSlots(int pop) const;
    std::span<const int32_t> InfoSlots(int pop) const;

    // --- Names and lengths --------------------------------------------------------

    // Name of the (first) and of the second allele column; null while the name is not set.
    const std::string* GetLociName() const { return NameSet ? &LociName : nullptr; }
    const std::string* GetLociName2() const { return Name2Set ? &LociName2 : nullptr; }
    void SetLociName(const std::string& name);
    void SetLociName2(const std::string& name);

    // Name of a population; null outside 1..AnzPop.
    const std::string* GetPopName(int pop) const;

    // Number of the first population of that exact name, 0 if none.
    int GetPopNummer(const std::string& name) const;

    // Store the length, in base pairs, and return the old value. Nothing is checked.
    int SetLociRepeatMuster(int wert);
    int SetLociRepeatRest(int wert);

    // --- Counting (stats/CountAllels.cpp) -------------------------------------------

    // Feeds the slots of a population, or of all populations in turn, into a table.
    // `pop` 1..AnzPop with `flag` 0: that population. `pop` 0 with `flag` not 0:
    // nothing, result 1. All other calls, also a `pop` that does not exist: all
    // populations. Result 0. The table is not emptied first, nor sorted.
    int AllelCountP(AllelCount& tabelle, int pop, int flag) const;

    // --- Group means (stats/GroupMeans.cpp) -------------------------------------------
    // Mean of a statistic over the populations of `gruppe`, the group of a population
    // being that of its first individual. `tab` is PopAllele, `locus` this locus's
    // number. Only values of 0 and above enter, each population with the same weight; the
    // statistic of a population is that of AllelCount. -1.0: no value; -1.5: no population
    // at the locus at all.
    double CalcHet(const SampleTables& tab, int locus, int gruppe) const;
    double CalcVar(const SampleTables& tab, int locus, int gruppe) const;
    double CalcMean(const SampleTables& tab, int locus, int gruppe) const;
    double CalcHsk(const SampleTables& tab, int locus, int gruppe, int korrigiert) const;
    // F(IS) = 1 - Hobs/Hs, Hs the corrected CalcHsk (near Nei 1987, see there). Populations with
    // a negative F(IS) are dropped, so this is the mean of the others; one without data counts
    // as 0.
    double CalcFisk(const SampleTables& tab, int locus, int gruppe) const;
    // The random-discard values (data/randomdiscard.h); no replicate is started.
    double CalcRDHet(const SampleTables& tab, int locus, int gruppe) const;
    double CalcRDMean(const SampleTables& tab, int locus, int gruppe) const;
    double CalcRDVar(const SampleTables& tab, int locus, int gruppe) const;
    double CalcRDAllele(const SampleTables& tab, int locus, int gruppe) const;

    // Largest and smallest allele number of the group, the smallest at most 100000.
    // -1: no allele; -2: no population at the locus at all.
    int CalcMax(const SampleTables& tab, int locus, int gruppe) const;
    int CalcMin(const SampleTables& tab, int locus, int gruppe) const;

    int32_t AnzPop = 0;                   // populations, the size of the three vectors below
    std::vector<SlotBlock> DataChromosom; // allele numbers, one block per population; population
                                          // p is entry p - 1, here and in the next two
    std::vector<SlotBlock> InfoChromosom; // info values, slot for slot beside the data
    PopNames PopNamen;                    // population names, shared with the other loci
    std::string LociName;                 // name of the (first) allele column; empty until set
    std::string LociName2;                // name of the second allele column; empty until set
    int32_t LociRepeatMuster = -1;        // repeat unit in base pairs; -1 until set; below 1:
                                          // unknown
    int32_t LociRepeatRest = -1;          // base pairs of an allele without its repeats; -1 until
                                          // set
    double InheritanceScalar = -1.0;      // of the IM export: share of the autosomal population
                                          // size; -1.0 until set
    double MutationRate = -1.0;           // of the IM export, as its file has it; -1.0 until set

  private:
    bool hasSlot(int pop, int i) const; // also true for the slot behind the last

    // Counts the used slots of a population, missing ones too, into a table.
    void feed(AllelCount& tabelle, int pop) const;

    bool NameSet = false;  // SetLociName was called
    bool Name2Set = false; // SetLociName2 was called
};

// All loci of a data file. What is asked of populations is answered by locus 1: all loci hold the
// same.
class Datensatz {
  public:
    // --- Building -------------------------------------------------------------

    // Drops all loci and makes `anzLoci` new ones, none for a negative number.
    // Result: `anzLoci`.
    int init(int anzLoci);

    // Appends a population with room for `kapazitaet` slots to all loci in turn, stopping at a
    // result below 1. Result: the last one, the number of the population; 0 without loci.
    int AddPopulation(const std::string& name, int kapazitaet);

    // As in LociObj, at one locus; -10 for a bad locus.
    int AddTier(int locus, int pop, int allel, int info);
    int AddTier(int locus, int pop, int allel1, int allel2, int info);

    // --- Shape and names ----------------------------------------------------------

    int GetPopAnzahl() const;                         // populations; 0 without loci
    const std::string* GetPopName(int pop) const;     // null without loci or for a bad number
    int GetAnzDatenChromosome(int pop) const;         // slots of a population; -1 for a bad one
    int GetIndividuals(int pop) const;                // individuals of a population: slots / 2,
                                                      // an odd last one not; 0 for a bad one
    const std::string* GetLociName(int locus) const;  // null for a bad locus
    const std::string* GetLociName2(int locus) const; // null too where it is not set
    // The second name, or the first where there is no second; null for a bad locus.
    const std::string* GetLociName2OrFirst(int locus) const;
    int SetLociName(int locus, const std::string& name);  // 0; -10 for a bad locus
    int SetLociName2(int locus, const std::string& name); // 0; -10 for a bad locus
    int GetLociNummer(const std::string& name) const; // first locus of that first name, 0 if none

    // Repeat unit and rest length of a locus, in base pairs; -1 until set.
    int GetLociRepeatMuster(int locus) const;     // -2 for a bad locus
    int GetLociRepeatRest(int locus) const;       // -2 for a bad locus
    int SetLociRepeatMuster(int locus, int wert); // the old value; -2 for a bad locus
    int SetLociRepeatRest(int locus, int wert);   // the old value; -2 for a bad locus

    // The locus's double, to read and to write; the global Fehlerwert, set to -2.0, for a bad
    // locus.
    double& AccessInheritanceScalar(int locus);
    double& AccessMutationRate(int locus);

    // --- Genotypes ------------------------------------------------------------------

    // The two alleles of individual `tier` (from 0): read into the references, -1 for a bad
    // population or individual; or stored, nothing for such a one. 0, or -2 with the references
    // untouched for a bad locus.
    int GetTierDaten(int locus, int pop, int tier, int& allel1, int& allel2) const;
    int SetTierDaten(int locus, int pop, int tier, int allel1, int allel2);

    // Allele or info value of slot i, -1 for a bad population or slot. 0, or -2 with the
    // reference untouched for a bad locus.
    int GetChromosomDaten(int locus, int pop, int i, int& allel) const;
    int GetChromosomInfo(int locus, int pop, int i, int& info) const;

    // The group of slot i; 0: none, or a bad number. The locus stands last here, unlike
    // everywhere else.
    int GetGroupNummer(int pop, int i, int locus) const;
    int TestGroup(int gruppe) const; // as in LociObj, on locus 1; 0 without loci

    // Calls visit(pop, tier) for every individual, population after population; `pop` from 1,
    // `tier` from 0. A single slot behind the last pair is no individual.
    template <class Visitor> void ForEachTier(Visitor&& visit) const {
        for (int pop = 1; pop <= GetPopAnzahl(); ++pop) {
            for (int tier = 0; tier < GetIndividuals(pop); ++tier) {
                visit(pop, tier);
            }
        }
    }

    // --- Sheet heads, one line each, with its line end ---------------------------------
    // A name that is not set is empty, a second one the first.

    // `beide` 0: "\tname\t" for every locus, so that a name heads the first of two
    // columns. Else "\tname\tname2" for every locus.
    void LociNamen(ResultFile& f, int beide) const;
    void LociNamenK(ResultFile& f) const;  // a tab, then "name\t" for every locus
    void LociNamenK2(ResultFile& f) const; // the same with the second names
    void LociNamenKS(ResultFile& f, const char* titel) const;  // "\ttitel\t", then as K
    void LociNamenKS2(ResultFile& f, const char* titel) const; // "\ttitel\t", then as K2

    // --- Merging (data/datamerge.cpp) -------------------------------------------------------

    // Adds those loci of `neu` whose first name does not stand here. Result: the largest
    // number of slots in any population at any locus; -1 for null, -2 if one of the two has
    // no loci.
    int AddNewDatensatz(const Datensatz* neu);

    // Appends a locus of the given names: the populations of the first locus, each with as
    // many slots of the same population of locus `locus` of `neu`, and its lengths. `name2`
    // is null for none. The blocks have no slot to spare. Result: the new number of loci; -2
    // if `neu` is null or has no such locus; -1 if there is no first locus.
    int AddLoci(const std::string& name, const std::string* name2, const Datensatz* neu, int locus);

    // --- Counting (stats/CountAllels.cpp) -----------------------------------------------

    // The tables of all loci in the pool of all populations, sorted; writes the block
    // "Total" of copies and of frequencies to those of the two sheets that are open.
    LocusTables AllelCountLT(ResultFile& zahl, ResultFile& freq) const;

    // The same for population `pop`, headed by an empty line and its name; the pool again for a
    // bad one.
    LocusTables AllelCountPop(ResultFile& zahl, ResultFile& freq, int pop) const;

    // The tables of all loci of one individual (from 0), sorted. The whole info value
    // is handed on as the haploid flag: an individual in a group counts with the
    // weight of a haploid here.
    LocusTables AllelCountInd(int pop, int tier) const;

    // --- Group means (stats/GroupMeans.cpp) -----------------------------------------------
    // As in LociObj, on locus `locus`; -2.0 for a bad locus, -3 from CalcMax and CalcMin. The
    // names on G are the random-discard values.
    double CalcHet(const SampleTables& tab, int locus, int gruppe) const;
    double CalcVar(const SampleTables& tab, int locus, int gruppe) const;
    double CalcMean(const SampleTables& tab, int locus, int gruppe) const;
    double CalcHsk(const SampleTables& tab, int locus, int gruppe, int korrigiert) const;
    double CalcFisk(const SampleTables& tab, int locus, int gruppe) const;
    double CalcRDHetG(const SampleTables& tab, int locus, int gruppe) const;
    double CalcRDMeanG(const SampleTables& tab, int locus, int gruppe) const;
    double CalcRDVarG(const SampleTables& tab, int locus, int gruppe) const;
    double CalcRDAlleleG(const SampleTables& tab, int locus, int gruppe) const;
    int CalcMax(const SampleTables& tab, int locus, int gruppe) const;
    int CalcMin(const SampleTables& tab, int locus, int gruppe) const;

    // --- Random discard (stats/RandomDiscard.cpp) ------------------------------------------
    // The random-discard value (data/randomdiscard.h) of the table of `pop` (0: the
    // pool) at `locus`, both of which exist. The replicates of a table run once in its
    // life, at the first call of any of the four, and draw from the random stream;
    // they end with a mark on the console. CalcRDHet thins whole slot pairs alone, the
    // others also the single last slot of one-column data. `replikate`: how many, at least 1;
    // `mean`: as in AllelCount::CalcVar. -1.0: no value.
    double CalcRDHet(SampleTables& tab, int pop, int locus, int replikate) const;
    double CalcRDMean(SampleTables& tab, int pop, int locus, int replikate) const;
    double CalcRDVar(SampleTables& tab, int pop, int locus, double mean, int replikate) const;
    double CalcRDAllele(SampleTables& tab, int pop, int locus, int replikate) const;

    // --- Format conversion (formats) ------------------------------------------------------

    // The lines of one individual for the Genepop export (formats/plain/GenePopLine.cpp), built in
    // one walk; the plain reading, which only the tests reach: the program writes the rows of
    // formats/GenepopRows.h. The Genepop line is the result, the others go where `lines` says.
    // `pop` counts from 1, `ind` from 0; `pool` is entry 0 of PopAllele. An individual flagged
    // haploid with both alleles, or none, at a locus draws one random number there, whatever is
    // wanted. From locus `ersterLocus` to `letzterLocus`, from 1; to the last one if that is not a
    // locus or lies in front: (1, 0) means all. Empty, with the lines as they were, if there is no
    // such population or no locus.
    std::string MakeGenePopLine(int pop, int ind, int ersterLocus, int letzterLocus,
                                const LocusTables& pool, const GenepopLines& lines) const;

    // The genotypes of one individual for Migrate and Arlequin (formats/Migrate.cpp): " a.b" per
    // locus in `migrate`, " a" and " b" in the two lines for Arlequin, "?" for missing. `pop` and
    // `ind` count from 0. Lengths are divided by the repeat length if `repeatMass` is not 0 and
    // the length is known, else by the locus's entry in `schrittweite`. The three texts are
    // replaced, their room is kept. `schrittweite`: an entry per locus, in base pairs, at least
    // 1. 0.
    int MakeMigrateLine(int pop, int ind, int repeatMass, std::string& migrate,
                        std::string& arlequin1, std::string& arlequin2,
                        const std::vector<int32_t>& schrittweite) const;

    // --- Shuffled samples (fstat/plain/AllelMix.cpp), populations from 0 ------------------
    // The plain readings, which only the tests reach; the program shuffles with ShuffleTable.h.
    // All draw from the random stream, and empty the tables first.

    // Fills the tables of one shuffled pair: mix[0] both samples, mix[1] and mix[2] the
    // drawn ones, each with a table per locus. quelle: the observed tables, entry pop + 1
    // for population pop; a locus without data in one of the two leaves the tables of the
    // locus empty and, unless `linked` is 1, draws nothing. sheet: source of each slot.
    // linked 1: one shuffle for all loci. map1, map2 (room for each sample), buffer: scratch of
    // MakeMix2, to which the other flags go. 0.
    int AllelMix(const SampleTables& quelle, SampleTables& mix, long pop1, long pop2,
                 const SlotSheet& sheet, SampleMap& map1, SampleMap& map2, int genotypes,
                 int linked, int permutation, int jackknife, std::vector<int32_t>& buffer) const;

    // The same with six tables: mix[3] to mix[5] take both populations and each of them
    // as the sheet gives them, not shuffled.
    int AllelMixE(const SampleTables& quelle, SampleTables& mix, long pop1, long pop2,
                  const SlotSheet& sheet, SampleMap& map1, SampleMap& map2, int genotypes,
                  int linked, int permutation, int jackknife, std::vector<int32_t>& buffer) const;

    // Another scheme: draws both samples with replacement, locus by locus, from the slots
    // (genotypes not 0: individuals) of the two populations into mix[0] to mix[2], as above. Two
    // numbers a place: the source is pop2 with the share that pop1 has of both, else pop1. 0.
    int AllelMix(SampleTables& mix, long pop1, long pop2, int genotypes) const;

    // Fills the tables of one shuffle of all populations: tab[0] the pool, tab[p + 1]
    // population p. groessen: slots of each population, `gesamt` their sum. mapSlot[p][c],
    // mapPop[p][c]: source of place c, groessen[p] places for each population; they keep what a
    // shuffle does not deal to them. buffer: scratch, `gesamt` ints. genotypes not 0: slots go in
    // pairs. linked 1: one shuffle for all loci. 0.
    int CountMixGlobal(SampleTables& tab, std::vector<std::vector<int32_t>>& mapSlot,
                       std::vector<std::vector<int32_t>>& mapPop, std::span<const int32_t> groessen,
                       int gesamt, std::vector<int32_t>& buffer, int linked, int genotypes) const;

    std::vector<LociObj> Loci; // locus l is Loci[l - 1]
    int32_t AnzLoci = 0;       // always the size of Loci

    // The locus object, or null for a number outside 1..AnzLoci.
    const LociObj* Locus(int locus) const;
    LociObj* Locus(int locus);

  private:
    // The field of a locus, or Fehlerwert, set to -2.0, for a bad one.
    double& doubleOfLocus(int locus, double LociObj::*field);
    void writeNames(ResultFile& f, bool second) const; // "name\t" per locus and a line end
};

} // namespace kva

#endif
