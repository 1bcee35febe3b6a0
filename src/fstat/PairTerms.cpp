#include "fstat/PairTerms.h"

namespace kva {

std::unique_ptr<const PairTerms::Page> PairTerms::compute(int32_t copies1, int32_t copies2) {
    auto page = std::make_unique<Page>();
    page->Sizes = pairSizes(copies1, copies2);
    page->Step = copies2;
    if (page->Sizes) {
        page->Near = NearFactors(*page->Sizes);
    }
    for (int32_t c1 = 0; c1 <= copies1; ++c1) {
        for (int32_t c2 = 0; c2 <= copies2; ++c2) {
            TwoDoubles a = {};
            TwoDoubles b = {};
            if (page->Sizes) {
                const double count1 = c1;
                const double count2 = c2;
                alleleTerms(*page->Sizes, TwoDoubles{count1, count1}, TwoDoubles{count2, count2}, a,
                            b);
            }
            page->Terms.push_back({TwoDoubles{a[0], b[0]}});
        }
    }
    return page;
}

} // namespace kva
