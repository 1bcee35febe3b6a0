// Group tables, in the folder "Group_data": the means of the statistics over the
// populations of each group, in six sheets with a line per group and a column per
// locus, and in a long sheet "SumGrp01.xls" per group with a line per locus:
//
//      	fca8	fca23
//      Grp 01	0.871042	0.790155
//      Grp 02	0.725000	n.d.
#include "control/Ausgabe.h"
#include "stats/GroupMeans.h"
#include "stats/passes.h"
#include "stats/statpass.h"

#include <span>
#include <utility>
#include <vector>

namespace kva {

namespace {

struct GroupValues {
    double het;
    double hetRD;
    double var;
    double varRD;
    int min;
    double mean;
    int max;
    int r; // repeat length; below 1: unknown
    int s; // rest length; below 1: unknown
};

using V = GroupValues;

bool noVar(const V& v) {
    return v.r < 1 || v.var < 0;
}
bool noVarRD(const V& v) {
    return v.r < 1 || v.varRD < 0;
}
bool noHet(const V& v) {
    return v.het < 0;
}
bool noHetOrVar(const V& v) {
    return v.r < 1 || v.het < 0 || v.var < 0;
}
bool noAllele(const V& v) {
    return v.min < 0;
}
bool noRepeatNumber(const V& v) {
    return v.r < 1 || v.s < 1 || v.min < 0 || v.mean < 0;
}

constexpr CellFormat kReal = CellFormat::Real;
constexpr CellFormat kCount = CellFormat::Count;

constexpr std::array<CellRule<V>, 6> kGroupSheets = {{
    {"Hetexpgroup.xls", kReal, field<&V::het>, negative<&V::het>},
    {"Vargroup.xls", kReal, field<&V::var>, negative<&V::var>},
    {"HetexpRDgroup.xls", kReal, field<&V::hetRD>, negative<&V::hetRD>},
    {"VarRDgroup.xls", kReal, field<&V::varRD>, negative<&V::varRD>},
    {"VarRDrepeatgroup.xls", kReal, varRDRepeat, noVarRD},
    {"Varrepeatgroup.xls", kReal, varRepeat, noVar},
}};

// Wanted: the heterozygosity alone guards the first four columns; a negative value among the
// other three is printed as it is.
constexpr std::array<CellRule<V>, 12> kGroupColumns = {{
    {"Het exp", kReal, field<&V::het>, noHet},
    {"Het exp RD", kReal, field<&V::hetRD>, noHet},
    {"Var", kReal, field<&V::var>, noHet},
    {"VarRD", kReal, field<&V::varRD>, noHet},
    {"Var repeatnumber", kReal, varRepeat, noHetOrVar},
    {"Var repeatRD", kReal, varRDRepeat, noHetOrVar},
    {"MinAllele", kCount, field<&V::min>, noAllele},
    {"MeanAllele", kReal, field<&V::mean>, noAllele},
    {"MaxAllele", kCount, field<&V::max>, noAllele},
    {"MinRepeat", kReal, [](const V& v) { return inRepeats(v, v.min); }, noRepeatNumber},
    {"MeanRepeat", kReal, [](const V& v) { return inRepeats(v, v.mean); }, noRepeatNumber},
    {"MaxRepeat", kReal, [](const V& v) { return inRepeats(v, v.max); }, noRepeatNumber},
}};

// The populations of the groups at all loci. Loci that agree with the first one share its index:
// all of a file that was read do, merged ones need not.
class LocusGroups {
  public:
    explicit LocusGroups(const Datensatz& daten) {
        for (const LociObj& locus : daten.Loci) {
            GroupIndex index(locus);
            if (Indices.empty() || !(index == Indices.front())) {
                Indices.push_back(std::move(index));
                OfLocus.push_back(Indices.size() - 1);
            } else {
                OfLocus.push_back(0);
            }
        }
    }

    // The populations of group `g` at locus `l`, from 1.
    std::span<const int32_t> populations(int l, int g) const {
        return Indices[OfLocus[l - 1]].populations(g);
    }

    // Whether a group comes up, as locus 1 has it.
    bool has(int g) const { return !Indices.empty() && !Indices.front().populations(g).empty(); }

  private:
    std::vector<GroupIndex> Indices; // the first locus's, then those that differ from it
    std::vector<std::size_t> OfLocus;
};

GroupValues groupValues(const Run& run, int l, std::span<const int32_t> populations) {
    const GroupStatistics s = groupStatistics(run.PopAllele, l, populations);
    return {s.het,
            s.hetRD,
            s.var,
            s.varRD,
            s.min,
            s.mean,
            s.max,
            run.Daten->GetLociRepeatMuster(l),
            run.Daten->GetLociRepeatRest(l)};
}

// "%.2d" of a group number: at least two digits.
std::string twoDigits(int g) {
    return std::string(g < 10 ? "0" : "").append(std::to_string(g));
}

// The long sheet of a group, with its head.
ResultFile openGroupSheet(Run& run, int g) {
    ResultFile sheet = run.OpenResult("SumGrp" + twoDigits(g) + ".xls", "wb");
    sheet.text(locusNameHead(run));
    writeColumnHeads(sheet, kGroupColumns);
    sheet.character('\n');
    return sheet;
}

void writeGroup(Run& run, std::array<ResultFile, kGroupSheets.size()>& sheets,
                const LocusGroups& groups, int g) {
    for (ResultFile& sheet : sheets) {
        writeLabel(sheet, "Grp " + twoDigits(g));
    }
    ResultFile sum = openGroupSheet(run, g);
    for (int l = 1; l <= run.Daten->AnzLoci; ++l) {
        const GroupValues values = groupValues(run, l, groups.populations(l, g));
        for (std::size_t i = 0; i < sheets.size(); ++i) {
            writeCell(sheets[i], kGroupSheets[i], values);
        }
        writeLocusNames(sum, run, l);
        for (const CellRule<GroupValues>& column : kGroupColumns) {
            writeCell(sum, column, values);
        }
        sum.character('\n');
    }
    for (ResultFile& sheet : sheets) {
        sheet.character('\n');
    }
}

// The walk ends at the first number without a population: groups behind a gap are left out.
void writeGroups(Run& run) {
    std::array<ResultFile, kGroupSheets.size()> sheets = openSheets(run, kGroupSheets);
    const LocusGroups groups(*run.Daten);
    for (int g = 1;; ++g) {
        AUSGABE(Message::TestGroup, g);
        if (!groups.has(g)) {
            break;
        }
        writeGroup(run, sheets, groups, g);
    }
}

} // namespace

int writeGroupData(Run& run) {
    // Wanted: the process stays in the folder; the next pass enters its own by its full path.
    constexpr PassFrame kFrame{.Folder = &Folder::GroupData,
                               .BeginInFolder = Message::GroupsBegin,
                               .End = Message::GroupsEnd,
                               .LogText = "Make Group results...",
                               .StaysInFolder = true};
    return runInFrame(run, kFrame, writeGroups);
}

} // namespace kva
