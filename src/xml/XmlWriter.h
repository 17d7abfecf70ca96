// Streaming writer of the project's XML text.
//
// The writer emits literal text: callers build elements from fragments, so the
// byte layout of every file is fixed by the code that writes it. Every file
// starts with the wrapper element <xml version="1.0"> (not an XML declaration)
// and ends with </xml>. Strings are 8-bit byte strings; escapeText() turns the
// markup characters, line breaks and every byte of 0x80..0xFF into references,
// so the files themselves are plain ASCII.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <ostream>
#include <string>
#include <string_view>

namespace quillet {

class XmlWriter {
public:
    XmlWriter() = default;
    ~XmlWriter();
    XmlWriter(const XmlWriter&) = delete;
    XmlWriter& operator=(const XmlWriter&) = delete;

    // Opens the file and writes the wrapper's start tag. False when the file
    // cannot be created.
    bool open(const std::string& path);
    // Writes into a caller's stream instead of a file (tests, in-memory saves).
    void open(std::ostream& out);
    // Writes the wrapper's end tag and closes the file. False when any write
    // or the close failed.
    bool close();
    bool isOpen() const { return out_ != nullptr; }
    bool good() const { return out_ != nullptr && out_->good(); }

    // Plain fragments, written as they stand.
    void write(std::string_view text);
    void write(const char* text) { write(std::string_view(text)); }
    void write(int value);
    void write(unsigned value);
    void write(bool value);  // "true" / "false"
    // A real number in the stream's default formatting (six significant
    // digits, no trailing zeros): 12, 12.5, 0.333.
    void writeReal(double value);
    void writeEscaped(std::string_view text);
    void writeBytes(const void* data, size_t size);

    // Convenience over the fragments above: ` name="value"` with the value
    // escaped (or raw for writeAttributeRaw).
    void attribute(std::string_view name, std::string_view value);
    void attribute(std::string_view name, const char* value) { attribute(name, std::string_view(value)); }
    void attribute(std::string_view name, const std::string& value) { attribute(name, std::string_view(value)); }
    void attribute(std::string_view name, int value);
    void attribute(std::string_view name, unsigned value);
    void attribute(std::string_view name, bool value);
    void attributeReal(std::string_view name, double value);
    void attributeRaw(std::string_view name, std::string_view value);

private:
    std::ofstream file_;
    std::ostream* out_ = nullptr;
    bool ownsFile_ = false;
};

// The escaping rules of the writer, usable on their own.
std::string escapeText(std::string_view text);
// The default stream formatting of a real number ("%g").
std::string formatReal(double value);

}  // namespace quillet
