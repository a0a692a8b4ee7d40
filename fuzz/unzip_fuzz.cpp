// Feeds arbitrary bytes to the package reader as a zip package and checks
// that nothing it unpacks lands outside the destination folder.
#include "base/paths.h"
#include "fuzz/fuzz_scratch.h"
#include "formats/zip_package.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fs::path& root = vantrel::fuzz::ScratchFolder::Path();
    const fs::path zip = root / "input.zip";
    const fs::path units = root / "Units";
    {
        std::ofstream out(zip, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    fs::create_directory(units);
    if (auto package = vantrel::ZipPackage::Open(zip.string())) {
        // Half of the runs keep every other name as if it were there already.
        package->UnpackTo(
            units.string(), [size](const std::string& bare) { return size % 2 && bare.size() % 2; },
            [](const vantrel::ZipEntryReport& r) {
                if (r.name.empty()) std::abort();
            });
    }
    // Only the package itself and the Units folder may exist beside each other.
    for (const auto& e : fs::directory_iterator(root))
        if (e.path() != zip && e.path() != units) std::abort();
    if (!vantrel::fuzz::OnlyPlainEntriesBelow(root)) std::abort();
    vantrel::fuzz::ScratchFolder::Clear();
    return 0;
}
