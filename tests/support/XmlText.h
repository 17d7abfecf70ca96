// Writing one element to text and parsing it back (header only: the test
// programs link the xml code, the support library does not).
#pragma once

#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet::test {

// The text that `write` produces, without the document wrapper.
inline std::string WrittenText(const std::function<void(XmlWriter&)>& write) {
    std::ostringstream out;
    XmlWriter writer;
    writer.open(out);
    const size_t start = out.str().size();
    write(writer);
    std::string text = out.str().substr(start);
    writer.close();
    return text;
}

// Parses `body` inside a wrapper element and keeps the document alive.
class ParsedXml {
public:
    explicit ParsedXml(const std::string& body) {
        ok_ = reader_.loadBuffer("<xml version=\"1.0\">\n" + body + "\n</xml>\n");
    }
    bool ok() const { return ok_; }
    const std::string& error() const { return reader_.error(); }
    XmlNode root() const { return reader_.documentElement(); }
    XmlNode first() const { return root().firstChild(); }

private:
    XmlReader reader_;
    bool ok_ = false;
};

}  // namespace quillet::test
