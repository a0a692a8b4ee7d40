#include "profile/profile_lookup.h"

#include "catalogue/text.h"
#include "profile/name_table.h"
#include "profile/profile_numbers.h"

#include <algorithm>
#include <array>
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

// Characters that end a token.
bool IsBreak(char c) {
    return c == ' ' || c == '\r' || c == '\n';
}

std::uint64_t LoadWord(const char* p) {
    std::uint64_t w;
    std::memcpy(&w, p, sizeof w);
    return w;
}

// Eight bytes with the letters a-z upper-cased, as UpperChar does.
std::uint64_t UpperWord(std::uint64_t w) {
    constexpr std::uint64_t Ones = 0x0101010101010101ULL;
    constexpr std::uint64_t Highs = Ones * 0x80;
    const std::uint64_t low7 = w & ~Highs;
    // A high bit where the low seven bits are at least 'a', and where they are past 'z'.
    const std::uint64_t fromA = low7 + Ones * (0x80 - 'a');
    const std::uint64_t pastZ = low7 + Ones * (0x80 - 'z' - 1);
    const std::uint64_t lower = fromA & ~pastZ & ~w & Highs;
    return w ^ (lower >> 2);
}

// The first `n` bytes of `w` in memory order (n < 8); the rest zero.
std::uint64_t FirstBytes(std::uint64_t w, std::size_t n) {
    if constexpr (std::endian::native == std::endian::little)
        return w & ((std::uint64_t{1} << (8 * n)) - 1);
    else
        return w & ~(~std::uint64_t{0} >> (8 * n));
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

// A plain name as the walk first met it, with the first entries that name
// it. Kept in the order first met, which is the order the next plan lists
// them in, so that the walk reads these in turn.
struct Visit {
    std::uint64_t head = 0, tail = 0; // the name's key (names of up to 16 bytes)
    std::uint32_t slot = 0, length = 0;
    std::uint32_t weight = 0xFFFFFFFF, limitAnywhere = 0xFFFFFFFF, limitFromHard = 0xFFFFFFFF;
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

    std::vector<char> plain;          // per slot: the name holds no break character
    std::vector<std::uint32_t> order; // the plain names' slots in byte order

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
        order.clear();
        order.reserve(table.Count());
        for (std::size_t slot = 0; slot < table.Count(); ++slot)
            if (plain[slot]) {
                order.push_back(static_cast<std::uint32_t>(slot));
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

    // The token at `p`, which has `avail` bytes of text from it on, is the
    // plain name `v` holds: the name's bytes (in any case), and then a break,
    // the text's end or the longest name's length.
    bool TokenIs(const char* p, std::size_t avail, const Visit& v) const {
        const std::size_t len = v.length;
        if (avail < len || (len < avail && len < maxLength && !IsBreak(p[len]))) return false;
        if (len <= NameTable::InlineLength && avail >= NameTable::InlineLength) {
            const std::uint64_t a = UpperWord(LoadWord(p));
            if (len < 8) return FirstBytes(a, len) == v.head;
            const std::uint64_t b = UpperWord(LoadWord(p + 8));
            return a == v.head && (len < NameTable::InlineLength ? FirstBytes(b, len - 8) : b) == v.tail;
        }
        std::string_view name = table.Text(v.slot);
        for (std::size_t k = 0; k < len; ++k)
            if (UpperChar(p[k]) != name[k]) return false;
        return true;
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
    std::string upper;
    for (const std::string& name : names) {
        upper.assign(name);
        bool lower = false;
        for (char& c : upper) {
            lower |= c >= 'a' && c <= 'z';
            c = UpperChar(c);
        }
        slotOf_.push_back(n.Add(upper));
        nameLength_.push_back(name.size());
        exactSearchable_.push_back(!lower);
    }
    n.Finish(found_);
    Walk();
}

void ProfileLookup::Walk() {
    Names& n = *names_;
    const std::size_t hard = HardPlanStartNoCase(text_);
    // The first entries of a kind at `pos`: a weight, or a limit anywhere and
    // one from the hard plan on.
    auto note = [&](std::uint32_t& weight, std::uint32_t& anywhere, std::uint32_t& fromHard,
                    bool isWeight, std::size_t pos) {
        const auto p = static_cast<std::uint32_t>(pos);
        if (isWeight) {
            if (weight == NoPos) weight = p;
        } else {
            if (anywhere == NoPos) anywhere = p;
            if (pos >= hard && fromHard == NoPos) fromHard = p;
        }
    };

    // Each entry's token names the longest plain name it starts with. A plan
    // usually lists the names in the order the one before did: the name met
    // after the last entry's name is tried first, and only a token that is
    // not that name is looked up.
    std::vector<Visit> visits;
    std::vector<std::uint32_t> visitOf(n.table.Count(), NoPos);
    std::size_t current = None; // the visit of the last entry that named one
    std::string upper(std::max(n.maxLength, NameTable::InlineLength), '\0');
    auto enter = [&](std::size_t pos, bool isWeight, std::size_t from) {
        const char* token = text_.data() + from;
        const std::size_t avail = text_.size() - from;
        std::size_t v = current + 1; // 0 after None
        if (v >= visits.size() || !n.TokenIs(token, avail, visits[v])) {
            // The token, upper-cased; bytes past it (left by the last token)
            // are masked off by the key.
            const std::size_t most = std::min(n.maxLength, avail);
            std::size_t k = 0;
            for (; k < most && !IsBreak(token[k]); ++k)
                upper[k] = UpperChar(token[k]);
            if (k > NameTable::InlineLength) n.HashTails(upper.data(), k);
            const std::size_t slot = n.Longest(upper.data(), k);
            if (slot == None) {
                v = None;
            } else if (visitOf[slot] != NoPos) {
                v = visitOf[slot];
            } else {
                v = visits.size();
                visitOf[slot] = static_cast<std::uint32_t>(v);
                const NameTable::Key key = n.KeyAt(upper.data(), k);
                Visit& fresh = visits.emplace_back();
                fresh.head = key.head;
                fresh.tail = key.tail;
                fresh.slot = static_cast<std::uint32_t>(slot);
                fresh.length = static_cast<std::uint32_t>(k);
            }
        }
        if (v != None) {
            Visit& visit = visits[v];
            note(visit.weight, visit.limitAnywhere, visit.limitFromHard, isWeight, pos);
            current = v;
        }
        if (!n.trie.Empty())
            n.trie.Walk(text_.substr(from), [&](std::size_t s) {
                Found& f = found_[s];
                note(f.weight, f.limitAnywhere, f.limitFromHard, isWeight, pos);
            });
    };

    // Both keys end in "T ": one walk over the text finds every entry in order.
    const char* t0 = text_.data();
    ForEachPair(text_, 'T', ' ', [&](std::size_t t) {
        if constexpr (std::endian::native == std::endian::little) {
            // "WEIGHT " or " LIMIT " in the eight bytes from t - 5, upper-cased.
            if (t >= 5 && t + 3 <= text_.size()) {
                const std::uint64_t w = UpperWord(LoadWord(t0 + t - 5));
                if ((w & 0x00FFFFFFFFFFFFFFULL) == 0x0020544847494557ULL) // "WEIGHT "
                    enter(t - 5, true, t + 2);
                else if ((w & 0x00FFFFFFFFFFFF00ULL) == 0x002054494D494C00ULL) // "LIMIT "
                    enter(t - 4, false, t + 2);
                return true;
            }
        }
        if (t >= 5 && AtNoCase(text_, t - 5, WeightKey))
            enter(t - 5, true, t + 2);
        else if (t >= 4 && AtNoCase(text_, t - 4, LimitKey))
            enter(t - 4, false, t + 2);
        return true;
    });

    // Each name's first entries, then a name also takes those of every
    // longer name that starts with it: children come after their parents in
    // byte order, so walking that order backwards hands them up in one pass.
    for (const Visit& v : visits) {
        Found& f = found_[v.slot];
        f.weight = v.weight;
        f.limitAnywhere = v.limitAnywhere;
        f.limitFromHard = v.limitFromHard;
    }
    for (auto it = n.order.rbegin(); it != n.order.rend(); ++it) {
        const Found& child = found_[*it];
        if (child.parent == NoPos) continue;
        Found& parent = found_[child.parent];
        parent.weight = std::min(parent.weight, child.weight);
        parent.limitAnywhere = std::min(parent.limitAnywhere, child.limitAnywhere);
        parent.limitFromHard = std::min(parent.limitFromHard, child.limitFromHard);
    }
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
