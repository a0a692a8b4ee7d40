#include "profile/profile_lookup.h"

#include "catalogue/text.h"
#include "profile/name_table.h"
#include "profile/profile_numbers.h"

#include <algorithm>
#include <bit>
#include <cstring>
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

// `text` at `pos` reads `upperWord` when upper-cased.
bool AtNoCase(std::string_view text, std::size_t pos, std::string_view upperWord) {
    if (pos > text.size() || text.size() - pos < upperWord.size()) return false;
    for (std::size_t k = 0; k < upperWord.size(); ++k)
        if (UpperChar(text[pos + k]) != upperWord[k]) return false;
    return true;
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

// Calls at(i) for every i where text[i] is the letter `first` and
// text[i + 1] is `second` (a letter in either case, else exactly), in order,
// until at() returns false. Eight bytes at a time: a word is looked at
// closely only when it may hold the pair.
template <class At>
void ForEachPair(std::string_view text, char first, char second, At&& at) {
    // OR-ing 0x20 turns exactly the two cases of a letter into the lower one.
    const unsigned char secondFold = (second | 0x20) >= 'a' && (second | 0x20) <= 'z' ? 0x20 : 0;
    first = static_cast<char>(first | 0x20);
    second = static_cast<char>(second | secondFold);
    const char* t = text.data();
    const std::size_t size = text.size();
    auto is = [&](std::size_t k) {
        return (t[k] | 0x20) == first && (t[k + 1] | secondFold) == second;
    };
    std::size_t i = 0;
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t Ones = 0x0101010101010101ULL;
        constexpr std::uint64_t Highs = 0x8080808080808080ULL;
        // A high bit set in every byte that is zero, and maybe in some above one.
        auto zeros = [](std::uint64_t v) { return (v - Ones) & ~v & Highs; };
        const std::uint64_t firsts = Ones * static_cast<unsigned char>(first);
        const std::uint64_t seconds = Ones * static_cast<unsigned char>(second);
        for (; i + 9 <= size; i += 8) {
            std::uint64_t a, b;
            std::memcpy(&a, t + i, 8);
            std::memcpy(&b, t + i + 1, 8);
            for (std::uint64_t m = zeros((a | Ones * 0x20) ^ firsts) &
                                   zeros((b | Ones * secondFold) ^ seconds);
                 m != 0; m &= m - 1) {
                std::size_t k = i + static_cast<std::size_t>(std::countr_zero(m)) / 8;
                if (is(k) && !at(k)) return;
            }
        }
    }
    for (; i + 1 < size; ++i)
        if (is(i) && !at(i)) return;
}

// Where the first "PLAN HARD" in any case starts; 0 when there is none.
std::size_t HardPlanStartNoCase(std::string_view text) {
    std::size_t found = 0;
    ForEachPair(text, 'P', 'L', [&](std::size_t p) {
        if (!AtNoCase(text, p, HardPlan)) return true;
        found = p;
        return false;
    });
    return found;
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

    // Calls visit(slot) for every name that `text`, upper-cased, starts with.
    template <class Visit> void Walk(std::string_view text, Visit&& visit) const {
        std::size_t node = 0;
        for (char c : text) {
            auto it = edges_.find(Key(node, UpperChar(c)));
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

// The distinct upper-cased names and the structures that find them.
struct ProfileLookup::Names {
    NameTable table;                 // every distinct name
    std::vector<char> hasLength;     // per length up to maxLength: a plain name has it
    std::size_t maxLength = 0;
    NameTrie trie;                   // names with break characters
    std::vector<std::uint64_t> tails; // scratch: tail hashes of a token

    explicit Names(std::size_t capacity) : table(capacity) {}

    std::vector<char> plain; // per slot: the name holds no break character

    static bool Plain(std::string_view s) {
        return std::none_of(s.begin(), s.end(), [](char c) { return IsBreak(c); });
    }

    // The slot of an upper-cased name, added when new.
    std::size_t Add(std::string_view name) {
        std::size_t before = table.Count();
        std::size_t slot = table.Add(name);
        if (slot == before) {
            plain.push_back(Plain(name));
            if (plain.back())
                maxLength = std::max(maxLength, name.size());
            else
                trie.Insert(name, slot);
        }
        return slot;
    }

    // Once every name is in: the lengths present, and each plain name's
    // parent stored in found[slot].parent. In byte order every name that is
    // a prefix of another comes before it, and the names between the two
    // all start with it; so one walk keeping the chain of prefixes of the
    // last name finds them all. The catalogue is usually in that order.
    void Finish(std::vector<Found>& found) {
        hasLength.assign(maxLength + 1, 0);
        found.assign(table.Count(), Found{});
        std::vector<std::size_t> order; // the plain names' slots
        order.reserve(table.Count());
        for (std::size_t slot = 0; slot < table.Count(); ++slot)
            if (plain[slot]) {
                order.push_back(slot);
                hasLength[table.Text(slot).size()] = 1;
            }
        auto before = [&](std::size_t a, std::size_t b) { return table.Text(a) < table.Text(b); };
        if (!std::is_sorted(order.begin(), order.end(), before))
            std::sort(order.begin(), order.end(), before);
        std::vector<std::size_t> chain;
        for (std::size_t slot : order) {
            std::string_view s = table.Text(slot);
            while (!chain.empty() && !s.starts_with(table.Text(chain.back())))
                chain.pop_back();
            if (!chain.empty()) found[slot].parent = static_cast<std::uint32_t>(chain.back());
            chain.push_back(slot);
        }
        tails.assign(maxLength + 1, 0);
    }

    // The key of the first `len` bytes of a token at `p` (16 bytes readable)
    // whose tail hashes are in `tails`.
    NameTable::Key KeyAt(const char* p, std::size_t len) const {
        return NameTable::KeyOfPadded(p, len, len > NameTable::InlineLength ? tails[len] : 0);
    }
    void HashTails(const char* p, std::size_t n) {
        std::uint64_t h = 0;
        for (std::size_t k = 8; k < n; ++k)
            tails[k + 1] = h = NameTable::ExtendTail(h, p[k]);
    }

    // The longest plain name of at most `len` bytes that the token at `p`
    // starts with (its tails hashed).
    std::size_t Longest(const char* p, std::size_t len) const {
        for (++len; len-- > 0;)
            if (hasLength[len])
                if (std::size_t slot = table.Find(KeyAt(p, len), p); slot != None) return slot;
        return None;
    }
};

namespace {

// An entry found in the text.
struct Pending {
    std::size_t pos = 0;   // where its key starts
    bool weight = false;   // a weight entry, else a limit entry
    std::size_t n = 0;     // length of its token, at most the longest name
    std::string upper;     // the token upper-cased, zero-filled to at least 16 bytes
    const char* p() const { return upper.data(); }
};

} // namespace

ProfileLookup::~ProfileLookup() = default;

const NameTable& ProfileLookup::Table() const {
    return names_->table;
}

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

ProfileLookup::ProfileLookup(std::string_view text, const std::vector<std::string>& names)
    : text_(text.substr(0, NoPos - 1)) {
    names_ = std::make_unique<Names>(names.size());
    Names& n = *names_;
    slotOf_.reserve(names.size());
    nameLength_.reserve(names.size());
    exactSearchable_.reserve(names.size());
    for (const std::string& name : names) {
        slotOf_.push_back(n.Add(UCase(name)));
        nameLength_.push_back(name.size());
        exactSearchable_.push_back(!HasLowerCase(name));
    }
    n.Finish(found_);

    // Marks a slot found by the entry; false when it had been found before,
    // and so had every shorter name it starts with.
    const std::size_t hard = HardPlanStartNoCase(text_);
    auto mark = [&](const Pending& e, std::size_t slot) {
        Found& f = found_[slot];
        const auto pos = static_cast<std::uint32_t>(e.pos);
        if (e.weight) {
            if (f.weight != NoPos) return false;
            f.weight = pos;
            return true;
        }
        bool fresh = false;
        if (f.limitAnywhere == NoPos) {
            f.limitAnywhere = pos;
            fresh = true;
        }
        if (e.pos >= hard && f.limitFromHard == NoPos) {
            f.limitFromHard = pos;
            fresh = true;
        }
        return fresh;
    };

    // The longest plain name the entry's token starts with, then every
    // shorter one (its parents) until one had been found before; then the
    // names with breaks.
    auto enter = [&](const Pending& e) {
        if (e.n > NameTable::InlineLength) n.HashTails(e.p(), e.n);
        std::size_t slot = n.Longest(e.p(), e.n);
        while (slot != None && mark(e, slot))
            slot = found_[slot].parent == NoPos ? None : found_[slot].parent;
        if (!n.trie.Empty())
            n.trie.Walk(text_.substr(e.pos + (e.weight ? WeightKey : LimitKey).size()),
                        [&](std::size_t s) { mark(e, s); });
    };
    Pending e;
    e.upper.assign(std::max(n.maxLength, NameTable::InlineLength), '\0');

    // Both keys end in "T ": one walk over the text finds every entry in order.
    ForEachPair(text_, 'T', ' ', [&](std::size_t t) {
        if (t >= 5 && AtNoCase(text_, t - 5, WeightKey)) {
            e.pos = t - 5;
            e.weight = true;
        } else if (t >= 4 && AtNoCase(text_, t - 4, LimitKey)) {
            e.pos = t - 4;
            e.weight = false;
        } else {
            return true;
        }
        // The token, upper-cased; bytes past it (left by the last token) are
        // masked off by the key.
        std::string_view token = text_.substr(t + 2);
        const std::size_t last = std::min(n.maxLength, token.size());
        char* u = e.upper.data();
        std::size_t k = 0;
        for (; k < last && !IsBreak(token[k]); ++k)
            u[k] = UpperChar(token[k]);
        e.n = k;
        enter(e);
        return true;
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
    std::uint32_t pos = found_[slotOf_[i]].weight;
    if (pos == NoPos) return 0.0f;
    return ProfileNumber(
        EntryValueText(text_, pos, WeightKey.size() + nameLength_[i], LineEnd(pos)), sep);
}

float ProfileLookup::Limit(std::size_t i, std::string_view sep) const {
    const Found& f = found_[slotOf_[i]];
    std::uint32_t pos = f.limitFromHard;
    if (pos == NoPos && exactSearchable_[i]) pos = f.limitAnywhere;
    if (pos == NoPos) return 0.0f;
    return ProfileNumber(EntryValueText(text_, pos, LimitKey.size() + nameLength_[i], LineEnd(pos)),
                         sep);
}

} // namespace vantrel
