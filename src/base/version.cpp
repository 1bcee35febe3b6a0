#include "base/settings.h"

namespace kva {

const char* const kVersion = KVA_VERSION; // the build names it

} // namespace kva
