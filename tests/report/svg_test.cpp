#include "report/svg.h"

#include "report/numbertext.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace kva {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(NumberText, HasAPointAndNoLocale) {
    EXPECT_EQ(fixedText(1.25, 1), "1.2"); // 1.25 is exact: half to even
    EXPECT_EQ(fixedText(-0.5, 3), "-0.500");
    EXPECT_EQ(shortText(0.00012345678, 4), "0.0001235");
    EXPECT_EQ(shortText(2, 6), "2");
    EXPECT_EQ(fixedText(std::nan(""), 2), "");
}

TEST(Place, IsRoundedToHundredthsWithoutMinusZero) {
    EXPECT_EQ(place(12.3456), "12.35");
    EXPECT_EQ(place(-0.001), "0");
    EXPECT_EQ(place(12345.67), "12345.67");
}

TEST(RoundTicks, AreRoundNumbersWithinTheRange) {
    EXPECT_THAT(roundTicks(0, 1, 2), ElementsAre(0, 0.5, 1));
    EXPECT_THAT(roundTicks(88, 107, 4), ElementsAre(90, 95, 100, 105));
    EXPECT_THAT(roundTicks(-0.31, 0.29, 3),
                ElementsAre(DoubleNear(-0.2, 1e-12), 0, DoubleNear(0.2, 1e-12)));
    EXPECT_THAT(roundTicks(3, 3, 4), ElementsAre(3));
}

TEST(Scale, GoesFromOneEndToTheOther) {
    const Scale scale{10, 20, 100, 0};
    EXPECT_DOUBLE_EQ(scale.at(10), 100);
    EXPECT_DOUBLE_EQ(scale.at(15), 50);
}

TEST(HeatColour, IsViridis) {
    EXPECT_EQ(heatColour(0), "#440154");
    EXPECT_EQ(heatColour(0.5), "#21918c");
    EXPECT_EQ(heatColour(1), "#fde725");
    EXPECT_EQ(heatColour(7), "#fde725");
}

TEST(ShortName, CountsCharactersNotBytes) {
    EXPECT_EQ(shortName("Zürich", 6), "Zürich");
    EXPECT_EQ(shortName("Zürich", 3), "Zü…");
}

TEST(Svg, EscapesTexts) {
    Svg svg(10, 10, "<alt>");
    svg.text(1, 2, "<b>&");
    svg.circle(1, 2, 3, kBlue, "\"tip\"");
    const std::string text = svg.finish();
    EXPECT_THAT(text, HasSubstr("&lt;b&gt;&amp;</text>"));
    EXPECT_THAT(text, HasSubstr("<title>&quot;tip&quot;</title>"));
    EXPECT_THAT(text, HasSubstr("aria-label=\"&lt;alt&gt;\""));
    EXPECT_THAT(text, Not(HasSubstr("<b>")));
}

} // namespace
} // namespace kva
