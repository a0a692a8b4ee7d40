#include "profile/profile_writer.h"

#include "catalogue/text.h"
#include "profile/profile.h"
#include "profile/profile_io.h"
#include "profile/profile_numbers.h"
#include "profile/side_work.h"
#include "startup/paths.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
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
    // The included units of each section, in catalogue order. A unit's
    // section comes from its TEDClass; the catalogue does not change while
    // it is written.
    std::array<std::vector<Entry>, SectionCount> sections;
    BodyParts parts;
    parts.pool.reserve(static_cast<std::size_t>(defs.Units.UBound()) * 16);
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        const int s = u.Include ? ProfileSection(u.TEDClass) : -1;
        if (s < 0) continue;
        sections[static_cast<std::size_t>(s)].push_back(
            {static_cast<std::uint32_t>(parts.pool.size()),
             static_cast<std::uint32_t>(u.UnitName.size()), u.Weight, u.Limit});
        parts.pool.append(u.UnitName);
    }
    for (std::size_t s = 0; s < SectionCount; ++s) {
        parts.sectionStart[s] = parts.entries.size();
        parts.entries.insert(parts.entries.end(), sections[s].begin(), sections[s].end());
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

// The texts of the values written so far in one list, by the bits of the
// float they come from. A profile holds a few hundred distinct weights and
// fewer distinct limits, each thousands of times; formatting each value once
// and copying its text after that is several times quicker. The texts are
// stored as they appear in the file (proper-cased). A value looks at a few
// slots from the one its bits hash to; when they all hold other values, it
// is formatted and not stored.
class ValueTexts {
  public:
    static constexpr std::size_t TextMax = 27;

    template <class Format> char* Write(char* at, float value, Format format) {
        std::uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        const std::uint32_t home = (bits * 0x9E3779B1u) >> (32 - SlotBits);
        Slot* free = nullptr;
        for (std::uint32_t k = 0; k < Probes; ++k) {
            Slot& slot = slots_[(home + k) & (Slots - 1)];
            if (slot.length == 0) {
                free = &slot;
                break;
            }
            if (slot.bits == bits) {
                std::memcpy(at, slot.text, TextMax);
                return at + slot.length;
            }
        }
        char* end = format(at, value);
        const auto length = static_cast<std::size_t>(end - at);
        if (free && length <= TextMax) {
            free->bits = bits;
            free->length = static_cast<std::uint8_t>(length);
            std::memcpy(free->text, at, length);
        }
        return end;
    }

  private:
    static constexpr int SlotBits = 12;
    static constexpr std::uint32_t Slots = 1u << SlotBits, Probes = 8;
    struct Slot {
        std::uint32_t bits = 0;
        std::uint8_t length = 0; // 0: empty, as every text has a character
        char text[TextMax];
    };
    std::array<Slot, Slots> slots_{};
};
// A stored text is copied whole; each value has room for the longest text.
static_assert(ValueTexts::TextMax <= NumberTextMax);

// Writes the body's lists into a text. The buffer is reserved for the four
// lists and grown a section at a time, with 16 bytes to spare, as a
// short name is copied 16 bytes at once. The body is proper-cased; as every
// piece of it (keyword, name, value, title) follows a line break or a space,
// each piece is proper-cased on its own.
class BodyWriter {
  public:
    BodyWriter(const BodyParts& parts, std::string_view sep, std::string start)
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
        out_.reserve(out_.size() +
                     4 * (parts.pool.size() + perEntry_ * parts.entries.size() + titleBytes + 64));
        p_ = out_.data() + out_.size();
    }

    void Weights() {
        auto texts = std::make_unique<ValueTexts>();
        for (std::size_t s = 0; s < SectionCount; ++s)
            Section(s, s == 0, Weight, [&](const Entry& e, char* at) {
                return texts->Write(at, e.weight, [&](char* to, float weight) {
                    return Cased(to, WriteWeight(to, weight, sep_));
                });
            });
    }

    void Plan(const PlanSpec& plan, int percent) {
        Room(64);
        Put("\r\n\r\n");
        Put(ProperCase(plan.heading));
        auto texts = std::make_unique<ValueTexts>();
        for (std::size_t s = 0; s < SectionCount; ++s)
            Section(s, false, Limit, [&](const Entry& e, char* at) {
                return texts->Write(at, e.limit, [&](char* to, float limit) {
                    const double x = PlanLimit(percent, limit);
                    return Cased(to, WriteGeneral15(to, plan.hard ? x : std::floor(x), sep_));
                });
            });
    }

    // The text, ended by its last, empty line.
    std::string Take() {
        Room(CRLF.size());
        Put(CRLF);
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
            p = value(e, p);
        }
        p_ = p;
    }

    // A value text proper-cased, as the body is.
    char* Cased(char* begin, char* end) const {
        if (sepLetters_)
            ProperCaseInPlace(begin, end);
        else if (begin != end)
            *begin = UpperChar(*begin);
        return end;
    }

    const BodyParts& parts_;
    std::string_view sep_;
    bool sepLetters_ = false;
    std::size_t perEntry_ = 0;
    std::array<std::string, SectionCount> titles_;
    std::string out_;
    char* p_ = nullptr;
};

// The profile text; `step` is given the progress after each list.
template <class Step>
std::string ProfileTextWithSteps(const Definitions& defs, const ProfileHeader& header,
                                 std::string_view sep, Step step) {
    const BodyParts parts = GatherBody(defs);
    BodyWriter body(parts, sep, HeaderText(header, defs.ParentAIs));
    body.Weights();
    step(20);
    for (const PlanSpec& plan : Plans) {
        body.Plan(plan, defs.Option(plan.percent));
        step(plan.progress);
    }
    return body.Take();
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

std::string ProfileFileText(const Definitions& defs, const ProfileHeader& header,
                            std::string_view sep) {
    return ProfileTextWithSteps(defs, header, sep, [](int) {});
}

std::string BuildSetText(const Definitions& defs, const std::string& aiName) {
    static constexpr std::string_view Open = "\r\n[", Set = "]\r\nSet=", Build = "Build;\r\n",
                                      DontBuild = "Don't Build;\r\n";
    std::string text = "[BUILD SET]\r\nAiName=" + aiName + ";";
    std::size_t at = text.size();
    std::size_t bytes = CRLF.size();
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        bytes += Open.size() + defs.Units[i].UnitName.size() + Set.size() + DontBuild.size();
    text.resize(at + bytes);
    char* p = text.data() + at;
    auto put = [&p](std::string_view s) {
        std::memcpy(p, s.data(), s.size());
        p += s.size();
    };
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        put(Open);
        for (char c : u.UnitName)
            *p++ = UpperChar(c);
        put(Set);
        put(u.Include ? Build : DontBuild);
    }
    put(CRLF);
    text.resize(static_cast<std::size_t>(p - text.data()));
    return text;
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

    // The helper thread makes and stages the build-set file meanwhile; it
    // only reads the catalogue. The profile's own failure is reported
    // before the build set's. Should anything fail, the side work's
    // destructor waits for it, and a file that is not committed removes its
    // temporary file.
    std::unique_ptr<StagedFile> set;
    SideWork aside([&] {
        set = std::make_unique<StagedFile>(BuildSetPath(path), BuildSetText(ctx.defs, header.name));
    });
    const std::string text =
        ProfileTextWithSteps(ctx.defs, header, DecimalSeparator(), [&](int value) {
            ctx.progress.SetValue(value);
            ctx.progress.Repaint();
        });
    // Both files are written in full before either replaces its old version.
    StagedFile profile(path, text);
    aside.Wait();
    ctx.progress.SetValue(100);
    ctx.progress.Repaint();
    CommitTogether(profile, *set);
}

} // namespace vantrel
