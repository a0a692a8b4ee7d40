// A set of distinct names, each with a slot number, found again from its
// bytes with one hash probe. Made for catalogues of tens of thousands of
// short unit names: a name of up to 16 bytes is held in the table cell
// itself, so a probe touches one cell and compares three words.
#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

class NameTable {
  public:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);
    // Names up to this length are compared word by word; longer ones keep
    // their first 8 bytes and a hash of the rest, and are compared in full.
    static constexpr std::size_t InlineLength = 16;

    // What a cell compares: the first 16 bytes (zero past the end) and the
    // length. For longer names `tail` is the hash of bytes 8 and on.
    struct Key {
        std::uint64_t head = 0;
        std::uint64_t tail = 0;
        std::size_t length = 0;
    };

    // `capacity`: about how many names will be added (the table grows past it).
    explicit NameTable(std::size_t capacity = 0);

    // The slot of `name`, added when new. Slots count up from 0.
    std::size_t Add(std::string_view name);
    // The slot of `name`, or None.
    std::size_t Find(std::string_view name) const;
    // The same for the first `key.length` bytes at `p`, whose key the caller made.
    std::size_t Find(const Key& key, const char* p) const {
        for (std::size_t i = Home(key); cells_[i].slot != 0; i = (i + 1) & mask_)
            if (Matches(cells_[i], key, p)) return cells_[i].slot - 1;
        return None;
    }

    std::size_t Count() const { return offset_.size() - 1; }
    std::string_view Text(std::size_t slot) const {
        return std::string_view(pool_).substr(offset_[slot], offset_[slot + 1] - offset_[slot]);
    }

    // The key of `name`.
    static Key KeyOf(std::string_view name);
    // The key of the first `length` bytes at `p`, where 16 bytes at `p` may be
    // read and `tailHash` is the tail hash of those bytes (for length > 16).
    static Key KeyOfPadded(const char* p, std::size_t length, std::uint64_t tailHash) {
        Key k;
        k.length = length;
        k.head = KeepBytes(Load(p), length);
        if (length > InlineLength)
            k.tail = tailHash;
        else if (length > 8)
            k.tail = KeepBytes(Load(p + 8), length - 8);
        return k;
    }
    // The tail hash, extended by one byte (start from 0 at byte 8).
    static std::uint64_t ExtendTail(std::uint64_t h, char c) {
        return h * 0x100000001b3ULL + static_cast<unsigned char>(c) + 1;
    }

  private:
    struct Cell {
        std::uint64_t head = 0;
        std::uint64_t tail = 0;
        std::uint32_t length = 0;
        std::uint32_t slot = 0; // slot + 1; 0 when free
    };
    static std::uint64_t Load(const char* p) {
        std::uint64_t w;
        std::memcpy(&w, p, sizeof w);
        return w;
    }
    // `w` with only its first `n` bytes in memory order kept (n <= 8).
    static std::uint64_t KeepBytes(std::uint64_t w, std::size_t n) {
        if (n >= 8) return w;
        if (n == 0) return 0;
        if constexpr (std::endian::native == std::endian::little)
            return w & ((std::uint64_t{1} << (8 * n)) - 1);
        else
            return w & ~((std::uint64_t{1} << (64 - 8 * n)) - 1);
    }
    std::size_t Home(const Key& key) const {
        std::uint64_t h =
            key.head * 0x9E3779B97F4A7C15ULL ^ (key.tail + key.length) * 0xC2B2AE3D27D4EB4FULL;
        h ^= h >> 29;
        h *= 0xBF58476D1CE4E5B9ULL;
        h ^= h >> 32;
        return static_cast<std::size_t>(h) & mask_;
    }
    bool Matches(const Cell& cell, const Key& key, const char* p) const {
        if (cell.head != key.head || cell.tail != key.tail || cell.length != key.length)
            return false;
        return key.length <= InlineLength || Text(cell.slot - 1) == std::string_view(p, key.length);
    }
    void Grow();

    std::string pool_;                  // every name, one after the other
    std::vector<std::size_t> offset_{0}; // per slot, plus one past the last
    std::vector<Cell> cells_;
    std::size_t mask_ = 0;
};

} // namespace vantrel
