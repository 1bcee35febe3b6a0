#include "base/console.h"

#include <gtest/gtest.h>
#include <sstream>
#include <thread>

using namespace kva;

TEST(Console, DropsEverythingWhereNoStreamIsNamed) {
    const ConsoleTo nobody(nullptr);
    console() << "lost" << std::endl;
    std::ostringstream told;
    const ConsoleTo stream(&told);
    console() << "kept";
    EXPECT_EQ(told.str(), "kept");
}

TEST(Console, IsTheOneBeforeWhenANamedOneEnds) {
    std::ostringstream outer;
    std::ostringstream inner;
    const ConsoleTo first(&outer);
    {
        const ConsoleTo second(&inner);
        console() << "b";
    }
    console() << "a";
    EXPECT_EQ(outer.str() + inner.str(), "ab");
}

TEST(Console, OfAnotherThreadIsNotNamed) {
    std::ostringstream told;
    const ConsoleTo stream(&told);
    std::thread([] { console() << "lost"; }).join();
    EXPECT_EQ(told.str(), "");
}
