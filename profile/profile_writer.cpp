#include "profile/profile_writer.h"

#include "catalogue/text.h"
#include "profile/profile.h"
#include "profile/profile_io.h"
#include "profile/profile_numbers.h"
#include "startup/paths.h"

#include <array>
#include <cstdio>
#include <vector>

namespace vantrel {

namespace {

constexpr std::string_view CRLF = "\r\n";
constexpr int SectionCount = 10;

struct SectionSpec {
    std::string_view title;
    std::string_view keyword1;
    std::string_view keyword2;
};

constexpr std::array<SectionSpec, SectionCount> Sections{{
    {"/ Workers /", "CNSTR", ""},
    {"/ Commanders /", "COMMANDER", ""},
    {"/ Aircraft /", "VTOL", ""},
    {"/ Tanks /", "TANK", ""},
    {"/ Kbots /", "KBOT", ""},
    {"/ Ships, Sub, and Water-Units /", "SHIP", "WATER"},
    {"/ Defense /", "FORT", ""},
    {"/ Resources /", "ENERGY", "METAL"},
    {"/ Plants /", "PLANT", ""},
    {"/ Specialized Units /", "SPECIAL", ""},
}};

// The included units of each section, in catalogue order. A unit's section
// comes from its TEDClass; the catalogue does not change while it is written.
using SectionUnits = std::array<std::vector<int>, SectionCount>;

SectionUnits UnitsBySection(const Definitions& defs) {
    SectionUnits sections;
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        int s = u.Include ? ProfileSection(u.TEDClass) : -1;
        if (s >= 0) sections[static_cast<std::size_t>(s)].push_back(i);
    }
    return sections;
}

// Appends one section: its title, then a line break and an entry per unit.
template <class ValueText>
void AppendSection(std::string& out, const Definitions& defs, std::size_t s,
                   const std::vector<int>& units, std::string_view keyword, bool first,
                   ValueText valueText) {
    out.append(first ? CRLF : "\r\n\r\n").append(Sections[s].title).append(CRLF);
    for (int i : units) {
        const vtUnit& u = defs.Units[i];
        out.append(CRLF).append(keyword).append(u.UnitName).append(" ").append(valueText(u));
    }
}

// Upper-cases the first character and every one after a word break, lower-cases the rest.
void ProperCaseInPlace(char* begin, char* end) {
    bool start = true;
    for (char* c = begin; c != end; ++c) {
        char ch = *c;
        if (start && ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
        if (!start && ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch - 'A' + 'a');
        *c = ch;
        start = ch == '\0' || ch == '\t' || ch == '\n' || ch == '\v' || ch == '\f' || ch == '\r' ||
                ch == ' ';
    }
}

std::string HeaderText(const ProfileHeader& h, const std::string& parentAIs) {
    std::string text = "/ " + std::string(53, '-');
    text.append(CRLF).append("Date: ").append(h.date);
    text.append(CRLF).append("Auth: ").append(h.author);
    text.append(CRLF).append("Name: ").append(h.name);
    text.append(CRLF).append("Used: Vantrel Build ");
    text.append(std::to_string(VANTREL_VERSION_MAJOR) + "." +
                std::to_string(VANTREL_VERSION_MINOR) + "." +
                std::to_string(VANTREL_VERSION_PATCH));
    if (!parentAIs.empty()) {
        std::string_view parents = parentAIs;
        parents.remove_suffix(std::min<std::size_t>(2, parents.size()));
        text.append(CRLF).append(" Parent AIs: ").append(parents);
    }
    text.append(CRLF).append(" ").append(std::string(53, '-')).append("/");
    text.append(CRLF);
    text.append(CRLF).append("/ Build Priorities  /");
    return text;
}

struct PlanSpec {
    std::string_view heading;
    OptionIndex percent;
    bool hard;
    int progress;
};

constexpr std::array<PlanSpec, 3> Plans{{
    {"plan easy", optEasyLimit, false, 40},
    {"plan medium", optMediumLimit, false, 60},
    {"plan hard", optHardLimit, true, 80},
}};

// Builds the text while reporting progress after each block.
std::string ProfileTextWithProgress(const Definitions& defs, const ProfileHeader& header,
                                    std::string_view sep, Progress* progress) {
    auto step = [&](int value) {
        if (!progress) return;
        progress->SetValue(value);
        progress->Repaint();
    };
    const SectionUnits sections = UnitsBySection(defs);
    std::size_t entries = 0, nameBytes = 0;
    for (const auto& units : sections)
        for (int i : units) {
            ++entries;
            nameBytes += defs.Units[i].UnitName.size();
        }

    std::string out = HeaderText(header, defs.ParentAIs);
    const std::size_t bodyStart = out.size();
    out.reserve(bodyStart + 4 * (nameBytes + 32 * entries) + 4096);
    for (std::size_t s = 0; s < SectionCount; ++s)
        AppendSection(out, defs, s, sections[s], "WEIGHT ", s == 0,
                      [&](const vtUnit& u) { return WeightText(u.Weight, sep); });
    step(20);

    for (const PlanSpec& plan : Plans) {
        int percent = defs.Option(plan.percent);
        out.append("\r\n\r\n").append(plan.heading);
        for (std::size_t s = 0; s < SectionCount; ++s)
            AppendSection(out, defs, s, sections[s], "LIMIT ", false, [&](const vtUnit& u) {
                return plan.hard ? HardLimitText(percent, u.Limit, sep)
                                 : EasyLimitText(percent, u.Limit, sep);
            });
        step(plan.progress);
    }
    ProperCaseInPlace(out.data() + bodyStart, out.data() + out.size());
    return out.append(CRLF);
}

} // namespace

std::string ProfileDate(std::time_t when) {
    std::tm local{};
    localtime_r(&when, &local);
    char buf[32];
    std::snprintf(buf, sizeof buf, "%02d-%02d-%04d", local.tm_mon + 1, local.tm_mday,
                  local.tm_year + 1900);
    return buf;
}

int ProfileSection(std::string_view tedClass) {
    for (std::size_t s = 0; s < SectionCount; ++s)
        if (tedClass == Sections[s].keyword1 ||
            (!Sections[s].keyword2.empty() && tedClass == Sections[s].keyword2))
            return static_cast<int>(s);
    return -1;
}

std::string ProfileText(const Definitions& defs, const ProfileHeader& header,
                        std::string_view sep) {
    return ProfileTextWithProgress(defs, header, sep, nullptr);
}

std::string BuildSetText(const Definitions& defs, const std::string& aiName) {
    std::string text = "[BUILD SET]\r\nAiName=" + aiName + ";";
    std::size_t bytes = 0;
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        bytes += defs.Units[i].UnitName.size() + 24;
    text.reserve(text.size() + bytes + 2);
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        text.append("\r\n[").append(UCase(u.UnitName)).append("]\r\nSet=");
        text.append(u.Include ? "Build;" : "Don't Build;").append(CRLF);
    }
    return text.append(CRLF);
}

void SaveAI(ProfileContext& ctx, const std::string& path) {
    // The progress form closes however the save ends.
    struct CloseProgress {
        Progress& p;
        ~CloseProgress() { p.Close(); }
    } closer{ctx.progress};

    ctx.progress.Show();
    ctx.progress.SetValue(0);
    ProfileHeader header{ProfileDate(ctx.clock.Now()), ctx.fields.Author(), ctx.fields.Banner()};
    ctx.progress.SetMaximum(100);
    std::string fileName = path;
    ctx.progress.SetStatus("Saving ... '" + StripPath(fileName) + "'");

    std::string text = ProfileTextWithProgress(ctx.defs, header, DecimalSeparator(), &ctx.progress);
    ctx.progress.SetValue(100);
    ctx.progress.Repaint();

    // Both files are written in full before either replaces its old version.
    StagedFile profile(path, text);
    StagedFile buildSet(BuildSetPath(path), BuildSetText(ctx.defs, header.name));
    CommitTogether(profile, buildSet);
}

} // namespace vantrel
