// Small text helpers on single-byte strings (unit files, profiles, menus).
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vantrel {

// ASCII upper case of one byte; other bytes stay as they are.
inline char UpperChar(char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}
// Space, tab, LF, VT, FF or CR.
inline bool IsBlankChar(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string UCase(std::string_view s); // ASCII letters only, like the game's ANSI files
std::string LCase(std::string_view s);
// Lower-case everything, then upper-case the first character and each
// character after NUL, tab, LF, VT, FF, CR or space.
std::string ProperCase(std::string_view s);
void ProperCaseInPlace(char* begin, char* end); // the same, on the bytes in [begin, end)
// Trim spaces only (not tabs), as the profile rules require.
std::string TrimSpaces(std::string_view s);
// Trim all ASCII white space.
std::string TrimBlanks(std::string_view s);
bool ContainsText(std::string_view haystack, std::string_view needle);
// Case-insensitive (ASCII) equality.
bool EqualsNoCase(std::string_view a, std::string_view b);
// Replace every occurrence of `from` (non-empty) by `to`.
std::string ReplaceAll(std::string_view s, std::string_view from, std::string_view to);

// Line ends: a line ends at CR LF, at LF or at a lone CR.
inline bool IsLineBreakChar(char c) {
    return c == '\r' || c == '\n';
}
// The end of the line that holds `pos`: the first CR or LF at or after it
// (the text's size when none follows).
std::size_t LineEnd(std::string_view text, std::size_t pos);
// The length of the line break at `pos`: 2 for CR LF, 1 for LF or a lone CR, 0 for none.
inline std::size_t LineBreakLength(std::string_view text, std::size_t pos) {
    if (pos >= text.size() || !IsLineBreakChar(text[pos])) return 0;
    return text[pos] == '\r' && pos + 1 < text.size() && text[pos + 1] == '\n' ? 2 : 1;
}
// Calls `each(line, start)` for every line of `text` in order: the line
// without its line break and where it starts. A line break at the very end
// starts no further line.
template <class Each> void ForEachLine(std::string_view text, Each&& each) {
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = LineEnd(text, start);
        each(text.substr(start, end - start), start);
        start = end + std::max<std::size_t>(LineBreakLength(text, end), 1);
    }
}
// The text with every CR and LF removed.
std::string WithoutLineBreaks(std::string_view s);

// The AI's name or author as the program keeps it: control characters (also
// those of the Latin-1 upper half, so CR and LF too) are dropped. The desktop
// program and the command-line program clean both fields through this.
std::string WithoutControlCharacters(std::string_view text);

// A field for a line of TAB-separated output: TAB, CR, LF and backslash as
// \t, \r, \n and \\, other control bytes (below 32, and 127) as \xHH.
std::string Escape(std::string_view s);

// Shortest decimal text that reads back as the same 32-bit float ("1.5", "10", "0.25").
std::string FloatText(float value);

} // namespace vantrel
