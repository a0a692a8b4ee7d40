#include "startup/options.h"

#include "base/text.h"

#include <charconv>

namespace vantrel {

std::optional<std::int16_t> ParseOption16(std::string_view text) {
    std::string t = TrimBlanks(text);
    std::string_view v = t;
    if (!v.empty() && v.front() == '+') v.remove_prefix(1);
    if (v.empty()) return std::nullopt;
    int value = 0;
    auto res = std::from_chars(v.data(), v.data() + v.size(), value);
    if (res.ec != std::errc() || res.ptr != v.data() + v.size()) return std::nullopt;
    if (value < -32768 || value > 32767) return std::nullopt;
    return static_cast<std::int16_t>(value);
}

void ReadOptions(Definitions& defs, SettingsStore& store) {
    const Options defaults;
    for (const OptionKey& option : OptionTable) {
        const std::string key(option.Key);
        if (option.Number) {
            auto value = ParseOption16(store.Get(key, std::to_string(defaults.*option.Number)));
            defs.Options.*option.Number = value ? *value : defaults.*option.Number;
        } else {
            auto value = ParseOption16(store.Get(key, defaults.*option.Switch ? "1" : "0"));
            defs.Options.*option.Switch = value ? *value != 0 : defaults.*option.Switch;
        }
    }
    defs.LastDir = store.Get("LastDir", defs.AppDir);
}

void WriteOptions(const Definitions& defs, SettingsStore& store) {
    for (const OptionKey& option : OptionTable)
        store.Set(std::string(option.Key), option.Number
                                               ? std::to_string(defs.Options.*option.Number)
                                               : (defs.Options.*option.Switch ? "1" : "0"));
}

} // namespace vantrel
