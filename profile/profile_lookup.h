// Finding a unit's weight and limit in the text of an AI profile.
//
// The reader does not parse the profile: for each unit it searches the
// upper-cased text for "WEIGHT " + name and "LIMIT " + name, so a name also
// matches the start of a longer name (ARMCOM finds "LIMIT ARMCOMX 3", whose
// value text "X 3" gives 3). Limits are searched from the first "PLAN HARD"
// on (wherever that text stands, a header included) and, when that fails and
// the name has no lower-case letter, from the start of the text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

class NameTable;

// The value text of an entry found at `pos` whose key is `keyLength`
// characters long: the rest of its line (up to the first CR LF at or after
// `pos`, which is `lineEnd`), trimmed of spaces; empty when the line ends
// inside the key.
std::string_view EntryValueText(std::string_view text, std::size_t pos, std::size_t keyLength,
                                std::size_t lineEnd);

// The per-unit look-ups, one search of the text each. `upperText` is the
// profile upper-cased; `sep` the decimal separator.
float GetWeight(std::string_view name, std::string_view upperText, std::string_view sep);
float GetLimit(std::string_view name, std::string_view upperText, std::string_view sep);

// The same look-ups for a whole catalogue at once, without an upper-cased copy
// of the text: keys and names are compared as upper case where they are
// read, and a value reads the same in any case. The constructor walks the
// text once. At every "WEIGHT " and "LIMIT " it takes the following token (up
// to the next space, CR or LF, at most as long as the longest name) and finds
// the longest catalogue name that the token starts with: the whole token
// first, then its shorter prefixes of the lengths names have; every shorter
// name that the token starts with is that name's chain of "parents" (each
// name's longest proper prefix that is a name). Each name keeps the first
// entry found for it (for limits, the first one at or after "PLAN HARD" and
// the first one overall). Names holding a space, CR or LF can match across a
// token's end; they are followed through a trie from every entry instead.
// Cost: the text's length, plus per entry its token's length and usually one
// hash probe (one per distinct name length when the token is not a name).
class ProfileLookup {
  public:
    // `text` is the profile as read, in any case; the answers are those of
    // GetWeight and GetLimit on its upper-cased copy. It must outlive the object.
    ProfileLookup(std::string_view text, const std::vector<std::string>& names);
    ~ProfileLookup();

    // The distinct upper-cased names, and the slot of names[i] among them.
    const NameTable& Table() const;
    std::size_t Slot(std::size_t i) const { return slotOf_[i]; }

    // Weight and limit of names[i], exactly as GetWeight and GetLimit give them.
    float Weight(std::size_t i, std::string_view sep) const;
    float Limit(std::size_t i, std::string_view sep) const;

  private:
    // Positions are held in 32 bits: a text is searched in its first 4 GiB
    // (the readers take files of at most 256 MiB).
    static constexpr std::uint32_t NoPos = 0xFFFFFFFF;
    struct Found {
        std::uint32_t weight = NoPos;
        std::uint32_t limitFromHard = NoPos;
        std::uint32_t limitAnywhere = NoPos;
        std::uint32_t parent = NoPos; // longest proper prefix that is a name without breaks
    };
    struct Names;
    std::unique_ptr<Names> names_;
    void Walk(); // finds every name's first entries
    std::size_t LineEnd(std::size_t pos) const;

    std::string_view text_;
    mutable std::vector<std::size_t> lineEnds_; // every CR LF, listed when first needed
    mutable bool lineEndsListed_ = false;
    std::vector<std::size_t> slotOf_;     // names[i] -> its distinct upper-cased name
    std::vector<std::size_t> nameLength_; // per names[i]
    std::vector<bool> exactSearchable_;   // names[i] has no lower-case letter
    std::vector<Found> found_;            // per distinct name
};

} // namespace vantrel
