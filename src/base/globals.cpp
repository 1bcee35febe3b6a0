#include "base/globals.h"

namespace kva {

const char NEWLINE[10] = "\n";
const char TABNEWLINE[10] = "\t\n";
double Fehlerwert = -2.0;

} // namespace kva
