#include "mainwindow/picture_cache.h"

#include <filesystem>

namespace vantrel {

namespace fs = std::filesystem;

namespace {
// Failures are cached too (they are cheap and decoding them again would give
// the same answer); they cost a token amount.
constexpr std::size_t FailureCost = 64;

std::size_t CostOf(const PcxResult& r) {
    return r.image ? r.image->pixels.size() + sizeof(PcxImage) : FailureCost;
}
} // namespace

PictureCache::PictureCache(std::size_t maxBytes, std::size_t maxEntries)
    : maxBytes_(maxBytes), maxEntries_(maxEntries == 0 ? 1 : maxEntries) {}

void PictureCache::Clear() {
    order_.clear();
    index_.clear();
    bytes_ = 0;
}

PcxResult PictureCache::Load(const std::string& fileName, Messages& messages) {
    std::error_code ec;
    const fs::path path = fs::absolute(fs::path(fileName), ec);
    const std::uintmax_t size = ec ? 0 : fs::file_size(path, ec);
    const fs::file_time_type mtime = ec ? fs::file_time_type{} : fs::last_write_time(path, ec);
    if (ec) return LoadPCX(fileName, messages); // missing or odd file: nothing to cache

    const std::string key = path.string();
    const std::int64_t ticks = mtime.time_since_epoch().count();
    if (auto it = index_.find(key); it != index_.end()) {
        Entry& e = *it->second;
        if (e.fileSize == size && e.modified == ticks) {
            ++hits_;
            order_.splice(order_.begin(), order_, it->second);
            if (e.result.failure == PcxFailure::NoPalette)
                messages.Inform(PcxNoPaletteMessage, "Vantrel", MsgIcon::Exclamation);
            return e.result;
        }
        bytes_ -= e.cost;
        order_.erase(it->second);
        index_.erase(it);
    }

    ++decodes_;
    PcxResult result = LoadPCX(key, messages);
    if (result.failure == PcxFailure::Unreadable) return result;
    const std::size_t cost = CostOf(result);
    if (cost > maxBytes_) return result; // would push everything else out
    order_.push_front(Entry{key, size, ticks, result, cost});
    index_[key] = order_.begin();
    bytes_ += cost;
    Evict();
    return result;
}

PcxResult PictureCache::LoadUnitPicture(const UnitsFolder& units, std::string_view fileName,
                                        Messages& messages) {
    const std::string path = units.Find(fileName);
    if (path.empty()) {
        PcxResult none;
        none.failure = PcxFailure::Unreadable;
        none.reason = "no " + std::string(fileName) + " in " + units.Dir();
        return none;
    }
    return Load(path, messages);
}

void PictureCache::Evict() {
    while (!order_.empty() && (bytes_ > maxBytes_ || order_.size() > maxEntries_)) {
        const Entry& last = order_.back();
        bytes_ -= last.cost;
        index_.erase(last.path);
        order_.pop_back();
    }
}

} // namespace vantrel
