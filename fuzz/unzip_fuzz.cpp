// Feeds arbitrary bytes to the unzip object as a zip package and checks that
// nothing it unpacks lands outside the destination folder.
#include "base/paths.h"
#include "fuzz/fuzz_scratch.h"
#include "startup/cUnzip.h"

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
    vantrel::cUnzip unzip;
    unzip.Progress = [](int, const std::string& sMsg) {
        if (sMsg.size() < 3 || sMsg.back() != '\0') std::abort();
    };
    unzip.ZipFile(zip.string());
    unzip.Directory();
    // Half of the runs unpack a selection, half every entry.
    if (size % 2 && unzip.FileCount() > 0) unzip.FileSelected(1, false);
    unzip.UnzipFolder(units.string());
    unzip.UseFolderNames(size % 3 == 0);
    unzip.Unzip();
    // Only the package itself and the Units folder may exist beside each other.
    for (const auto& e : fs::directory_iterator(root))
        if (e.path() != zip && e.path() != units) std::abort();
    if (!vantrel::fuzz::OnlyPlainEntriesBelow(root)) std::abort();
    vantrel::fuzz::ScratchFolder::Clear();
    return 0;
}
