#include "support/datasets.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

using namespace kva;

namespace kva_test {

std::string tabbed(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool opens = i == 0 || text[i - 1] == ' ' || text[i - 1] == '\n';
        const bool closes = i + 1 == text.size() || text[i + 1] == ' ' || text[i + 1] == '\n';
        if (text[i] == '.' && opens && closes) {
            continue;
        }
        bytes += text[i] == ' ' ? '\t' : text[i];
    }
    return bytes;
}

const char* const kTwoPops = "2 . . 2 . 4 .\n"
                             ". . . 50 . 60 .\n"
                             ". . . L1 L1b L2 L2b\n"
                             "A d 0 100 102 200 200\n"
                             "A d 0 100 100 204 208\n"
                             "B d 0 102 104 200 204\n"
                             "B d 0 104 104 200 200\n";

const char* const kTwoPopsOneColumn = "1 . . 2 4\n"
                                      ". . . 50 60\n"
                                      ". . . L1 L2\n"
                                      "A d 0 100 200\n"
                                      "A d 0 102 200\n"
                                      "A d 0 100 204\n"
                                      "A d 0 100 208\n"
                                      "B d 0 102 200\n"
                                      "B d 0 104 204\n"
                                      "B d 0 104 200\n"
                                      "B d 0 104 200\n";

const char* const kInbredPop = "2 . . 2 . 4 .\n"
                               ". . . 50 . 60 .\n"
                               ". . . L1 L1b L2 L2b\n"
                               "A d 1 100 102 200 200\n"
                               "A d 1 100 100 204 208\n"
                               "B h 2 102 104 200 204\n"
                               "B h 2 104 104 200 200\n";

const char* const kWithGaps = "2 . . 2 . 4 .\n"
                              ". . . 50 . 60 .\n"
                              ". . . L1 L1b L2 L2b\n"
                              "A d 0 100 102 200 200\n"
                              "A d 0 100 . 204 208\n"
                              "B d 0 102 104 . .\n"
                              "B d 0 104 104 . .\n";

LoadedRun::LoadedRun(std::string_view text, const std::string& name) {
    writeFile(folder / name, tabbed(text));
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                               &std::fclose);
    obj.DateiName = name;
    const StdoutCapture swallowed;
    if (obj.CheckDataFile(file.get()) != 0) {
        throw std::runtime_error("the data set of the test was refused");
    }
    obj.ReadDataFile(file.get());
}

LoadedRun& LoadedRun::counted() {
    const StdoutCapture swallowed;
    obj.CountAllels();
    return *this;
}

std::string LoadedRun::resultFile(const std::string& pathInside) const {
    return readFile(std::filesystem::path(obj.ResultPfad) / pathInside);
}

} // namespace kva_test
