#include "profile/profile_lookup.h"

#include "catalogue/text.h"
#include "profile/name_table.h"
#include "profile/profile_numbers.h"
#include "profile/unit_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vantrel {

namespace {

constexpr std::string_view WeightKey = "WEIGHT ";
constexpr std::string_view LimitKey = "LIMIT ";
constexpr std::string_view HardPlan = "PLAN HARD";
constexpr std::size_t npos = std::string_view::npos;
constexpr std::size_t None = static_cast<std::size_t>(-1);
constexpr int RememberedBits = 13;

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
// until at() returns false. Sixteen or eight bytes at a time: a word is
// looked at closely only when it may hold the pair.
template <class At> void ForEachPair(std::string_view text, char first, char second, At&& at) {
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
#if defined(__SSE2__)
    // Sixteen bytes at a time where SSE2 is there (every x86-64).
    {
        const __m128i fold = _mm_set1_epi8(0x20);
        const __m128i secondFold16 = _mm_set1_epi8(static_cast<char>(secondFold));
        const __m128i firsts = _mm_set1_epi8(first);
        const __m128i seconds = _mm_set1_epi8(second);
        for (; i + 17 <= size; i += 16) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(t + i));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(t + i + 1));
            const __m128i both =
                _mm_and_si128(_mm_cmpeq_epi8(_mm_or_si128(a, fold), firsts),
                              _mm_cmpeq_epi8(_mm_or_si128(b, secondFold16), seconds));
            for (unsigned m = static_cast<unsigned>(_mm_movemask_epi8(both)); m != 0; m &= m - 1)
                if (!at(i + static_cast<std::size_t>(std::countr_zero(m)))) return;
        }
    }
#endif
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
            for (std::uint64_t m =
                     zeros((a | Ones * 0x20) ^ firsts) & zeros((b | Ones * secondFold) ^ seconds);
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

bool IsBreak(char c) {
    return UnitIndex::IsBreak(c);
}

// Where the first CR LF starts in the sixteen bytes at `p`; 15 when none
// starts before the last byte.
std::size_t ShortLineEnd(const char* p) {
#if defined(__SSE2__)
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const auto cr =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\r'))));
    const auto lf =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n'))));
    const unsigned both = cr & (lf >> 1);
    return both ? static_cast<std::size_t>(std::countr_zero(both)) : 15;
#else
    std::size_t k = 0;
    while (k < 15 && !(p[k] == '\r' && p[k + 1] == '\n'))
        ++k;
    return k;
#endif
}

// The token at `p`, which has `avail` bytes of text from it on, is the plain
// name at `place`: the name's bytes (in any case), and then a break, the
// text's end or the longest name's length.
bool TokenIs(const UnitIndex& index, const char* p, std::size_t avail, std::size_t place) {
    const UnitIndex::PlaceKey& key = index.KeyAt(place);
    const std::size_t len = key.length;
    if (avail < len || (len < avail && len < index.MaxPlainLength() && !IsBreak(p[len])))
        return false;
    if (len <= NameTable::InlineLength && avail >= NameTable::InlineLength) {
        const std::uint64_t a = UpperWord(LoadWord(p));
        if (len < 8) return FirstBytes(a, len) == key.head;
        const std::uint64_t b = UpperWord(LoadWord(p + 8));
        return a == key.head &&
               (len < NameTable::InlineLength ? FirstBytes(b, len - 8) : b) == key.tail;
    }
    std::string_view name = index.Table().Text(key.slot);
    for (std::size_t k = 0; k < len; ++k)
        if (UpperChar(p[k]) != name[k]) return false;
    return true;
}

// Finds the longest plain name that an upper-cased token starts with, by
// hash: the whole token first, then its prefixes of the lengths names have.
class TokenLookup {
  public:
    explicit TokenLookup(const UnitIndex& index)
        : index_(index), upper_(std::max(index.MaxPlainLength(), NameTable::InlineLength), '\0'),
          tails_(index.MaxPlainLength() + 1, 0) {}

    // The slot of the longest plain name the token at `p` starts with, or None.
    std::size_t Longest(const char* p, std::size_t avail) {
        // The token, upper-cased; bytes past it (left by the last token) are
        // masked off by the key.
        const std::size_t most = std::min(index_.MaxPlainLength(), avail);
        std::size_t len = 0;
        for (; len < most && !IsBreak(p[len]); ++len)
            upper_[len] = UpperChar(p[len]);
        if (len > NameTable::InlineLength) {
            std::uint64_t h = 0;
            for (std::size_t k = 8; k < len; ++k)
                tails_[k + 1] = h = NameTable::ExtendTail(h, upper_[k]);
        }
        for (++len; len-- > 0;) {
            if (!index_.HasPlainLength(len)) continue;
            const NameTable::Key key = NameTable::KeyOfPadded(
                upper_.data(), len, len > NameTable::InlineLength ? tails_[len] : 0);
            if (std::size_t slot = index_.Table().Find(key, upper_.data()); slot != None)
                return slot;
        }
        return None;
    }

  private:
    const UnitIndex& index_;
    std::string upper_;
    std::vector<std::uint64_t> tails_;
};

} // namespace

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

ProfileLookup::ProfileLookup(std::string_view text, const UnitIndex& index, std::string_view sep)
    : text_(text.substr(0, NoPos - 1)), sep_(sep), index_(&index) {
    Walk();
}

ProfileLookup::ProfileLookup(std::string_view text, const std::vector<std::string>& names,
                             std::string_view sep)
    : text_(text.substr(0, NoPos - 1)), sep_(sep), owned_(std::make_unique<UnitIndex>(names)),
      index_(owned_.get()) {
    Walk();
}

void ProfileLookup::Walk() {
    const UnitIndex& index = *index_;
    const std::size_t places = index.PlaceCount();
    found_.assign(places, Found{});
    const std::size_t hard = HardPlanStartNoCase(text_);
    // The first entries of a kind at `pos`: a weight, or a limit anywhere and
    // one from the hard plan on. The text there is at hand: the values that
    // will be asked for are read now.
    auto note = [&](std::size_t place, std::size_t nameLength, bool plain, bool isWeight,
                    std::size_t pos) {
        Found& f = found_[place];
        const auto p = static_cast<std::uint32_t>(pos);
        if (isWeight) {
            if (f.weight != NoPos) return;
            f.weight = p;
            f.weightValue = ValueAt(p, WeightKey.size() + nameLength, plain);
        } else {
            if (f.limitAnywhere == NoPos) f.limitAnywhere = p;
            if (pos < hard || f.limitFromHard != NoPos) return;
            f.limitFromHard = p;
            f.limitFromHardValue = ValueAt(p, LimitKey.size() + nameLength, plain);
        }
    };

    // Each entry's token names the longest plain name it starts with. The
    // candidates are the name that followed the last entry's name the last
    // time, then the next places (a plan leaves out the units that are not
    // built); only a token that is none of them is looked up.
    constexpr std::size_t Ahead = 3;
    std::vector<std::uint32_t> next(places, UnitIndex::None);
    std::size_t current = None; // the place of the last entry that named one
    TokenLookup lookup(index);
    auto enter = [&](std::size_t pos, bool isWeight, std::size_t from) {
        const char* token = text_.data() + from;
        const std::size_t avail = text_.size() - from;
        std::size_t place = None;
        if (current != None && next[current] != UnitIndex::None &&
            TokenIs(index, token, avail, next[current])) {
            place = next[current];
        } else {
            const std::size_t first = current + 1; // 0 after None
            for (std::size_t k = first; k < places && k < first + Ahead; ++k)
                if (TokenIs(index, token, avail, k)) {
                    place = k;
                    break;
                }
            if (place == None)
                if (std::size_t slot = lookup.Longest(token, avail); slot != None)
                    place = index.PlaceOfSlot(slot);
        }
        if (place != None) {
            note(place, index.KeyAt(place).length, true, isWeight, pos);
            if (current != None) next[current] = static_cast<std::uint32_t>(place);
            current = place;
        }
        if (!index.BreakNames().Empty())
            index.BreakNames().Walk(text_.substr(from), [&](std::size_t slot) {
                const std::size_t at = index.PlaceOfSlot(slot);
                note(at, index.NameLengthAt(at), false, isWeight, pos);
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

    // A name also takes the first entries of every longer name that starts
    // with it: longer names come first, so one pass hands them up the chain.
    // A value taken that way is read with the name's own key, once.
    std::vector<std::uint32_t> inherited;
    std::vector<char> queued(index.Parents().empty() ? 0 : places, 0);
    for (auto [childPlace, parentPlace] : index.Parents()) {
        const Found& child = found_[childPlace];
        Found& parent = found_[parentPlace];
        if (child.weight < parent.weight || child.limitFromHard < parent.limitFromHard) {
            if (!queued[parentPlace]) inherited.push_back(parentPlace);
            queued[parentPlace] = 1;
            parent.weight = std::min(parent.weight, child.weight);
            parent.limitFromHard = std::min(parent.limitFromHard, child.limitFromHard);
        }
        parent.limitAnywhere = std::min(parent.limitAnywhere, child.limitAnywhere);
    }
    for (std::uint32_t place : inherited) {
        Found& f = found_[place];
        const std::size_t length = index.KeyAt(place).length;
        if (f.weight != NoPos) f.weightValue = ValueAt(f.weight, WeightKey.size() + length, true);
        if (f.limitFromHard != NoPos)
            f.limitFromHardValue = ValueAt(f.limitFromHard, LimitKey.size() + length, true);
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

float ProfileLookup::ValueAt(std::uint32_t pos, std::size_t keyLength, bool plainKey) const {
    // A key without CR or LF ends before its line does: the line end is the
    // first CR LF after the key, and entry lines are short.
    constexpr std::size_t Near = 64;
    if (plainKey && keyLength <= text_.size() - pos) {
        const char* value = text_.data() + pos + keyLength;
        const std::size_t left = std::min(text_.size() - pos - keyLength, Near);
        // Most values end within sixteen bytes: those are read once per
        // distinct text (the rest of the line, spaces included).
        if (left >= 16) {
            const std::uint64_t a = LoadWord(value), b = LoadWord(value + 8);
            const std::size_t k = ShortLineEnd(value);
            if (k < 15) {
                const std::uint64_t head = k < 8 ? FirstBytes(a, k) : a;
                const std::uint64_t tail = k < 8 ? 0 : FirstBytes(b, k - 8);
                const std::uint64_t hash =
                    (head ^ (tail * 0x9E3779B97F4A7C15ULL) ^ k) * 0xBF58476D1CE4E5B9ULL;
                if (remembered_.empty()) remembered_.resize(std::size_t{1} << RememberedBits);
                Remembered& r = remembered_[hash >> (64 - RememberedBits)];
                if (r.length == k + 1 && r.head == head && r.tail == tail) return r.value;
                r = {head, tail, static_cast<std::uint32_t>(k + 1),
                     ProfileNumber(EntryValueText(text_, pos, keyLength, pos + keyLength + k),
                                   sep_)};
                return r.value;
            }
        }
        for (std::size_t k = 0; k + 1 < left; ++k) {
            if (value[k] == '\r' && value[k + 1] == '\n')
                return ProfileNumber(EntryValueText(text_, pos, keyLength, pos + keyLength + k),
                                     sep_);
        }
    }
    return ProfileNumber(EntryValueText(text_, pos, keyLength, LineEnd(pos)), sep_);
}

float ProfileLookup::Weight(std::size_t i) const {
    const Found& f = found_[index_->Place(i)];
    return f.weight == NoPos ? 0.0f : f.weightValue;
}

float ProfileLookup::Limit(std::size_t i) const {
    const Found& f = found_[index_->Place(i)];
    if (f.limitFromHard != NoPos) return f.limitFromHardValue;
    if (f.limitAnywhere == NoPos || !index_->ExactSearchable(i)) return 0.0f;
    return ValueAt(f.limitAnywhere, LimitKey.size() + index_->NameLengthAt(index_->Place(i)),
                   false);
}

} // namespace vantrel
