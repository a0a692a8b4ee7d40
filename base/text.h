// Small text helpers on single-byte strings (unit files, profiles, menus).
#pragma once

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

// Shortest decimal text that reads back as the same 32-bit float ("1.5", "10", "0.25").
std::string FloatText(float value);

} // namespace vantrel
