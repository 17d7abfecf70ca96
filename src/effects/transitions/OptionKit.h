// Building blocks shared by the transition classes: index options saved as
// keywords, the option controls' ids, and the clone-by-class helper.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "effects/Transition.h"

namespace quillet {

using NameTable = std::span<const char* const>;

// Control ids of the option area: each option takes a label id and a value
// id in turn, starting here ("Direction" 10002, its list 10003, ...).
constexpr int kFirstOptionControlId = 10002;
constexpr int OptionLabelId(int option) { return kFirstOptionControlId + 2 * option; }
constexpr int OptionControlId(int option) { return kFirstOptionControlId + 2 * option + 1; }

// An index option saved as a keyword. Writing uses `written[index]`; reading
// compares exactly against `read`, whose entries stand for the index of their
// position (a null entry is never recognised). The two tables differ where
// saved files must keep a historical mismatch.
struct KeywordOptionSpec {
    const char* attribute;  // "direction", "type"
    NameTable written;
    NameTable read;
    const char* label;      // "Direction:"
    NameTable items;        // display names in index order
    int32_t defaultIndex;
};

// True (and the index set) when the attribute holds a recognised keyword.
bool ReadKeyword(const XmlNode& element, const KeywordOptionSpec& table, int32_t& index);
// Writes ` attribute="keyword"`; nothing for an index outside the table.
void WriteKeyword(XmlWriter& writer, const KeywordOptionSpec& table, int32_t index);
// The list control for the table, as the `option`-th control pair.
TransitionOption ListOption(const KeywordOptionSpec& table, int option);

// A list selection from a control value, clamped to [0, count - 1].
int32_t ClampIndex(double value, size_t count);

// Assigns and tells whether the value changed (exact comparison).
template <class T>
bool AssignChanged(T& field, T value) {
    if (field == value) return false;
    field = value;
    return true;
}

// Gives a class its Clone (a new object of the class, then CopyFrom) and its
// CreateInstance (a clone of the prototype).
template <class Derived, class Base = Transition>
class TransitionClass : public Base {
public:
    using Base::Base;
    std::unique_ptr<Transition> Clone() const override {
        auto copy = std::make_unique<Derived>();
        copy->CopyFrom(*this);
        return copy;
    }
    std::unique_ptr<Transition> CreateInstance() const override { return Clone(); }
};

}  // namespace quillet
