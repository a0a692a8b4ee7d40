// Unit files on arbitrary bytes: the field reader on the whole input, then a
// folder load of unit files cut from it (a few files, odd names included).
#include "base/paths.h"
#include "catalogue/load_units.h"
#include "fuzz/fuzz_scratch.h"

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

using namespace vantrel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    vtUnit unit;
    ReadUnitFields(text, unit);
    // The first bytes choose a key, an occurrence and delimiters.
    if (size >= 4) {
        const std::string_view rest = text.substr(4);
        GetFieldInText(rest, text.substr(0, data[0] % 4), data[1], text.substr(1, data[2] % 2),
                       text.substr(2, data[3] % 3));
    }

    // Files separated by a NUL; the fourth piece (if any) becomes a folder
    // named like a unit file, which the loader must pass over.
    const std::filesystem::path units = fuzz::ScratchFolder::Path() / "Units";
    std::filesystem::create_directory(units);
    std::size_t start = 0;
    for (int i = 0; i < 6 && start <= size; ++i) {
        std::size_t end = text.find('\0', start);
        if (end == std::string_view::npos) end = size;
        const std::string name = "unit" + std::to_string(i) + (i % 2 ? ".FBI" : ".fbi");
        if (i == 3) {
            std::filesystem::create_directory(units / name);
        } else {
            std::ofstream out(units / name, std::ios::binary);
            out.write(text.data() + start, static_cast<std::streamsize>(end - start));
        }
        start = end + 1;
    }
    Definitions defs;
    DefaultRandom random;
    defs.Options.Random = size % 2 != 0;
    LoadUnitsFromFolder(defs, units.string(), &random, nullptr);
    if (defs.Units.UBound() > 5) std::abort(); // only the five files count
    fuzz::ScratchFolder::Clear();
    return 0;
}
