// Archive extraction to disk on arbitrary bytes: the whole tree as
// `hpi extract` writes it, and the "units" folder under bare names as
// start-up writes it. Nothing may land outside the scratch folder or be
// written through a link.
#include "base/paths.h"
#include "fuzz/fuzz_scratch.h"
#include "formats/hpi_extract.h"

#include <cstdint>
#include <string_view>

using namespace vantrel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto archive = HpiArchive::Open(std::make_unique<MemorySource>(bytes));
    if (!archive) return 0;
    // Small caps keep each input quick; the rules are those of the real caps.
    archive->SetLimits({1u << 20, 4u << 20});
    const std::filesystem::path root = fuzz::ScratchFolder::Path();
    const std::filesystem::path tree = root / "tree", units = root / "Units";
    std::filesystem::create_directory(tree);
    std::filesystem::create_directory(units);
    ExtractTree(*archive, tree.string());
    const OpenFolder unitsFolder(units.string());
    if (const HpiEntry* folder = archive->FindFolder("UNITS"))
        for (const HpiEntry& e : folder->children)
            if (!e.isDirectory && IsSafeBareName(e.name))
                ExtractToFile(*archive, e, unitsFolder, e.name);
    if (archive->BytesExtracted() > (4u << 20)) std::abort();
    for (const auto& e : std::filesystem::directory_iterator(root))
        if (e.path() != tree && e.path() != units) std::abort();
    if (!fuzz::OnlyPlainEntriesBelow(root)) std::abort();
    fuzz::ScratchFolder::Clear();
    return 0;
}
