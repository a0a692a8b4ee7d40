// The help file "Vant1.hlp" in the program folder.
#pragma once

#include <string>
#include <string_view>

namespace vantrel {

inline constexpr const char* HelpFileName = "Vant1.hlp";

// The help file of the program folder `appDir`. The program carries its help
// text (`builtIn`) and writes it there when the file is missing, so help works
// in every layout, a bare folder with the executable included; a copy that is
// already there (perhaps edited) is kept. Returns "" when the file is missing
// and cannot be written (a read-only folder): the caller then shows `builtIn`.
std::string EnsureHelpFile(const std::string& appDir, std::string_view builtIn);

} // namespace vantrel
