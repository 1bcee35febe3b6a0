#include "data/allelcount.h"

#include "control/Ausgabe.h"
#include "data/diversity.h"
#include "data/lociclass.h"
#include "fstat/randsci.h"
#include "output/resultfile.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

constexpr int32_t kStartRows = 40;      // rows of a new table
constexpr int32_t kGrowth = 40;         // rows added when the table is full
constexpr int32_t kRDMinStart = 100000; // above any count of a replicate
constexpr int32_t kRDSmallest = 3;      // gene copies that a replicate needs

} // namespace

int SortAllel(const void* a, const void* b) {
    const int32_t first = static_cast<const AllelEintrag*>(a)->Nummer;
    const int32_t second = static_cast<const AllelEintrag*>(b)->Nummer;
    return first < second ? -1 : static_cast<int>(first > second);
}

// --- Set-up and counting ---------------------------------------------------------

AllelCount::AllelCount() : Allele(kStartRows), Kapazitaet(kStartRows) {}

void AllelCount::init(int kapazitaet) {
    Kapazitaet = std::max(kapazitaet, 1);
    Allele.assign(Kapazitaet, AllelEintrag{});
    reset();
}

void AllelCount::Clr() {
    std::fill_n(Allele.begin(), AnzAllele, AllelEintrag{}); // the rows behind are 0 already
    reset();
}

void AllelCount::reset() {
    AnzAllele = 0;
    AnzGesamt = -1;
    AnzChromosomen = -1;
    AnzHetero = 0;
    AnzTypisiert = 0;
    OffenesAllel = -1;
    MaxAllel = -1;
    MinAllel = -1;
    RDReplikate = 0;
    RDDurchlauf = 0;
    RDAktuell.clear();
    RDMin.clear();
    RDMax.clear();
    RDHet = -1.0;
    RDVar = -1.0;
    RDMean = -1.0;
    RDAlleleSumme = -1.0;
    Sortiert = false;
    Platz.clear();
}

void AllelCount::openOrCloseIndividual(int allel) {
    if (AnzTypisiert % 2 == 0) {
        OffenesAllel = allel;
    } else {
        if (OffenesAllel < 0 && allel < 0) {
            AnzTypisiert -= 2; // an individual without any allele leaves no trace
        } else if (OffenesAllel >= 0 && allel >= 0 && OffenesAllel != allel) {
            ++AnzHetero;
        }
        OffenesAllel = -1;
    }
    ++AnzTypisiert;
}

void AllelCount::AddAllel(int allel, int haploid) {
    openOrCloseIndividual(allel);
    if (allel < 0) {
        return;
    }
    const int32_t weight = haploid != 0 ? 1 : 2;
    const int32_t row = findRow(allel);
    if (row < 0) {
        addRow(allel, weight);
        return;
    }
    ++Allele[row].Anzahl;
    ++AnzGesamt;
    AnzChromosomen += weight;
}

void AllelCount::countIndividual(int first, int second) {
    if (first < 0 && second < 0) {
        return;
    }
    AnzTypisiert += 2;
    if (first >= 0 && second >= 0 && first != second) {
        ++AnzHetero;
    }
}

void AllelCount::addCopy(int allel, int32_t weight, RowHints& hints) {
    if (allel < 0) {
        return;
    }
    int32_t& row = hints[static_cast<uint32_t>(allel) % hints.size()];
    if (row >= AnzAllele || Allele[row].Nummer != allel) {
        row = findRow(allel);
        if (row < 0) {
            row = AnzAllele;
            addRow(allel, weight);
            return;
        }
    }
    ++Allele[row].Anzahl;
    ++AnzGesamt;
    AnzChromosomen += weight;
}

void AllelCount::AddAllele(std::span<const int32_t> allele, std::span<const int32_t> infos) {
    std::size_t i = 0;
    if (AnzTypisiert % 2 != 0 && !allele.empty()) { // closes the open individual
        AddAllel(allele[0], infoHaploid(infos[0]));
        i = 1;
    }
    RowHints hints{};
    for (; i + 1 < allele.size(); i += 2) {
        countIndividual(allele[i], allele[i + 1]);
        addCopy(allele[i], 2 - infoHaploid(infos[i]), hints);
        addCopy(allele[i + 1], 2 - infoHaploid(infos[i + 1]), hints);
    }
    if (i < allele.size()) {
        AddAllel(allele[i], infoHaploid(infos[i]));
    }
}

void AllelCount::addRow(int allel, int32_t weight) {
    if (AnzGesamt < 0) {
        AnzGesamt = 0;
        AnzChromosomen = 0;
        MinAllel = allel;
        MaxAllel = allel;
    }
    Allele[AnzAllele] = {allel, 1};
    ++AnzAllele;
    ++AnzGesamt;
    AnzChromosomen += weight;
    // One free row always stands behind the last.
    if (AnzAllele == Kapazitaet) {
        Kapazitaet += kGrowth;
        Allele.resize(Kapazitaet);
    }
    MinAllel = std::min(MinAllel, allel);
    MaxAllel = std::max(MaxAllel, allel);
    Sortiert = false;
    indexLastRow();
}

// Small tables are scanned; a large one keeps the places of its numbers beside it. The index is
// built when the table gets large, and anew when one that was sorted (which drops it) goes on
// growing.
void AllelCount::indexLastRow() {
    if (AnzAllele < kIndexFrom) {
        return;
    }
    for (int32_t row = Platz.empty() ? 0 : AnzAllele - 1; row < AnzAllele; ++row) {
        Platz[Allele[row].Nummer] = row;
    }
}

int32_t AllelCount::findRow(int allel) const {
    const auto end = Allele.begin() + AnzAllele;
    if (Sortiert) {
        const auto row =
            std::lower_bound(Allele.begin(), end, allel, [](const AllelEintrag& entry, int number) {
                return entry.Nummer < number;
            });
        return row != end && row->Nummer == allel ? static_cast<int32_t>(row - Allele.begin()) : -1;
    }
    if (!Platz.empty()) {
        const auto place = Platz.find(allel);
        return place == Platz.end() ? -1 : place->second;
    }
    const auto row = std::find_if(
        Allele.begin(), end, [allel](const AllelEintrag& entry) { return entry.Nummer == allel; });
    return row == end ? -1 : static_cast<int32_t>(row - Allele.begin());
}

void AllelCount::SortAllele() {
    std::sort(Allele.begin(), Allele.begin() + AnzAllele,
              [](const AllelEintrag& a, const AllelEintrag& b) { return SortAllel(&a, &b) < 0; });
    Platz.clear();
    Sortiert = true;
}

// --- Reading -----------------------------------------------------------------------

double AllelCount::GetFrequenz(int i) const {
    if (AnzGesamt == -1) {
        return -1.0;
    }
    if (i < 0) {
        return -3.0;
    }
    if (i >= AnzAllele) {
        return -2.0;
    }
    return double(Allele[i].Anzahl) / AnzGesamt;
}

int AllelCount::GetAllelCount(int i) const {
    if (AnzGesamt == -1) {
        return -1;
    }
    if (i < 0) {
        return -3;
    }
    if (i > AnzAllele) { // wanted: the free row behind the last reads 0, for walks to AnzAllele
        return -2;
    }
    return Allele[i].Anzahl;
}

int AllelCount::GetAllelNummer(int nummer) const {
    return findRow(nummer) + 1;
}

int AllelCount::rdCount(const std::vector<AllelEintrag>& rows, int i) const {
    if (!isHaploid()) {
        return -3;
    }
    if (AnzGesamt == -1) {
        return -1;
    }
    if (i > AnzAllele) { // wanted: the place behind the last row reads 0, as in GetAllelCount
        return -2;
    }
    const bool there = i >= 0 && i < std::ssize(rows);
    return there ? rows[i].Anzahl : 0;
}

double AllelCount::rdFrequency(const std::vector<AllelEintrag>& rows, int i) const {
    const int count = rdCount(rows, i);
    return count < 0 ? double(count) : 2.0 * count / AnzGesamt;
}

int AllelCount::GetRDMinAllelCount(int i) const {
    return rdCount(RDMin, i);
}
int AllelCount::GetRDMaxAllelCount(int i) const {
    return rdCount(RDMax, i);
}
double AllelCount::GetRDMinFrequenz(int i) const {
    return rdFrequency(RDMin, i);
}
double AllelCount::GetRDMaxFrequenz(int i) const {
    return rdFrequency(RDMax, i);
}

void AllelCount::AllelZahl(ResultFile& f, int i) const {
    if (i < 0 || i >= AnzAllele) {
        f.text("\t\t");
        return;
    }
    f.integer(Allele[i].Nummer);
    f.character('\t');
    f.integer(Allele[i].Anzahl);
    f.character('\t');
}

void AllelCount::AllelFreq(ResultFile& f, int i) const {
    if (i < 0 || i >= AnzAllele) {
        f.text("\t\t");
        return;
    }
    f.integer(Allele[i].Nummer);
    f.character('\t');
    f.fixed(GetFrequenz(i));
    f.character('\t');
}

// --- Statistics ----------------------------------------------------------------------

double AllelCount::sumOfSquares() const {
    double sum = 0.0;
    for (int32_t i = 0; i < AnzAllele; ++i) {
        const double p = GetFrequenz(i);
        sum += p * p;
    }
    return sum;
}

double AllelCount::CalcHetuk() const {
    return AnzGesamt == -1 ? kTooSmall : uncorrectedHet(sumOfSquares());
}

double AllelCount::CalcHet() const {
    return AnzGesamt == -1 || AnzChromosomen <= 2 ? kTooSmall
                                                  : expectedHet(AnzChromosomen, sumOfSquares());
}

double AllelCount::CalcHetobs() const {
    return AnzGesamt == -1 ? kTooSmall : observedHet(AnzChromosomen, AnzTypisiert, AnzHetero);
}

double AllelCount::CalcHsk(int korrigiert) const {
    if (AnzGesamt == -1 || AnzChromosomen <= 2) {
        return -1.0;
    }
    const double C = AnzChromosomen;
    double x = (1.0 - sumOfSquares()) - CalcHetobs() / C;
    if (korrigiert != 0) {
        x *= sizeFactor(C);
    }
    return std::min(x, 1.0);
}

double AllelCount::CalcMean() const {
    if (AnzGesamt == -1 || AnzChromosomen <= 1) {
        return -1.0;
    }
    double sum = 0.0;
    for (int32_t i = 0; i < AnzAllele; ++i) {
        const AllelEintrag& row = Allele[i];
        sum += double(row.Nummer) * row.Anzahl;
    }
    return sum / AnzGesamt;
}

double AllelCount::CalcVar(double mean) const {
    if (AnzGesamt == -1 || AnzChromosomen <= 2) {
        return -1.0;
    }
    double sum = 0.0;
    for (int32_t i = 0; i < AnzAllele; ++i) {
        const AllelEintrag& row = Allele[i];
        const double deviation = row.Nummer - mean;
        sum += row.Anzahl * (deviation * deviation);
    }
    return sizeFactor(AnzChromosomen) * sum / AnzGesamt;
}

double AllelCount::CalcShannon() const {
    if (AnzGesamt == -1 || AnzChromosomen <= 2) {
        return -1.0;
    }
    double index = 0.0;
    for (int32_t i = 0; i < AnzAllele; ++i) {
        const double p = GetFrequenz(i);
        index -= p * std::log(p); // subtracted one by one: a monomorphic sample gives 0, not -0
    }
    return index;
}

// --- Random-discard replicates -----------------------------------------------------------

void AllelCount::AddHaploidSet(int allel1, int allel2) {
    if (allel1 < 0 && allel2 < 0) {
        return;
    }
    int chosen = std::max(allel1, allel2);
    if (allel1 >= 0 && allel2 >= 0) {
        // A homozygote uses up a random number, too.
        chosen = InternRand() <= 0.5F ? allel1 : allel2;
    }
    if (AnzAllele <= 0) {
        return;
    }
    ++RDGroesse;
    const int32_t row = findRow(chosen);
    if (row >= 0 && static_cast<std::size_t>(row) < RDAktuell.size()) {
        ++RDAktuell[row].Anzahl;
    }
}

void AllelCount::StartRD(int replikate) {
    RDHet = 0.0;
    RDVar = 0.0;
    RDMean = 0.0;
    RDAlleleSumme = 0.0;
    RDReplikate = replikate;
    RDDurchlauf = 0;
    RDGroesse = 0;
    RDAktuell.assign(Allele.begin(), Allele.begin() + AnzAllele);
    for (AllelEintrag& row : RDAktuell) {
        row.Anzahl = 0;
    }
    RDMax = RDAktuell;
    RDMin = RDAktuell;
    for (AllelEintrag& row : RDMin) {
        row.Anzahl = kRDMinStart;
    }
}

void AllelCount::DataTestRD() {
    for (std::size_t i = 0; i < RDAktuell.size(); ++i) {
        RDMin[i].Anzahl = std::min(RDMin[i].Anzahl, RDAktuell[i].Anzahl);
        RDMax[i].Anzahl = std::max(RDMax[i].Anzahl, RDAktuell[i].Anzahl);
        RDAktuell[i].Anzahl = 0;
    }
}

int AllelCount::CalcRDF() {
    if (AnzGesamt < kRDSmallest) {
        RDHet = -1.0;
        RDVar = -1.0;
        RDMean = -1.0;
        RDAlleleSumme = -1.0;
        return 0;
    }
    const double n = RDGroesse;
    double squares = 0.0;
    double numbers = 0.0;
    int32_t present = 0;
    for (const AllelEintrag& row : RDAktuell) {
        const double p = row.Anzahl / n;
        squares += p * p;
        numbers += double(row.Nummer) * row.Anzahl;
        present += row.Anzahl > 0 ? 1 : 0;
    }
    const double mean = numbers / n;
    double deviations = 0.0;
    for (const AllelEintrag& row : RDAktuell) {
        const double deviation = row.Nummer - mean;
        deviations += row.Anzahl * (deviation * deviation);
    }
    // A replicate is a plain haploid sample: its factor is n/(n-1), not C/(C-2). The variance
    // takes the full table's AnzGesamt all the same.
    RDHet += (n / (n - 1.0)) * (1.0 - squares);
    RDMean += mean;
    RDAlleleSumme += present;
    RDVar += (2.0 / (AnzGesamt - 2.0)) * deviations;
    return 1;
}

int AllelCount::RDEnd() {
    ++RDDurchlauf;
    const bool counted = CalcRDF() != 0;
    DataTestRD();
    RDGroesse = 0;
    if (!counted) {
        return 0;
    }
    if (AnzAllele == 1) {
        AUSGABE(Message::DiscardMark, "2#");
        return 0;
    }
    if (RDDurchlauf < RDReplikate) {
        return 1;
    }
    AUSGABE(Message::DiscardMark, "3#");
    return 0;
}

} // namespace kva
