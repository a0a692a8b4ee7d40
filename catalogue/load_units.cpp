#include "catalogue/load_units.h"

#include "catalogue/text.h"
#include "startup/paths.h"

#include <cmath>

namespace vantrel {

std::optional<std::string> GetFieldInText(std::string_view text, std::string_view Key,
                                          std::uint8_t Occurrence, std::string_view StartDelim,
                                          std::string_view EndDelim) {
    int times = Occurrence < 1 ? 1 : Occurrence;
    // p is a 1-based position, 0 meaning "not found"; each search starts at p + 1.
    std::size_t p = 0;
    for (int i = 0; i < times; ++i) {
        std::size_t hit = text.find(Key, p); // from character p + 1 (0-based p)
        p = hit == std::string_view::npos ? 0 : hit + 1;
    }
    if (p == 0) return std::string();
    std::size_t a = text.find(StartDelim, p - 1);
    if (a == std::string_view::npos) return std::nullopt;
    std::size_t b = text.find(EndDelim, a);
    if (b == std::string_view::npos) return std::nullopt;
    // The text strictly between the two: b - a - 1 characters from a + 1.
    if (b <= a) return std::string();
    return std::string(text.substr(a + 1, b - a - 1));
}

std::optional<std::string> GetField(const std::string& FileName, std::string_view Key,
                                    std::uint8_t Occurrence, std::string_view StartDelim,
                                    std::string_view EndDelim) {
    auto text = ReadWholeFile(FileName);
    if (!text) return std::nullopt;
    return GetFieldInText(*text, Key, Occurrence, StartDelim, EndDelim);
}

void ReadUnitFields(std::string_view text, vtUnit& unit) {
    struct Field {
        std::string_view key;
        std::uint8_t occurrence;
        std::string vtUnit::*member;
    };
    static const Field fields[] = {
        {"Description=", 1, &vtUnit::Description},
        {"Name=", 2, &vtUnit::Name},
        {"Side=", 1, &vtUnit::Side},
        {"TEDClass=", 1, &vtUnit::TEDClass},
        {"UnitName=", 1, &vtUnit::UnitName},
    };
    for (const Field& f : fields)
        if (auto v = GetFieldInText(text, f.key, f.occurrence, "=", ";")) unit.*f.member = *v;
}

float RoundToHundredths(double value) {
    return static_cast<float>(std::nearbyint(value * 100.0) / 100.0);
}

void ApplyStartupRandom(vtUnit& unit, std::int32_t weightMax, RandomSource& random) {
    unit.Weight = RoundToHundredths(random.Next() * weightMax);
    double r1 = random.Next();
    double r2 = random.Next();
    unit.Limit = static_cast<float>(std::floor(r1 * 3) + std::floor(r2 * 3) + 1);
}

void LoadUnitsFromFolder(Definitions& defs, const std::string& unitsDir, RandomSource* random,
                         Progress* progress) {
    std::vector<std::string> files = ListFiles(unitsDir, "*.fbi");
    defs.Units.Dim(static_cast<int>(files.size()));
    defs.Races.Dim(0);
    int m = 0;
    int n = 0;
    for (const std::string& file : files) {
        ++n;
        vtUnit& unit = defs.Units[n];
        // One read per file; an unreadable or oversized file leaves every field empty.
        if (auto text = ReadWholeFile(JoinPath(unitsDir, file))) ReadUnitFields(*text, unit);
        unit.Build = true;
        unit.Include = true;
        if (random && defs.OptionOn(optRandom))
            ApplyStartupRandom(unit, defs.Option(optWeightMax), *random);
        if (progress) {
            progress->SetStatus("Processing... " + ProperCase(unit.Side) + " " + unit.Name);
            progress->AddValue(2);
            progress->Repaint();
        }
        bool known = false;
        for (int r = 1; r <= m && !known; ++r)
            known = defs.Races[r].Name == unit.Side;
        if (!known) {
            ++m;
            defs.Races[m].Name = unit.Side;
        }
    }
    defs.SavedUnits.Dim(defs.Units.UBound());
}

LoadOutcome LoadUnits(Definitions& defs, LoadContext& ctx) {
    LoadUnitsFromFolder(defs, UnitsDir(defs.AppDir), &ctx.random, &ctx.progress);
    ctx.progress.Close();
    if (defs.Races.UBound() >= 1) return LoadOutcome::Loaded;

    std::string folder = defs.AppDir;
    if (!folder.empty() && folder.back() == PathSep) folder.pop_back();
    const std::string units = folder + PathSep + "Units" + PathSep;
    // A restarted instance never restarts again, whatever it reads.
    if (defs.OptionOn(optExtract) || ctx.shell.IsRestart()) {
        ctx.messages.Inform("No units found. Please extract all available unit files to your '" +
                                units + "' folder.",
                            "Abort", MsgIcon::Critical);
        return LoadOutcome::Abort;
    }
    ctx.settings.Set("Extract", "-1");
    // Restarting helps only when the new instance will read Extract as on.
    if (ctx.settings.Get("Extract", "0") != "-1") {
        const std::string where = ctx.settings.Location();
        ctx.messages.Inform("No units found, and Vantrel cannot store its settings" +
                                (where.empty() ? std::string() : " in '" + where + "'") +
                                ", so it cannot extract them at the next start. Please make the "
                                "settings writable, or extract all available unit files to your '" +
                                units + "' folder.",
                            "Abort", MsgIcon::Critical);
        return LoadOutcome::Abort;
    }
    ctx.shell.RestartSelf();
    return LoadOutcome::Restarted;
}

} // namespace vantrel
