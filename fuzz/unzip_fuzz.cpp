// Feeds arbitrary bytes to the unzip object as a zip package and checks that
// nothing it unpacks lands outside the destination folder.
#include "base/paths.h"
#include "startup/cUnzip.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fs::path root = [] {
        std::string pattern = (fs::temp_directory_path() / "vantrel-unzip-fuzz-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) std::abort();
        return fs::path(pattern);
    }();
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
    unzip.UnzipFolder(units.string());
    unzip.Unzip();
    // Only the package itself and the Units folder may exist beside each other.
    for (const auto& e : fs::directory_iterator(root))
        if (e.path() != zip && e.path() != units) std::abort();
    std::error_code ec;
    fs::remove_all(units, ec);
    return 0;
}
