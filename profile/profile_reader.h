// Pieces of the profile readers that callers and tests use on their own.
#pragma once

#include <string>
#include <string_view>

namespace vantrel {

// How a header field's value is cleaned up.
enum class HeaderForm {
    FirstLine, // the part before the first CR LF, trimmed of spaces (opening our own format)
    Joined,    // every CR LF removed, trimmed of spaces (merging, Tessaly files)
};

// The "Auth:" or "Name:" field of a profile text. The value runs from the
// key's colon to the next "//"; without a "//" after the key, to the end of
// the key's line. Empty when the key (matched exactly) is missing.
std::string HeaderField(std::string_view text, std::string_view key, HeaderForm form);

// The AI name a file gives when its "Name:" field is empty: the file name
// without folder and without its last four characters ("" when shorter).
std::string FileNameDefault(const std::string& path);

// The Settings name of an AI name: every "AI" removed, trimmed of spaces.
std::string SettingsNameOf(std::string_view aiName);

} // namespace vantrel
