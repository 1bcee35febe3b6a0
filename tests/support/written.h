// What a writer of sheet cells puts into a result file, as text.
#ifndef KVA_TESTS_SUPPORT_WRITTEN_H
#define KVA_TESTS_SUPPORT_WRITTEN_H

#include "output/resultfile.h"
#include "support/support.h"

#include <string>

namespace kva_test {

using namespace kva;

// The bytes that `write(file)` leaves in a fresh file.
template <class Writer> std::string written(Writer&& write) {
    const TempFolder folder;
    ResultFile file(folder / "sheet", "wb", "sheet", nullptr);
    write(file);
    file.close();
    return readFile(folder / "sheet");
}

} // namespace kva_test

#endif
