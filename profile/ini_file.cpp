#include "profile/ini_file.h"

#include "catalogue/text.h"
#include "profile/profile.h"
#include "profile/profile_io.h"

namespace vantrel {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

std::string_view TrimView(std::string_view s) {
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}

} // namespace

IniIndex::IniIndex(std::string_view text) {
    std::unordered_map<std::string, std::string>* current = nullptr;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = TrimView(text.substr(start, end - start));
        start = end + 1;
        if (line.empty()) continue;

        std::size_t close = line.rfind(']');
        if (line.front() == '[' && close != std::string_view::npos) {
            auto [it, fresh] = sections_.try_emplace(UCase(line.substr(1, close - 1)));
            // A later section of a name already seen is never searched.
            current = fresh ? &it->second : nullptr;
            continue;
        }
        if (!current) continue;
        std::size_t eq = line.find('=');
        std::string_view key = line.substr(0, eq);
        std::string_view value;
        if (eq != std::string_view::npos) {
            value = line.substr(eq + 1);
            while (!value.empty() && IsBlank(value.front())) value.remove_prefix(1);
        }
        while (!key.empty() && IsBlank(key.back())) key.remove_suffix(1);
        current->try_emplace(UCase(key), value);
    }
}

std::optional<std::string> IniIndex::Find(std::string_view section, std::string_view key) const {
    auto sec = sections_.find(UCase(TrimView(section)));
    if (sec == sections_.end()) return std::nullopt;
    auto entry = sec->second.find(UCase(TrimView(key)));
    if (entry == sec->second.end()) return std::nullopt;
    std::string_view value = entry->second;
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    return std::string(value.substr(0, IniValueMax));
}

std::string ReadIniValue(const std::string& section, const std::string& key,
                         const std::string& file, const std::string& fallback) {
    auto text = ReadProfileFile(file);
    if (!text.ok()) return fallback;
    return IniIndex(text.data).Get(section, key, fallback);
}

} // namespace vantrel
