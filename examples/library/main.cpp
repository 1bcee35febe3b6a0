// Prints the Fst of each pair of populations of a data file, and the p-value of its test.
// Usage: fst DATA
#include <cstddef>
#include <cstdio>
#include <kva/kva.h>

namespace {

void print(const char* title, const kva::api::Matrix& matrix) {
    std::printf("%s\n", title);
    for (std::size_t i = 0; i < matrix.size(); ++i) {
        std::printf("%s", matrix.names[i].c_str());
        for (std::size_t j = 0; j < matrix.size(); ++j) {
            std::printf("\t%.5f", matrix.at(i, j));
        }
        std::printf("\n");
    }
}

} // namespace

int main(int argc, char** argv) {
    const auto data = kva::api::loadFile(argc > 1 ? argv[1] : "testdata.dat");
    if (!data) {
        std::fprintf(stderr, "%s\n", data.error().text.c_str());
        return 1;
    }
    kva::api::Settings settings;
    settings.fstPairs = true;
    settings.permutations = 1000;
    settings.seed = 1;
    const auto result = kva::api::run(*data, settings);
    if (!result) {
        std::fprintf(stderr, "%s\n", result.error().text.c_str());
        return 1;
    }
    print("Fst", result->fst());
    print("p", result->pValues());
    return 0;
}
