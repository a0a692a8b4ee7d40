#include "profile/profile_reader.h"

#include "catalogue/load_units.h"
#include "catalogue/text.h"
#include "profile/ini_file.h"
#include "profile/profile.h"
#include "profile/profile_io.h"
#include "profile/profile_lookup.h"
#include "profile/profile_numbers.h"
#include "profile/side_work.h"
#include "profile/unit_index.h"
#include "startup/paths.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace vantrel {

namespace {

std::string TextOrThrow(const std::string& path) {
    FileText file = ReadProfileFile(path);
    if (!file.ok()) throw ProfileError("Cannot read '" + path + "': " + file.error + ".");
    return std::move(file.data);
}

void StoreClamped(vtUnit& unit, float weight, float limit, const Definitions& defs) {
    unit.Weight = weight;
    unit.Limit = limit;
    auto weightMax = static_cast<float>(defs.Option(optWeightMax));
    auto limitMax = static_cast<float>(defs.Option(optLimitMax));
    if (unit.Weight > weightMax) unit.Weight = weightMax;
    if (unit.Limit > limitMax) unit.Limit = limitMax;
}

// The units after which the progress is shown: those where
// floor(i / n * 100), computed in doubles, is 20, 50, 90 or 100. That value
// never falls as i grows, so each is a run of units, found by bisection.
class ProgressSteps {
  public:
    explicit ProgressSteps(int n) : n_(n) {
        for (int percent : {20, 50, 90, 100})
            runs_.push_back({First(percent), First(percent + 1)});
    }
    // Asked for i = 1, 2, ... in turn.
    bool At(int i) {
        while (run_ < runs_.size() && i >= runs_[run_].second)
            ++run_;
        return run_ < runs_.size() && i >= runs_[run_].first;
    }

  private:
    int Percent(int i) const {
        return static_cast<int>(std::floor(static_cast<double>(i) / n_ * 100.0));
    }
    // The first unit at or past `percent` (n + 1 when none).
    int First(int percent) const {
        int lo = 1, hi = n_ + 1;
        while (lo < hi) {
            int mid = lo + (hi - lo) / 2;
            if (Percent(mid) >= percent)
                hi = mid;
            else
                lo = mid + 1;
        }
        return lo;
    }
    int n_;
    std::vector<std::pair<int, int>> runs_;
    std::size_t run_ = 0;
};

// Merging reads into a copy of the catalogue. Assigned whole, the old copy's
// strings are reused.
void CopyForMerge(Definitions& defs) {
    defs.SavedUnits = defs.Units;
    defs.SavedUnits[0] = vtUnit{};
}

// The frame both readers share; a merge has copied the catalogue first.
// `valuesOf(i)` gives unit i's weight and limit.
template <class ValuesOf>
void ReadInto(ProfileContext& ctx, const std::string& path, const std::string& text, bool merge,
              bool ownFormat, ValuesOf valuesOf) {
    Definitions& defs = ctx.defs;
    const int n = defs.Units.UBound();
    ctx.progress.SetMaximum(n);
    RecordArray<vtUnit>& target = merge ? defs.SavedUnits : defs.Units;
    ProgressSteps steps(n);
    for (int i = 1; i <= n; ++i) {
        auto [weight, limit] = valuesOf(i);
        StoreClamped(target[i], weight, limit, defs);
        if (steps.At(i)) {
            ctx.progress.SetValue(i);
            ctx.progress.Repaint();
        }
    }

    HeaderForm form = ownFormat && !merge ? HeaderForm::FirstLine : HeaderForm::Joined;
    defs.LoadedAIName = HeaderField(text, "Name:", form);
    if (TrimSpaces(defs.LoadedAIName).empty()) defs.LoadedAIName = FileNameDefault(path);
    if (merge) return;

    std::string author = HeaderField(text, "Auth:", form);
    if (TrimSpaces(author).empty()) author = "N/A";
    ctx.fields.SetAIName(SettingsNameOf(defs.LoadedAIName));
    ctx.fields.SetBanner(ctx.fields.AIName() + " AI");
    ctx.fields.SetAuthor(author);
}

// Status line common to both readers. The callers apply the build set only
// once the profile itself has been read, so an unreadable file changes nothing.
void BeginRead(ProfileContext& ctx, const std::string& name) {
    std::string fileName = name;
    ctx.progress.SetStatus("Processing... '" + StripPath(fileName) + "'");
    ctx.progress.SetValue(0);
    ctx.progress.Repaint();
}

// The text of a profile's build-set file, when it has one. An unreadable file
// reads like one without sections: every unit is included.
std::optional<std::string> BuildSetFileText(const std::string& profilePath) {
    std::string setPath = BuildSetPath(profilePath);
    if (!IsRegularFile(setPath)) return std::nullopt;
    return ReadProfileFile(setPath).data;
}

// A profile file and its build-set file, read whole.
ProfileText ReadProfileText(const std::string& path) {
    return {path, TextOrThrow(path), BuildSetFileText(path)};
}

// Include per unit from its "Set" value, `valueOf(i)` for unit i.
template <class ValueOf> void ApplyBuildSet(Definitions& defs, ValueOf valueOf) {
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const std::optional<std::string_view>& value = valueOf(i);
        defs.Units[i].Include = !(value && EqualsNoCase(*value, "DON'T BUILD;"));
    }
}

std::vector<std::string> UnitNames(const Definitions& defs) {
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(defs.Units.UBound()));
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        names.push_back(defs.Units[i].UnitName);
    return names;
}

} // namespace

std::string HeaderField(std::string_view text, std::string_view key, HeaderForm form) {
    std::string raw;
    if (auto field = GetFieldInText(text, key, 1, ":", "//")) {
        raw = *field;
    } else if (std::size_t p = text.find(key); p != std::string_view::npos) {
        std::size_t start = p + key.size();
        std::size_t end = text.find("\r\n", start);
        raw = std::string(text.substr(start, end == std::string_view::npos ? end : end - start));
    }
    if (form == HeaderForm::FirstLine) return TrimSpaces(raw.substr(0, raw.find("\r\n")));
    return TrimSpaces(ReplaceAll(raw, "\r\n", ""));
}

std::string FileNameDefault(const std::string& path) {
    std::string copy = path;
    std::string name = StripPath(copy);
    return name.size() >= 4 ? name.substr(0, name.size() - 4) : std::string();
}

std::string SettingsNameOf(std::string_view aiName) {
    return TrimSpaces(ReplaceAll(aiName, "AI", ""));
}

std::string BuildSetPath(const std::string& profilePath) {
    return (profilePath.size() >= 4 ? profilePath.substr(0, profilePath.size() - 4)
                                    : std::string()) +
           ".set";
}

namespace {
void ApplyBuildSetText(Definitions& defs, const std::string& text) {
    auto values = FindInSections(text, UnitNames(defs), "Set");
    ApplyBuildSet(defs, [&](int i) { return values[static_cast<std::size_t>(i - 1)]; });
}
} // namespace

void ReadBuildSet(Definitions& defs, const std::string& profilePath) {
    if (std::optional<std::string> text = BuildSetFileText(profilePath))
        ApplyBuildSetText(defs, *text);
}

void ReadAI(ProfileContext& ctx, const std::string& path, bool merge) {
    ReadAI(ctx, ReadProfileText(path), merge);
}

void ReadTessalyAI(ProfileContext& ctx, const std::string& path, bool merge) {
    ReadTessalyAI(ctx, ReadProfileText(path), merge);
}

void ReadAI(ProfileContext& ctx, const ProfileText& profile, bool merge) {
    BeginRead(ctx, profile.name);
    const std::string& text = profile.text;
    const UnitIndex& index = IndexOfUnits(ctx.defs);
    const std::string sep = DecimalSeparator();
    // While the profile is searched, the helper thread copies the catalogue
    // (merge) or applies the build set (open). The search reads only the
    // text and the index, the other work only the catalogue and the build set.
    // Should the search fail, the side work's destructor waits for it.
    SideWork aside([&] {
        Definitions& defs = ctx.defs;
        if (merge) {
            CopyForMerge(defs);
        } else if (!profile.buildSet) {
            return;
        } else if (index.AnyEndBlanks()) {
            // Section names never have blanks at an end; such a catalogue
            // name is looked up the long way.
            ApplyBuildSetText(defs, *profile.buildSet);
        } else {
            auto bySlot = FindInSections(*profile.buildSet, index.Table(), "Set");
            ApplyBuildSet(defs, [&](int i) {
                return bySlot[index.Slot(static_cast<std::size_t>(i - 1))];
            });
        }
    });
    const ProfileLookup lookup(text, index, sep);
    aside.Wait();
    ReadInto(ctx, profile.name, text, merge, true, [&](int i) {
        auto k = static_cast<std::size_t>(i - 1);
        return std::pair{lookup.Weight(k), lookup.Limit(k)};
    });
}

void ReadTessalyAI(ProfileContext& ctx, const ProfileText& profile, bool merge) {
    BeginRead(ctx, profile.name);
    if (merge)
        CopyForMerge(ctx.defs);
    else if (profile.buildSet)
        ApplyBuildSetText(ctx.defs, *profile.buildSet);
    IniIndex ini(profile.text);
    const std::string sep = DecimalSeparator();
    // A value that is not a number reads like one in our own format: its digits.
    ReadInto(ctx, profile.name, profile.text, merge, false, [&](int i) {
        std::string section = UCase(ctx.defs.Units[i].UnitName + ";");
        return std::pair{ProfileNumber(ini.Get(section, "Weight", "0"), sep),
                         ProfileNumber(ini.Get(section, "Limit", "0"), sep)};
    });
}

} // namespace vantrel
