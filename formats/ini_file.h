// INI-style files (build sets, Tessaly profiles) read the way the Windows INI
// service reads them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vantrel {

// The longest value the INI service hands back (its buffer holds 255 characters).
inline constexpr std::size_t IniValueMax = 254;

// ASCII case-insensitive hashing and comparison of names.
struct NoCaseHash {
    std::size_t operator()(std::string_view s) const;
};
struct NoCaseEqual {
    bool operator()(std::string_view a, std::string_view b) const;
};

// The sections and keys of one INI text, indexed once so that many look-ups
// cost no more than one pass over the text.
//
// Lines end at CR LF, LF or a lone CR and are trimmed of white space; empty
// lines are skipped. A line starting with "[" that holds a "]" names a
// section: the text between the "[" and the last "]". Other lines are keys: the text before the
// first
// "=" (trailing blanks removed) with the value after it (leading blanks
// removed); a line without "=" is a key without a value. Lines before the
// first section belong to none. Names match without regard to letter case;
// only the first section of a name and the first key of a name in it count.
class IniIndex {
  public:
    explicit IniIndex(std::string text);
    ~IniIndex();
    IniIndex(const IniIndex&) = delete;
    IniIndex& operator=(const IniIndex&) = delete;

    // The value without enclosing quotes, at most IniValueMax characters;
    // nullopt when the section or key is missing.
    std::optional<std::string> Find(std::string_view section, std::string_view key) const;
    std::string Get(std::string_view section, std::string_view key,
                    const std::string& fallback) const {
        auto v = Find(section, key);
        return v ? *v : fallback;
    }

  private:
    using KeyMap = std::unordered_map<std::string_view, std::size_t, NoCaseHash, NoCaseEqual>;
    struct Entry {
        std::string_view key, value;
    };
    struct Section {
        std::string_view name;
        std::size_t hash = 0;
        std::size_t begin = 0, end = 0; // its entries
        std::unique_ptr<KeyMap> keys;   // first entry per key, for long sections
    };
    // Index of the first section named `name` (any case), or sections_.size().
    std::size_t FindSection(std::string_view name, std::size_t hash) const;

    std::string text_;
    std::vector<Entry> entries_;
    std::vector<Section> sections_;
    std::vector<std::size_t> table_; // open addressing: section index + 1, 0 when free
    std::size_t mask_ = 0;
};

} // namespace vantrel
