// The show's own elements: swf_data, sound_data and publish_data.
#include <gtest/gtest.h>

#include "model/PublishSettings.h"
#include "model/SlideSound.h"
#include "model/SwfData.h"
#include "support/XmlText.h"

using namespace quillet;
using quillet::test::ParsedXml;
using quillet::test::WrittenText;

namespace {

template <typename T>
std::string write(const T& thing) {
    return WrittenText([&](XmlWriter& w) { thing.Write(w); });
}

}  // namespace

// The full layout of these elements is checked byte for byte by the stored
// project (test_project_file.cpp); here the one-way values and reading rules.
TEST(SwfDataElement, ValuesOutsideTheTablesAndExactKeywords) {
    SwfData d;
    // Values outside the keyword tables write no attribute and read back as defaults.
    d.loop = static_cast<SwfData::Loop>(3);
    d.preloadType = static_cast<SwfData::PreloadType>(-1);
    d.mouseClickAction.action = 2;  // unload_movie exists only for the end action
    d.movieEndAction.action = 2;
    const std::string text = write(d);
    EXPECT_EQ(text.find(" loop=\""), std::string::npos);
    EXPECT_EQ(text.find("preload_type"), std::string::npos);
    EXPECT_NE(text.find("<mouse_click_action enable=\"false\" url="), std::string::npos);
    EXPECT_NE(text.find("<movie_end_action enable=\"false\" action=\"unload_movie\""), std::string::npos);

    SwfData back;
    back.Read(ParsedXml("<swf_data movie_start_action=\"stop_on_first_frame\" loop=\"FOREVER\">"
                            "<mouse_click_action action=\"unload_movie\" />"
                            "<movie_end_action action=\"unload_movie\" enable=\"true\" /></swf_data>").first());
    EXPECT_EQ(back.movieStartAction, SwfData::StartAction::StopOnFirstFrame);
    EXPECT_EQ(back.loop, SwfData::Loop::None);  // exact keywords
    EXPECT_EQ(back.mouseClickAction.action, 0);
    EXPECT_EQ(back.movieEndAction.action, 2);
    EXPECT_TRUE(back.movieEndAction.enable);
}

TEST(SoundDataElement, Reading) {
    SlideSound s;
    s.include = true;
    s.sounds.push_back({"/m/a & b.mp3", 1500, 4000, false, true, 22050, 64, false, true});
    EXPECT_TRUE(s.hasSound());

    SlideSound back;
    back.sounds.push_back({"/old.wav"});  // replaced by what is read
    back.Read(ParsedXml("<sound_data play_until_next_sound=\"true\"><other src=\"x\" />"
                            "<sound src=\"rel.wav\" sample_rate=\"abc\" /><sound /></sound_data>").first(),
              "/proj");
    EXPECT_FALSE(back.include);
    EXPECT_TRUE(back.playUntilNextSound);
    ASSERT_EQ(back.sounds.size(), 2u);
    EXPECT_EQ(back.sounds[0].src, "/proj/rel.wav");
    EXPECT_EQ(back.sounds[0].sampleRate, 0);
    EXPECT_EQ(back.sounds[1], SoundClip{});
    EXPECT_FALSE(back.hasSound());
}

TEST(PublishDataElement, TargetsAndPageOptions) {
    PublishSettings p;
    p.output = "/o";
    p.setBaseFilename("Show");
    p.htmlSettings.dimensionType = HtmlSettings::Percent;
    p.htmlSettings.flashAlign = HtmlSettings::FTopRight;
    p.winProjectorSettings.fullscreen = true;
    const std::string text = write(p);
    // File names follow the base name.
    for (const char* name : {"filename=\"Show.html\"", "<html_swf swf=\"Show.swf\"", "filename=\"Show.hqx\"",
                             "filename=\"Show.exe\"", "dimension_type=\"percent\"", "flash_align=\"topright\""})
        EXPECT_NE(text.find(name), std::string::npos) << name << "\n" << text;
    EXPECT_NE(text.find("installer_filename=\"ShowSS.exe\""), std::string::npos);

    PublishSettings back;
    back.Read(ParsedXml("<publish_data output=\"/abs\"><swf publish=\"false\" /><flv publish=\"true\" />"
                            "<mac_projector publish=\"true\"><swf_projector showmenu=\"false\" /></mac_projector>"
                            "<html><html_swf quality=\"Best\" scale=\"noborder\" /></html>"
                            "<quicktime_mov publish=\"true\"><quicktime_swf anything=\"1\" /></quicktime_mov>"
                            "</publish_data>").first(),
              "/proj");
    EXPECT_EQ(back.output, "/abs");
    EXPECT_FALSE(back.swf.publish);
    EXPECT_TRUE(back.flv.publish);  // read as written; only the writer couples it
    EXPECT_TRUE(back.macProjector.publish);
    EXPECT_FALSE(back.macProjectorSettings.showmenu);
    EXPECT_TRUE(back.winProjectorSettings.isPlayerDefault());
    EXPECT_EQ(back.htmlSettings.quality, HtmlSettings::High);
    EXPECT_EQ(back.htmlSettings.scale, HtmlSettings::NoBorder);
    EXPECT_TRUE(back.quicktime.publish);
}
