#include "profile/profile_lookup.h"

#include "catalogue/text.h"
#include "profile/profile_numbers.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace vantrel {

namespace {

constexpr std::string_view WeightKey = "WEIGHT ";
constexpr std::string_view LimitKey = "LIMIT ";
constexpr std::string_view HardPlan = "PLAN HARD";
constexpr std::size_t npos = std::string_view::npos;
constexpr std::size_t None = static_cast<std::size_t>(-1);

std::size_t HardPlanStart(std::string_view upperText) {
    std::size_t h = upperText.find(HardPlan);
    return h == npos ? 0 : h;
}

bool HasLowerCase(std::string_view s) {
    return std::any_of(s.begin(), s.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// Characters that end a token.
bool IsBreak(char c) {
    return c == ' ' || c == '\r' || c == '\n';
}

float EntryValue(std::string_view text, std::size_t pos, std::size_t keyLength,
                 std::string_view sep) {
    if (pos == npos) return 0.0f;
    std::size_t lineEnd = text.find("\r\n", pos);
    if (lineEnd == npos) lineEnd = text.size();
    return ProfileNumber(EntryValueText(text, pos, keyLength, lineEnd), sep);
}

// Polynomial hash of a prefix, extended one character at a time.
std::uint64_t Extend(std::uint64_t h, char c) {
    return h * 0x100000001b3ULL + static_cast<unsigned char>(c) + 1;
}
std::size_t Mix(std::uint64_t h) {
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    return static_cast<std::size_t>(h);
}

// A trie of the names that hold a break character.
class NameTrie {
  public:
    void Insert(std::string_view name, std::size_t slot) {
        std::size_t node = 0;
        for (char c : name) {
            auto [it, fresh] = edges_.try_emplace(Key(node, c), slots_.size());
            if (fresh) slots_.push_back(None);
            node = it->second;
        }
        slots_[node] = slot;
    }
    bool Empty() const { return edges_.empty(); }

    // Calls visit(slot) for every name that `text` starts with.
    template <class Visit> void Walk(std::string_view text, Visit&& visit) const {
        std::size_t node = 0;
        for (char c : text) {
            auto it = edges_.find(Key(node, c));
            if (it == edges_.end()) return;
            node = it->second;
            if (slots_[node] != None) visit(slots_[node]);
        }
    }

  private:
    static std::uint64_t Key(std::size_t node, char c) {
        return (static_cast<std::uint64_t>(node) << 8) | static_cast<unsigned char>(c);
    }
    std::unordered_map<std::uint64_t, std::size_t> edges_;
    std::vector<std::size_t> slots_{None};
};

} // namespace

// The distinct upper-cased names and the structures that find them. The
// names are kept in one buffer and the table holds 8 bytes a cell, so that a
// catalogue of tens of thousands of units stays within the processor's caches.
struct ProfileLookup::Names {
    struct Cell {
        std::uint32_t slot = 0;  // slot + 1, 0 when free
        std::uint32_t check = 0; // high bits of the name's hash
    };
    std::string pool;                  // every distinct name, one after the other
    std::vector<std::uint32_t> offset; // per slot, plus one past the last
    std::vector<std::size_t> parent;   // per slot: longest proper prefix that is a name
    std::vector<Cell> table;           // open addressing over the plain names
    std::size_t mask = 0;
    std::vector<std::size_t> lengths; // distinct lengths of plain names, longest first
    std::size_t maxLength = 0;
    NameTrie trie;                                       // names with break characters
    std::unordered_map<std::string, std::size_t> broken; // their slots
    std::vector<std::uint64_t> prefix;                   // scratch: prefix hashes of a token

    explicit Names(std::size_t capacity) {
        std::size_t size = 16;
        while (size < capacity + capacity / 2)
            size *= 2;
        table.resize(size);
        mask = size - 1;
        offset.push_back(0);
    }

    std::size_t Count() const { return offset.size() - 1; }
    std::string_view Text(std::size_t slot) const {
        return std::string_view(pool).substr(offset[slot], offset[slot + 1] - offset[slot]);
    }

    static std::uint64_t HashOf(std::string_view s) {
        std::uint64_t h = 0;
        for (char c : s)
            h = Extend(h, c);
        return h;
    }
    static std::uint32_t Check(std::uint64_t h) { return static_cast<std::uint32_t>(h >> 32); }

    std::size_t Find(std::uint64_t h, std::string_view s) const {
        const std::uint32_t check = Check(h);
        for (std::size_t i = Mix(h) & mask; table[i].slot != 0; i = (i + 1) & mask)
            if (table[i].check == check && Text(table[i].slot - 1) == s) return table[i].slot - 1;
        return None;
    }

    std::size_t Append(std::string_view name) {
        pool.append(name);
        offset.push_back(static_cast<std::uint32_t>(pool.size()));
        return Count() - 1;
    }

    // The slot of an upper-cased name, added when new.
    std::size_t Add(const std::string& name) {
        if (std::any_of(name.begin(), name.end(), IsBreak)) {
            auto [it, fresh] = broken.try_emplace(name, Count());
            if (fresh) trie.Insert(name, Append(name));
            return it->second;
        }
        std::uint64_t h = HashOf(name);
        std::size_t found = Find(h, name);
        if (found != None) return found;
        std::size_t i = Mix(h) & mask;
        while (table[i].slot != 0)
            i = (i + 1) & mask;
        std::size_t slot = Append(name);
        table[i] = {static_cast<std::uint32_t>(slot + 1), Check(h)};
        maxLength = std::max(maxLength, name.size());
        return slot;
    }

    // Once every name is in: the length list and each plain name's parent.
    void Finish() {
        std::vector<bool> present(maxLength + 1, false);
        for (std::size_t slot = 0; slot < Count(); ++slot) {
            std::string_view s = Text(slot);
            if (std::none_of(s.begin(), s.end(), IsBreak)) present[s.size()] = true;
        }
        for (std::size_t len = maxLength + 1; len-- > 0;)
            if (present[len]) lengths.push_back(len);
        prefix.assign(maxLength + 1, 0);
        parent.assign(Count(), None);
        for (std::size_t slot = 0; slot < Count(); ++slot) {
            std::string_view s = Text(slot);
            if (s.empty() || std::any_of(s.begin(), s.end(), IsBreak)) continue;
            for (std::size_t k = 0; k < s.size(); ++k)
                prefix[k + 1] = Extend(prefix[k], s[k]);
            parent[slot] = Longest(s, s.size() - 1);
        }
    }

    // The longest plain name that `s` starts with; prefix[k] must hold the
    // hash of its first k characters for every k up to `available`.
    std::size_t Longest(std::string_view s, std::size_t available) const {
        for (std::size_t len : lengths)
            if (len <= available)
                if (std::size_t slot = Find(prefix[len], s.substr(0, len)); slot != None)
                    return slot;
        return None;
    }

    // Calls mark(slot) for every name that `s` starts with; a chain of plain
    // names stops at the first one that mark() had already seen.
    template <class Mark> void Visit(std::string_view s, Mark&& mark) {
        std::size_t n = 0;
        while (n < maxLength && n < s.size() && !IsBreak(s[n])) {
            prefix[n + 1] = Extend(prefix[n], s[n]);
            ++n;
        }
        for (std::size_t slot = Longest(s, n); slot != None && mark(slot); slot = parent[slot]) {
        }
        if (!trie.Empty()) trie.Walk(s, mark);
    }
};

ProfileLookup::~ProfileLookup() = default;

std::string_view EntryValueText(std::string_view text, std::size_t pos, std::size_t keyLength,
                                std::size_t lineEnd) {
    if (lineEnd < pos || lineEnd - pos <= keyLength) return {};
    std::string_view value = text.substr(pos + keyLength, lineEnd - pos - keyLength);
    while (!value.empty() && value.front() == ' ')
        value.remove_prefix(1);
    while (!value.empty() && value.back() == ' ')
        value.remove_suffix(1);
    return value;
}

float GetWeight(std::string_view name, std::string_view upperText, std::string_view sep) {
    std::string key = std::string(WeightKey) + UCase(name);
    return EntryValue(upperText, upperText.find(key), key.size(), sep);
}

float GetLimit(std::string_view name, std::string_view upperText, std::string_view sep) {
    std::string key = std::string(LimitKey) + UCase(name);
    std::size_t pos = upperText.find(key, HardPlanStart(upperText));
    // The second search matches exactly: a name with lower-case letters
    // cannot be found in the upper-cased text.
    if (pos == npos) pos = upperText.find(std::string(LimitKey) + std::string(name));
    return EntryValue(upperText, pos, key.size(), sep);
}

ProfileLookup::ProfileLookup(std::string_view upperText, const std::vector<std::string>& names)
    : text_(upperText) {
    Names n(names.size());
    slotOf_.reserve(names.size());
    for (const std::string& name : names) {
        slotOf_.push_back(n.Add(UCase(name)));
        nameLength_.push_back(name.size());
        exactSearchable_.push_back(!HasLowerCase(name));
    }
    n.Finish();
    found_.resize(n.Count());

    for (std::size_t p = text_.find(WeightKey); p != npos; p = text_.find(WeightKey, p + 1))
        n.Visit(text_.substr(p + WeightKey.size()), [&](std::size_t slot) {
            if (found_[slot].weight != npos) return false;
            found_[slot].weight = p;
            return true;
        });

    const std::size_t hard = HardPlanStart(text_);
    for (std::size_t p = text_.find(LimitKey); p != npos; p = text_.find(LimitKey, p + 1))
        n.Visit(text_.substr(p + LimitKey.size()), [&](std::size_t slot) {
            Found& f = found_[slot];
            bool fresh = false;
            if (f.limitAnywhere == npos) {
                f.limitAnywhere = p;
                fresh = true;
            }
            if (p >= hard && f.limitFromHard == npos) {
                f.limitFromHard = p;
                fresh = true;
            }
            return fresh;
        });
}

std::size_t ProfileLookup::LineEnd(std::size_t pos) const {
    // Lines are short: look a little way ahead first. Only a text with long
    // lines pays for the list of every line end, once.
    constexpr std::size_t Near = 512;
    std::size_t end = text_.substr(0, std::min(text_.size(), pos + Near)).find("\r\n", pos);
    if (end != npos) return end;
    if (!lineEndsListed_) {
        for (std::size_t p = text_.find("\r\n"); p != npos; p = text_.find("\r\n", p + 1))
            lineEnds_.push_back(p);
        lineEndsListed_ = true;
    }
    auto it = std::lower_bound(lineEnds_.begin(), lineEnds_.end(), pos);
    return it == lineEnds_.end() ? text_.size() : *it;
}

float ProfileLookup::Weight(std::size_t i, std::string_view sep) const {
    std::size_t pos = found_[slotOf_[i]].weight;
    if (pos == npos) return 0.0f;
    return ProfileNumber(
        EntryValueText(text_, pos, WeightKey.size() + nameLength_[i], LineEnd(pos)), sep);
}

float ProfileLookup::Limit(std::size_t i, std::string_view sep) const {
    const Found& f = found_[slotOf_[i]];
    std::size_t pos = f.limitFromHard;
    if (pos == npos && exactSearchable_[i]) pos = f.limitAnywhere;
    if (pos == npos) return 0.0f;
    return ProfileNumber(EntryValueText(text_, pos, LimitKey.size() + nameLength_[i], LineEnd(pos)),
                         sep);
}

} // namespace vantrel
