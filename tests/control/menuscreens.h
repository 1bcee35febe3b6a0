// The texts of the menu, for its tests: each screen as it stands with the settings of the start,
// and the typing of keys.
#ifndef KVA_TESTS_CONTROL_MENUSCREENS_H
#define KVA_TESTS_CONTROL_MENUSCREENS_H

#include "control/CMenu.h"

#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

namespace kva_test {

using namespace kva;

// Standard input holds the text, and then ends, until the end of the scope.
class Typed {
  public:
    explicit Typed(const std::string& keys) : text(keys), before(std::cin.rdbuf(&text)) {}
    ~Typed() { std::cin.rdbuf(before); }
    Typed(const Typed&) = delete;
    Typed& operator=(const Typed&) = delete;
    Typed(Typed&&) = delete;
    Typed& operator=(Typed&&) = delete;

    // What nobody has read yet.
    std::string rest() { return {std::istreambuf_iterator<char>(&text), {}}; }

  private:
    std::stringbuf text;
    std::streambuf* before; // the true one, not owned
};

// What a key did.
struct Pressed {
    int result;          // of AnalyseCommand
    std::string console; // what it printed
    std::string rest;    // what it left to read
};

// One AnalyseCommand with `keys` typed ahead.
Pressed press(CMenuAllg& menu, const std::string& keys);

// The console of a whole session, from the welcome to the end.
std::string session(CMenuAllg& menu, const std::string& keys);

// `text` with `now` in the place of `old`, which must stand there once. Throws otherwise.
std::string changed(std::string text, std::string_view old, std::string_view now);

// A session's first lines, without a screen.
extern const char* const kWelcome;

// The end of a session.
extern const char* const kHalted;

extern const char* const kUnknown;

// Screens with the settings of the start, from the line end before the rule to the last colon.
extern const char* const kMainScreen;
extern const char* const kDistanceScreen;
extern const char* const kDistanceSettingsScreen;
extern const char* const kFStatisticsScreen;
extern const char* const kConversionScreen;
extern const char* const kHetRangeScreen;

// The main screen with a file chosen, and with its data loaded.
std::string chosenScreen(const std::string& file);
std::string loadedScreen(const std::string& file);

} // namespace kva_test

#endif
