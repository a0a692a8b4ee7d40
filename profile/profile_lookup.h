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
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

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

// The same look-ups for a whole catalogue at once. The constructor walks the
// text once. At every "WEIGHT " and "LIMIT " it takes the following token (up
// to the next space, CR or LF, at most as long as the longest name) and finds
// the longest catalogue name that the token starts with by hashing the
// token's prefixes; every shorter name that the token starts with is that
// name's chain of "parents" (each name's longest proper prefix that is a
// name). Each name keeps the first entry found for it (for limits, the first
// one at or after "PLAN HARD" and the first one overall). Names holding a
// space, CR or LF can match across a token's end; they are followed through a
// trie from every entry instead. Cost: the text's length, plus per entry the
// token's length and one hash probe per distinct name length.
class ProfileLookup {
  public:
    // `upperText` must outlive the object.
    ProfileLookup(std::string_view upperText, const std::vector<std::string>& names);
    ~ProfileLookup();

    // Weight and limit of names[i], exactly as GetWeight and GetLimit give them.
    float Weight(std::size_t i, std::string_view sep) const;
    float Limit(std::size_t i, std::string_view sep) const;

  private:
    struct Found {
        std::size_t weight = std::string_view::npos;
        std::size_t limitFromHard = std::string_view::npos;
        std::size_t limitAnywhere = std::string_view::npos;
    };
    struct Names;
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
