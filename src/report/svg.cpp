#include "report/svg.h"

#include "report/html.h"
#include "report/numbertext.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace kva {

namespace {

constexpr std::array<std::string_view, 7> kGroups = {"#0072B2", "#D55E00", "#009E73", "#CC79A7",
                                                     "#56B4E9", "#E69F00", "#222222"};

struct Rgb {
    double r, g, b;
};

// The scale viridis at tenths.
constexpr std::array<Rgb, 11> kViridis = {{{68, 1, 84},
                                           {72, 36, 117},
                                           {65, 68, 135},
                                           {53, 95, 141},
                                           {42, 120, 142},
                                           {33, 145, 140},
                                           {34, 168, 132},
                                           {68, 191, 112},
                                           {122, 209, 81},
                                           {189, 223, 38},
                                           {253, 231, 37}}};

// The start of a UTF-8 character, not a byte that goes on with one.
bool begins(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

} // namespace

std::string_view groupColour(std::size_t group) {
    return kGroups[group % kGroups.size()];
}

std::string heatColour(double share) {
    const double at = std::clamp(share, 0.0, 1.0) * (kViridis.size() - 1);
    const auto low = std::min(static_cast<std::size_t>(at), kViridis.size() - 2);
    const double part = at - static_cast<double>(low);
    const auto mixed = [&](double Rgb::*channel) {
        const double a = kViridis[low].*channel;
        const double b = kViridis[low + 1].*channel;
        return static_cast<unsigned>(std::lround(a + part * (b - a)));
    };
    char text[8];
    (void)std::snprintf(text, sizeof text, "#%02x%02x%02x", mixed(&Rgb::r) & 0xFFU,
                        mixed(&Rgb::g) & 0xFFU, mixed(&Rgb::b) & 0xFFU);
    return text;
}

std::string_view inkOn(double share) {
    constexpr double kLight = 0.45; // from here on black is the stronger contrast
    return share < kLight ? "#ffffff" : "#000000";
}

std::vector<double> roundTicks(double low, double high, int count) {
    if (!(high > low) || !std::isfinite(high - low)) {
        return {low};
    }
    const double raw = (high - low) / count;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    double step = power;
    for (const double factor : {2.0, 5.0, 10.0}) {
        if (step < raw * 0.999) {
            step = factor * power;
        }
    }
    std::vector<double> ticks;
    const double slack = step * 1e-6;
    for (double k = std::ceil((low - slack) / step); k * step <= high + slack; ++k) {
        ticks.push_back(k * step + 0.0); // no -0
    }
    return ticks;
}

std::string place(double value) {
    const double rounded = std::round(value * 100) / 100;
    return shortText(rounded + 0.0, 8);
}

std::string shortName(std::string_view name, std::size_t characters) {
    std::size_t count = 0;
    std::size_t end = 0; // of the characters that stay beside "…"
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (begins(name[i])) {
            ++count;
            end = count == characters ? i : end;
        }
    }
    return count <= characters ? std::string(name) : std::string(name.substr(0, end)) + "…";
}

double textWidth(std::string_view text, double size) {
    const auto characters = std::count_if(text.begin(), text.end(), begins);
    constexpr double kOfSize = 0.6; // width of a letter, rather more than less
    return kOfSize * size * static_cast<double>(characters);
}

Svg::Svg(double width, double height, std::string_view alt) {
    const std::string w = place(width);
    const std::string h = place(height);
    Out = "<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" aria-label=\"" + escaped(alt) +
          "\" width=\"" + w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + " " + h +
          "\" font-family=\"Helvetica, Arial, sans-serif\" font-size=\"12\">\n" + "<rect width=\"" +
          w + "\" height=\"" + h + "\" fill=\"#ffffff\"/>\n";
}

void Svg::close(std::string_view name, std::string_view tip) {
    if (tip.empty()) {
        Out += "/>\n";
        return;
    }
    Out += "><title>" + escaped(tip) + "</title></";
    Out.append(name).append(">\n");
}

void Svg::line(double x1, double y1, double x2, double y2, std::string_view stroke, double width) {
    Out += "<line x1=\"" + place(x1) + "\" y1=\"" + place(y1) + "\" x2=\"" + place(x2) +
           "\" y2=\"" + place(y2) + "\" stroke=\"";
    Out.append(stroke).append("\"");
    Out += width == 1 ? "" : " stroke-width=\"" + place(width) + "\"";
    close("line", {});
}

void Svg::rect(double x, double y, double width, double height, std::string_view fill,
               std::string_view tip) {
    Out += "<rect x=\"" + place(x) + "\" y=\"" + place(y) + "\" width=\"" + place(width) +
           "\" height=\"" + place(height) + "\" fill=\"";
    Out.append(fill).append("\"");
    close("rect", tip);
}

void Svg::circle(double x, double y, double radius, std::string_view fill, std::string_view tip) {
    Out += "<circle cx=\"" + place(x) + "\" cy=\"" + place(y) + "\" r=\"" + place(radius) +
           "\" fill=\"";
    Out.append(fill).append("\"");
    close("circle", tip);
}

void Svg::mark(std::size_t shape, double x, double y, double radius, std::string_view fill,
               std::string_view tip) {
    const std::string centre = "M" + place(x) + " " + place(y);
    const auto step = [radius](double part) { return place(part * radius); };
    std::string d;
    switch (shape % 6) {
    case 0:
        return circle(x, y, radius, fill, tip);
    case 1:
        d = centre + "m" + step(-0.9) + " " + step(-0.9) + "h" + step(1.8) + "v" + step(1.8) + "h" +
            step(-1.8) + "z";
        break;
    case 2:
        d = centre + "m0 " + step(-1.2) + "l" + step(1.15) + " " + step(2.1) + "h" + step(-2.3) +
            "z";
        break;
    case 3:
        d = centre + "m0 " + step(-1.3) + "l" + step(1.3) + " " + step(1.3) + "l" + step(-1.3) +
            " " + step(1.3) + "l" + step(-1.3) + " " + step(-1.3) + "z";
        break;
    case 4:
        d = centre + "m0 " + step(1.2) + "l" + step(1.15) + " " + step(-2.1) + "h" + step(-2.3) +
            "z";
        break;
    default:
        d = centre + "m" + step(-0.4) + " " + step(-1.2) + "h" + step(0.8) + "v" + step(0.8) + "h" +
            step(0.8) + "v" + step(0.8) + "h" + step(-0.8) + "v" + step(0.8) + "h" + step(-0.8) +
            "v" + step(-0.8) + "h" + step(-0.8) + "v" + step(-0.8) + "h" + step(0.8) + "z";
    }
    Out += "<path d=\"" + d + "\" fill=\"";
    Out.append(fill).append("\"");
    close("path", tip);
}

void Svg::path(std::string_view d, std::string_view stroke, double width) {
    Out.append("<path d=\"").append(d).append("\" fill=\"none\" stroke=\"").append(stroke);
    Out += "\" stroke-width=\"" + place(width) + "\"/>\n";
}

void Svg::text(double x, double y, std::string_view text, const TextStyle& style) {
    Out += "<text x=\"" + place(x) + "\" y=\"" + place(y) + "\"";
    if (style.anchor != "start") {
        Out.append(" text-anchor=\"").append(style.anchor).append("\"");
    }
    if (style.size != 12) {
        Out += " font-size=\"" + place(style.size) + "\"";
    }
    Out.append(" fill=\"").append(style.fill).append("\"");
    Out += style.bold ? " font-weight=\"bold\"" : "";
    if (style.upright) {
        Out += " transform=\"rotate(-90 " + place(x) + " " + place(y) + ")\"";
    }
    Out += ">" + escaped(text) + "</text>\n";
}

std::string Svg::finish() {
    return std::move(Out) + "</svg>";
}

} // namespace kva
