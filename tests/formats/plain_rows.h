// The rows of the Genepop export beside their plain reading.
#ifndef KVA_TESTS_FORMATS_PLAIN_ROWS_H
#define KVA_TESTS_FORMATS_PLAIN_ROWS_H

#include "data/lociclass.h"

#include <string>

namespace kva_test {

// The first row of GenepopRows that is not that of MakeGenePopLine, as text; "random stream" if it
// is left at another place; empty if all is the same. pool: the tables of all populations together.
// The stream of each individual has a seed of its own, from `seed` on.
std::string rowDifference(const kva::Datensatz& data, const kva::LocusTables& pool, long seed);

} // namespace kva_test

#endif
