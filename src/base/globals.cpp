#include "base/globals.h"

const char NEWLINE[10] = "\n";
const char TABNEWLINE[10] = "\t\n";
double Fehlerwert = -2.0;
