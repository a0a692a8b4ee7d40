#include "startup/options.h"

#include "base/text.h"

#include <charconv>

namespace vantrel {

const std::array<OptionSpec, 8> OptionTable{{
    {"", 0},
    {"EasyLimit", 50},
    {"MediumLimit", 75},
    {"HardLimit", 100},
    {"WeightMax", 10},
    {"LimitMax", 50},
    {"Extract", 0},
    {"Random", 0},
}};

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
    for (std::size_t i = 1; i < OptionTable.size(); ++i) {
        const OptionSpec& option = OptionTable[i];
        std::string text = store.Get(std::string(option.Key), std::to_string(option.Default));
        auto value = ParseOption16(text);
        defs.OptionValues[i] = value ? *value : option.Default;
    }
    defs.LastDir = store.Get("LastDir", defs.AppDir);
}

void WriteOptions(const Definitions& defs, SettingsStore& store) {
    for (std::size_t i = 1; i < OptionTable.size(); ++i)
        store.Set(std::string(OptionTable[i].Key), std::to_string(defs.OptionValues[i]));
}

} // namespace vantrel
