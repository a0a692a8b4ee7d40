// Feeds arbitrary bytes to the archive reader: open, look folders up, list
// and extract every file, and run the two chunk decoders on the raw input.
#include "formats/hpi_archive.h"
#include "formats/hpi_extract.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

using namespace vantrel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::vector<std::uint8_t> out(hpi::ChunkSize);
    const std::size_t claimed = size > 0 ? (data[0] * 257u) % (hpi::ChunkSize + 1) : 0;
    hpi::DecodeLz77(data, size, out.data(), claimed);
    hpi::DecodeZlib(data, size, out.data(), claimed);

    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto archive = HpiArchive::Open(std::make_unique<MemorySource>(bytes));
    if (!archive) return 0;
    archive->FindFolder("UNITS");
    archive->FindFile("units\\armcom.fbi");
    // Bound the work per input: a damaged directory may point many entries
    // at the same large data.
    std::size_t budget = 8u * 1024u * 1024u;
    for (const ArchiveFile& f : ListArchiveFiles(archive->Root())) {
        IsSafeBareName(f.entry->name);
        if (budget == 0) break;
        archive->Extract(*f.entry, [&budget](const std::uint8_t*, std::size_t n) {
            if (n > budget) {
                budget = 0;
                return false;
            }
            budget -= n;
            return true;
        });
    }
    return 0;
}
