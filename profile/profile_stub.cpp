// Placeholder until the profile reader and writer land.
#include "profile/profile.h"

namespace vantrel {

void SaveAI(ProfileContext&, const std::string& path) {
    throw ProfileError("Cannot write '" + path + "': the profile writer is not built yet.");
}
void ReadAI(ProfileContext&, const std::string& path, bool) {
    throw ProfileError("Cannot read '" + path + "': the profile reader is not built yet.");
}
void ReadTessalyAI(ProfileContext&, const std::string& path, bool) {
    throw ProfileError("Cannot read '" + path + "': the profile reader is not built yet.");
}
std::string BuildSetPath(const std::string& profilePath) {
    return (profilePath.size() >= 4 ? profilePath.substr(0, profilePath.size() - 4) : std::string()) +
           ".set";
}
void ReadBuildSet(Definitions&, const std::string&) {}
std::string ReadIniValue(const std::string&, const std::string&, const std::string&,
                         const std::string& fallback) {
    return fallback;
}

} // namespace vantrel
