#include "output/sheet.h"

#include "data/lociclass.h"
#include "output/resultfile.h"

namespace kva {

void writeRealOrNd(ResultFile& f, double value) {
    if (value < 0) {
        writeNd(f);
    } else {
        writeReal(f, value);
    }
}

void writeCountOrNd(ResultFile& f, int value, int minimum) {
    if (value < minimum) {
        writeNd(f);
    } else {
        writeCount(f, value);
    }
}

void writeReal(ResultFile& f, double value) {
    f.fixed(value);
    f.character('\t');
}

void writeCount(ResultFile& f, int value) {
    f.integer(value);
    f.character('\t');
}

void writeNd(ResultFile& f, int cells) {
    for (int cell = 0; cell < cells; ++cell) {
        f.text("n.d.\t");
    }
}

void writeTabReal(ResultFile& f, double value) {
    f.tabFixed(value);
}

void writeTabNd(ResultFile& f) {
    f.text("\tn.d.");
}

void writeLabel(ResultFile& f, const std::string& label) {
    f.text(label);
    f.character('\t');
}

void writeLociHead(ResultFile& f, const Datensatz& daten, int dataFormat) {
    daten.LociNamenK(f);
    if (dataFormat == 2) {
        daten.LociNamenK2(f);
    }
}

std::string sampleLabel(const Datensatz& daten, int p) {
    return p == 0 ? std::string("Total") : orEmpty(daten.GetPopName(p));
}

std::string padOrCut(const std::string& name, std::size_t width) {
    if (name.size() >= width) {
        return name.substr(0, width);
    }
    return std::string(width - name.size(), ' ') + name;
}

std::string populationLabel(const std::string& name) {
    return padOrCut(name, kPopulationLabel);
}

} // namespace kva
