#include "profile/profile_check.h"

#include "base/text.h"
#include "formats/ini_file.h"
#include "profile/profile_numbers.h"
#include "profile/profile_writer.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace vantrel {

namespace {

// One WEIGHT or LIMIT line (our own format) or one Tessaly section or key.
struct Entry {
    std::string name;
    bool read = false;   // Tessaly: a section the reader can find ("NAME;")
    bool weight = false; // a WEIGHT entry (Tessaly: a "Weight" key)
    bool value = false;  // carries a value (Tessaly sections do not)
    std::size_t pos = 0; // where the line's text starts
    int line = 0;
    std::string lineText, valueText;
};

bool StartsNoCase(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && EqualsNoCase(s.substr(0, prefix.size()), prefix);
}

// Calls `each(lineText, offsetOfText, lineNumber)` for every line, trimmed of blanks.
template <class Each> void ForLines(std::string_view text, Each each) {
    int number = 0;
    for (std::size_t start = 0; start <= text.size();) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        std::size_t lead = 0;
        while (lead < line.size() && IsBlankChar(line[lead]))
            ++lead;
        while (line.size() > lead && IsBlankChar(line.back()))
            line.remove_suffix(1);
        each(line.substr(lead), start + lead, ++number);
        start = end + 1;
    }
}

// Lines reading "WEIGHT NAME value" or "LIMIT NAME value" in any letter case.
std::vector<Entry> OwnEntries(std::string_view text) {
    std::vector<Entry> entries;
    ForLines(text, [&](std::string_view line, std::size_t pos, int number) {
        bool weight = StartsNoCase(line, "WEIGHT ");
        if (!weight && !StartsNoCase(line, "LIMIT ")) return;
        std::string_view rest = line.substr(weight ? 7 : 6);
        std::size_t nameEnd = 0;
        while (nameEnd < rest.size() && rest[nameEnd] != ' ' && rest[nameEnd] != '\t')
            ++nameEnd;
        if (nameEnd == 0) return;
        entries.push_back({std::string(rest.substr(0, nameEnd)), false, weight, true, pos, number,
                           std::string(line), TrimSpaces(rest.substr(nameEnd))});
    });
    return entries;
}

// Sections "[NAME;]" and their "Weight" and "Limit" keys.
std::vector<Entry> TessalyEntries(std::string_view text) {
    std::vector<Entry> entries;
    std::string section;
    bool read = false;
    ForLines(text, [&](std::string_view line, std::size_t pos, int number) {
        std::size_t close = line.rfind(']');
        if (!line.empty() && line[0] == '[' && close != std::string_view::npos) {
            section = std::string(line.substr(1, close - 1));
            read = !section.empty() && section.back() == ';';
            if (read) section.pop_back();
            entries.push_back({section, read, false, false, pos, number, std::string(line), ""});
            return;
        }
        std::size_t eq = line.find('=');
        std::string key = TrimBlanks(line.substr(0, eq));
        bool weight = EqualsNoCase(key, "Weight");
        if (entries.empty() || eq == std::string_view::npos ||
            (!weight && !EqualsNoCase(key, "Limit")))
            return;
        entries.push_back({section, read, weight, true, pos, number, std::string(line),
                           TrimBlanks(line.substr(eq + 1))});
    });
    return entries;
}

using ReadAt =
    std::map<std::pair<std::size_t, bool>, std::vector<int>>; // (position, weight) -> units

} // namespace

std::vector<CheckFinding> CheckProfile(const Definitions& defs, const ProfileText& profile,
                                       bool tessaly, std::string_view sep) {
    const std::string_view text = profile.text;
    const std::vector<Entry> entries = tessaly ? TessalyEntries(text) : OwnEntries(text);
    std::set<std::string> unitNames; // upper-cased
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        unitNames.insert(UCase(defs.Units[i].UnitName));

    // The entries our own reader takes for each unit.
    ReadAt readAt;
    if (!tessaly) {
        const std::vector<EntriesRead> read = EntriesReadFor(defs, text);
        for (int i = 1; i <= defs.Units.UBound(); ++i) {
            const EntriesRead& r = read[static_cast<std::size_t>(i - 1)];
            if (r.weight != std::string::npos) readAt[{r.weight, true}].push_back(i);
            if (r.limit != std::string::npos) readAt[{r.limit, false}].push_back(i);
        }
    }

    // A name the reader reads as its own unit's entry.
    auto known = [&](const Entry& e) {
        return (!tessaly || e.read) && unitNames.count(UCase(e.name));
    };
    std::vector<CheckFinding> unknown, shadowed, missing, notNumbers;
    std::set<std::string> seen, pairs, weighted;
    for (const Entry& e : entries) {
        if (e.weight && (!tessaly || e.read)) weighted.insert(UCase(e.name));
        if (e.value && !ParseRegionalNumber(e.valueText, sep))
            notNumbers.push_back({CheckFinding::NotANumber, "", "", e.line, e.lineText});
        auto readers = readAt.find({e.pos, e.weight});
        if (known(e) || !e.value || readers == readAt.end()) continue;
        for (int i : readers->second) {
            const std::string& unitName = defs.Units[i].UnitName;
            if (pairs.insert(UCase(e.name) + '\t' + UCase(unitName)).second)
                shadowed.push_back({CheckFinding::Shadowed, e.name, unitName, 0, ""});
        }
        seen.insert(UCase(e.name));
    }
    for (const Entry& e : entries)
        if (!known(e) && seen.insert(UCase(e.name)).second)
            unknown.push_back({CheckFinding::Unknown, e.name, "", 0, ""});

    // Included units: as the build set says, else as they are.
    std::optional<IniIndex> sets;
    if (profile.buildSet) sets.emplace(*profile.buildSet);
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        bool included = u.Include;
        if (sets) {
            std::optional<std::string> set = sets->Find(u.UnitName, "Set");
            included = !(set && EqualsNoCase(*set, "DON'T BUILD;"));
        }
        if (included && !u.UnitName.empty() && ProfileSection(u.TEDClass) >= 0 &&
            !weighted.count(UCase(u.UnitName)))
            missing.push_back({CheckFinding::Missing, u.UnitName, "", 0, ""});
    }
    for (auto* part : {&shadowed, &missing, &notNumbers})
        unknown.insert(unknown.end(), part->begin(), part->end());
    return unknown;
}

std::string CheckLine(const CheckFinding& f) {
    switch (f.kind) {
    case CheckFinding::Unknown:
        return "unknown\t" + f.name;
    case CheckFinding::Shadowed:
        return "shadowed\t" + f.name + "\t" + f.unitName;
    case CheckFinding::Missing:
        return "missing\t" + f.name;
    case CheckFinding::NotANumber:
        return "not-a-number\t" + std::to_string(f.line) + "\t" + f.text;
    }
    return {};
}

} // namespace vantrel
