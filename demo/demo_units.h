// The bundled demo data: a program folder whose Units folder holds unit
// files and pictures of our own invention.
#pragma once

#include <string>
#include <vector>

namespace vantrel::demo {

struct DemoUnit {
    std::string UnitName;
    std::string Name;
    std::string Side;
    std::string TEDClass;
    std::string Description;
    int picture = 0; // 0 none, 1 256-colour, 2 24-bit
};

// Every demo unit, in no particular order.
const std::vector<DemoUnit>& DemoUnits();

// The text of a unit file in the game's layout for `u`.
std::string UnitFileText(const DemoUnit& u);

// Writes `text` to `path` (creating or truncating); false on failure.
bool WriteFile(const std::string& path, const std::string& text);

// Creates `appDir` and `appDir`/Units with every demo unit file and picture,
// plus a few odd files that the loader must cope with. Returns the number of
// unit files written.
int WriteDemoProgramFolder(const std::string& appDir);

// A picture for a unit: a badge in the side's colours with a shape per class.
std::string DemoPicture256(const DemoUnit& u, int width, int height);
std::string DemoPicture24(const DemoUnit& u, int width, int height);

} // namespace vantrel::demo
