#include "catalogue/load_units.h"

#include "base/paths.h"
#include "base/text.h"

#include <algorithm>
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

namespace {

struct UnitField {
    std::string_view key; // as the exact reading searches it, "=" included
    std::uint8_t occurrence;
    std::string vtUnit::*member;
};
const UnitField UnitFields[] = {
    {"Description=", 1, &vtUnit::Description},
    {"Name=", 2, &vtUnit::Name},
    {"Side=", 1, &vtUnit::Side},
    {"TEDClass=", 1, &vtUnit::TEDClass},
    {"UnitName=", 1, &vtUnit::UnitName},
};

// Position just after the "[UNITINFO]" header (any case), npos without one.
std::size_t AfterUnitInfoHeader(std::string_view text) {
    constexpr std::string_view header = "[UNITINFO]";
    for (std::size_t at = text.find('['); at != std::string_view::npos;
         at = text.find('[', at + 1))
        if (EqualsNoCase(text.substr(at, header.size()), header)) return at + header.size();
    return std::string_view::npos;
}

// Calls take(key, value) for each statement of the unit's own block as the
// game reads it: a key is the word at the start of a statement (after "{",
// ";" or a line break, blanks skipped) up to its "="; the value runs to the
// next ";" or the line's end; both lose surrounding blanks. Comments and the
// statements of blocks nested inside are passed over.
template <class Take> void ForEachUnitInfoStatement(std::string_view text, Take&& take) {
    std::size_t i = AfterUnitInfoHeader(text);
    if (i == std::string_view::npos || (i = text.find('{', i)) == std::string_view::npos) return;
    ++i;
    int depth = 1;
    while (i < text.size()) {
        const char c = text[i];
        if (IsBlankChar(c) || c == ';') {
            ++i;
        } else if (c == '{' || c == '}') {
            depth += c == '{' ? 1 : -1;
            if (depth == 0) return;
            ++i;
        } else if (text.substr(i, 2) == "//") {
            i = text.find('\n', i);
        } else if (text.substr(i, 2) == "/*") {
            i = text.find("*/", i + 2);
            if (i != std::string_view::npos) i += 2;
        } else {
            // A statement: its key runs to "=", its value to ";" or the line's end.
            const std::size_t eq = text.find_first_of("=;\n{}", i);
            if (eq == std::string_view::npos) return;
            if (text[eq] != '=') {
                i = text[eq] == ';' || text[eq] == '\n' ? eq + 1 : eq;
                continue;
            }
            const std::size_t end = std::min(text.find_first_of(";\n", eq + 1), text.size());
            if (depth == 1)
                take(TrimBlanks(text.substr(i, eq - i)),
                     TrimBlanks(text.substr(eq + 1, end - eq - 1)));
            i = end + 1;
        }
    }
}

} // namespace

void ReadUnitFields(std::string_view text, vtUnit& unit) {
    bool anyEmpty = false;
    for (const UnitField& f : UnitFields) {
        if (auto v = GetFieldInText(text, f.key, f.occurrence, "=", ";")) unit.*f.member = *v;
        anyEmpty = anyEmpty || (unit.*f.member).empty();
    }
    if (!anyEmpty) return;
    // A field the exact reading leaves empty is read again as the game reads
    // it (keys of the unit's own block, any case): the first statement wins.
    vtUnit found;
    ForEachUnitInfoStatement(text, [&](std::string_view key, std::string_view value) {
        for (const UnitField& f : UnitFields)
            if (EqualsNoCase(key, f.key.substr(0, f.key.size() - 1)) && (found.*f.member).empty())
                found.*f.member = std::string(value);
    });
    for (const UnitField& f : UnitFields)
        if ((unit.*f.member).empty()) unit.*f.member = std::move(found.*f.member);
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
    defs.UnitFiles = UnitsFolder(unitsDir);
    // One unit per name: a name the folder holds in two spellings is one file.
    std::vector<std::string> files = defs.UnitFiles.Names("*.fbi");
    defs.Units.Dim(static_cast<int>(files.size()));
    defs.Races.Dim(0);
    int n = 0;
    for (const std::string& file : files) {
        ++n;
        vtUnit& unit = defs.Units[n];
        // One read per file; an unreadable or oversized file leaves every field empty.
        if (auto text = ReadWholeFile(JoinPath(unitsDir, file))) ReadUnitFields(*text, unit);
        unit.Build = true;
        unit.Include = true;
        if (random && defs.Options.Random)
            ApplyStartupRandom(unit, defs.Options.WeightMax, *random);
        if (progress) {
            progress->SetStatus("Processing... " + ProperCase(unit.Side) + " " + unit.Name);
            progress->AddValue(2);
            progress->Repaint();
        }
        AddSide(defs.Races, unit.Side);
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
    if (defs.Options.Extract || ctx.shell.IsRestart()) {
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
