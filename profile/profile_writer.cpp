#include "profile/profile_writer.h"

#include "catalogue/text.h"
#include "profile/profile.h"
#include "profile/profile_io.h"
#include "profile/profile_numbers.h"
#include "startup/paths.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <cstdio>
#include <future>
#include <memory>
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

// What the body needs of one included unit, in the order it is listed.
struct Entry {
    std::uint32_t nameAt = 0, nameLength = 0; // its name in the pool, proper-cased
    float weight = 0, limit = 0;
};

// The body's pieces, gathered from the catalogue once: the units in listing
// order with their names proper-cased, and where each section begins.
struct BodyParts {
    std::vector<Entry> entries;
    std::array<std::size_t, SectionCount + 1> sectionStart{};
    std::string pool; // the names, then 16 spare bytes so that a short name is copied whole
};

BodyParts GatherBody(const Definitions& defs) {
    const SectionUnits sections = UnitsBySection(defs);
    BodyParts parts;
    for (std::size_t s = 0; s < SectionCount; ++s) {
        parts.sectionStart[s] = parts.entries.size();
        for (int i : sections[s]) {
            const vtUnit& u = defs.Units[i];
            parts.entries.push_back({static_cast<std::uint32_t>(parts.pool.size()),
                                     static_cast<std::uint32_t>(u.UnitName.size()), u.Weight,
                                     u.Limit});
            parts.pool.append(u.UnitName);
        }
    }
    parts.sectionStart[SectionCount] = parts.entries.size();
    // Every name follows a space, so proper-casing each on its own gives what
    // proper-casing the body would: here all at once, then the first letter
    // of each upper-cased, as a start of word.
    ProperCaseInPlace(parts.pool.data(), parts.pool.data() + parts.pool.size());
    for (const Entry& e : parts.entries) {
        char& first = parts.pool[e.nameAt];
        if (e.nameLength > 0) first = UpperChar(first);
    }
    parts.pool.append(16, '\0');
    return parts;
}

// Writes lists of the body into a text. The buffer is reserved for the
// lists to come and grown a section at a time, with 16 bytes to spare, as a
// short name is copied 16 bytes at once. The body is proper-cased; as every
// piece of it (keyword, name, value, title) follows a line break or a space,
// each piece is proper-cased on its own.
class BodyWriter {
  public:
    BodyWriter(const BodyParts& parts, std::string_view sep, std::string start, std::size_t lists)
        : parts_(parts), sep_(sep), out_(std::move(start)) {
        // Numbers hold no letters but in an exponent ("1e+20", already lower
        // case) or as "inf" and "nan", which start the value; a separator may.
        sepLetters_ = std::any_of(sep.begin(), sep.end(), [](char c) {
            return UpperChar(c) != c || (c >= 'A' && c <= 'Z');
        });
        perEntry_ = 2 + Weight.size() + 1 + NumberTextMax + sep.size();
        std::size_t titleBytes = 0;
        for (std::size_t s = 0; s < SectionCount; ++s) {
            titles_[s] = ProperCase(Sections[s].title);
            titleBytes += titles_[s].size() + 8;
        }
        out_.reserve(out_.size() + lists * (parts.pool.size() + perEntry_ * parts.entries.size() +
                                            titleBytes + 64));
        p_ = out_.data() + out_.size();
    }

    void Weights() {
        for (std::size_t s = 0; s < SectionCount; ++s)
            Section(s, s == 0, Weight,
                    [&](const Entry& e, char* at) { return WriteWeight(at, e.weight, sep_); });
    }

    void Plan(const PlanSpec& plan, int percent) {
        Room(64);
        Put("\r\n\r\n");
        Put(ProperCase(plan.heading));
        for (std::size_t s = 0; s < SectionCount; ++s)
            Section(s, false, Limit, [&](const Entry& e, char* at) {
                const double x = PlanLimit(percent, e.limit);
                return WriteGeneral15(at, plan.hard ? x : std::floor(x), sep_);
            });
    }

    std::string Take(std::string_view end = "") {
        Room(end.size());
        Put(end);
        out_.resize(static_cast<std::size_t>(p_ - out_.data()));
        return std::move(out_);
    }

  private:
    static constexpr std::string_view Weight = "Weight ", Limit = "Limit ";

    void Room(std::size_t bytes) {
        const auto at = static_cast<std::size_t>(p_ - out_.data());
        if (out_.size() < at + bytes + 16) out_.resize(at + bytes + 16);
        p_ = out_.data() + at;
    }
    void Put(std::string_view s) {
        std::memcpy(p_, s.data(), s.size());
        p_ += s.size();
    }
    template <class Value>
    void Section(std::size_t s, bool first, std::string_view keyword, Value value) {
        std::size_t bytes = titles_[s].size() + 8;
        for (std::size_t k = parts_.sectionStart[s]; k < parts_.sectionStart[s + 1]; ++k)
            bytes += perEntry_ + parts_.entries[k].nameLength;
        Room(bytes);
        Put(first ? "\r\n" : "\r\n\r\n");
        Put(titles_[s]);
        Put(CRLF);
        char* p = p_;
        for (std::size_t k = parts_.sectionStart[s]; k < parts_.sectionStart[s + 1]; ++k) {
            const Entry& e = parts_.entries[k];
            std::memcpy(p, "\r\n", 2);
            std::memcpy(p + 2, keyword.data(), keyword.size());
            p += 2 + keyword.size();
            const char* name = parts_.pool.data() + e.nameAt;
            if (e.nameLength <= 16)
                std::memcpy(p, name, 16);
            else
                std::memcpy(p, name, e.nameLength);
            p += e.nameLength;
            *p++ = ' ';
            char* v = p;
            p = value(e, p);
            if (sepLetters_)
                ProperCaseInPlace(v, p);
            else if (v != p)
                *v = UpperChar(*v);
        }
        p_ = p;
    }

    const BodyParts& parts_;
    std::string_view sep_;
    bool sepLetters_ = false;
    std::size_t perEntry_ = 0;
    std::array<std::string, SectionCount> titles_;
    std::string out_;
    char* p_ = nullptr;
};

void Step(Progress& progress, int value) {
    progress.SetValue(value);
    progress.Repaint();
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

// The keywords by first letter (at most two share one), each with its section.
struct KeywordSection {
    std::string_view keyword;
    int section = -1;
};
constexpr auto KeywordsByLetter = [] {
    std::array<std::array<KeywordSection, 2>, 26> table{};
    auto add = [&](std::string_view keyword, int section) {
        if (keyword.empty()) return;
        auto& pair = table[static_cast<std::size_t>(keyword[0] - 'A')];
        if (!pair[1].keyword.empty()) throw "at most two keywords may share a first letter";
        (pair[0].keyword.empty() ? pair[0] : pair[1]) = {keyword, section};
    };
    for (std::size_t s = 0; s < SectionCount; ++s) {
        add(Sections[s].keyword1, static_cast<int>(s));
        add(Sections[s].keyword2, static_cast<int>(s));
    }
    return table;
}();

int ProfileSection(std::string_view tedClass) {
    if (tedClass.empty() || tedClass[0] < 'A' || tedClass[0] > 'Z') return -1;
    for (const KeywordSection& k : KeywordsByLetter[static_cast<std::size_t>(tedClass[0] - 'A')])
        if (k.keyword == tedClass) return k.section;
    return -1;
}

std::string ProfileText(const Definitions& defs, const ProfileHeader& header,
                        std::string_view sep) {
    const BodyParts parts = GatherBody(defs);
    BodyWriter body(parts, sep, HeaderText(header, defs.ParentAIs), 4);
    body.Weights();
    for (const PlanSpec& plan : Plans)
        body.Plan(plan, defs.Option(plan.percent));
    return body.Take(CRLF);
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

    const std::string sep = DecimalSeparator();
    const BodyParts parts = GatherBody(ctx.defs);
    const Definitions& defs = ctx.defs;

    // A second thread makes and writes the build-set file, then the hard
    // plan; both threads only read the catalogue. The profile's own
    // failure is reported before the build set's. Should anything here
    // fail, the future's destructor waits for the thread, and a build set
    // that is not committed removes its temporary file.
    struct Later {
        std::unique_ptr<StagedFile> buildSet;
        std::exception_ptr buildSetError;
        std::string plans;
    };
    std::future<Later> later = std::async(std::launch::async, [&] {
        Later l;
        try {
            l.buildSet = std::make_unique<StagedFile>(BuildSetPath(path),
                                                      BuildSetText(defs, header.name));
        } catch (...) {
            l.buildSetError = std::current_exception();
        }
        BodyWriter body(parts, sep, {}, 1);
        body.Plan(Plans[2], defs.Option(Plans[2].percent));
        l.plans = body.Take(CRLF);
        return l;
    });
    BodyWriter body(parts, sep, HeaderText(header, defs.ParentAIs), 3);
    body.Weights();
    Step(ctx.progress, 20);
    for (std::size_t k = 0; k < 2; ++k) {
        body.Plan(Plans[k], defs.Option(Plans[k].percent));
        Step(ctx.progress, Plans[k].progress);
    }
    Later rest = later.get();
    Step(ctx.progress, Plans[2].progress);
    Step(ctx.progress, 100);

    // Both files are written in full before either replaces its old version.
    const std::string first = body.Take();
    StagedFile profile(path, {first, rest.plans});
    if (rest.buildSetError) std::rethrow_exception(rest.buildSetError);
    StagedFile& set = *rest.buildSet;
    CommitTogether(profile, set);
}

} // namespace vantrel
