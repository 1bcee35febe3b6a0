#include "run/run.h"

namespace kva {

void Run::TakeSettings(const AnalyseSettings& masks, const ScalarSettings& scalars) {
    static_cast<AnalyseSettings&>(*this) = masks;
    BootLoci = scalars.BootLoci;
    RichnessRef = scalars.RichnessRef;
    HetRandomisierungen = scalars.HetRandomisierungen;
    ReplikaLoci = scalars.ReplikaLoci;
    Replikate = scalars.Replikate;
}

int Run::AddNewData(const Run* neu) {
    if (neu == nullptr) {
        return -1;
    }
    if (const int difference = CompareSamples(*neu); difference != 0) {
        return difference;
    }
    PopAllele.clear();
    IndAllele.clear();
    AnzInd = 0;
    return AddLociOf(*neu);
}

} // namespace kva
