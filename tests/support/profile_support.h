// Helpers for the profile tests: scratch folders, files, catalogues and ports.
#pragma once

#include "support/test_support.h"

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "profile/profile.h"

#include <ctime>
#include <string>
#include <vector>

namespace vantrel::test {

using ScratchDir = TempDir;

void WriteBytes(const std::string& path, const std::string& bytes);
std::string ReadBytes(const std::string& path); // "" when missing
// "a\nb\n" -> "a\r\nb\r\n"
std::string Crlf(const std::string& lfText);

struct UnitSpec {
    std::string UnitName;
    std::string TEDClass;
    bool Include = true;
    float Weight = 0;
    float Limit = 0;
};
// A catalogue of the given units (Build true, Name = UnitName, Side "ARM").
void FillCatalogue(Definitions& defs, const std::vector<UnitSpec>& units);

// A complete context over its own ports.
struct ProfileRig {
    Definitions defs;
    RecordingProgress progress;
    PlainSettingsFields fields;
    FixedClock clock{2026, 11, 19};
    ProfileContext ctx{defs, progress, fields, clock};
};

} // namespace vantrel::test
