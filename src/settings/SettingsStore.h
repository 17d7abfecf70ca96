// The per-user settings file: named values of three types, as a registry key
// would hold them, in a small text format.
//
//   # comment lines and blank lines are ignored
//   main_window_x=dword:50
//   recent_projects_1=string:/home/ann/My show.qpj
//   default_show_font=binary:f3ffffff00000000...
//
// One value a line, NAME=TYPE:VALUE. A dword is an unsigned 32-bit decimal (a
// leading minus sign is accepted and wraps, as the registry's DWORD keeps a
// negative window position). A string is a byte string in which backslash,
// line feed, carriage return, tab and the other control bytes are escaped as
// \\ \n \r \t and \xNN; every other byte stands as it is, so UTF-8 paths stay
// readable. A binary value is its bytes as hexadecimal digits. Names are
// case-sensitive; a later line of the same name replaces an earlier one.
// Lines that do not follow the form are skipped, so a damaged file costs only
// the values on its damaged lines.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillet {

class SettingsStore {
public:
    enum class Type { Dword, String, Binary };

    // Reads the file. A missing file is an empty store and not an error;
    // false (with `error`) only when the file exists but cannot be read.
    bool loadFile(const std::string& path, std::string* error = nullptr);
    // Writes the file atomically, creating its folder when needed.
    bool saveFile(const std::string& path, std::string* error = nullptr) const;

    void parse(std::string_view text);
    std::string serialize() const;

    // Typed reads: nothing when the value is absent or of another type.
    std::optional<uint32_t> dword(std::string_view name) const;
    std::optional<std::string> string(std::string_view name) const;
    std::optional<std::string> binary(std::string_view name) const;

    void setDword(std::string_view name, uint32_t value);
    void setString(std::string_view name, std::string_view value);
    void setBinary(std::string_view name, std::string_view bytes);

    bool has(std::string_view name) const { return find(name) != nullptr; }
    // Removes a value; the others keep their order.
    void Remove(std::string_view name);
    size_t size() const { return values_.size(); }
    void clear() {
        values_.clear();
        index_.clear();
    }

private:
    struct Value {
        std::string name;
        Type type = Type::Dword;
        uint32_t dword = 0;
        std::string bytes;  // string or binary contents
    };
    const Value* find(std::string_view name) const;
    Value& slot(std::string_view name);
    // Lets a name be looked up as a string_view without a copy.
    struct NameHash {
        using is_transparent = void;
        size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
    };
    std::vector<Value> values_;  // in the order first set or read
    // Name -> position in values_, so a file of many values loads in linear time.
    std::unordered_map<std::string, size_t, NameHash, std::equal_to<>> index_;
};

// Escaping of string values, usable on their own.
std::string escapeSettingString(std::string_view bytes);
std::optional<std::string> unescapeSettingString(std::string_view text);

}  // namespace quillet
