// The entries of a profile in our own format, found the one way the reader
// and the check both use.
#pragma once

#include "base/text.h"

#include <cstddef>
#include <string_view>

namespace vantrel {

inline constexpr std::string_view WeightKey = "WEIGHT ", LimitKey = "LIMIT ";

// An entry: a "WEIGHT " or "LIMIT " anywhere in the upper-cased text; its
// line runs from the keyword to the next line end (CR LF, LF or a lone CR;
// the text's end when none follows).
struct ProfileEntry {
    std::size_t at = std::string_view::npos;
    std::size_t lineEnd = std::string_view::npos;
    bool weight = false;

    std::size_t NameAt() const { return at + (weight ? WeightKey.size() : LimitKey.size()); }
};

// Calls `each(entry)` for every entry of the upper-cased text, in order.
template <class Each> void ForEachEntry(std::string_view upper, Each each) {
    std::size_t lineEnd = 0; // the line end of the last entry
    for (std::size_t p = 0; p < upper.size(); ++p) {
        if (upper[p] != 'W' && upper[p] != 'L') continue;
        const bool weight = upper.substr(p, WeightKey.size()) == WeightKey;
        if (!weight && upper.substr(p, LimitKey.size()) != LimitKey) continue;
        if (p >= lineEnd) lineEnd = LineEnd(upper, p); // never on the old one: a line break
        each(ProfileEntry{p, lineEnd, weight});
    }
}

} // namespace vantrel
