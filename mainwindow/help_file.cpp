#include "mainwindow/help_file.h"

#include "base/paths.h"
#include "base/staged_file.h"
#include "profile/profile.h"

namespace vantrel {

std::string EnsureHelpFile(const std::string& appDir, std::string_view builtIn) {
    const std::string target = WithTrailingSep(appDir) + HelpFileName;
    if (IsRegularFile(target)) return target;
    if (builtIn.empty()) return "";
    try {
        ReplaceFile(target, builtIn);
    } catch (const ProfileError&) {
        return "";
    }
    return target;
}

} // namespace vantrel
