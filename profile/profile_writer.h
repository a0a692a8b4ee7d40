// The text of an AI profile and of its build-set file, as SaveAI writes them.
#pragma once

#include "catalogue/definitions.h"

#include <ctime>
#include <string>
#include <string_view>

namespace vantrel {

struct ProfileHeader {
    std::string date;   // MM-DD-YYYY
    std::string author; // written unchanged
    std::string name;   // the AI name as shown ("Test AI"), written unchanged
};

// The date line's form of a moment, in local time: "11-19-2026".
std::string ProfileDate(std::time_t when);

// The section (0..9) a TEDClass is written under, or -1 when it is none of the
// twelve keywords (compared exactly).
int ProfileSection(std::string_view tedClass);

// The whole profile file: header, proper-cased body, CR LF line ends, the last
// line empty. `sep` is the decimal separator of the number forms.
std::string ProfileFileText(const Definitions& defs, const ProfileHeader& header, std::string_view sep);

// The whole build-set file for the catalogue; `aiName` as shown on the banner.
std::string BuildSetText(const Definitions& defs, const std::string& aiName);

} // namespace vantrel
