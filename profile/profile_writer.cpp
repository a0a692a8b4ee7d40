#include "profile/profile_writer.h"

#include "base/paths.h"
#include "base/staged_file.h"
#include "base/text.h"
#include "profile/profile.h"
#include "profile/profile_numbers.h"

#include <array>
#include <cstdio>
#include <vector>

namespace vantrel {

namespace {

constexpr std::string_view CRLF = "\r\n";
constexpr std::size_t SectionCount = 10;

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

struct PlanSpec {
    std::string_view heading;
    std::int32_t Options::*percent;
    bool hard;
    int progress;
};

constexpr std::array<PlanSpec, 3> Plans{{
    {"plan easy", &Options::EasyLimit, false, 40},
    {"plan medium", &Options::MediumLimit, false, 60},
    {"plan hard", &Options::HardLimit, true, 80},
}};

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

// The profile text; `step` is given the progress after each block. The
// units are sorted into their sections once; each block then lists them
// section by section, and the body is proper-cased as a whole at the end.
template <class Step>
std::string ProfileTextWithSteps(const Definitions& defs, const ProfileHeader& header,
                                 std::string_view sep, Step step) {
    std::array<std::vector<const vtUnit*>, SectionCount> sections;
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        const int s = u.Include ? ProfileSection(u.TEDClass) : -1;
        if (s >= 0) sections[static_cast<std::size_t>(s)].push_back(&u);
    }
    std::string body;
    auto block = [&](std::string_view keyword, auto valueText) {
        for (std::size_t s = 0; s < SectionCount; ++s) {
            body.append(body.empty() ? CRLF : "\r\n\r\n").append(Sections[s].title).append(CRLF);
            for (const vtUnit* u : sections[s])
                body.append(CRLF)
                    .append(keyword)
                    .append(u->UnitName)
                    .append(" ")
                    .append(valueText(*u));
        }
    };

    block("WEIGHT ", [&](const vtUnit& u) { return WeightText(u.Weight, sep); });
    step(20);
    for (const PlanSpec& plan : Plans) {
        const int percent = defs.Options.*plan.percent;
        body.append("\r\n\r\n").append(plan.heading);
        block("LIMIT ", [&](const vtUnit& u) {
            return plan.hard ? HardLimitText(percent, u.Limit, sep)
                             : EasyLimitText(percent, u.Limit, sep);
        });
        step(plan.progress);
    }
    return HeaderText(header, defs.Profile.ParentAIs) + ProperCase(body) + std::string(CRLF);
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
        if (!tedClass.empty() &&
            (tedClass == Sections[s].keyword1 || tedClass == Sections[s].keyword2))
            return static_cast<int>(s);
    return -1;
}

std::string ProfileFileText(const Definitions& defs, const ProfileHeader& header,
                            std::string_view sep) {
    return ProfileTextWithSteps(defs, header, sep, [](int) {});
}

std::string BuildSetText(const Definitions& defs, const std::string& aiName) {
    std::string text = "[BUILD SET]\r\nAiName=" + aiName + ";";
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        text.append("\r\n[").append(UCase(u.UnitName)).append("]\r\nSet=");
        text.append(u.Include ? "Build;\r\n" : "Don't Build;\r\n");
    }
    return text.append(CRLF);
}

void SaveAI(ProfileContext& ctx, const std::string& path) {
    // The build-set file takes the place of the name's last four characters:
    // a shorter name would put it outside the profile's folder, a ".set" name
    // on the profile itself.
    std::string name = path;
    name = StripPath(name);
    if (name.size() < 4 || EqualsNoCase(name.substr(name.size() - 4), ".set"))
        throw ProfileError("Cannot write '" + path + "': its build-set file would be '" +
                           BuildSetPath(path) + "'. Choose a name ending in .txt.");
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

    const std::string text =
        ProfileTextWithSteps(ctx.defs, header, DecimalSeparator(), [&](int value) {
            ctx.progress.SetValue(value);
            ctx.progress.Repaint();
        });
    // Both files are written in full before either replaces its old version;
    // a file that is not committed removes its temporary file.
    StagedFile profile(path, text);
    StagedFile set(BuildSetPath(path), BuildSetText(ctx.defs, header.name));
    ctx.progress.SetValue(100);
    ctx.progress.Repaint();
    CommitTogether(profile, set);
}

} // namespace vantrel
