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

class UnitIndex;

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
// Profiles list the names in catalogue order, plan after plan: each token is
// first compared with the name that followed the last entry's name the last
// time, then with the next few names of the catalogue, and only looked up by
// hash when none is it. Cost: the text's length, plus per entry a compare or
// two of 16 bytes (a hash probe per distinct name length on a miss).
class ProfileLookup {
  public:
    // `text` is the profile as read, in any case; the answers are those of
    // GetWeight and GetLimit on its upper-cased copy, with `sep` as the
    // decimal separator, for the names `index` was made from. The text and
    // the index must outlive the object.
    ProfileLookup(std::string_view text, const UnitIndex& index, std::string_view sep = ".");
    // The same with an index of its own.
    ProfileLookup(std::string_view text, const std::vector<std::string>& names,
                  std::string_view sep = ".");
    ~ProfileLookup();

    const UnitIndex& Index() const { return *index_; }

    // Weight and limit of names[i], exactly as GetWeight and GetLimit give them.
    float Weight(std::size_t i) const;
    float Limit(std::size_t i) const;

  private:
    // Positions are held in 32 bits: a text is searched in its first 4 GiB
    // (the readers take files of at most 256 MiB).
    static constexpr std::uint32_t NoPos = 0xFFFFFFFF;
    // A name's first entries, with the values of those that are read
    // whenever there is one (read where the walk finds them).
    struct Found {
        std::uint32_t weight = NoPos;
        std::uint32_t limitFromHard = NoPos;
        std::uint32_t limitAnywhere = NoPos;
        float weightValue = 0.0f;
        float limitFromHardValue = 0.0f;
    };
    void Walk(); // finds every name's first entries
    std::size_t LineEnd(std::size_t pos) const;
    // The value of the entry at `pos` whose key is `keyLength` characters
    // long; `plainKey`: the key holds no CR or LF.
    float ValueAt(std::uint32_t pos, std::size_t keyLength, bool plainKey) const;

    std::string_view text_;
    std::string sep_;
    std::unique_ptr<UnitIndex> owned_;
    const UnitIndex* index_ = nullptr;
    mutable std::vector<std::size_t> lineEnds_; // every CR LF, listed when first needed
    mutable bool lineEndsListed_ = false;
    std::vector<Found> found_; // per place
    // Short values read so far, by their bytes: a profile repeats a few
    // hundred distinct values thousands of times.
    struct Remembered {
        std::uint64_t head = 0, tail = 0; // the value's bytes, then zeros
        std::uint32_t length = 0;         // 0: empty
        float value = 0.0f;
    };
    mutable std::vector<Remembered> remembered_;
};

} // namespace vantrel
