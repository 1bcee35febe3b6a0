// The report of a result folder whose sheets were changed: a run of all passes on a small data set,
// in which the bytes change cells. Each change is five bytes and some text: the sheet, the line,
// the cell, what is done, the length of the text.
#include "harness.h"

#include "report/report.h"
#include "support/support.h"

#include <algorithm>
#include <kva/kva.h>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using namespace kva;

namespace {

constexpr std::string_view kData = "2\t\t\t2\t\t4\t\n"
                                   "\t\t\t100\t\t80\t\n"
                                   "\t\t\tLocA\tLocA_2\tLocB\tLocB_2\n"
                                   "North\td\t1\t104\t106\t88\t92\n"
                                   "North\td\t1\t104\t104\t88\t88\n"
                                   "South\th\t2\t106\t106\t92\t92\n"
                                   "South\td\t2\t110\t106\t\t\n"
                                   "East\td\t2\t110\t104\t84\t92\n"
                                   "East\td\t2\t108\t104\t84\t88\n";

using Texts = std::map<std::string, std::string, std::less<>>;

Texts resultTexts() {
    const auto data = api::loadText(kData);
    kva_fuzz::require(static_cast<bool>(data), "the data are read");
    api::Settings settings;
    settings.fstPairs = settings.fstGlobal = settings.fstBeta = settings.fstLoci = true;
    settings.permutations = 2;
    settings.populationDistances = settings.individualDistances = {"all"};
    settings.bootstrap = 3;
    settings.hetRange = 2;
    const auto result = api::run(*data, settings);
    kva_fuzz::require(static_cast<bool>(result), "the passes run");
    return result->sheets();
}

// The folder, made once, in which changed sheets are put back.
class Folder {
  public:
    Folder() : Texts(resultTexts()) {
        for (const auto& [name, text] : Texts) {
            std::filesystem::create_directories((Place.path() / name).parent_path());
            kva_test::writeFile(Place / name, text);
            Names.push_back(name);
        }
    }

    const std::filesystem::path& path() const { return Place.path(); }
    const std::string& name(std::size_t k) const { return Names[k % Names.size()]; }
    const std::string& text(const std::string& name) const { return Texts.at(name); }
    void write(const std::string& name, const std::string& text) const {
        kva_test::writeFile(Place / name, text);
    }

  private:
    kva_test::TempFolder Place;
    ::Texts Texts;
    std::vector<std::string> Names;
};

// Where the k-th piece between separators lies, begin and end.
std::pair<std::size_t, std::size_t> piece(std::string_view text, std::size_t k, char separator) {
    const auto pieces =
        static_cast<std::size_t>(std::count(text.begin(), text.end(), separator)) + 1;
    std::size_t begin = 0;
    for (k %= pieces; k > 0; --k) {
        begin = text.find(separator, begin) + 1;
    }
    return {begin, std::min(text.find(separator, begin), text.size())};
}

void change(std::string& text, const uint8_t* how, std::string_view put) {
    const auto [begin, end] = piece(text, how[1], '\n');
    switch (how[3] % 4) {
    case 0: { // a cell
        const auto [from, to] =
            piece(std::string_view(text).substr(begin, end - begin), how[2], '\t');
        text.replace(begin + from, to - from, put);
        break;
    }
    case 1: // a line less
        text.erase(begin, std::min(end + 1, text.size()) - begin);
        break;
    case 2: // a line twice
        text.insert(begin, std::string(text, begin, end - begin) + "\n");
        break;
    default: // the end
        text.resize(begin);
        text.append(put);
    }
}

std::size_t timesIn(std::string_view page, std::string_view words) {
    std::size_t times = 0;
    for (std::size_t at = page.find(words); at != std::string_view::npos;
         at = page.find(words, at + 1)) {
        ++times;
    }
    return times;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const Folder folder;
    Texts changed;
    constexpr std::size_t kHead = 5;
    while (size >= kHead) {
        const std::string& name = folder.name(data[0]);
        const std::size_t length = std::min<std::size_t>(data[4], size - kHead);
        std::string& text = changed.try_emplace(name, folder.text(name)).first->second;
        change(text, data, {reinterpret_cast<const char*>(data) + kHead, length});
        data += kHead + length;
        size -= kHead + length;
    }
    for (const auto& [name, text] : changed) {
        folder.write(name, text);
    }
    const Report report = makeReport({folder.path(), {}, {}, std::nullopt});
    for (const auto& [name, text] : changed) {
        folder.write(name, folder.text(name));
    }
    kva_fuzz::require(report.faults.empty() != report.page.empty(), "a page or what is wrong");
    if (report.faults.empty()) {
        kva_fuzz::require(timesIn(report.page, "<script") == 1, "one script, its own");
        kva_fuzz::require(report.page.ends_with("</html>\n"), "the page is whole");
    }
    return 0;
}
