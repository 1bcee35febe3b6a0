// The menu: the bytes are what a user types. No run takes place.
#include "harness.h"

#include "control/CMenu.h"

#include <sstream>
#include <string>

using namespace kva;

namespace {

class MenuWithoutRuns : public CMenuAllg {
  public:
    int DoWork(int /*arg*/) override { return 0; }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const kva_fuzz::Quiet quiet;
    std::istringstream typed(std::string(reinterpret_cast<const char*>(data), size));
    std::streambuf* const before = std::cin.rdbuf(typed.rdbuf());
    std::cin.clear();
    MenuWithoutRuns menu;
    const int result = menu.Run(0);
    std::cin.rdbuf(before);
    kva_fuzz::require(result == 0, "the menu ends with the input");
    kva_fuzz::require(menu.Bootstraps >= 1 && menu.Permutationen >= 0 && menu.Replikate >= 1,
                      "numbers stay in their bounds");
    return 0;
}
