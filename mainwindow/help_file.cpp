#include "mainwindow/help_file.h"

#include "startup/paths.h"

#include <filesystem>
#include <system_error>

namespace vantrel {

std::vector<std::string> HelpSourceCandidates(const std::string& exeDir) {
    if (exeDir.empty()) return {};
    const std::string up = JoinPath(exeDir, "..");
    return {JoinPath(JoinPath(up, "share/vantrel"), HelpFileName),
            JoinPath(JoinPath(up, "data"), HelpFileName)};
}

std::string EnsureHelpFile(const std::string& appDir, const std::vector<std::string>& candidates) {
    const std::string target = WithTrailingSep(appDir) + HelpFileName;
    if (IsRegularFile(target)) return target;
    for (const std::string& source : candidates) {
        if (!IsRegularFile(source)) continue;
        std::error_code ec;
        if (std::filesystem::copy_file(source, target, ec) && !ec) return target;
        return source; // a read-only program folder: show the installed copy
    }
    return "";
}

} // namespace vantrel
