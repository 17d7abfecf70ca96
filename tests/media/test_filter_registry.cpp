#include <gtest/gtest.h>

#include "media/ImageFilter.h"
#include "support/XmlText.h"

namespace quillet {
namespace {

// Writes the filter and reads it back through the project file's path.
std::unique_ptr<ImageFilter> roundTrip(const ImageFilter& f) {
    test::ParsedXml xml(test::WrittenText([&](XmlWriter& w) { WriteFilterElement(w, f); }));
    EXPECT_TRUE(xml.ok()) << xml.error();
    return ReadFilterElement(xml.first());
}

// Every filter's written form, escaping included, is in the stored full project
// (tests/model); here what reading keeps and what it refuses.
TEST(FilterRegistry, ReadBackKeepsSavedValuesOnly) {
    const auto& r = ImageFilterRegistry::instance();
    EXPECT_EQ(r.Create("blur"), nullptr);  // exact names only
    auto noise = r.Create("Add Noise");
    EXPECT_TRUE(noise->SetOptionValue(0, 5));
    EXPECT_FALSE(noise->SetOptionValue(0, 5));  // unchanged
    EXPECT_EQ(roundTrip(*noise)->OptionValue(0), 5);

    auto bc = r.Create("Brightness/Contrast");
    bc->SetOptionValue(0, -40);
    bc->SetOptionValue(1, 75);
    auto back = roundTrip(*bc);
    EXPECT_EQ(back->OptionValue(0), -40);
    EXPECT_EQ(back->OptionValue(1), 75);

    auto gauss = r.Create("Gaussian Blur");
    gauss->SetOptionValue(0, 2.5);
    EXPECT_EQ(roundTrip(*gauss)->OptionValue(0), 2.5);

    // Median and Motion Blur keep their panel value in memory only.
    for (const char* name : {"Median", "Motion Blur"}) {
        auto f = r.Create(name);
        double def = f->OptionValue(0);
        f->SetOptionValue(0, 5);
        EXPECT_EQ(f->OptionValue(0), 5);
        EXPECT_EQ(f->Clone()->OptionValue(0), 5);  // a clone copies it
        EXPECT_EQ(roundTrip(*f)->OptionValue(0), def) << name;
    }
}

TEST(FilterRegistry, ReadingToleratesBadAttributes) {
    test::ParsedXml xml(
        "<l><filter name=\"Add Noise\" type=\"Poisson\"/><filter name=\"Edge\" radius=\"1e300\"/>"
        "<filter name=\"Swirl\"/><filter name=\"Unknown\"/><filter/>"
        "<filter name=\"Black &amp; White\" threshold=\"999\"/></l>");
    ASSERT_TRUE(xml.ok()) << xml.error();
    auto kids = xml.first().children();
    auto noise = ReadFilterElement(kids[0]);
    EXPECT_EQ(noise->OptionValue(0), 1);  // keywords compare exactly: default stays
    EXPECT_EQ(ReadFilterElement(kids[1])->OptionValue(0), 32);  // radius limited
    EXPECT_EQ(ReadFilterElement(kids[2])->OptionValue(0), 180);
    EXPECT_EQ(ReadFilterElement(kids[3]), nullptr);
    EXPECT_EQ(ReadFilterElement(kids[4]), nullptr);
    EXPECT_EQ(ReadFilterElement(kids[5])->OptionValue(0), 255);
}

}  // namespace
}  // namespace quillet
