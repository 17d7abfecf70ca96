// The prototypes of one effect family (transitions, camera moves, overlay
// effects, filters), each a class whose name() is its display name. A family
// chooses whether the list keeps the order of adding or stays sorted by
// name, and whether lookups fold letter case.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include "options/NameCompare.h"

namespace quillet {

template <class T>
class Registry {
public:
    enum class Order { AsAdded, ByName };
    enum class Lookup { Exact, IgnoreCase };

    explicit Registry(Order order = Order::AsAdded, Lookup lookup = Lookup::Exact)
        : order_(order), lookup_(lookup) {}

    // Null is ignored. Sorted by name: inserted before the first entry whose
    // name compares greater (bytes, case-sensitive), so an equal name goes
    // after those already there.
    void Add(std::unique_ptr<T> prototype) {
        if (!prototype) return;
        auto at = prototypes_.end();
        if (order_ == Order::ByName)
            at = std::find_if(prototypes_.begin(), prototypes_.end(), [&](const auto& entry) {
                return CompareNames(entry->name(), prototype->name()) > 0;
            });
        prototypes_.insert(at, std::move(prototype));
    }

    size_t count() const { return prototypes_.size(); }
    // Null for an index out of range (negative included).
    const T* At(long long index) const {
        return index >= 0 && static_cast<size_t>(index) < prototypes_.size()
                   ? prototypes_[static_cast<size_t>(index)].get()
                   : nullptr;
    }
    const T* Find(std::string_view name) const {
        for (const auto& p : prototypes_)
            if (lookup_ == Lookup::IgnoreCase ? EqualsNoCase(p->name(), name) : p->name() == name) return p.get();
        return nullptr;
    }
    // rand() % count, as the C library gives it; null when empty.
    const T* Random() const {
        if (prototypes_.empty()) return nullptr;
        const int draw = std::rand() % static_cast<int>(prototypes_.size());
        return prototypes_[draw < 0 ? 0 : static_cast<size_t>(draw)].get();
    }

    auto begin() const { return prototypes_.begin(); }
    auto end() const { return prototypes_.end(); }

private:
    Order order_;
    Lookup lookup_;
    std::vector<std::unique_ptr<T>> prototypes_;
};

}  // namespace quillet
