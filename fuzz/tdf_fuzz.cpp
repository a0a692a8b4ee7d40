// The TDF reader and the map rules on arbitrary bytes: nothing crashes, and
// pointing a map at a profile changes nothing but the profile values.
#include "startup/game_maps.h"

#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    vantrel::ReadMapText(text);
    try {
        const std::string changed = vantrel::WithAiProfile(text, "Fuzzed");
        if (!vantrel::DiffersOnlyInAiProfile(changed, text)) __builtin_trap();
    } catch (const vantrel::MapError&) {
        // No schema names a profile: nothing to change.
    }
    return 0;
}
