// Runs a harness over the files of a folder: `replay FOLDER`. Fails where there are none.
#include "harness.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: replay FOLDER" << std::endl;
        return 2;
    }
    int files = 0;
    // By absolute path: a harness may change the folder.
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::absolute(argv[1]))) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        std::cerr << entry.path().filename().string() << std::endl;
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        ++files;
    }
    std::cerr << files << " inputs" << std::endl;
    return files > 0 ? 0 : 1;
}
