#include "profile/name_table.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vantrel {

namespace {

// Up to 8 bytes from `p` (fewer when `n` is smaller), zero-filled. Short
// names are read with two overlapping loads rather than byte by byte.
std::uint64_t LoadShort(const char* p, std::size_t n) {
    if (n >= 8) {
        std::uint64_t w;
        std::memcpy(&w, p, sizeof w);
        return w;
    }
    if constexpr (std::endian::native == std::endian::little) {
        if (n >= 4) {
            std::uint32_t lo, hi;
            std::memcpy(&lo, p, 4);
            std::memcpy(&hi, p + n - 4, 4);
            return lo | (static_cast<std::uint64_t>(hi) << (8 * (n - 4)));
        }
        if (n == 0) return 0;
        auto byte = [&](std::size_t i) {
            return static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])) << (8 * i);
        };
        return byte(0) | byte(n / 2) | byte(n - 1);
    }
    char bytes[8] = {};
    for (std::size_t i = 0; i < n; ++i)
        bytes[i] = p[i];
    std::uint64_t w;
    std::memcpy(&w, bytes, sizeof w);
    return w;
}

} // namespace

NameTable::NameTable(std::size_t capacity) {
    std::size_t size = 16;
    while (size < capacity + capacity / 2)
        size *= 2;
    cells_.resize(size);
    mask_ = size - 1;
    offset_.reserve(capacity + 1);
    pool_.reserve(capacity * 8);
}

NameTable::Key NameTable::KeyOf(std::string_view name) {
    Key k;
    k.length = name.size();
    k.head = LoadShort(name.data(), name.size());
    if (name.size() > InlineLength) {
        for (std::size_t i = 8; i < name.size(); ++i)
            k.tail = ExtendTail(k.tail, name[i]);
    } else if (name.size() > 8) {
        k.tail = LoadShort(name.data() + 8, name.size() - 8);
    }
    return k;
}

std::size_t NameTable::Find(std::string_view name) const {
    return Find(KeyOf(name), name.data());
}

void NameTable::Grow() {
    std::vector<Cell> old = std::move(cells_);
    cells_.assign(old.size() * 2, Cell{});
    mask_ = cells_.size() - 1;
    for (const Cell& c : old) {
        if (c.slot == 0) continue;
        std::size_t i = Home({c.head, c.tail, c.length});
        while (cells_[i].slot != 0)
            i = (i + 1) & mask_;
        cells_[i] = c;
    }
}

std::size_t NameTable::Add(std::string_view name) {
    if ((Count() + 1) * 3 > cells_.size() * 2) Grow();
    const Key key = KeyOf(name);
    std::size_t i = Home(key);
    for (; cells_[i].slot != 0; i = (i + 1) & mask_)
        if (Matches(cells_[i], key, name.data())) return cells_[i].slot - 1;
    pool_.append(name);
    offset_.push_back(pool_.size());
    cells_[i] = {key.head, key.tail, static_cast<std::uint32_t>(key.length),
                 static_cast<std::uint32_t>(Count())};
    return Count() - 1;
}

} // namespace vantrel
