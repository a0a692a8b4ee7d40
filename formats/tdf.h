// Reader for the game's TDF text files (a map's ".ota" and its kin): nested
// "[Name] { key=value; ... }" sections. Keys keep their spelling and are
// looked up without regard to case; a value runs from '=' to ';' (or, when
// the ';' is missing, to the end of its line); "//" and "/* */" comments are
// skipped between entries. Damage never stops the reader: a stray brace, an
// unclosed section or a line that is not key=value is noted and the rest read.
// Names, keys and values are views into the text read, which must outlive them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

struct TdfEntry {
    std::string_view key;   // blanks around it trimmed
    // Blanks around it trimmed. Even when empty it points where it lies in
    // the text, so that it can be replaced without touching any other byte.
    std::string_view value;
};

struct TdfSection {
    std::string_view name; // between the brackets, blanks trimmed
    std::vector<TdfEntry> entries;
    std::vector<TdfSection> sections;

    // The first entry whose key is `key` in any case; nullptr when there is none.
    const TdfEntry* Find(std::string_view key) const;
    // The value of that entry, or "" when there is none.
    std::string Value(std::string_view key) const;
    // The first section directly inside this one named `sectionName` in any case.
    const TdfSection* FindSection(std::string_view sectionName) const;
};

struct TdfDocument {
    TdfSection root; // what lies outside any section, and the top sections
    // What was skipped or mended, each with its line ("line 7: ...").
    std::vector<std::string> problems;
};

// Sections nested deeper than this are skipped whole (with a note).
inline constexpr int TdfMaxDepth = 64;
// At most this many problems are described; a last one counts the rest.
inline constexpr std::size_t TdfMaxProblems = 50;

TdfDocument ReadTdf(std::string_view text);

} // namespace vantrel
