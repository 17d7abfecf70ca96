#include "xml/XmlWriter.h"

#include <cstdio>

namespace quillet {

XmlWriter::~XmlWriter() {
    if (ownsFile_ && file_.is_open()) file_.close();
}

bool XmlWriter::open(const std::string& path) {
    file_.open(path, std::ios::out | std::ios::binary | std::ios::trunc);
    if (!file_.is_open()) return false;
    ownsFile_ = true;
    out_ = &file_;
    write("<xml version=\"1.0\">\n");
    return good();
}

void XmlWriter::open(std::ostream& out) {
    ownsFile_ = false;
    out_ = &out;
    write("<xml version=\"1.0\">\n");
}

bool XmlWriter::close() {
    if (!out_) return false;
    write("\n</xml>\n");
    out_->flush();
    bool ok = out_->good();
    if (ownsFile_) {
        file_.close();
        ok = ok && !file_.fail();
    }
    out_ = nullptr;
    ownsFile_ = false;
    return ok;
}

void XmlWriter::write(std::string_view text) {
    if (out_) out_->write(text.data(), static_cast<std::streamsize>(text.size()));
}

void XmlWriter::write(int value) { write(std::to_string(value)); }
void XmlWriter::write(unsigned value) { write(std::to_string(value)); }
void XmlWriter::write(bool value) { write(value ? std::string_view("true") : std::string_view("false")); }
void XmlWriter::writeReal(double value) { write(formatReal(value)); }
void XmlWriter::writeEscaped(std::string_view text) { write(escapeText(text)); }

void XmlWriter::writeBytes(const void* data, size_t size) {
    if (out_) out_->write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
}

void XmlWriter::attribute(std::string_view name, std::string_view value) {
    write(" ");
    write(name);
    write("=\"");
    writeEscaped(value);
    write("\"");
}

void XmlWriter::attributeRaw(std::string_view name, std::string_view value) {
    write(" ");
    write(name);
    write("=\"");
    write(value);
    write("\"");
}

void XmlWriter::attribute(std::string_view name, int value) { attributeRaw(name, std::to_string(value)); }
void XmlWriter::attribute(std::string_view name, unsigned value) { attributeRaw(name, std::to_string(value)); }
void XmlWriter::attribute(std::string_view name, bool value) { attributeRaw(name, value ? "true" : "false"); }
void XmlWriter::attributeReal(std::string_view name, double value) { attributeRaw(name, formatReal(value)); }

std::string escapeText(std::string_view text) {
    static const char* hex = "0123456789abcdef";
    std::string out;
    out.reserve(text.size());
    for (char ch : text) {
        const auto byte = static_cast<unsigned char>(ch);
        switch (byte) {
            case '"': out += "&quot;"; break;
            case '\'': out += "&apos;"; break;
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '\n': out += "&#x0a;"; break;
            case '\r': out += "&#x0d;"; break;
            default:
                if (byte >= 0x80) {
                    out += "&#x";
                    out += hex[byte >> 4];
                    out += hex[byte & 15];
                    out += ';';
                } else {
                    out += ch;
                }
        }
    }
    return out;
}

std::string formatReal(double value) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%g", value);
    return buf;
}

}  // namespace quillet
