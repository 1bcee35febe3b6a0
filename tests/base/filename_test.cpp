#include "base/filename.h"

#include <gtest/gtest.h>

using namespace kva;

TEST(FileNameOf, OrdinaryNamesStay) {
    EXPECT_EQ(fileNameOf("North"), "North");
    EXPECT_EQ(fileNameOf("St. Gallen (2)"), "St. Gallen (2)");
    EXPECT_EQ(fileNameOf("..."), "...");
    EXPECT_EQ(fileNameOf(".hidden"), ".hidden");
}

TEST(FileNameOf, SlashesBecomeUnderscores) {
    EXPECT_EQ(fileNameOf("/etc/passwd"), "_etc_passwd");
    EXPECT_EQ(fileNameOf("../x"), ".._x");
    EXPECT_EQ(fileNameOf("/"), "_");
}

TEST(FileNameOf, NamesOfFoldersAndNoNameGetAnUnderscore) {
    EXPECT_EQ(fileNameOf(""), "_");
    EXPECT_EQ(fileNameOf("."), "_.");
    EXPECT_EQ(fileNameOf(".."), "_..");
}
