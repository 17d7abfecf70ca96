// Reader of the project's XML files: a thin typed layer over pugixml.
//
// Attribute values come back as 8-bit byte strings. The parser hands text out
// as UTF-8; in the ansi mode (the default, and what our own files use) each
// code point below 256 becomes that byte again, so a byte string written by
// XmlWriter reads back unchanged. Every string value is also unescaped once
// more (see unescapeText), undoing references that reached us unexpanded.
//
// Missing attributes are not errors: the read* getters return false and leave
// the target untouched, so a field keeps its default.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace quillet {

// How text of the loaded document is turned into bytes. Set from the
// document element's `encoding` attribute ("UTF-8", "UTF-16", anything else
// ansi); a document without that attribute keeps the previous mode.
enum class TextEncoding { Ansi = 0, Utf8 = 1, Utf16 = 2 };
TextEncoding currentTextEncoding();
void setCurrentTextEncoding(TextEncoding mode);

class XmlNode {
public:
    XmlNode() = default;
    explicit XmlNode(pugi::xml_node node) : node_(node) {}

    explicit operator bool() const { return static_cast<bool>(node_); }
    std::string name() const;
    // Element children in document order (text and comments are skipped).
    std::vector<XmlNode> children() const;
    XmlNode firstChild() const;
    XmlNode child(const char* name) const;
    bool has(const char* attribute) const;

    // Typed getters. Each returns false (and leaves `out` alone) when the
    // attribute is absent.
    bool readString(const char* attribute, std::string& out) const;  // converted and unescaped
    bool readInt(const char* attribute, int& out) const;             // decimal, like atol: junk reads 0
    bool readUnsigned(const char* attribute, uint32_t& out) const;   // decimal, unsigned
    bool readDouble(const char* attribute, double& out) const;       // strtod: junk reads 0.0
    bool readFloat(const char* attribute, float& out) const;
    bool readBool(const char* attribute, bool& out) const;           // "true" in any case; else false
    std::optional<std::string> string(const char* attribute) const;

    pugi::xml_node raw() const { return node_; }

private:
    pugi::xml_node node_;
};

class XmlReader {
public:
    // Parses the file. False on a missing file or any parse error; error()
    // then says what went wrong (and where).
    bool load(const std::string& path);
    bool loadBuffer(std::string_view text);
    const std::string& error() const { return error_; }
    XmlNode documentElement() const;

private:
    bool finish(const pugi::xml_parse_result& result, std::string_view text);
    pugi::xml_document doc_;
    std::string error_;
};

// Replaces the five named references and hexadecimal numeric references
// (&#xNN;) by their byte; everything else is copied unchanged.
std::string unescapeText(std::string_view text);
// Turns parser text (UTF-8) into bytes by the given mode.
std::string textToBytes(std::string_view utf8, TextEncoding mode);

}  // namespace quillet
