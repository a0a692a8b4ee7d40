// The two profile readers and the build-set reader.
//
// Our own format is not parsed: for each unit the upper-cased text is
// searched for "WEIGHT " + name and "LIMIT " + name. The weight comes from
// the first weight entry; the limit from the first limit entry at or after
// the first "PLAN HARD" (wherever that stands, a header included), else,
// for a name without lower-case letters, from the first one anywhere. Names
// match a prefix: ARMCOM also finds "LIMIT ARMCOMX 3", whose value text
// "X 3" gives 3. A value runs to the end of its line: a line ends at CR LF,
// LF or a lone CR. Values are kept as read, also above the maxima. Rather than one search per unit,
// one pass over the text visits every entry and looks the text after its keyword up among the
// catalogue's names, once per distinct name length, so that a name finds
// exactly the entries that a search for it would.
#include "base/paths.h"
#include "base/staged_file.h"
#include "base/text.h"
#include "catalogue/load_units.h"
#include "formats/ini_file.h"
#include "profile/profile.h"
#include "profile/profile_entries.h"
#include "profile/profile_numbers.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vantrel {

namespace {

constexpr std::size_t npos = std::string_view::npos;
using Entry = ProfileEntry;

// The first entries of one upper-cased name.
struct FirstEntries {
    Entry weight;
    Entry limitFromHard; // at or after the first "PLAN HARD"
    Entry limit;         // anywhere
};

// Visits every "WEIGHT " and "LIMIT " in the upper-cased text in order and
// notes, for each name the text after the keyword starts with, the entry if
// it is the first of its kind for that name.
void FindFirstEntries(std::string_view upper,
                      std::unordered_map<std::string_view, FirstEntries>& names) {
    std::vector<std::size_t> lengths;
    for (const auto& [name, entries] : names)
        lengths.push_back(name.size());
    std::sort(lengths.begin(), lengths.end());
    lengths.erase(std::unique(lengths.begin(), lengths.end()), lengths.end());

    std::size_t hard = upper.find("PLAN HARD");
    if (hard == npos) hard = 0;
    ForEachEntry(upper, [&](const Entry& entry) {
        const std::size_t nameAt = entry.NameAt();
        for (std::size_t length : lengths) {
            if (length > upper.size() - nameAt) break;
            auto it = names.find(upper.substr(nameAt, length));
            if (it == names.end()) continue;
            FirstEntries& first = it->second;
            if (entry.weight) {
                if (first.weight.at == npos) first.weight = entry;
            } else {
                if (first.limit.at == npos) first.limit = entry;
                if (entry.at >= hard && first.limitFromHard.at == npos) first.limitFromHard = entry;
            }
        }
    });
}

// The number an entry gives: the rest of its line after the keyword and
// name, trimmed of spaces (empty when the line ends inside the key), read
// as ProfileNumber reads it. No entry gives 0.
float EntryValue(std::string_view upper, const Entry& entry, std::size_t keyLength,
                 std::string_view sep) {
    if (entry.at == npos) return 0.0f;
    std::string_view value;
    if (entry.lineEnd - entry.at > keyLength)
        value = upper.substr(entry.at + keyLength, entry.lineEnd - entry.at - keyLength);
    while (!value.empty() && value.front() == ' ')
        value.remove_prefix(1);
    while (!value.empty() && value.back() == ' ')
        value.remove_suffix(1);
    return ProfileNumber(value, sep);
}

bool HasLowerCase(std::string_view name) {
    return std::any_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// How a header field's value is cleaned up.
enum class HeaderForm {
    FirstLine, // the part before the first line end, trimmed of spaces (opening our own format)
    Joined,    // every CR and LF removed, trimmed of spaces (merging, Tessaly files)
};

// The "Auth:" or "Name:" field of a profile text. The value runs from the
// key's colon to the next "//"; without a "//" after the key, to the end of
// the key's line. Empty when the key (matched exactly) is missing.
std::string HeaderField(std::string_view text, std::string_view key, HeaderForm form) {
    std::string raw;
    if (auto field = GetFieldInText(text, key, 1, ":", "//")) {
        raw = *field;
    } else if (std::size_t p = text.find(key); p != npos) {
        std::size_t start = p + key.size();
        raw = std::string(text.substr(start, LineEnd(text, start) - start));
    }
    if (form == HeaderForm::FirstLine) return TrimSpaces(raw.substr(0, LineEnd(raw, 0)));
    return TrimSpaces(WithoutLineBreaks(raw));
}

// The file name without folder and without its last four characters ("" when shorter).
std::string FileNameDefault(const std::string& path) {
    std::string copy = path;
    std::string name = StripPath(copy);
    return name.size() >= 4 ? name.substr(0, name.size() - 4) : std::string();
}

// Status line and bar as both readers start.
void BeginRead(ProfileContext& ctx, const std::string& name) {
    std::string fileName = name;
    ctx.progress.SetStatus("Processing... '" + StripPath(fileName) + "'");
    ctx.progress.SetValue(0);
    ctx.progress.Repaint();
}

std::string TextOrThrow(const std::string& path) {
    FileText file = ReadProfileFile(path);
    if (!file.ok()) throw ProfileError("Cannot read '" + path + "': " + file.error + ".");
    return std::move(file.data);
}

// The text of a profile's build-set file, when it has one. An unreadable file
// reads like one without sections: every unit is included.
std::optional<std::string> BuildSetFileText(const std::string& profilePath) {
    std::string setPath = BuildSetPath(profilePath);
    if (!IsRegularFile(setPath)) return std::nullopt;
    return ReadProfileFile(setPath).data;
}

// The profile at `path` as the in-memory readers take it; the build set is
// read only when opening. Throws ProfileError when the profile is unreadable.
ProfileText ProfileFile(const std::string& path, bool merge) {
    ProfileText profile{path, TextOrThrow(path), std::nullopt};
    if (!merge) profile.buildSet = BuildSetFileText(path);
    return profile;
}

void ApplyBuildSet(Definitions& defs, std::string text) {
    IniIndex ini(std::move(text));
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        std::optional<std::string> value = ini.Find(defs.Units[i].UnitName, "Set");
        defs.Units[i].Include = !(value && EqualsNoCase(*value, "DON'T BUILD;"));
    }
}

// Opening applies the build set, when there is one; merging reads into a
// copy of the catalogue (assigned whole, the old copy's strings are reused).
void Prepare(Definitions& defs, const ProfileText& profile, bool merge) {
    if (merge) {
        defs.SavedUnits = defs.Units;
        defs.SavedUnits[0] = vtUnit{};
    } else if (profile.buildSet) {
        ApplyBuildSet(defs, *profile.buildSet);
    }
}

// Stores every unit's values, `valuesOf(i)` for unit i, as read (values
// above the maxima included), with the progress points both readers share;
// then takes the header fields.
template <class ValuesOf>
void Store(ProfileContext& ctx, const ProfileText& profile, bool merge, HeaderForm form,
           ValuesOf valuesOf) {
    Definitions& defs = ctx.defs;
    const int n = defs.Units.UBound();
    ctx.progress.SetMaximum(n);
    RecordArray<vtUnit>& target = merge ? defs.SavedUnits : defs.Units;
    for (int i = 1; i <= n; ++i) {
        std::tie(target[i].Weight, target[i].Limit) = valuesOf(i);
        const auto percent = static_cast<int>(std::floor(static_cast<double>(i) / n * 100.0));
        if (percent == 20 || percent == 50 || percent == 90 || percent == 100) {
            ctx.progress.SetValue(i);
            ctx.progress.Repaint();
        }
    }

    defs.Profile.LoadedAIName = HeaderField(profile.text, "Name:", form);
    if (TrimSpaces(defs.Profile.LoadedAIName).empty()) defs.Profile.LoadedAIName = FileNameDefault(profile.name);
    if (merge) return;

    std::string author = HeaderField(profile.text, "Auth:", form);
    if (TrimSpaces(author).empty()) author = "N/A";
    ctx.fields.SetAIName(TrimSpaces(ReplaceAll(defs.Profile.LoadedAIName, "AI", "")));
    ctx.fields.SetBanner(ctx.fields.AIName() + " AI");
    ctx.fields.SetAuthor(author);
}

// The weight and limit entries each unit reads (unit i at [i - 1]) in the
// upper-cased text.
std::vector<std::pair<Entry, Entry>> UnitEntries(const Definitions& defs, std::string_view upper) {
    std::vector<std::string> names; // upper-cased, per unit
    names.reserve(static_cast<std::size_t>(defs.Units.UBound()));
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        names.push_back(UCase(defs.Units[i].UnitName));
    std::unordered_map<std::string_view, FirstEntries> first;
    for (const std::string& name : names)
        first.try_emplace(name);
    FindFirstEntries(upper, first);

    std::vector<std::pair<Entry, Entry>> entries;
    entries.reserve(names.size());
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const FirstEntries& found = first.at(names[static_cast<std::size_t>(i - 1)]);
        // The search from the start of the text compares the name as it
        // stands with the upper-cased text: a name with lower-case letters
        // is never found by it.
        const Entry& limit = found.limitFromHard.at != npos || HasLowerCase(defs.Units[i].UnitName)
                                 ? found.limitFromHard
                                 : found.limit;
        entries.emplace_back(found.weight, limit);
    }
    return entries;
}

void ReadOwnFormat(ProfileContext& ctx, const ProfileText& profile, bool merge) {
    Definitions& defs = ctx.defs;
    Prepare(defs, profile, merge);
    const std::string upper = UCase(profile.text);
    const std::vector<std::pair<Entry, Entry>> entries = UnitEntries(defs, upper);

    const std::string sep = DecimalSeparator();
    const HeaderForm form = merge ? HeaderForm::Joined : HeaderForm::FirstLine;
    Store(ctx, profile, merge, form, [&](int i) {
        const auto& [weight, limit] = entries[static_cast<std::size_t>(i - 1)];
        const std::size_t nameLength = defs.Units[i].UnitName.size();
        return std::pair{EntryValue(upper, weight, WeightKey.size() + nameLength, sep),
                         EntryValue(upper, limit, LimitKey.size() + nameLength, sep)};
    });
}

void ReadTessalyFormat(ProfileContext& ctx, const ProfileText& profile, bool merge) {
    Prepare(ctx.defs, profile, merge);
    IniIndex ini(profile.text);
    const std::string sep = DecimalSeparator();
    // A value that is not a number reads like one in our own format: its digits.
    Store(ctx, profile, merge, HeaderForm::Joined, [&](int i) {
        std::string section = UCase(ctx.defs.Units[i].UnitName + ";");
        return std::pair{ProfileNumber(ini.Get(section, "Weight", "0"), sep),
                         ProfileNumber(ini.Get(section, "Limit", "0"), sep)};
    });
}

} // namespace

std::string BuildSetPath(const std::string& profilePath) {
    return (profilePath.size() >= 4 ? profilePath.substr(0, profilePath.size() - 4)
                                    : std::string()) +
           ".set";
}

void ReadBuildSet(Definitions& defs, const std::string& profilePath) {
    if (std::optional<std::string> text = BuildSetFileText(profilePath))
        ApplyBuildSet(defs, std::move(*text));
}

// The path readers read the files first, so an unreadable profile changes nothing.
void ReadAI(ProfileContext& ctx, const std::string& path, bool merge) {
    BeginRead(ctx, path);
    ReadOwnFormat(ctx, ProfileFile(path, merge), merge);
}

void ReadTessalyAI(ProfileContext& ctx, const std::string& path, bool merge) {
    BeginRead(ctx, path);
    ReadTessalyFormat(ctx, ProfileFile(path, merge), merge);
}

std::vector<EntriesRead> EntriesReadFor(const Definitions& defs, std::string_view upper) {
    std::vector<EntriesRead> read;
    read.reserve(static_cast<std::size_t>(defs.Units.UBound()));
    for (const auto& [weight, limit] : UnitEntries(defs, upper))
        read.push_back({weight.at, limit.at});
    return read;
}

void ReadAI(ProfileContext& ctx, const ProfileText& profile, bool merge) {
    BeginRead(ctx, profile.name);
    ReadOwnFormat(ctx, profile, merge);
}

void ReadTessalyAI(ProfileContext& ctx, const ProfileText& profile, bool merge) {
    BeginRead(ctx, profile.name);
    ReadTessalyFormat(ctx, profile, merge);
}

int ValuesAboveMaxima(const Definitions& defs, const RecordArray<vtUnit>& units) {
    const auto weightMax = static_cast<float>(defs.Options.WeightMax);
    const auto limitMax = static_cast<float>(defs.Options.LimitMax);
    int above = 0;
    for (int i = 1; i <= units.UBound(); ++i)
        above += (units[i].Weight > weightMax) + (units[i].Limit > limitMax);
    return above;
}

std::string AboveMaximaText(int count) {
    if (count == 0) return {};
    return std::to_string(count) + (count == 1 ? " value is" : " values are") +
           " above the maxima of the Options (kept as read).";
}

} // namespace vantrel
