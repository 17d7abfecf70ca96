#include "options/OptionTable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

// The accepted range of a value of the option.
std::pair<double, double> Range(const OptionSpec& row) {
    switch (row.kind) {
        case OptionKind::List: return {0, row.items.empty() ? 0 : static_cast<double>(row.items.size() - 1)};
        case OptionKind::Bool: return {0, 1};
        case OptionKind::Color: return {0, 0xFFFFFF};
        default: return {row.minValue, row.maxValue};
    }
}

// Index of the keyword among `keywords`, or -1.
int FindKeyword(NameList keywords, std::string_view keyword) {
    for (size_t i = 0; i < keywords.size(); ++i)
        if (keywords[i] && keyword == keywords[i]) return static_cast<int>(i);
    return -1;
}

std::string JoinKeywords(NameList keywords) {
    std::string out;
    for (const char* k : keywords) {
        if (!k) continue;
        if (!out.empty()) out += ", ";
        out += k;
    }
    return out;
}

// What a value of the option may be, for messages and `list --options`.
std::string Allowed(const OptionSpec& row) {
    char buf[96];
    switch (row.kind) {
        case OptionKind::List:
            return row.written.empty() ? "a number from 0 to " + std::to_string(row.items.size() - 1)
                                        : JoinKeywords(row.ReadKeywords());
        case OptionKind::Bool: return "true, false";
        case OptionKind::Color: return "a colour as #RRGGBB or a number (red in the lowest byte)";
        case OptionKind::Integer:
        case OptionKind::Real: {
            const char* what = row.kind == OptionKind::Integer ? "a whole number" : "a number";
            // The default range is that of a 32-bit field: not worth stating.
            if (row.minValue <= -2147483648.0 && row.maxValue >= 2147483647.0) return what;
            std::snprintf(buf, sizeof buf, "%s from %g to %g", what, row.minValue, row.maxValue);
            return buf;
        }
    }
    return {};
}

}  // namespace

OptionSet::OptionSet(OptionTable table) : table_(table) { Reset(); }

void OptionSet::Reset() {
    values_.clear();
    for (const OptionSpec& row : table_) values_.push_back(row.defaultValue);
}

double OptionSet::Value(size_t index) const { return index < values_.size() ? values_[index] : 0; }

bool OptionSet::SetValue(size_t index, double value) {
    if (index >= values_.size() || std::isnan(value)) return false;
    const OptionSpec& row = table_[index];
    if (row.kind == OptionKind::Bool) value = value != 0 ? 1 : 0;
    if (row.kind != OptionKind::Real) value = std::trunc(value);
    const auto [lo, hi] = Range(row);
    value = std::clamp(value, lo, hi);
    if (row.kind == OptionKind::Real && row.singlePrecision) value = static_cast<float>(value);
    if (value == values_[index]) return false;
    values_[index] = value;
    return true;
}

void OptionSet::Read(const XmlNode& element) {
    for (size_t i = 0; i < table_.size(); ++i) {
        const OptionSpec& row = table_[i];
        if (!row.attribute) continue;
        double& value = values_[i];
        switch (row.kind) {
            case OptionKind::List: {
                if (row.written.empty()) {
                    int v;
                    if (element.readInt(row.attribute, v)) value = std::clamp<double>(v, 0, Range(row).second);
                    break;
                }
                std::string keyword;
                if (!element.readString(row.attribute, keyword)) break;
                const int index = FindKeyword(row.ReadKeywords(), keyword);
                if (index >= 0) value = index;
                break;
            }
            case OptionKind::Integer: {
                int v;
                if (element.readInt(row.attribute, v)) value = std::clamp<double>(v, row.minValue, row.maxValue);
                break;
            }
            case OptionKind::Real: {
                if (row.singlePrecision) {
                    float v;
                    if (element.readFloat(row.attribute, v) && std::isfinite(v))
                        value = std::clamp<double>(v, row.minValue, row.maxValue);
                } else {
                    double v;
                    if (element.readDouble(row.attribute, v) && std::isfinite(v))
                        value = std::clamp(v, row.minValue, row.maxValue);
                }
                break;
            }
            case OptionKind::Bool: {
                bool v;
                if (element.readBool(row.attribute, v)) value = (v != row.negated) ? 1 : 0;
                break;
            }
            case OptionKind::Color: {
                // Kept as read, so an odd value in a file is written back unchanged.
                uint32_t v;
                if (element.readUnsigned(row.attribute, v)) value = v;
                break;
            }
        }
    }
}

void OptionSet::Write(XmlWriter& writer) const {
    for (size_t i = 0; i < table_.size(); ++i) {
        const OptionSpec& row = table_[i];
        if (!row.attribute) continue;
        const double value = values_[i];
        switch (row.kind) {
            case OptionKind::List:
                if (row.written.empty()) {
                    writer.attribute(row.attribute, static_cast<int>(value));
                } else if (value >= 0 && value < static_cast<double>(row.written.size())) {
                    writer.attributeRaw(row.attribute, row.written[static_cast<size_t>(value)]);
                }
                break;
            case OptionKind::Integer: writer.attribute(row.attribute, static_cast<int>(value)); break;
            case OptionKind::Real: writer.attributeReal(row.attribute, value); break;
            case OptionKind::Bool: writer.attribute(row.attribute, (value != 0) != row.negated); break;
            case OptionKind::Color: writer.attribute(row.attribute, static_cast<unsigned>(value)); break;
        }
    }
}

bool OptionSet::operator==(const OptionSet& other) const {
    return table_.data() == other.table_.data() && values_ == other.values_;
}

std::string OptionSet::Text(size_t index) const {
    if (index >= values_.size()) return {};
    const OptionSpec& row = table_[index];
    const double value = values_[index];
    switch (row.kind) {
        case OptionKind::List:
            if (!row.written.empty() && value >= 0 && value < static_cast<double>(row.written.size()))
                return row.written[static_cast<size_t>(value)];
            return std::to_string(static_cast<int>(value));
        case OptionKind::Integer: return std::to_string(static_cast<int>(value));
        case OptionKind::Real: return formatReal(value);
        case OptionKind::Bool: return ((value != 0) != row.negated) ? "true" : "false";
        case OptionKind::Color: {
            const auto c = static_cast<uint32_t>(value);
            char buf[16];
            std::snprintf(buf, sizeof buf, "#%02X%02X%02X", c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
            return buf;
        }
    }
    return {};
}

std::string OptionSet::Describe() const {
    std::string out;
    for (size_t i = 0; i < table_.size(); ++i) {
        if (!table_[i].attribute) continue;
        if (!out.empty()) out += ' ';
        out += table_[i].attribute;
        out += '=';
        out += Text(i);
    }
    return out;
}

bool OptionSet::SetFromText(std::string_view key, std::string_view text, std::string& error) {
    size_t index = 0;
    while (index < table_.size() && !(table_[index].attribute && key == table_[index].attribute)) ++index;
    if (index == table_.size()) {
        std::string keys;
        for (const OptionSpec& row : table_) {
            if (!row.attribute) continue;
            keys += keys.empty() ? "" : ", ";
            keys += row.attribute;
        }
        error = "unknown option \"" + std::string(key) + "\"; " +
                (keys.empty() ? std::string("this one has no options") : "options: " + keys);
        return false;
    }
    const OptionSpec& row = table_[index];
    const std::string value(text);
    const auto fail = [&] {
        error = "\"" + value + "\" is not a value of " + row.attribute + "; allowed: " + Allowed(row);
        return false;
    };
    double number = 0;
    switch (row.kind) {
        case OptionKind::List: {
            const int found = row.written.empty() ? -1 : FindKeyword(row.ReadKeywords(), value);
            if (found >= 0) {
                number = found;
                break;
            }
            char* end = nullptr;
            const long n = std::strtol(value.c_str(), &end, 10);
            if (!row.written.empty() || value.empty() || *end || n < 0 ||
                n >= static_cast<long>(row.items.size()))
                return fail();
            number = static_cast<double>(n);
            break;
        }
        case OptionKind::Bool:
            if (value == "true") number = 1;
            else if (value == "false") number = 0;
            else return fail();
            if (row.negated) number = 1 - number;
            break;
        case OptionKind::Color: {
            char* end = nullptr;
            if (value.size() == 7 && value[0] == '#') {
                const unsigned long rgb = std::strtoul(value.c_str() + 1, &end, 16);
                if (*end) return fail();
                number = static_cast<double>(((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16));
            } else {
                const unsigned long n = std::strtoul(value.c_str(), &end, 10);
                if (value.empty() || *end || n > 0xFFFFFF) return fail();
                number = static_cast<double>(n);
            }
            break;
        }
        case OptionKind::Integer:
        case OptionKind::Real: {
            char* end = nullptr;
            number = std::strtod(value.c_str(), &end);
            if (value.empty() || *end || !std::isfinite(number) || number < row.minValue ||
                number > row.maxValue || (row.kind == OptionKind::Integer && number != std::trunc(number)))
                return fail();
            break;
        }
    }
    SetValue(index, number);
    return true;
}

std::string DescribeOptionTable(OptionTable table) {
    std::string out;
    for (size_t i = 0; i < table.size(); ++i) {
        const OptionSpec& row = table[i];
        if (!row.attribute) continue;
        OptionSet defaults(table);
        out += "  ";
        out += row.attribute;
        out += ": ";
        out += Allowed(row);
        out += " (default " + defaults.Text(i) + ")\n";
    }
    return out;
}

}  // namespace quillet
