#include <gtest/gtest.h>

#include "effects/Caption.h"
#include "support/XmlText.h"

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

// Every field's written form and round trip are in the stored full project
// (tests/model); here text that needs escaping, and reading onto a list.
TEST(CaptionXml, MarkupInTheTextAndReadingAppends) {
    Caption a;
    a.text = "Line \"one\"\nline <two> & 'three' \xe9";
    a.importSource = "/home/me/caps \xc3\xa9t\xc3\xa9.glw";
    CaptionList list;
    list.items = {a, Caption()};
    const std::string text = WrittenText([&](XmlWriter& w) { list.Write(w); });
    const CaptionList back = reread(text);
    EXPECT_EQ(back, list);
    CaptionList twice = back;
    ParsedXml xml(text);
    twice.Read(xml.first());
    EXPECT_EQ(twice.items.size(), 4u);
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
