// A cache of decoded unit pictures, so that building the board again does not
// decode the same file twice. Entries are keyed by the file's absolute path
// and checked against its size and modification time on every lookup: a file
// that changed is decoded again. The cache is bounded by the bytes of the
// pictures it holds and by its number of entries; the least recently used
// entries go first.
#pragma once

#include "catalogue/units_folder.h"
#include "formats/pcx.h"

#include <cstdint>
#include <list>
#include <string>
#include <unordered_map>

namespace vantrel {

class PictureCache {
  public:
    static constexpr std::size_t DefaultMaxBytes = std::size_t{64} << 20;
    static constexpr std::size_t DefaultMaxEntries = 4096;

    explicit PictureCache(std::size_t maxBytes = DefaultMaxBytes,
                          std::size_t maxEntries = DefaultMaxEntries);

    // LoadPCX through the cache. A file without its palette marker shows the
    // message on every call, cached or not, just as LoadPCX does.
    PcxResult Load(const std::string& fileName, Messages& messages);
    // A unit's picture by its name in the Units folder ("ARMCOM.pcx", as the
    // board asks for it), found through the folder's index whatever the case
    // of the name on disk. Unreadable when the folder has no such file.
    PcxResult LoadUnitPicture(const UnitsFolder& units, std::string_view fileName,
                              Messages& messages);

    void Clear();
    std::size_t Entries() const { return order_.size(); }
    std::size_t Bytes() const { return bytes_; }
    std::size_t Decodes() const { return decodes_; } // files actually decoded
    std::size_t Hits() const { return hits_; }

  private:
    struct Entry {
        std::string path;
        std::uintmax_t fileSize = 0;
        std::int64_t modified = 0; // file clock ticks
        PcxResult result;
        std::size_t cost = 0;
    };
    void Evict();

    std::size_t maxBytes_, maxEntries_;
    std::list<Entry> order_; // most recently used first
    std::unordered_map<std::string, std::list<Entry>::iterator> index_;
    std::size_t bytes_ = 0;
    std::size_t decodes_ = 0;
    std::size_t hits_ = 0;
};

} // namespace vantrel
