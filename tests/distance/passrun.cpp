#include "distance/passrun.h"

#include <filesystem>

using namespace kva;

namespace kva_test {

const char* const kThreePops = "2 . . 2 . 4 .\n"
                               ". . . 0 . 0 .\n"
                               ". . . L1 L1b L2 L2b\n"
                               "A d 0 100 100 200 200\n"
                               "A d 0 100 100 208 208\n"
                               "B d 0 100 100 200 208\n"
                               "B d 0 104 104 200 208\n"
                               "C d 0 104 104 200 200\n"
                               "C d 0 104 104 200 208\n";

namespace {

Pass runPass(LoadedRun& run, uint32_t mask, long bootstraps, long (AnalyseDataObj::*pass)(long)) {
    run.counted();
    run->PopDistMask = mask | DistBit::Engine;
    StdoutCapture console;
    const long result = ((*run).*pass)(bootstraps);
    return {result, console.text()};
}

} // namespace

Pass popPass(LoadedRun& run, uint32_t mask, long bootstraps) {
    return runPass(run, mask, bootstraps, &AnalyseDataObj::CalcDistancesPop);
}

Pass indPass(LoadedRun& run, uint32_t mask, long bootstraps) {
    return runPass(run, mask, bootstraps, &AnalyseDataObj::CalcDistancesInd);
}

std::string distanceFile(const LoadedRun& run, const std::string& name) {
    return run.resultFile("Distance_data/" + name);
}

bool hasDistanceFile(LoadedRun& run, const std::string& name) {
    return std::filesystem::exists(run->ResultPfad + "/Distance_data/" + name);
}

int occurrences(const std::string& text, const std::string& part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos;
         at = text.find(part, at + part.size())) {
        ++found;
    }
    return found;
}

} // namespace kva_test
