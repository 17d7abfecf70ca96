#include <gtest/gtest.h>

#include <sstream>

#include "support/TempDir.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

using namespace quillet;

TEST(XmlWriter, EscapesMarkupLineBreaksAndHighBytes) {
    EXPECT_EQ(escapeText("a<b & \"c\" 'd'>"), "a&lt;b &amp; &quot;c&quot; &apos;d&apos;&gt;");
    EXPECT_EQ(escapeText("x\r\ny"), "x&#x0d;&#x0a;y");
    // High bytes are two lower-case digits, never sign-extended.
    EXPECT_EQ(escapeText("\xfc\xe9\x80\xff"), "&#xfc;&#xe9;&#x80;&#xff;");
    EXPECT_EQ(escapeText("tab\there"), "tab\there");
}

TEST(XmlWriter, WrapsTheDocumentAndFormatsValues) {
    std::ostringstream out;
    XmlWriter w;
    w.open(out);
    w.write("<a");
    w.attribute("n", -5);
    w.attribute("u", 4000000000u);
    w.attribute("b", true);
    w.attributeReal("f", 12.0);
    w.attributeReal("g", 12.5);
    w.attributeReal("z", 0.333);
    w.attributeRaw("raw", "a&b");
    w.write(" />\n");
    ASSERT_TRUE(w.close());
    EXPECT_EQ(out.str(),
              "<xml version=\"1.0\">\n<a n=\"-5\" u=\"4000000000\" b=\"true\" f=\"12\" g=\"12.5\" z=\"0.333\" "
              "raw=\"a&b\" />\n\n</xml>\n");
}

TEST(XmlReader, ByteStringsRoundTripThroughTheParser) {
    test::TempDir dir;
    // Every byte value from 1 to 255, including markup, line breaks and a UTF-8 sequence.
    std::string all;
    for (int b = 1; b < 256; ++b) all += static_cast<char>(b);
    all += "caf\xc3\xa9 & <tag>";
    XmlWriter w;
    ASSERT_TRUE(w.open(dir.file("t.xml")));
    w.write("<item");
    w.attribute("s", all);
    w.write(" />");
    ASSERT_TRUE(w.close());

    XmlReader r;
    ASSERT_TRUE(r.load(dir.file("t.xml"))) << r.error();
    XmlNode root = r.documentElement();
    EXPECT_EQ(root.name(), "xml");
    XmlNode item = root.child("item");
    ASSERT_TRUE(item);
    std::string s;
    ASSERT_TRUE(item.readString("s", s));
    EXPECT_EQ(s, all);
    EXPECT_EQ(currentTextEncoding(), TextEncoding::Ansi);
}

TEST(XmlReader, TypedGettersFollowTheLooseRules) {
    XmlReader r;
    ASSERT_TRUE(r.loadBuffer(R"(<xml version="1.0"><e i="42" junk="abc" neg="-7" u="3000000000"
        d="1.5" b1="TRUE" b2="1" b3="false" s="a&amp;amp;b" /></xml>)"));
    XmlNode e = r.documentElement().firstChild();
    int i = 99;
    EXPECT_TRUE(e.readInt("i", i));
    EXPECT_EQ(i, 42);
    EXPECT_TRUE(e.readInt("junk", i));
    EXPECT_EQ(i, 0);
    uint32_t u = 0;
    EXPECT_TRUE(e.readUnsigned("u", u));
    EXPECT_EQ(u, 3000000000u);
    double d = 0;
    EXPECT_TRUE(e.readDouble("d", d));
    EXPECT_DOUBLE_EQ(d, 1.5);
    bool b = false;
    e.readBool("b1", b);
    EXPECT_TRUE(b);
    e.readBool("b2", b);
    EXPECT_FALSE(b);
    // Missing attributes leave the target alone.
    int keep = 7;
    EXPECT_FALSE(e.readInt("missing", keep));
    EXPECT_EQ(keep, 7);
    // The reader unescapes once more after the parser did.
    EXPECT_EQ(*e.string("s"), "a&b");
}

TEST(XmlReader, EncodingModeComesFromTheWrapper) {
    XmlReader r;
    ASSERT_TRUE(r.loadBuffer("<xml encoding=\"UTF-8\"><e s=\"caf&#xe9;\"/></xml>"));
    EXPECT_EQ(currentTextEncoding(), TextEncoding::Utf8);
    EXPECT_EQ(*r.documentElement().firstChild().string("s"), "caf\xc3\xa9");
    // A document without the attribute keeps the previous mode.
    ASSERT_TRUE(r.loadBuffer("<xml><e/></xml>"));
    EXPECT_EQ(currentTextEncoding(), TextEncoding::Utf8);
    ASSERT_TRUE(r.loadBuffer("<xml encoding=\"windows-1252\"><e s=\"caf&#xe9;\"/></xml>"));
    EXPECT_EQ(currentTextEncoding(), TextEncoding::Ansi);
    EXPECT_EQ(*r.documentElement().firstChild().string("s"), "caf\xe9");
}

TEST(XmlReader, BadInputFailsWithAReason) {
    XmlReader r;
    EXPECT_FALSE(r.load("/nonexistent/dir/file.qpj"));
    EXPECT_NE(r.error().find("cannot open"), std::string::npos);
    EXPECT_FALSE(r.loadBuffer("<xml version=\"1.0\">\n<a>\n<b></a></xml>"));
    EXPECT_NE(r.error().find("line 3"), std::string::npos) << r.error();
    EXPECT_FALSE(r.loadBuffer(""));
    EXPECT_FALSE(r.loadBuffer("<xml version=\"1.0\">\n<quillet>"));  // truncated
}
