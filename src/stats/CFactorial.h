// CFactorial: a growing table of n!, and products of consecutive numbers that no
// table could hold.
#ifndef KVA_STATS_CFACTORIAL_H
#define KVA_STATS_CFACTORIAL_H

#include <vector>

namespace kva {

class CFactorial {
  public:
    // n!, filling the table up to n first if it is too short. -1.0 for a negative n,
    // -2.0 for n >= 126.
    double calc(int n);

    // Fills the table up to n (at least two cells), going on from its last cell.
    void calcValue(int n);

    // Sets the table to n + 1 cells, n >= 0; new cells are 0.0. An empty table gets
    // 0! and 1!.
    void setupTable(int n);

    // a x (a+1) x ... x b in extended precision, multiplied in that order, without
    // the table; a if b <= a.
    static long double Range(int a, int b);

    std::vector<double> Tabelle; // cell n holds n!
};

// The one table of the program; it lives and grows for the whole run.
extern CFactorial Factorial;

} // namespace kva

#endif
