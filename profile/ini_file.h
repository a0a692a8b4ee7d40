// INI-style files (build sets, Tessaly profiles) read the way the Windows INI
// service reads them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vantrel {

// The longest value the INI service hands back (its buffer holds 255 characters).
inline constexpr std::size_t IniValueMax = 254;

// The sections and keys of one INI text, indexed once so that many look-ups
// cost no more than one pass over the text.
//
// Lines end at LF and are trimmed of white space; empty lines are skipped. A
// line starting with "[" that holds a "]" names a section: the text between
// the "[" and the last "]". Other lines are keys: the text before the first
// "=" (trailing blanks removed) with the value after it (leading blanks
// removed); a line without "=" is a key without a value. Lines before the
// first section belong to none. Names match without regard to letter case;
// only the first section of a name and the first key of a name in it count.
class IniIndex {
  public:
    explicit IniIndex(std::string_view text);

    // The value without enclosing quotes, at most IniValueMax characters;
    // nullopt when the section or key is missing.
    std::optional<std::string> Find(std::string_view section, std::string_view key) const;
    std::string Get(std::string_view section, std::string_view key,
                    const std::string& fallback) const {
        auto v = Find(section, key);
        return v ? *v : fallback;
    }

  private:
    std::unordered_map<std::string, std::unordered_map<std::string, std::string>> sections_;
};

} // namespace vantrel
