// The catalogue of flags: one row for each bit that a keyword or a key switches or that the log
// tells. The command line, the menu, its screens and the log's head read it.
#ifndef KVA_CONTROL_FLAGS_H
#define KVA_CONTROL_FLAGS_H

#include "base/settings.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace kva {

// The words that a user switches bits of.
enum class FlagWord { General, Distances, FStatistics, HetRange };

// A flag, a row of the catalogue. Empty texts: the flag has none there.
struct Flag {
    FlagWord Word;
    uint32_t Bit;                            // of that word
    std::string_view Option = {};            // of the command line, whose keywords follow
    std::array<std::string_view, 2> On = {}; // keywords that switch it on, tried in this order
    std::string_view Off = {};               // ... that switches it off, tried before them
    int32_t MenuNumber = -1;                 // the menu whose keys switch it, of Menu; -1: none
    std::string_view Keys = {};              // each character is the key
    const char* Label = "";                  // on a screen, in front of the state
    std::array<const char*, 2> States = {"OFF", "ON"};
    const char* LogOn = "";  // in the log's head, while it is on
    const char* LogOff = ""; // ... while it is off
};

// All flags. The rows of an option stand in the order in which their keywords are tried, so a
// whole word stands before the one letter it begins with.
std::span<const Flag> allFlags();

// The row of a bit that is in the catalogue.
const Flag& flagOf(FlagWord word, uint32_t bit);

// The field of the settings that a word is; Distances: PopDistMask.
uint32_t AnalyseSettings::*maskOf(FlagWord word);

} // namespace kva

#endif
