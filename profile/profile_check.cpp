#include "profile/profile_check.h"

#include "base/text.h"
#include "formats/ini_file.h"
#include "profile/profile_entries.h"
#include "profile/profile_numbers.h"
#include "profile/profile_writer.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace vantrel {

namespace {

constexpr std::size_t npos = std::string_view::npos;

// Unit names are short: FNV-1a hashes them faster than the library's hash.
struct ShortHash {
    std::size_t operator()(std::string_view s) const {
        std::size_t h = 1469598103934665603ULL;
        for (char c : s)
            h = (h ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
        return h;
    }
};

// Strings looked up by their views.
struct ViewHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
};
template <class T> using ViewMap = std::unordered_map<std::string, T, ViewHash, std::equal_to<>>;
using ViewSet = std::unordered_set<std::string, ViewHash, std::equal_to<>>;

// The number of the line that holds each position, for positions asked in
// increasing order.
class LineCounter {
  public:
    explicit LineCounter(std::string_view text) : text_(text) {}
    int At(std::size_t pos) {
        for (; scanned_ < pos; ++scanned_) {
            const char c = text_[scanned_];
            // CR LF is one break, counted at its LF.
            if (c == '\n' || (c == '\r' && LineBreakLength(text_, scanned_) == 1)) ++line_;
        }
        return line_;
    }
    // [scanned, end) is known to hold no line break (the rest of an entry's line).
    void SkipTo(std::size_t end) { scanned_ = std::max(scanned_, end); }

  private:
    std::string_view text_;
    std::size_t scanned_ = 0;
    int line_ = 1;
};

// One WEIGHT or LIMIT entry (our own format) or one Tessaly section or key,
// as the check sees it.
struct Seen {
    std::string_view name;  // as written
    std::string_view upper; // the name upper-cased
    int line = 0;
    bool named = false;     // the reader can take it for the unit of its name
    bool weight = false;    // a WEIGHT entry (Tessaly: a "Weight" key)
    std::string_view entry; // the entry's text ("" for a Tessaly section: no value)
    std::string_view value; // its value text
    const std::vector<int>* readers = nullptr; // units the reader takes this entry for
};

// Digits only: a number without asking the regional rules (most values are).
bool IsPlainNumber(std::string_view value) {
    return !value.empty() && std::all_of(value.begin(), value.end(),
                                         [](char c) { return c >= '0' && c <= '9'; });
}

CheckFinding Finding(CheckFinding::Kind kind, std::string name, std::string unitName, int line) {
    CheckFinding f;
    f.kind = kind;
    f.name = std::move(name);
    f.unitName = std::move(unitName);
    f.line = line;
    return f;
}

// Sorts what the entries say into findings, entry by entry, keeping only
// what the findings need.
class Findings {
  public:
    Findings(const Definitions& defs, std::string_view sep) : defs_(defs), sep_(sep) {
        for (int i = 1; i <= defs.Units.UBound(); ++i)
            upperNames_.push_back(UCase(defs.Units[i].UnitName));
        for (const std::string& name : upperNames_)
            units_.insert(name);
    }

    bool IsUnit(std::string_view upper) const { return units_.count(upper) != 0; }

    void Add(const Seen& e) {
        if (!e.entry.empty() && !IsPlainNumber(e.value) && !ParseRegionalNumber(e.value, sep_)) {
            CheckFinding& f =
                notNumbers_.emplace_back(Finding(CheckFinding::NotANumber, "", "", e.line));
            f.text = TrimBlanks(e.entry);
            f.value = e.value;
            f.readAs = ProfileNumber(e.value, sep_);
        }
        if (e.named && IsUnit(e.upper)) return;
        if (!e.entry.empty() && e.readers) {
            for (int i : *e.readers) {
                const std::string key = std::string(e.upper) + '\t' + upperNames_[i - 1];
                auto [it, added] = shadowAt_.try_emplace(key, shadowed_.size());
                if (added)
                    shadowed_.push_back(Finding(CheckFinding::Shadowed, std::string(e.name),
                                                defs_.Units[i].UnitName, e.line));
                (e.weight ? shadowed_[it->second].weight : shadowed_[it->second].limit) = true;
            }
            if (shadowing_.find(e.upper) == shadowing_.end()) shadowing_.emplace(e.upper);
            return;
        }
        if (unknownAt_.find(e.upper) != unknownAt_.end()) return;
        unknownAt_.emplace(e.upper, unknown_.size());
        unknown_.push_back(Finding(CheckFinding::Unknown, std::string(e.name), "", e.line));
    }

    // Every finding, the included units without a weight (`hasWeight(i)`
    // false) among them.
    std::vector<CheckFinding> All(const std::optional<std::string>& buildSet,
                                  const std::function<bool(int)>& hasWeight) {
        std::vector<CheckFinding> all;
        // A name that shadows a unit somewhere is not unknown.
        for (CheckFinding& f : unknown_)
            if (!shadowing_.count(UCase(f.name))) all.push_back(std::move(f));
        for (CheckFinding& f : shadowed_)
            all.push_back(std::move(f));
        // Included units: as the build set says, else as they are.
        std::optional<IniIndex> sets;
        if (buildSet) sets.emplace(*buildSet);
        for (int i = 1; i <= defs_.Units.UBound(); ++i) {
            const vtUnit& u = defs_.Units[i];
            bool included = u.Include;
            if (sets) {
                std::optional<std::string> set = sets->Find(u.UnitName, "Set");
                included = !(set && EqualsNoCase(*set, "DON'T BUILD;"));
            }
            if (included && !u.UnitName.empty() && ProfileSection(u.TEDClass) >= 0 && !hasWeight(i))
                all.push_back(Finding(CheckFinding::Missing, u.UnitName, "", 0));
        }
        for (CheckFinding& f : notNumbers_)
            all.push_back(std::move(f));
        return all;
    }

  private:
    const Definitions& defs_;
    std::string_view sep_;
    std::vector<std::string> upperNames_; // unit i at [i - 1]
    std::unordered_set<std::string_view, ShortHash> units_;
    std::vector<CheckFinding> unknown_, shadowed_, notNumbers_;
    ViewMap<std::size_t> unknownAt_, shadowAt_;
    ViewSet shadowing_;
};

// Our own format: every entry the reader visits, with the units it reads from it.
std::vector<CheckFinding> CheckOwnFormat(const Definitions& defs, const ProfileText& profile,
                                         std::string_view sep) {
    const std::string_view text = profile.text;
    const std::string upper = UCase(text);
    const std::vector<EntriesRead> read = EntriesReadFor(defs, upper);
    std::unordered_map<std::size_t, std::vector<int>> readers; // entry position -> units
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const EntriesRead& r = read[static_cast<std::size_t>(i - 1)];
        if (r.weight != npos) readers[r.weight].push_back(i);
        if (r.limit != npos) readers[r.limit].push_back(i);
    }

    Findings findings(defs, sep);
    LineCounter lines(text);
    ForEachEntry(upper, [&](const ProfileEntry& e) {
        const std::size_t nameAt = e.NameAt();
        std::size_t nameEnd = nameAt;
        while (nameEnd < e.lineEnd && upper[nameEnd] != ' ' && upper[nameEnd] != '\t')
            ++nameEnd;
        if (nameEnd == nameAt) return;
        std::string_view value = text.substr(nameEnd, e.lineEnd - nameEnd);
        while (!value.empty() && value.front() == ' ')
            value.remove_prefix(1);
        while (!value.empty() && value.back() == ' ')
            value.remove_suffix(1);
        auto r = readers.find(e.at);
        const int line = lines.At(e.at);
        lines.SkipTo(e.lineEnd);
        findings.Add({text.substr(nameAt, nameEnd - nameAt),
                      std::string_view(upper).substr(nameAt, nameEnd - nameAt), line,
                      true, e.weight, text.substr(e.at, e.lineEnd - e.at), value,
                      r == readers.end() ? nullptr : &r->second});
    });
    return findings.All(profile.buildSet, [&](int i) {
        return read[static_cast<std::size_t>(i - 1)].weight != npos;
    });
}

// Tessaly files: sections "[NAME;]" and their "Weight" and "Limit" keys, read
// as the INI reader reads them.
std::vector<CheckFinding> CheckTessaly(const Definitions& defs, const ProfileText& profile,
                                       std::string_view sep) {
    Findings findings(defs, sep);
    std::string section, upper;
    bool named = false, inSection = false;
    std::unordered_set<std::string> weighted; // upper-cased units with a Weight key
    int number = 0;
    ForEachLine(profile.text, [&](std::string_view line, std::size_t) {
        ++number;
        std::size_t lead = 0;
        while (lead < line.size() && IsBlankChar(line[lead]))
            ++lead;
        while (line.size() > lead && IsBlankChar(line.back()))
            line.remove_suffix(1);
        line.remove_prefix(lead);
        const std::size_t close = line.rfind(']');
        if (!line.empty() && line[0] == '[' && close != npos) {
            section = std::string(line.substr(1, close - 1));
            named = !section.empty() && section.back() == ';';
            if (named) section.pop_back();
            upper = UCase(section);
            inSection = true;
            findings.Add({section, upper, number, named, false, "", "", nullptr});
            return;
        }
        const std::size_t eq = line.find('=');
        const std::string key = TrimBlanks(line.substr(0, eq));
        const bool weight = EqualsNoCase(key, "Weight");
        if (!inSection || eq == npos || (!weight && !EqualsNoCase(key, "Limit"))) return;
        if (weight && named) weighted.insert(upper);
        const std::string value = TrimBlanks(line.substr(eq + 1));
        findings.Add({section, upper, number, named, weight, line, value, nullptr});
    });
    return findings.All(profile.buildSet,
                        [&](int i) { return weighted.count(UCase(defs.Units[i].UnitName)) != 0; });
}

} // namespace

std::vector<CheckFinding> CheckProfile(const Definitions& defs, const ProfileText& profile,
                                       bool tessaly, std::string_view sep) {
    return tessaly ? CheckTessaly(defs, profile, sep) : CheckOwnFormat(defs, profile, sep);
}

std::string CheckLine(const CheckFinding& f) {
    switch (f.kind) {
    case CheckFinding::Unknown:
        return "unknown\t" + Escape(f.name);
    case CheckFinding::Shadowed:
        return "shadowed\t" + Escape(f.name) + "\t" + Escape(f.unitName);
    case CheckFinding::Missing:
        return "missing\t" + Escape(f.name);
    case CheckFinding::NotANumber:
        return "not-a-number\t" + std::to_string(f.line) + "\t" + Escape(f.text);
    }
    return {};
}

std::string CheckSentence(const CheckFinding& f) {
    switch (f.kind) {
    case CheckFinding::Unknown:
        return Escape(f.name) + " names no unit: ignored";
    case CheckFinding::Shadowed:
        return std::string(f.weight && f.limit ? "WEIGHT and LIMIT "
                           : f.weight          ? "WEIGHT "
                                               : "LIMIT ") +
               Escape(f.name) + (f.weight && f.limit ? " are" : " is") + " read as " +
               Escape(f.unitName) + "'s";
    case CheckFinding::Missing:
        return Escape(f.name) + " has no WEIGHT entry: weight 0";
    case CheckFinding::NotANumber:
        return "'" + Escape(f.value) + "' is not a number: read as " + FloatText(f.readAs);
    }
    return {};
}

} // namespace vantrel
