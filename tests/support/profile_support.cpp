#include "support/profile_support.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vantrel::test {

namespace fs = std::filesystem;

void WriteBytes(const std::string& path, const std::string& bytes) {
    WriteText(path, bytes);
}

std::string ReadBytes(const std::string& path) {
    return ReadText(path);
}

std::string Crlf(const std::string& lfText) {
    std::string out;
    for (char c : lfText) {
        if (c == '\n') out.push_back('\r');
        out.push_back(c);
    }
    return out;
}

void FillCatalogue(Definitions& defs, const std::vector<UnitSpec>& units) {
    defs.Units.Dim(static_cast<int>(units.size()));
    for (std::size_t k = 0; k < units.size(); ++k) {
        vtUnit& u = defs.Units[static_cast<int>(k) + 1];
        u.Name = units[k].UnitName;
        u.UnitName = units[k].UnitName;
        u.TEDClass = units[k].TEDClass;
        u.Side = "ARM";
        u.Include = units[k].Include;
        u.Build = true;
        u.Weight = units[k].Weight;
        u.Limit = units[k].Limit;
    }
    defs.SavedUnits.Dim(defs.Units.UBound());
}

} // namespace vantrel::test
