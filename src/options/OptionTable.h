// Option tables: how the effect families (transitions, camera moves, filters)
// declare their settings once. A class gives a table of OptionSpec rows; an
// OptionSet holds the values and does everything the table implies: reading
// and writing the XML attributes, copying, comparison, clamping a value from
// a panel, the command line's `key=value`, and the descriptions.
//
// Values are kept as doubles, which hold every 32-bit integer, colour and
// single-precision number exactly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

class XmlNode;
class XmlWriter;

using NameList = std::span<const char* const>;

enum class OptionKind : uint8_t {
    List,     // an index into `items`; saved as a keyword, or as its number without keywords
    Integer,  // 32-bit signed
    Real,     // double; `singlePrecision` keeps it as a float
    Bool,     // a check box: 0 or 1
    Color,    // 0x00BBGGRR, saved as an unsigned decimal
};

struct OptionSpec {
    OptionKind kind = OptionKind::Integer;
    const char* attribute = nullptr;  // XML attribute; null: kept in memory only
    const char* label = "";           // the label, or a check box's own text
    double defaultValue = 0;
    double minValue = -2147483648.0;  // Integer and Real; lists are bounded by their items
    double maxValue = 2147483647.0;
    NameList items = {};              // List: display names in index order
    NameList written = {};            // List: keywords written, by index; empty: saved as a number
    NameList read = {};               // List: keywords recognised on reading, by index (a null entry
                                      // is never recognised); empty: the same as `written`
    int labelId = 0;                  // the static label's control id; 0 when there is none
    int controlId = 0;                // the value control (list, field, check box, chooser)
    int decimals = 0;                 // digits a Real field shows
    const char* trailingLabel = "";   // text right of the control ("times")
    bool negated = false;             // Bool saved as the opposite of the box
    bool singlePrecision = false;     // Real read and kept as a float

    NameList ReadKeywords() const { return read.empty() ? written : read; }
};

using OptionTable = std::span<const OptionSpec>;

// Control ids of an option area: each option takes a label id and a value id
// in turn ("Direction" 10002, its list 10003, ...).
constexpr int kFirstOptionControlId = 10002;
constexpr int OptionLabelId(int option) { return kFirstOptionControlId + 2 * option; }
constexpr int OptionControlId(int option) { return kFirstOptionControlId + 2 * option + 1; }

// The common row of a list option: the `slot`-th label and control of the
// option area, the items, the keywords written (and, where they differ, read).
constexpr OptionSpec ListOption(int slot, const char* attribute, const char* label, NameList items,
                                NameList keywords, double defaultIndex, NameList readKeywords = {}) {
    return {.kind = OptionKind::List, .attribute = attribute, .label = label, .defaultValue = defaultIndex,
            .items = items, .written = keywords, .read = readKeywords, .labelId = OptionLabelId(slot),
            .controlId = OptionControlId(slot)};
}

// A value kept in memory only, with no control (a bar count, a cell size).
constexpr OptionSpec HiddenOption(OptionKind kind, double defaultValue, double minValue, double maxValue) {
    return {.kind = kind, .defaultValue = defaultValue, .minValue = minValue, .maxValue = maxValue};
}

class OptionSet {
public:
    OptionSet() = default;
    explicit OptionSet(OptionTable table);  // every value at its default

    OptionTable table() const { return table_; }
    size_t size() const { return values_.size(); }

    // A value in the units of its control; 0 for an index out of range.
    double Value(size_t index) const;
    int32_t Int(size_t index) const { return static_cast<int32_t>(Value(index)); }
    float Float(size_t index) const { return static_cast<float>(Value(index)); }
    bool Bool(size_t index) const { return Value(index) != 0; }
    uint32_t Color(size_t index) const { return static_cast<uint32_t>(Value(index)); }

    // The panel's "apply": the value made valid for its kind (truncated to
    // an integer, clamped to the range or the list, rounded to a float),
    // stored, and true when it differs from what was there. NaN is ignored.
    bool SetValue(size_t index, double value);
    void Reset();

    // A missing attribute, an unknown keyword or an unreadable number leaves
    // the value as it is.
    void Read(const XmlNode& element);
    // ` key="value"` for each saved option, in table order.
    void Write(XmlWriter& writer) const;

    // Same table, same values.
    bool operator==(const OptionSet& other) const;

    // The value as the command line shows it: the list's keyword (or item
    // number), a number, "true"/"false", a colour as #RRGGBB.
    std::string Text(size_t index) const;
    // "direction=left fade_out=true": the saved options, as `key=value`.
    std::string Describe() const;
    // Sets a saved option from the command line. Keys and keywords are those
    // of the file. False, with a message
    // naming what was wrong and what is allowed, when nothing fits.
    bool SetFromText(std::string_view key, std::string_view text, std::string& error);

private:
    OptionTable table_;
    std::vector<double> values_;
};

// One line per option for `list --options`: "  direction: up, down, ... (default right)".
std::string DescribeOptionTable(OptionTable table);

}  // namespace quillet
