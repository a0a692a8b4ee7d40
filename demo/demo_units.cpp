#include "demo/demo_units.h"

#include "demo/pcx_writer.h"

#include <cmath>
#include <fstream>
#include <sys/stat.h>

namespace vantrel::demo {

const std::vector<DemoUnit>& DemoUnits() {
    static const std::vector<DemoUnit> units = {
        // ARM
        {"ARMWARDN", "Warden", "ARM", "COMMANDER", "Field Commander", 1},
        {"ARMFINCH", "Finch", "ARM", "VTOL", "Light Scout Plane", 2},
        {"ARMHERON", "Heron", "ARM", "VTOL", "Bomber", 1},
        {"ARMPALIS", "Palisade", "ARM", "FORT", "Light Laser Tower", 2},
        {"ARMBASTN", "Bastion", "ARM", "FORT", "Heavy Plasma Battery", 1},
        {"ARMSPRIG", "Sprig", "ARM", "KBOT", "Infantry Kbot", 2},
        {"ARMLOPER", "Loper", "ARM", "KBOT", "Rocket Kbot", 1},
        {"ARMSKIFF", "Skiff", "ARM", "SHIP", "Patrol Boat", 2},
        {"ARMTIDE", "Tidewatch", "ARM", "WATER", "Tidal Generator", 1},
        {"ARMFORGE", "Forge", "ARM", "PLANT", "Kbot Foundry", 2},
        {"ARMYARD", "Slipway", "ARM", "PLANT", "Naval Yard", 1},
        {"ARMSUNRY", "Sunray", "ARM", "ENERGY", "Solar Array", 2},
        {"ARMDRILL", "Drill", "ARM", "METAL", "Ore Extractor", 1},
        {"ARMVEIL", "Veil", "ARM", "SPECIAL", "Radar Jammer", 2},
        {"ARMROVER", "Rover", "ARM", "TANK", "Light Tank", 1},
        {"ARMMULE", "Mule", "ARM", "TANK", "Armoured Carrier", 2},
        {"ARMTINKR", "Tinker", "ARM", "CNSTR", "Construction Kbot", 1},
        {"ARMMASON", "Mason", "ARM", "CNSTR", "Construction Rover", 2},
        // CORE
        {"CORTYRNT", "Tyrant", "CORE", "COMMANDER", "Battle Commander", 2},
        {"CORWASP", "Wasp", "CORE", "VTOL", "Fighter", 1},
        {"CORRAVEN", "Raven", "CORE", "VTOL", "Gunship", 2},
        {"CORSPIKE", "Spike", "CORE", "FORT", "Flak Tower", 1},
        {"CORMAUL", "Maul", "CORE", "FORT", "Artillery Emplacement", 2},
        {"CORGRUNT", "Grunt", "CORE", "KBOT", "Assault Kbot", 1},
        {"CORHOUND", "Hound", "CORE", "KBOT", "Raider Kbot", 2},
        {"CORBARGE", "Barge", "CORE", "SHIP", "Gunboat", 1},
        {"CORPUMP", "Pump", "CORE", "WATER", "Underwater Extractor", 2},
        {"CORFOUND", "Foundry", "CORE", "PLANT", "Vehicle Works", 1},
        {"CORFURNC", "Furnace", "CORE", "ENERGY", "Fusion Furnace", 2},
        {"CORQUARY", "Quarry", "CORE", "METAL", "Metal Quarry", 1},
        {"CORSHADE", "Shade", "CORE", "SPECIAL", "Cloaking Field", 2},
        {"CORBRUTE", "Brute", "CORE", "TANK", "Heavy Tank", 1},
        {"CORSCRAP", "Scrapper", "CORE", "TANK", "Salvage Tank", 0},
        {"CORWRGHT", "Wright", "CORE", "CNSTR", "Construction Vehicle", 2},
        // GOK, a further side
        {"GOKELDER", "Elder", "GOK", "COMMANDER", "Grove Commander", 1},
        {"GOKMOTH", "Moth", "GOK", "VTOL", "Spore Flyer", 2},
        {"GOKTHORN", "Thornwall", "GOK", "FORT", "Bramble Wall", 1},
        {"GOKSTALK", "Stalker", "GOK", "KBOT", "Walking Sapling", 2},
        {"GOKROOT", "Rootling", "GOK", "CNSTR", "Gardener", 1},
        {"GOKBLOOM", "Bloom", "GOK", "ENERGY", "Sun Bloom", 2},
        // Edge cases: no class (shown everywhere), lower-case class and side.
        {"ARMDECOY", "Decoy", "ARM", "", "Inflatable Decoy", 1},
        {"CORTANKL", "Lowrider", "CORE", "tank", "Class written in lower case", 2},
        {"ARMLOWER", "Stray", "arm", "KBOT", "Side written in lower case", 0},
    };
    return units;
}

std::string UnitFileText(const DemoUnit& u) {
    std::string t;
    t += "[UNITINFO]\r\n\t{\r\n";
    t += "\tUnitName=" + u.UnitName + ";\r\n";
    t += "\tVersion=1.0;\r\n";
    t += "\tSide=" + u.Side + ";\r\n";
    t += "\tObjectname=" + u.UnitName + ";\r\n"; // lower-case n: never matches "Name="
    t += "\tName=" + u.Name + ";\r\n";
    t += "\tDescription=" + u.Description + ";\r\n";
    t += "\tBuildCostEnergy=1200;\r\n\tBuildCostMetal=140;\r\n";
    if (!u.TEDClass.empty()) t += "\tTEDClass=" + u.TEDClass + ";\r\n";
    t += "\tFootprintX=2;\r\n\tFootprintZ=2;\r\n\tMaxDamage=900;\r\n";
    t += "\t}\r\n";
    return t;
}

bool WriteFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    return static_cast<bool>(out);
}

namespace {

Rgb SideColour(const std::string& side, int shade) {
    auto c = [&](int r, int g, int b) {
        return Rgb{static_cast<std::uint8_t>(r * shade / 255),
                   static_cast<std::uint8_t>(g * shade / 255),
                   static_cast<std::uint8_t>(b * shade / 255)};
    };
    if (side == "ARM" || side == "arm") return c(70, 120, 230);
    if (side == "CORE") return c(220, 60, 40);
    return c(60, 170, 70);
}

// 0 background, 1 rim, 2 emblem, 3 highlight.
int Shape(const DemoUnit& u, int x, int y, int w, int h) {
    double cx = (x + 0.5) / w - 0.5, cy = (y + 0.5) / h - 0.5;
    double r = std::sqrt(cx * cx + cy * cy);
    if (r > 0.48) return 0;
    if (r > 0.42) return 1;
    unsigned seed = 0;
    for (char ch : u.TEDClass)
        seed = seed * 31 + static_cast<unsigned char>(ch);
    switch (seed % 4) {
    case 0:
        return std::abs(cx) < 0.12 || std::abs(cy) < 0.12 ? 2 : 3; // cross
    case 1:
        return std::abs(cx) + std::abs(cy) < 0.3 ? 2 : 3; // diamond
    case 2:
        return cy > -0.2 && std::abs(cx) < (cy + 0.2) * 0.8 ? 2 : 3; // triangle
    default:
        return r < 0.22 ? 2 : 3; // disc
    }
}

} // namespace

std::string DemoPicture256(const DemoUnit& u, int width, int height) {
    std::array<Rgb, 256> palette{};
    for (int i = 0; i < 64; ++i)
        palette[static_cast<std::size_t>(i)] = SideColour(u.Side, 80 + i * 2);
    palette[200] = {20, 20, 24};
    palette[201] = {230, 230, 210};
    palette[202] = {250, 210, 60};
    std::vector<std::uint8_t> px(static_cast<std::size_t>(width * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int s = Shape(u, x, y, width, height);
            std::uint8_t v = s == 0   ? 200
                             : s == 1 ? 201
                             : s == 2 ? 202
                                      : static_cast<std::uint8_t>(y * 63 / height);
            px[static_cast<std::size_t>(y * width + x)] = v;
        }
    return EncodePcx256(width, height, px, palette);
}

std::string DemoPicture24(const DemoUnit& u, int width, int height) {
    std::vector<Rgb> px(static_cast<std::size_t>(width * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int s = Shape(u, x, y, width, height);
            Rgb c = s == 0   ? Rgb{20, 20, 24}
                    : s == 1 ? Rgb{230, 230, 210}
                    : s == 2 ? Rgb{250, 210, 60}
                             : SideColour(u.Side, 120 + (x + y) * 120 / (width + height));
            px[static_cast<std::size_t>(y * width + x)] = c;
        }
    return EncodePcx24(width, height, px);
}

int WriteDemoProgramFolder(const std::string& appDir) {
    ::mkdir(appDir.c_str(), 0777);
    const std::string units = appDir + "/Units";
    ::mkdir(units.c_str(), 0777);
    int count = 0;
    for (const DemoUnit& u : DemoUnits()) {
        if (WriteFile(units + "/" + u.UnitName + ".fbi", UnitFileText(u))) ++count;
        if (u.picture == 1) WriteFile(units + "/" + u.UnitName + ".pcx", DemoPicture256(u, 64, 64));
        if (u.picture == 2) WriteFile(units + "/" + u.UnitName + ".pcx", DemoPicture24(u, 64, 64));
    }
    // A display name before "UnitName=": the loader then takes the identifier as the name.
    if (WriteFile(units + "/ARMODD.FBI",
                  "[UNITINFO]\r\n\t{\r\n\tName=Oddity;\r\n\tUnitName=ARMODD;\r\n\tSide=ARM;\r\n"
                  "\tDescription=Upper-case file name, name line "
                  "first;\r\n\tTEDClass=SPECIAL;\r\n\t}\r\n"))
        ++count;
    return count;
}

} // namespace vantrel::demo
