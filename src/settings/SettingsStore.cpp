#include "settings/SettingsStore.h"

#include <filesystem>

#include "io/OutputFile.h"
#include "io/ReadFile.h"
#include "settings/FontRecord.h"

namespace quillet {

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::optional<uint32_t> parseDword(std::string_view text) {
    bool negative = false;
    size_t i = 0;
    if (!text.empty() && text[0] == '-') {
        negative = true;
        i = 1;
    }
    if (i >= text.size() || text.size() - i > 10) return std::nullopt;
    uint64_t v = 0;
    for (; i < text.size(); ++i) {
        if (text[i] < '0' || text[i] > '9') return std::nullopt;
        v = v * 10 + static_cast<uint64_t>(text[i] - '0');
    }
    if (v > UINT32_MAX) return std::nullopt;
    auto u = static_cast<uint32_t>(v);
    return negative ? static_cast<uint32_t>(0u - u) : u;
}

}  // namespace

std::string escapeSettingString(std::string_view bytes) {
    static const char* digits = "0123456789abcdef";
    std::string out;
    out.reserve(bytes.size());
    for (char ch : bytes) {
        auto b = static_cast<unsigned char>(ch);
        switch (b) {
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (b < 0x20 || b == 0x7F) {
                    out += "\\x";
                    out += digits[b >> 4];
                    out += digits[b & 15];
                } else {
                    out += ch;
                }
        }
    }
    return out;
}

std::optional<std::string> unescapeSettingString(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (++i >= text.size()) return std::nullopt;
        switch (text[i]) {
            case '\\': out += '\\'; break;
            case 'n': out += '\n'; break;
            case 'r': out += '\r'; break;
            case 't': out += '\t'; break;
            case 'x': {
                if (i + 2 >= text.size()) return std::nullopt;
                int hi = hexDigit(text[i + 1]), lo = hexDigit(text[i + 2]);
                if (hi < 0 || lo < 0) return std::nullopt;
                out += static_cast<char>(hi * 16 + lo);
                i += 2;
                break;
            }
            default: return std::nullopt;
        }
    }
    return out;
}

const SettingsStore::Value* SettingsStore::find(std::string_view name) const {
    auto it = index_.find(name);
    return it == index_.end() ? nullptr : &values_[it->second];
}

SettingsStore::Value& SettingsStore::slot(std::string_view name) {
    if (auto it = index_.find(name); it != index_.end()) return values_[it->second];
    Value v;
    v.name = std::string(name);
    index_.emplace(v.name, values_.size());
    values_.push_back(std::move(v));
    return values_.back();
}

void SettingsStore::Remove(std::string_view name) {
    auto it = index_.find(name);
    if (it == index_.end()) return;
    const size_t at = it->second;
    index_.erase(it);
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(at));
    for (auto& [key, position] : index_)
        if (position > at) --position;
}

std::optional<uint32_t> SettingsStore::dword(std::string_view name) const {
    const Value* v = find(name);
    if (!v || v->type != Type::Dword) return std::nullopt;
    return v->dword;
}

std::optional<std::string> SettingsStore::string(std::string_view name) const {
    const Value* v = find(name);
    if (!v || v->type != Type::String) return std::nullopt;
    return v->bytes;
}

std::optional<std::string> SettingsStore::binary(std::string_view name) const {
    const Value* v = find(name);
    if (!v || v->type != Type::Binary) return std::nullopt;
    return v->bytes;
}

void SettingsStore::setDword(std::string_view name, uint32_t value) {
    Value& v = slot(name);
    v.type = Type::Dword;
    v.dword = value;
    v.bytes.clear();
}

void SettingsStore::setString(std::string_view name, std::string_view value) {
    Value& v = slot(name);
    v.type = Type::String;
    v.dword = 0;
    v.bytes = value;
}

void SettingsStore::setBinary(std::string_view name, std::string_view bytes) {
    Value& v = slot(name);
    v.type = Type::Binary;
    v.dword = 0;
    v.bytes = bytes;
}

void SettingsStore::parse(std::string_view text) {
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        pos = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty() || line[0] == '#') continue;

        size_t eq = line.find('=');
        if (eq == std::string_view::npos || eq == 0) continue;
        std::string_view name = line.substr(0, eq);
        std::string_view rest = line.substr(eq + 1);
        size_t colon = rest.find(':');
        if (colon == std::string_view::npos) continue;
        std::string_view type = rest.substr(0, colon);
        std::string_view value = rest.substr(colon + 1);

        if (type == "dword") {
            if (auto d = parseDword(value)) setDword(name, *d);
        } else if (type == "string") {
            if (auto s = unescapeSettingString(value)) setString(name, *s);
        } else if (type == "binary") {
            if (auto b = hexToBytes(value)) setBinary(name, *b);
        }
    }
}

std::string SettingsStore::serialize() const {
    std::string out = "# Quillet settings: NAME=dword:N, NAME=string:TEXT or NAME=binary:HEX\n";
    for (const auto& v : values_) {
        out += v.name;
        switch (v.type) {
            case Type::Dword: out += "=dword:" + std::to_string(v.dword); break;
            case Type::String: out += "=string:" + escapeSettingString(v.bytes); break;
            case Type::Binary: out += "=binary:" + bytesToHex(v.bytes); break;
        }
        out += '\n';
    }
    return out;
}

bool SettingsStore::loadFile(const std::string& path, std::string* error) {
    clear();
    std::error_code ec;
    if (!std::filesystem::exists(path, ec)) return true;
    // A settings file is a few kilobytes; anything far larger is not ours.
    constexpr uint64_t kLimit = 4 * 1024 * 1024;
    std::vector<uint8_t> bytes;
    std::string why;
    if (!ReadFileLimited(path, kLimit, bytes, &why)) {
        if (error) *error = path + ": cannot read the settings file (" + why + "); using the defaults";
        return false;
    }
    parse(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    return true;
}

bool SettingsStore::saveFile(const std::string& path, std::string* error) const {
    std::error_code ec;
    std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder, ec);
    if (ec) {
        if (error) *error = folder.string() + ": cannot create the settings folder: " + ec.message();
        return false;
    }
    std::string why;
    if (!WriteFileAtomically(path, serialize(), &why)) {
        if (error) *error = path + ": " + why;
        return false;
    }
    return true;
}

}  // namespace quillet
