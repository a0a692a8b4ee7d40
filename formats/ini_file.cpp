#include "formats/ini_file.h"

#include "base/text.h"

#include <algorithm>

namespace vantrel {

namespace {

// Sections with more keys than this get a key map; shorter ones are scanned.
constexpr std::size_t ScanLimit = 8;

std::string_view TrimView(std::string_view s) {
    while (!s.empty() && IsBlankChar(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && IsBlankChar(s.back()))
        s.remove_suffix(1);
    return s;
}

std::string_view Unquoted(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    return value.substr(0, IniValueMax);
}

// A key line: its key with trailing blanks removed, and its value (empty
// without "=") with leading blanks removed.
std::pair<std::string_view, std::string_view> SplitKeyLine(std::string_view line) {
    std::size_t eq = line.find('=');
    std::string_view key = line.substr(0, eq);
    std::string_view value;
    if (eq != std::string_view::npos) {
        value = line.substr(eq + 1);
        while (!value.empty() && IsBlankChar(value.front()))
            value.remove_prefix(1);
    }
    while (!key.empty() && IsBlankChar(key.back()))
        key.remove_suffix(1);
    return {key, value};
}

// The name of a section line ("[" first, a "]" somewhere), else nullopt.
std::optional<std::string_view> SectionName(std::string_view line) {
    std::size_t close = line.rfind(']');
    if (line.front() != '[' || close == std::string_view::npos) return std::nullopt;
    return line.substr(1, close - 1);
}

// Calls each(line) for every non-empty line of `text`, trimmed.
template <class Each> void ForEachTrimmedLine(std::string_view text, Each&& each) {
    ForEachLine(text, [&](std::string_view line, std::size_t) {
        line = TrimView(line);
        if (!line.empty()) each(line);
    });
}

} // namespace

std::size_t NoCaseHash::operator()(std::string_view s) const {
    std::size_t h = 1469598103934665603ULL;
    for (char c : s)
        h = (h ^ static_cast<unsigned char>(UpperChar(c))) * 1099511628211ULL;
    return h;
}

bool NoCaseEqual::operator()(std::string_view a, std::string_view b) const {
    return EqualsNoCase(a, b);
}

IniIndex::IniIndex(std::string text) : text_(std::move(text)) {
    std::string_view all = text_;
    // Every section line holds a "[": their count bounds the number of sections.
    std::size_t size = 16;
    for (std::size_t n = 2 * static_cast<std::size_t>(std::count(all.begin(), all.end(), '['));
         size < n;)
        size *= 2;
    table_.assign(size, 0);
    mask_ = size - 1;
    bool inSection = false; // in the first section of its name
    auto closeSection = [&] {
        if (!inSection) return;
        Section& sec = sections_.back();
        sec.end = entries_.size();
        if (sec.end - sec.begin > ScanLimit) {
            sec.keys = std::make_unique<KeyMap>();
            for (std::size_t e = sec.begin; e < sec.end; ++e)
                sec.keys->try_emplace(entries_[e].key, e);
        }
    };
    ForEachTrimmedLine(all, [&](std::string_view line) {
        if (auto name = SectionName(line)) {
            closeSection();
            // A later section of a name already seen is never searched.
            std::size_t hash = NoCaseHash{}(*name);
            inSection = FindSection(*name, hash) == sections_.size();
            if (inSection) {
                std::size_t i = hash & mask_;
                while (table_[i] != 0)
                    i = (i + 1) & mask_;
                table_[i] = sections_.size() + 1;
                sections_.push_back({*name, hash, entries_.size(), entries_.size(), nullptr});
            }
            return;
        }
        if (!inSection) return;
        auto [key, value] = SplitKeyLine(line);
        entries_.push_back({key, value});
    });
    closeSection();
}

IniIndex::~IniIndex() = default;

std::size_t IniIndex::FindSection(std::string_view name, std::size_t hash) const {
    for (std::size_t i = hash & mask_; table_[i] != 0; i = (i + 1) & mask_) {
        const Section& s = sections_[table_[i] - 1];
        if (s.hash == hash && EqualsNoCase(s.name, name)) return table_[i] - 1;
    }
    return sections_.size();
}

std::optional<std::string> IniIndex::Find(std::string_view section, std::string_view key) const {
    section = TrimView(section);
    std::size_t index = FindSection(section, NoCaseHash{}(section));
    if (index == sections_.size()) return std::nullopt;
    const Section& s = sections_[index];
    key = TrimView(key);
    const Entry* found = nullptr;
    if (s.keys) {
        auto it = s.keys->find(key);
        if (it != s.keys->end()) found = &entries_[it->second];
    } else {
        for (std::size_t e = s.begin; e < s.end && !found; ++e)
            if (EqualsNoCase(entries_[e].key, key)) found = &entries_[e];
    }
    if (!found) return std::nullopt;
    return std::string(Unquoted(found->value));
}

} // namespace vantrel
