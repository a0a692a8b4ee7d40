// The help file "Vant1.hlp" in the program folder.
#pragma once

#include <string>
#include <vector>

namespace vantrel {

inline constexpr const char* HelpFileName = "Vant1.hlp";

// Places where an installed or built copy of the help file may be found, for
// an executable in `exeDir`: the install share folder, then the source tree's
// data folder beside a build folder.
std::vector<std::string> HelpSourceCandidates(const std::string& exeDir);

// The help file of the program folder `appDir`. When it is missing there, the
// first existing candidate is copied in; when that fails too, the candidate
// itself is used. Returns "" when no help file exists anywhere.
std::string EnsureHelpFile(const std::string& appDir, const std::vector<std::string>& candidates);

} // namespace vantrel
