#include "xml/XmlReader.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <strings.h>

namespace quillet {

namespace {
TextEncoding g_encoding = TextEncoding::Ansi;

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
}  // namespace

TextEncoding currentTextEncoding() { return g_encoding; }
void setCurrentTextEncoding(TextEncoding mode) { g_encoding = mode; }

std::string XmlNode::name() const { return node_ ? std::string(node_.name()) : std::string(); }

std::vector<XmlNode> XmlNode::children() const {
    std::vector<XmlNode> out;
    for (pugi::xml_node c = node_.first_child(); c; c = c.next_sibling())
        if (c.type() == pugi::node_element) out.emplace_back(c);
    return out;
}

XmlNode XmlNode::firstChild() const {
    for (pugi::xml_node c = node_.first_child(); c; c = c.next_sibling())
        if (c.type() == pugi::node_element) return XmlNode(c);
    return XmlNode();
}

XmlNode XmlNode::child(const char* name) const { return XmlNode(node_.child(name)); }

bool XmlNode::has(const char* attribute) const { return static_cast<bool>(node_.attribute(attribute)); }

bool XmlNode::readString(const char* attribute, std::string& out) const {
    pugi::xml_attribute a = node_.attribute(attribute);
    if (!a) return false;
    out = unescapeText(textToBytes(a.value(), g_encoding));
    return true;
}

std::optional<std::string> XmlNode::string(const char* attribute) const {
    std::string s;
    if (!readString(attribute, s)) return std::nullopt;
    return s;
}

bool XmlNode::readInt(const char* attribute, int& out) const {
    pugi::xml_attribute a = node_.attribute(attribute);
    if (!a) return false;
    // Like atol, but clamped to int instead of wrapping on overflow.
    long long v = std::strtoll(a.value(), nullptr, 10);
    if (v > INT32_MAX) v = INT32_MAX;
    if (v < INT32_MIN) v = INT32_MIN;
    out = static_cast<int>(v);
    return true;
}

bool XmlNode::readUnsigned(const char* attribute, uint32_t& out) const {
    pugi::xml_attribute a = node_.attribute(attribute);
    if (!a) return false;
    long long v = std::strtoll(a.value(), nullptr, 10);
    if (v > static_cast<long long>(UINT32_MAX)) v = UINT32_MAX;
    out = static_cast<uint32_t>(v);  // a negative value wraps, as an unsigned parse would
    return true;
}

bool XmlNode::readDouble(const char* attribute, double& out) const {
    pugi::xml_attribute a = node_.attribute(attribute);
    if (!a) return false;
    out = std::strtod(a.value(), nullptr);
    return true;
}

bool XmlNode::readFloat(const char* attribute, float& out) const {
    double d = 0;
    if (!readDouble(attribute, d)) return false;
    out = static_cast<float>(d);
    return true;
}

bool XmlNode::readBool(const char* attribute, bool& out) const {
    pugi::xml_attribute a = node_.attribute(attribute);
    if (!a) return false;
    out = strcasecmp(a.value(), "true") == 0;
    return true;
}

bool XmlReader::load(const std::string& path) {
    error_.clear();
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error_ = "cannot open the file: " + std::string(std::strerror(errno));
        return false;
    }
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) {
        error_ = "cannot read the file";
        return false;
    }
    return loadBuffer(text);
}

bool XmlReader::loadBuffer(std::string_view text) {
    error_.clear();
    // Attribute values keep their tabs and line breaks byte for byte.
    pugi::xml_parse_result result =
        doc_.load_buffer(text.data(), text.size(), pugi::parse_default & ~pugi::parse_wconv_attribute,
                       pugi::encoding_auto);
    return finish(result, text);
}

bool XmlReader::finish(const pugi::xml_parse_result& result, std::string_view text) {
    if (!result) {
        size_t offset = static_cast<size_t>(result.offset);
        size_t line = 1;
        for (size_t i = 0; i < offset && i < text.size(); ++i)
            if (text[i] == '\n') ++line;
        std::ostringstream msg;
        msg << "not a valid XML file: " << result.description() << " at line " << line;
        error_ = msg.str();
        doc_.reset();
        return false;
    }
    XmlNode root = documentElement();
    if (!root) {
        error_ = "not a valid XML file: no document element";
        return false;
    }
    std::string enc;
    if (root.raw().attribute("encoding")) {
        enc = root.raw().attribute("encoding").value();
        if (enc == "UTF-8")
            g_encoding = TextEncoding::Utf8;
        else if (enc == "UTF-16")
            g_encoding = TextEncoding::Utf16;
        else
            g_encoding = TextEncoding::Ansi;
    }
    return true;
}

XmlNode XmlReader::documentElement() const { return XmlNode(doc_.document_element()); }

std::string textToBytes(std::string_view utf8, TextEncoding mode) {
    if (mode != TextEncoding::Ansi) return std::string(utf8);
    // Each code point below 256 becomes its byte. Bytes that are not valid
    // UTF-8 (a foreign file written in a code page) are kept as they are.
    std::string out;
    out.reserve(utf8.size());
    size_t i = 0;
    while (i < utf8.size()) {
        auto b = static_cast<unsigned char>(utf8[i]);
        if (b < 0x80) {
            out += static_cast<char>(b);
            ++i;
            continue;
        }
        int len = (b & 0xE0) == 0xC0 ? 2 : (b & 0xF0) == 0xE0 ? 3 : (b & 0xF8) == 0xF0 ? 4 : 0;
        bool valid = len > 0 && i + len <= utf8.size();
        for (int k = 1; valid && k < len; ++k)
            valid = (static_cast<unsigned char>(utf8[i + k]) & 0xC0) == 0x80;
        if (!valid) {
            out += static_cast<char>(b);
            ++i;
            continue;
        }
        uint32_t cp = b & (0xFF >> (len + 1));
        for (int k = 1; k < len; ++k) cp = (cp << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        out += cp < 256 ? static_cast<char>(cp) : '?';
        i += len;
    }
    return out;
}

std::string unescapeText(std::string_view text) {
    static const struct {
        const char* ref;
        char ch;
    } named[] = {{"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}};
    std::string out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        if (text[i] != '&') {
            out += text[i++];
            continue;
        }
        bool done = false;
        for (const auto& n : named) {
            size_t len = std::strlen(n.ref);
            if (text.compare(i, len, n.ref) == 0) {
                out += n.ch;
                i += len;
                done = true;
                break;
            }
        }
        if (done) continue;
        if (i + 3 < text.size() && text[i + 1] == '#' && (text[i + 2] == 'x' || text[i + 2] == 'X')) {
            size_t j = i + 3;
            unsigned value = 0;
            while (j < text.size() && hexValue(text[j]) >= 0 && j - i < 12) value = value * 16 + hexValue(text[j++]);
            if (j > i + 3 && j < text.size() && text[j] == ';') {
                out += static_cast<char>(value & 0xFF);
                i = j + 1;
                continue;
            }
        }
        out += text[i++];
    }
    return out;
}

}  // namespace quillet
