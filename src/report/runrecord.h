// What the record of a run, run.json, tells the report: texts alone, as they stand there.
#ifndef KVA_REPORT_RUNRECORD_H
#define KVA_REPORT_RUNRECORD_H

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kva {

struct RunRecord {
    // A permutation test. Numbers as the record prints them; empty: none.
    struct Test {
        std::string p;      // (hits + 1) / (permutations + 1)
        std::string pError; // its Monte Carlo standard error
        std::string pHolm;  // of pairs: adjusted for their number
        std::string pBh;
    };

    std::string version;   // of the program
    std::string file;      // the data file
    std::string sha256;    // its check sum
    std::string generator; // of the random numbers
    std::string seed;      // empty: none
    std::string threads;
    std::string begun;
    std::string ended;
    std::vector<std::pair<std::string, std::string>> settings; // name and value, in their order
    std::vector<std::string> warnings;
    // By statistic, as in the long table ("fst_pairwise"): those of pairs in the order 1 and 2, 1
    // and 3, ..., 2 and 3; those of loci in the order of the data.
    std::map<std::string, std::vector<Test>, std::less<>> tests;

    // The value of a setting; empty: there is none of that name.
    std::string_view setting(std::string_view name) const {
        for (const auto& [key, value] : settings) {
            if (key == name) {
                return value;
            }
        }
        return {};
    }
};

} // namespace kva

#endif
