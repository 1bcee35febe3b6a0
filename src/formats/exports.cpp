#include "formats/exports.h"

#include "base/settings.h"

namespace kva {

namespace {

// bit, keyword, key, line of the menu, line of the log
constexpr Export kExports[] = {
    {GeneralBit::Msvar, "msvar", '1',
     "     (1) ... Make msvar (Beaumont)     : ", "\nCreate msvar/beaumont ..."},
    {GeneralBit::Arlequin, "arlequin", '3',
     "     (3) ... Make Arlequin format      : ", "\nCreate Arlequin ..."},
    {GeneralBit::Migrate, "migrate", '2',
     "     (2) ... Make Migrate/LAMARC       : ", "\nCreate Migrate/LAMARC ..."},
    {GeneralBit::IMFormat, "im", '4', "     (4) ... Make IM-format            : ", nullptr},
};

} // namespace

std::span<const Export> allExports() {
    return kExports;
}

} // namespace kva
