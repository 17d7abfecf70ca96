#include <gtest/gtest.h>

#include "effects/Caption.h"
#include "EffectsTestXml.h"

using namespace quillet;
using quillet::test::ParsedXml;
using quillet::test::WrittenText;

namespace {

CaptionList reread(const std::string& text) {
    ParsedXml xml(text);
    EXPECT_TRUE(xml.ok()) << xml.error() << "\n" << text;
    CaptionList list;
    list.Read(xml.first());
    return list;
}

Caption readOne(const std::string& attributes) {
    CaptionList list = reread("<caption_data><caption " + attributes + " /></caption_data>");
    EXPECT_EQ(list.items.size(), 1u);
    return list.items.empty() ? Caption() : list.items[0];
}

}  // namespace

TEST(CaptionXml, WritesFieldsInTableOrder) {
    CaptionList list;
    EXPECT_EQ(WrittenText([&](XmlWriter& w) { list.Write(w); }), "<caption_data>\n</caption_data>\n");
    list.items.emplace_back();
    list.items[0].text = "Hello";
    EXPECT_EQ(WrittenText([&](XmlWriter& w) { list.Write(w); }),
              "<caption_data>\n"
              "<caption type=\"qpj\" import_src=\"\" txt=\"Hello\" fnt_name=\"Arial\" font_size=\"24\" "
              "font_italic=\"false\" font_bold=\"false\" color=\"16777215\" alpha=\"100\" x=\"0\" y=\"0\" "
              "h_align=\"center\" v_align=\"bottom\" align_to_doc=\"true\" tracking=\"0\" leading=\"0\" "
              "start_time=\"0\" duration=\"3000\" show_till_next=\"true\" effect=\"None\" />\n"
              "</caption_data>\n");
}

TEST(CaptionXml, RoundTripsEveryField) {
    Caption a;
    a.kind = Caption::Imported;
    a.importSource = "/home/me/caps \xc3\xa9t\xc3\xa9.glw";
    a.text = "Line \"one\"\nline <two> & 'three' \xe9";
    a.fontName = "DejaVu Serif";
    a.fontSize = -12;
    a.italic = true;
    a.bold = true;
    a.color = 0x0000FF;
    a.alpha = 35;
    a.x = -40;
    a.y = 7000;
    a.hAlign = Caption::Right;
    a.vAlign = Caption::Top;
    a.alignToDoc = false;
    a.tracking = -3;
    a.leading = 12;
    a.startTime = 1500;
    a.duration = 4000000000u;
    a.showTillNext = false;
    a.effect = "fly from TOP";
    Caption b;
    b.hAlign = Caption::Left;
    b.vAlign = Caption::VCenter;
    CaptionList list;
    list.items = {a, b, Caption()};
    const std::string text = WrittenText([&](XmlWriter& w) { list.Write(w); });
    const CaptionList back = reread(text);
    EXPECT_EQ(back, list);
    EXPECT_EQ(back.items[0].EffectKind(), CaptionEffectKind::FlyFromTop);

    // Reading appends to what is there.
    CaptionList twice = back;
    ParsedXml xml(text);
    twice.Read(xml.first());
    EXPECT_EQ(twice.items.size(), 6u);
}

TEST(CaptionXml, ReaderAliasesKeywordsAndDefaults) {
    // A kind other than 0 or 1 is written empty and reads back as the default.
    Caption odd;
    odd.kind = 5;
    odd.hAlign = 9;
    const std::string text = WrittenText([&](XmlWriter& w) { WriteCaption(w, odd); });
    EXPECT_EQ(text.rfind("<caption type=\"\" import_src=", 0), 0u) << text;
    EXPECT_NE(text.find(" h_align=\"\" "), std::string::npos);
    EXPECT_EQ(readOne("type=\"\" h_align=\"\"").kind, Caption::Made);
    EXPECT_EQ(readOne("type=\"glw\"").kind, Caption::Imported);
    EXPECT_EQ(readOne("type=\"GLW\"").kind, Caption::Made);  // keywords compare exactly
    EXPECT_EQ(readOne("v_align=\"Top\"").vAlign, Caption::Bottom);

    // Older spellings are read where the current ones are missing.
    Caption c = readOne("text=\"old\" font_name=\"Old Face\"");
    EXPECT_EQ(c.text, "old");
    EXPECT_EQ(c.fontName, "Old Face");
    c = readOne("txt=\"new\" text=\"old\" fnt_name=\"New\" font_name=\"Old\"");
    EXPECT_EQ(c.text, "new");
    EXPECT_EQ(c.fontName, "New");

    // The packed font; separate attributes win over it.
    c = readOne("font=\"Times New Roman, 18 ,Bold\"");
    EXPECT_EQ(c.fontName, "Times New Roman");
    EXPECT_EQ(c.fontSize, 18);
    EXPECT_TRUE(c.bold);
    EXPECT_FALSE(c.italic);
    c = readOne("font=\"Serif,10,italic\" font_size=\"30\" font_bold=\"true\"");
    EXPECT_EQ(c.fontName, "Serif");
    EXPECT_EQ(c.fontSize, 30);
    EXPECT_TRUE(c.bold);
    EXPECT_TRUE(c.italic);
    c = readOne("font=\",big\"");
    EXPECT_EQ(c.fontName, "Arial");
    EXPECT_EQ(c.fontSize, 24);
    Caption packed;
    packed.fontName = "Mono";
    packed.fontSize = 9;
    packed.italic = true;
    EXPECT_EQ(PackCaptionFont(packed), "Mono,9,italic");
    Caption unpacked;
    UnpackCaptionFont(PackCaptionFont(packed), unpacked);
    EXPECT_EQ(unpacked, packed);

    // Missing attributes keep the defaults; other children are skipped.
    const CaptionList list = reread("<caption_data><note txt=\"x\" /><caption /><caption txt=\"b\" /></caption_data>");
    ASSERT_EQ(list.items.size(), 2u);
    EXPECT_EQ(list.items[0], Caption());
    EXPECT_EQ(list.items[1].text, "b");
    CaptionList none;
    none.Read(XmlNode());
    EXPECT_TRUE(none.empty());
}

TEST(CaptionEffect, NamesCompareWithoutCaseAndUnknownIsNone) {
    EXPECT_EQ(CaptionEffectFromName("fade in"), CaptionEffectKind::FadeIn);
    EXPECT_EQ(CaptionEffectFromName("FLY FROM RIGHT"), CaptionEffectKind::FlyFromRight);
    EXPECT_EQ(CaptionEffectFromName("Fly From Bottom"), CaptionEffectKind::FlyFromBottom);
    EXPECT_EQ(CaptionEffectFromName("Fly From Left"), CaptionEffectKind::FlyFromLeft);
    EXPECT_EQ(CaptionEffectFromName("Fade"), CaptionEffectKind::None);
    EXPECT_EQ(CaptionEffectFromName(""), CaptionEffectKind::None);
    Caption c = readOne("effect=\"Dissolve\"");
    EXPECT_EQ(c.effect, "Dissolve");  // kept as written
    EXPECT_EQ(c.EffectKind(), CaptionEffectKind::None);
}
