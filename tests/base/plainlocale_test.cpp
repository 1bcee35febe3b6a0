#include "base/plainlocale.h"

#include <gtest/gtest.h>
#include <langinfo.h>
#include <string>

using namespace kva;

// The locale of a thread shows in its character set, which "C" and "C.UTF-8" have different ones
// of.
TEST(PlainLocale, IsCUntilItsEnd) {
    const locale_t other = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
    if (other == nullptr) {
        GTEST_SKIP() << "no locale C.UTF-8";
    }
    const locale_t before = uselocale(other);
    {
        const PlainLocale plain;
        EXPECT_NE(nl_langinfo(CODESET), std::string("UTF-8"));
        EXPECT_STREQ(localeconv()->decimal_point, ".");
    }
    EXPECT_EQ(localeOfThread(), other);
    EXPECT_STREQ(nl_langinfo(CODESET), "UTF-8");
    uselocale(before);
    freelocale(other);
}
