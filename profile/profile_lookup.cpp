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

std::size_t HardPlanStart(std::string_view upperText) {
    std::size_t h = upperText.find(HardPlan);
    return h == npos ? 0 : h;
}

bool HasLowerCase(std::string_view s) {
    return std::any_of(s.begin(), s.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

float EntryValue(std::string_view text, std::size_t pos, std::size_t keyLength,
                 std::string_view sep) {
    if (pos == npos) return 0.0f;
    std::size_t lineEnd = text.find("\r\n", pos);
    if (lineEnd == npos) lineEnd = text.size();
    return ProfileNumber(EntryValueText(text, pos, keyLength, lineEnd), sep);
}

// A trie of names: one node per distinct prefix, edges in one hash table.
class NameTrie {
  public:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    std::size_t Insert(std::string_view name) {
        std::size_t node = 0;
        for (char c : name) {
            auto [it, fresh] = edges_.try_emplace(Key(node, c), slots_.size());
            if (fresh) slots_.push_back(None);
            node = it->second;
        }
        if (slots_[node] == None) slots_[node] = distinct_++;
        return slots_[node];
    }
    std::size_t Distinct() const { return distinct_; }

    // Calls visit(slot) for every name that `text` starts with, shortest first.
    template <class Visit> void Walk(std::string_view text, Visit&& visit) const {
        std::size_t node = 0;
        if (slots_[node] != None) visit(slots_[node]);
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
    std::vector<std::size_t> slots_{None}; // per node: the name ending there
    std::size_t distinct_ = 0;
};

} // namespace

std::string_view EntryValueText(std::string_view text, std::size_t pos, std::size_t keyLength,
                                std::size_t lineEnd) {
    if (lineEnd < pos || lineEnd - pos <= keyLength) return {};
    std::string_view value = text.substr(pos + keyLength, lineEnd - pos - keyLength);
    while (!value.empty() && value.front() == ' ') value.remove_prefix(1);
    while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
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
    NameTrie trie;
    slotOf_.reserve(names.size());
    for (const std::string& name : names) {
        slotOf_.push_back(trie.Insert(UCase(name)));
        nameLength_.push_back(name.size());
        exactSearchable_.push_back(!HasLowerCase(name));
    }
    found_.resize(trie.Distinct());

    for (std::size_t p = text_.find("\r\n"); p != npos; p = text_.find("\r\n", p + 1))
        lineEnds_.push_back(p);

    for (std::size_t p = text_.find(WeightKey); p != npos; p = text_.find(WeightKey, p + 1))
        trie.Walk(text_.substr(p + WeightKey.size()), [&](std::size_t slot) {
            if (found_[slot].weight == npos) found_[slot].weight = p;
        });

    std::size_t hard = HardPlanStart(text_);
    for (std::size_t p = text_.find(LimitKey); p != npos; p = text_.find(LimitKey, p + 1))
        trie.Walk(text_.substr(p + LimitKey.size()), [&](std::size_t slot) {
            Found& f = found_[slot];
            if (f.limitAnywhere == npos) f.limitAnywhere = p;
            if (p >= hard && f.limitFromHard == npos) f.limitFromHard = p;
        });
}

std::size_t ProfileLookup::LineEnd(std::size_t pos) const {
    auto it = std::lower_bound(lineEnds_.begin(), lineEnds_.end(), pos);
    return it == lineEnds_.end() ? text_.size() : *it;
}

float ProfileLookup::Weight(std::size_t i, std::string_view sep) const {
    std::size_t pos = found_[slotOf_[i]].weight;
    if (pos == npos) return 0.0f;
    return ProfileNumber(EntryValueText(text_, pos, WeightKey.size() + nameLength_[i], LineEnd(pos)),
                         sep);
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
