// The catalogue's unit names, upper-cased and indexed the way the profile
// readers look them up. Building it costs about as much as one read of a
// profile, so it is kept with the catalogue (see IndexOfUnits) and built
// again only when the unit names change.
#pragma once

#include "catalogue/text.h"
#include "profile/name_table.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vantrel {

struct Definitions;

// A trie of names, followed from a place in a text in any case.
class NameTrie {
  public:
    static constexpr std::size_t None = NameTable::None;
    void Insert(std::string_view name, std::size_t slot);
    bool Empty() const { return edges_.empty(); }

    // Calls visit(slot) for every name that `text`, upper-cased, starts with.
    template <class Visit> void Walk(std::string_view text, Visit&& visit) const;

  private:
    static std::uint64_t Key(std::size_t node, char c) {
        return (static_cast<std::uint64_t>(node) << 8) | static_cast<unsigned char>(c);
    }
    std::unordered_map<std::uint64_t, std::size_t> edges_;
    std::vector<std::size_t> slots_{None};
};

// Each distinct name also has a place: its rank in the order profiles are
// expected to list the names. The look-up keeps what it finds by place, so
// that a profile in that order is read and noted front to back.
class UnitIndex {
  public:
    static constexpr std::uint32_t None = 0xFFFFFFFF;

    // `listing`: the order (indices into `names`) in which profiles are
    // expected to list the names; the order of `names` when empty. It only
    // guides the look-up: any order gives the same answers.
    explicit UnitIndex(const std::vector<std::string>& names,
                       const std::vector<std::uint32_t>& listing = {});

    // The index was built from these names, in this order.
    bool Indexes(const Definitions& defs) const;

    // The distinct upper-cased names; the slot of names[i] among them. Slots
    // are numbered in the order the names first appear.
    const NameTable& Table() const { return table_; }
    std::size_t Slot(std::size_t i) const { return slotOf_[i]; }
    // names[i] has no lower-case letter (an exact search finds it in upper-cased text).
    bool ExactSearchable(std::size_t i) const { return exactSearchable_[i] != 0; }
    // Some name has a blank at its start or end.
    bool AnyEndBlanks() const { return anyEndBlanks_; }

    // Characters that end a token in a profile.
    static bool IsBreak(char c) { return c == ' ' || c == '\r' || c == '\n'; }

    // What a token is compared with: the first 16 bytes of a name (zero past
    // its end), its length, and for longer names its slot. Names that hold a
    // break are matched through the trie: their `length` is one no token has.
    struct PlaceKey {
        std::uint64_t head = 0, tail = 0;
        std::uint32_t length = None;
        std::uint32_t slot = None;
    };
    std::size_t PlaceCount() const { return keys_.size(); }
    const PlaceKey& KeyAt(std::size_t place) const { return keys_[place]; }
    std::uint32_t PlaceOfSlot(std::size_t slot) const { return placeOfSlot_[slot]; }
    std::uint32_t Place(std::size_t i) const { return placeOfSlot_[slotOf_[i]]; }
    std::size_t NameLengthAt(std::size_t place) const {
        return table_.Text(keys_[place].slot).size();
    }

    // Names without breaks ("plain") are found from a token by hash too.
    std::size_t MaxPlainLength() const { return maxLength_; }
    bool HasPlainLength(std::size_t length) const { return hasLength_[length] != 0; }
    // Pairs of places (a plain name, its longest proper prefix that is a
    // plain name), longest names first: a prefix takes the entries of
    // every name that starts with it.
    const std::vector<std::pair<std::uint32_t, std::uint32_t>>& Parents() const {
        return parents_;
    }
    // The names that hold a break character.
    const NameTrie& BreakNames() const { return trie_; }

  private:
    std::vector<std::string> names_;
    NameTable table_;
    std::vector<std::uint32_t> slotOf_;
    std::vector<char> exactSearchable_;
    bool anyEndBlanks_ = false;
    std::vector<char> plain_; // per slot
    std::size_t maxLength_ = 0;
    std::vector<char> hasLength_;
    std::vector<PlaceKey> keys_;           // per place
    std::vector<std::uint32_t> placeOfSlot_;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> parents_;
    NameTrie trie_;
};

// The index of the catalogue's unit names, kept in `defs` and made again
// when the names have changed since it was made. Its listing order is the
// one SaveAI writes: section by section, catalogue order within each.
const UnitIndex& IndexOfUnits(const Definitions& defs);

template <class Visit> void NameTrie::Walk(std::string_view text, Visit&& visit) const {
    std::size_t node = 0;
    for (char c : text) {
        auto it = edges_.find(Key(node, UpperChar(c)));
        if (it == edges_.end()) return;
        node = it->second;
        if (slots_[node] != None) visit(slots_[node]);
    }
}

} // namespace vantrel
