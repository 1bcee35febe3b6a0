#include "base/nearestword.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace kva {

namespace {

constexpr std::size_t kLongestWord = 64; // bytes of a word that are compared

std::string smallLetters(std::string_view word) {
    std::string small(word.substr(0, kLongestWord));
    for (char& c : small) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return small;
}

// Changes that make b of a (Damerau 1964, neighbours swapped at most once).
std::size_t changes(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1,
                                               std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            const std::size_t other = a[i - 1] == b[j - 1] ? 0 : 1;
            cost[i][j] =
                std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + other});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[a.size()][b.size()];
}

} // namespace

std::string nearestWord(std::string_view word, const std::vector<std::string>& known) {
    const std::string meant = smallLetters(word);
    std::size_t fewest = std::numeric_limits<std::size_t>::max();
    std::string nearest;
    for (const std::string& candidate : known) {
        const std::size_t count = changes(meant, smallLetters(candidate));
        if (count < fewest) {
            fewest = count;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string unknownWord(std::string_view what, std::string_view word,
                        const std::vector<std::string>& known) {
    if (std::find(known.begin(), known.end(), word) != known.end()) {
        return {};
    }
    std::string text = "unknown ";
    text.append(what).append(" '").append(word).append("', the nearest known one is '");
    text += nearestWord(word, known) + "' (known:";
    for (const std::string& candidate : known) {
        text += (&candidate == &known.front() ? " " : ", ") + candidate;
    }
    return text + ")";
}

} // namespace kva
