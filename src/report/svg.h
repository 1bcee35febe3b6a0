// Pictures as SVG, their scales and colours.
#ifndef KVA_REPORT_SVG_H
#define KVA_REPORT_SVG_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

// --- Colours that the colour-blind can tell ----------------------------------------------------

constexpr std::string_view kInk = "#222222";
constexpr std::string_view kPale = "#d9d9d9";
constexpr std::string_view kGrey = "#8a8a8a";
constexpr std::string_view kBlue = "#0072B2";
constexpr std::string_view kSky = "#56B4E9";
constexpr std::string_view kOrange = "#D55E00";

// Of the colours of Okabe and Ito (2008), without the yellow that is faint on white.
std::string_view groupColour(std::size_t group);

// The colour of a share of 0 to 1 on the scale viridis, "#440154" to "#fde725".
std::string heatColour(double share);

// Black or white, whichever can be read on heatColour(share).
std::string_view inkOn(double share);

// --- Scales -----------------------------------------------------------------------------------

// Maps values of [low, high] to places of [from, to].
struct Scale {
    double low = 0;
    double high = 1;
    double from = 0;
    double to = 1;

    double at(double value) const { return from + (value - low) / (high - low) * (to - from); }
};

// Round numbers within [low, high], about `count` of them.
std::vector<double> roundTicks(double low, double high, int count);

// --- Pictures ---------------------------------------------------------------------------------

struct TextStyle {
    std::string_view anchor = "start"; // or "middle", "end"
    double size = 12;
    std::string_view fill = kInk;
    bool upright = false; // turned by a quarter to the left
    bool bold = false;
};

// Texts are data and made safe here.
class Svg {
  public:
    // alt: what the picture shows, in words.
    Svg(double width, double height, std::string_view alt);

    void line(double x1, double y1, double x2, double y2, std::string_view stroke,
              double width = 1);
    void rect(double x, double y, double width, double height, std::string_view fill,
              std::string_view tip = {});
    void circle(double x, double y, double radius, std::string_view fill,
                std::string_view tip = {});
    // One of six shapes, filled, about 2 * radius wide.
    void mark(std::size_t shape, double x, double y, double radius, std::string_view fill,
              std::string_view tip = {});
    void path(std::string_view d, std::string_view stroke, double width = 1);
    void text(double x, double y, std::string_view text, const TextStyle& style = {});

    std::string finish();

  private:
    void close(std::string_view name, std::string_view tip);

    std::string Out;
};

// A coordinate with two decimals at most.
std::string place(double value);

// A name of at most so many characters; a longer one ends with "…".
std::string shortName(std::string_view name, std::size_t characters);

// About the width of a text in a size of letters.
double textWidth(std::string_view text, double size);

} // namespace kva

#endif
