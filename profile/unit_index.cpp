#include "profile/unit_index.h"

#include "catalogue/definitions.h"
#include "profile/profile_writer.h"

#include <algorithm>
#include <array>
#include <memory>

namespace vantrel {

void NameTrie::Insert(std::string_view name, std::size_t slot) {
    std::size_t node = 0;
    for (char c : name) {
        auto [it, fresh] = edges_.try_emplace(Key(node, c), slots_.size());
        if (fresh) slots_.push_back(None);
        node = it->second;
    }
    slots_[node] = slot;
}

UnitIndex::UnitIndex(const std::vector<std::string>& names,
                     const std::vector<std::uint32_t>& listing)
    : names_(names), table_(names.size()) {
    slotOf_.reserve(names.size());
    exactSearchable_.reserve(names.size());
    std::string upper;
    for (const std::string& name : names) {
        upper.assign(name);
        bool lower = false;
        for (char& c : upper) {
            lower |= c >= 'a' && c <= 'z';
            c = UpperChar(c);
        }
        const std::size_t before = table_.Count();
        const std::size_t slot = table_.Add(upper);
        if (slot == before) {
            const bool plain = std::none_of(upper.begin(), upper.end(), IsBreak);
            plain_.push_back(plain);
            if (plain)
                maxLength_ = std::max(maxLength_, upper.size());
            else
                trie_.Insert(upper, slot);
        }
        anyEndBlanks_ |= !name.empty() && (IsBlankChar(name.front()) || IsBlankChar(name.back()));
        slotOf_.push_back(static_cast<std::uint32_t>(slot));
        exactSearchable_.push_back(!lower);
    }

    const std::size_t count = table_.Count();
    hasLength_.assign(maxLength_ + 1, 0);
    std::vector<std::uint32_t> order; // the plain slots
    order.reserve(count);
    for (std::size_t slot = 0; slot < count; ++slot)
        if (plain_[slot]) {
            order.push_back(static_cast<std::uint32_t>(slot));
            hasLength_[table_.Text(slot).size()] = 1;
        }

    // Places: the plain names in the listing order, then the other plain
    // names, then those with breaks.
    placeOfSlot_.assign(count, None);
    keys_.reserve(count);
    auto place = [&](std::size_t slot) {
        if (placeOfSlot_[slot] != None) return;
        placeOfSlot_[slot] = static_cast<std::uint32_t>(keys_.size());
        const NameTable::Key key = NameTable::KeyOf(table_.Text(slot));
        PlaceKey& k = keys_.emplace_back();
        k.head = key.head;
        k.tail = key.tail;
        k.length = plain_[slot] ? static_cast<std::uint32_t>(key.length) : None;
        k.slot = static_cast<std::uint32_t>(slot);
    };
    for (std::uint32_t i : listing)
        if (i < slotOf_.size() && plain_[slotOf_[i]]) place(slotOf_[i]);
    for (std::uint32_t slot : order)
        place(slot);
    for (std::size_t slot = 0; slot < count; ++slot)
        place(slot);

    // In byte order every name that is a prefix of another comes before it,
    // and the names between the two all start with it; so one walk keeping
    // the chain of prefixes of the last name finds every parent. The
    // catalogue is usually in that order already.
    auto before = [&](std::size_t a, std::size_t b) { return table_.Text(a) < table_.Text(b); };
    if (!std::is_sorted(order.begin(), order.end(), before))
        std::sort(order.begin(), order.end(), before);
    std::vector<std::uint32_t> chain;
    for (std::uint32_t slot : order) {
        std::string_view s = table_.Text(slot);
        while (!chain.empty() && !s.starts_with(table_.Text(chain.back())))
            chain.pop_back();
        if (!chain.empty()) parents_.emplace_back(placeOfSlot_[slot], placeOfSlot_[chain.back()]);
        chain.push_back(slot);
    }
    std::reverse(parents_.begin(), parents_.end());
}

bool UnitIndex::Indexes(const Definitions& defs) const {
    if (static_cast<std::size_t>(defs.Units.UBound()) != names_.size()) return false;
    for (std::size_t i = 0; i < names_.size(); ++i)
        if (defs.Units[static_cast<int>(i + 1)].UnitName != names_[i]) return false;
    return true;
}

const UnitIndex& IndexOfUnits(const Definitions& defs) {
    if (!defs.UnitNameIndex || !defs.UnitNameIndex->Indexes(defs)) {
        const int n = defs.Units.UBound();
        std::vector<std::string> names;
        names.reserve(static_cast<std::size_t>(n));
        std::array<std::vector<std::uint32_t>, 11> bySection;
        for (int i = 1; i <= n; ++i) {
            names.push_back(defs.Units[i].UnitName);
            const int s = ProfileSection(defs.Units[i].TEDClass);
            bySection[static_cast<std::size_t>(s + 1)].push_back(static_cast<std::uint32_t>(i - 1));
        }
        // Units of no section are never written; they go last.
        std::vector<std::uint32_t> listing;
        listing.reserve(names.size());
        for (std::size_t s = 1; s <= bySection.size(); ++s) {
            const auto& units = bySection[s % bySection.size()];
            listing.insert(listing.end(), units.begin(), units.end());
        }
        defs.UnitNameIndex = std::make_shared<const UnitIndex>(names, listing);
    }
    return *defs.UnitNameIndex;
}

} // namespace vantrel
