// CFactorial: a growing table of n!, and products of consecutive numbers that no table could
// hold: the binomial coefficients of the allelic richness are made of both.
#ifndef KVA_STATS_CFACTORIAL_H
#define KVA_STATS_CFACTORIAL_H

#include <vector>

namespace kva {

class CFactorial {
  public:
    static constexpr int kLargest = 125; // the last cell that calc() gives; wanted, see there

    // n!, filling the table up to n first if it is too short. -1.0 for a negative n,
    // -2.0 for n >= 126: wanted, the table ends at 125! though a double holds 170!. The allelic
    // richness asks for 122! at most and takes products from there on.
    double calc(int n);

    // Fills the table up to n, going on from its last cell. An n of 1 or less sets it to 0! and
    // 1!, and so cuts a longer one.
    void calcValue(int n);

    // Sets the table to n + 1 cells, n >= 0, and so cuts a longer one; new cells are 0.0. An
    // empty table gets 0! and 1! first.
    void setupTable(int n);

    // a x (a+1) x ... x b in extended precision, multiplied in that order, without the table, for
    // a above 0; a if b <= a. A product beyond the range is inf.
    static long double Range(int a, int b);

    std::vector<double> Tabelle; // cell n, from 0, holds n!; empty until the first call
};

// The one table of the program, global state; it grows as needed and lasts as long as the process.
// Once it is full, calc() may be called in several threads at once.
extern CFactorial Factorial;

} // namespace kva

#endif
