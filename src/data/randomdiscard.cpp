#include "data/randomdiscard.h"

#include "data/allelcount.h"

namespace kva {

namespace {

// The mean of `sum` over the replicates, or the plain value.
template <class Plain>
double replicateMean(const AllelCount& table, double AllelCount::*sum, Plain plain) {
    return table.isHaploid() && table.RDDurchlauf >= 1 ? table.*sum / table.RDDurchlauf : plain();
}

} // namespace

double rdHet(const AllelCount& table) {
    return replicateMean(table, &AllelCount::RDHet, [&] { return table.CalcHet(); });
}

double rdMean(const AllelCount& table) {
    return replicateMean(table, &AllelCount::RDMean, [&] { return table.CalcMean(); });
}

double rdVar(const AllelCount& table, double mean) {
    return replicateMean(table, &AllelCount::RDVar, [&] { return table.CalcVar(mean); });
}

double rdAlleles(const AllelCount& table) {
    return replicateMean(table, &AllelCount::RDAlleleSumme,
                         [&] { return table.AnzAllele > 0 ? double(table.AnzAllele) : -1.0; });
}

} // namespace kva
