// The project file: exact layout, round trips, the format's one-way fields,
// loading rules, missing pictures and damaged files.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <tuple>

#include "ModelFixtures.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"
#include "support/TempDir.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

using namespace quillet;
using quillet::test::readFile;
using quillet::test::TempDir;
using quillet::test::writeFile;
using quillet::test::writeTinyBmp;

namespace {

// A project text around a slide_show start tag and its slides.
std::string project(const std::string& showAttributes, const std::string& slides = "",
                    const std::string& rest = "") {
    return "<xml version=\"1.0\">\n<quillet version_major=\"1\" version_minor=\"119\">\n<slide_show " +
           showAttributes + ">\n<slides>\n" + slides + "</slides>\n</slide_show>\n" + rest +
           "</quillet>\n\n</xml>\n";
}

bool load(const std::string& text, SlideShow& show, PublishSettings& publish, std::string* error = nullptr,
          const LoadOptions& options = {}) {
    return LoadProjectText(text, "/nonexistent-project-folder", show, publish, error, options);
}

std::string blankSlide(const std::string& attributes = "", const std::string& children = "") {
    return "<slide type=\"blank\" " + attributes + " >\n" + children + "</slide>\n";
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

}  // namespace

TEST(ProjectFile, FullShowRoundTripsExactly) {
    TempDir dir;
    SlideShow show;
    PublishSettings publish;
    quillet::test::buildFullShow(show, publish, dir.path().string());
    ASSERT_EQ(show.count(), static_cast<int>(TransitionRegistry::instance().count()));

    const std::string path = dir.file("full.qpj");
    std::string error;
    ASSERT_TRUE(SaveProject(path, show, publish, &error)) << error;
    const std::string written = readFile(path);
    EXPECT_EQ(written, ProjectText(show, publish));
    // A project kept in the source tree is this show, byte for byte (its picture
    // folder filled in): a field the writer drops or reorders shows here.
    std::string stored = written;
    replaceAll(stored, dir.path().string(), "@DIR@");
    EXPECT_EQ(stored, readFile(QUILLET_SOURCE_DIR "/tests/data/model/full.qpj"))
        << "after a deliberate change of the format, store this text as tests/data/model/full.qpj";

    // Saving what was loaded gives the same bytes: nothing written is lost on reading.
    SlideShow loaded;
    PublishSettings loadedPublish;
    ASSERT_TRUE(LoadProject(path, loaded, loadedPublish, &error)) << error;
    EXPECT_TRUE(loadedPublish == publish);
    const std::string again = dir.file("again.qpj");
    ASSERT_TRUE(SaveProject(again, loaded, loadedPublish, &error)) << error;
    EXPECT_EQ(readFile(again), written);

    // Another XML reader accepts what we write.
    std::string output;
    EXPECT_EQ(quillet::test::runCommand("xmllint --noout '" + path + "'", &output, true), 0) << output;
}

TEST(ProjectFile, OneWayFieldsOfTheFormat) {
    TempDir dir;
    writeTinyBmp(dir.file("a.bmp"));
    SlideShow show;
    PublishSettings publish;
    auto s = show.createSlide(SlideType::Image);
    s->image.src = dir.file("a.bmp");
    s->setOverlayEffect(MakeOverlayEffect("Snow"));
    show.append(std::move(s));
    show.muteControl.align = ControlPlacement::Align::Custom;
    show.controls.controlSet = "Odd \"set\" <name>";  // would break the markup as it stands
    show.swfData.preloadFontName = "Courier";
    show.swfData.preloadType = SwfData::PreloadType::Smart;
    show.swfData.movieStartAction = static_cast<SwfData::StartAction>(7);
    publish.swf.publish = false;
    publish.flv.publish = true;

    const std::string text = ProjectText(show, publish);
    EXPECT_NE(text.find("<swf_fx name=\"Snow\" />"), std::string::npos);
    EXPECT_NE(text.find("mute_control_align=\"\""), std::string::npos);
    EXPECT_NE(text.find("control_set=\"Odd &quot;set&quot; &lt;name&gt;\""), std::string::npos);
    EXPECT_NE(text.find("<flv publish=\"false\""), std::string::npos);
    EXPECT_NE(text.find("preload_type=\"smart\""), std::string::npos);
    EXPECT_EQ(text.find("movie_start_action"), std::string::npos);

    SlideShow back;
    PublishSettings backPublish;
    std::string error;
    ASSERT_TRUE(LoadProjectText(text, dir.path().string(), back, backPublish, &error)) << error;
    EXPECT_FALSE(back.slideAt(0)->overlayEffect().IsNone());  // swf_fx selects the effect of that name
    EXPECT_EQ(back.muteControl.align, ControlPlacement::Align::BottomRight);
    EXPECT_EQ(back.controls.controlSet, "Odd \"set\" <name>");
    EXPECT_FALSE(backPublish.flv.publish);  // follows the movie's flag
    EXPECT_EQ(back.swfData.preloadFontName, "Arial");  // read from font_name, which we do not write
    EXPECT_EQ(back.swfData.preloadType, SwfData::PreloadType::Simple);
    EXPECT_EQ(back.swfData.movieStartAction, SwfData::StartAction::PlayAutomatically);

    // The reader's own names: font_name is read, preload_font_name is not.
    SwfData d;
    XmlReader reader;
    ASSERT_TRUE(reader.loadBuffer("<swf_data font_name=\"Verdana\" preload_font_name=\"X\" preload_type=\"smart\" "
                                  "preload_font=\"e8ffffff\" loop=\"times\" loop_count=\"0\" />"));
    d.Read(reader.documentElement());
    EXPECT_EQ(d.preloadFontName, "Verdana");
    EXPECT_EQ(d.preloadType, SwfData::PreloadType::Simple);
    EXPECT_EQ(d.preloadFont, FontRecord{});  // not 28 bytes: kept
    EXPECT_EQ(d.loop, SwfData::Loop::Times);
    EXPECT_EQ(d.loopCount, 0);
}

TEST(ProjectFile, ShowAttributeRules) {
    SlideShow show;
    PublishSettings publish;
    // fps outside 1..120 keeps the default; bounds start as the whole stage,
    // and a right edge not past the left spans the width.
    struct Case {
        const char* attributes;
        float fps;
        int left, top, right, bottom;
    };
    const Case cases[] = {
        {"fps=\"0\"", 12, 0, 0, 320, 240},
        {"fps=\"240\"", 12, 0, 0, 320, 240},
        {"fps=\"nan\"", 12, 0, 0, 320, 240},
        {"fps=\"120\"", 120, 0, 0, 320, 240},
        {"fps=\"12.5\"", 12.5f, 0, 0, 320, 240},
        {"width=\"500\" height=\"400\" show_bounds_top=\"9\"", 12, 0, 9, 500, 400},
        {"width=\"500\" show_bounds_left=\"30\" show_bounds_right=\"0\"", 12, 0, 0, 500, 240},
        {"width=\"500\" show_bounds_left=\"30\" show_bounds_right=\"30\"", 12, 0, 0, 500, 240},
        {"width=\"500\" show_bounds_left=\"30\" show_bounds_right=\"31\"", 12, 30, 0, 31, 240},
    };
    for (const Case& c : cases) {
        ASSERT_TRUE(load(project(c.attributes), show, publish)) << c.attributes;
        EXPECT_EQ(show.fps, c.fps) << c.attributes;
        EXPECT_EQ(std::tie(show.showBoundsLeft, show.showBoundsTop, show.showBoundsRight, show.showBoundsBottom),
                  std::tie(c.left, c.top, c.right, c.bottom))
            << c.attributes;
    }

    // Text where numbers belong reads as atol would; an impossible stage
    // size keeps the default; unknown keywords keep theirs.
    ASSERT_TRUE(load(project("width=\"wide\" height=\"-5\" bg_color=\"blue\" bg_frame=\"Metal\" "
                             "control_align=\"TOP_LEFT\" bg_frame_left=\"12px\" controls=\"TRUE\" "
                             "use_bg_image=\"1\""),
                     show, publish));
    EXPECT_EQ(show.width(), 320);
    EXPECT_EQ(show.height(), 240);
    EXPECT_EQ(show.bgColor, 0u);
    EXPECT_EQ(show.bgFrame, SlideShow::Frame::None);
    EXPECT_EQ(show.controls.align, ControlPlacement::Align::BottomCenter);
    EXPECT_EQ(show.bgFrameLeft, 12);
    EXPECT_TRUE(show.controls.enabled);
    EXPECT_FALSE(show.useBgImage);
    // A file of any version is accepted.
    std::string other = project("fps=\"24\"");
    replaceAll(other, "version_major=\"1\"", "version_major=\"9\"");
    ASSERT_TRUE(load(other, show, publish));
    EXPECT_EQ(show.fps, 24.0f);
}

TEST(ProjectFile, SlideAttributeRules) {
    SlideShow show;
    PublishSettings publish;
    std::string error;
    const std::string slides =
        blankSlide("click=\"x\"",
                   "<click_actions type=\"Jump_To_Slide\" jump_to=\"3\" />\n"
                   "<transition_in>\n<transition name=\"cross fade\" duration=\"700\" />\n</transition_in>\n"
                   "<image_filters>\n<filter name=\"No Such Filter\" />\n<filter name=\"Sepia\" />\n"
                   "<filter name=\"sepia\" />\n</image_filters>\n"
                   "<pan_zoom>\n<camera_fx name=\"dolly\" />\n<camera_fx name=\"pan_zoom\" duration=\"900\" "
                   "zoom=\"2\" />\n</pan_zoom>\n") +
        "<picture type=\"Blank\" image_type=\"JPEG\" h_align=\"Left\" v_align=\"bottom\" duration=\"-1\" "
        "flip_vertical=\"true\" rotate=\"90\" width=\"33\" height=\"44\" crop_left=\"5\" >\n"
        "<transition_in>\n<transition name=\"Nope\" duration=\"5\" />\n</transition_in>\n</picture>\n" +
        blankSlide("", "<transition_in>\n</transition_in>\n<click_actions type=\"unknown\" />\n");
    // Unknown type reads as image: give the second slide's picture a file.
    TempDir dir;
    writeTinyBmp(dir.file("x.bmp"));
    std::string text = project("", slides);
    replaceAll(text, "<picture type=\"Blank\"", "<picture type=\"Blank\" src=\"x.bmp\"");
    ASSERT_TRUE(LoadProjectText(text, dir.path().string(), show, publish, &error)) << error;
    ASSERT_EQ(show.count(), 3);

    const Slide& a = *show.slideAt(0);
    EXPECT_EQ(a.clickAction.type, ClickAction::Type::JumpToSlide);  // case ignored
    EXPECT_EQ(a.clickAction.jumpTo, 3);
    EXPECT_EQ(a.transitionIn().name(), "Cross Fade");  // the registry's spelling
    EXPECT_EQ(a.transitionIn().duration(), 700u);
    ASSERT_EQ(a.imageFilters().size(), 1u);  // unknown and miscased names skipped
    EXPECT_EQ(a.cameraEffectCount(), 1u);
    EXPECT_EQ(a.totalTime(), 2000u + 700u + 900u);

    const Slide& b = *show.slideAt(1);
    EXPECT_EQ(b.type, SlideType::Image);  // "Blank" is not "blank"
    EXPECT_EQ(b.image.src, dir.file("x.bmp"));  // relative to the project's folder
    EXPECT_EQ(b.image.imageType, ImageType::Jpeg);
    EXPECT_EQ(b.image.hAlign, HAlign::Center);
    EXPECT_EQ(b.image.vAlign, VAlign::Bottom);
    EXPECT_EQ(b.duration, 4294967295u);
    EXPECT_TRUE(b.image.flipVertical);
    EXPECT_EQ(b.image.rotation, 90);
    // The turn happens before the sizes are read: they stay as written.
    EXPECT_EQ(b.image.width, 33);
    EXPECT_EQ(b.image.height, 44);
    EXPECT_EQ(b.image.cropRect.left, 5);
    // Flipped vertically, then turned a quarter.
    EXPECT_EQ(b.image.cornerOrder, (std::array<uint8_t, 4>{1, 4, 3, 2}));
    EXPECT_EQ(b.transitionIn().name(), "None");  // unknown transition: default kept

    const Slide& c = *show.slideAt(2);
    EXPECT_EQ(c.transitionIn().name(), "None");
    EXPECT_EQ(c.clickAction.type, ClickAction::Type::GetUrl);
}

TEST(ProjectFile, PathsWithMarkupAndHighBytesRoundTrip) {
    TempDir dir;
    const std::string odd = dir.file("Tom & Jerry's \"best\" <1> \xe9t\xe9.bmp");
    writeTinyBmp(odd);
    SlideShow show;
    PublishSettings publish;
    auto s = show.createSlide(SlideType::Image);
    s->image.src = odd;
    show.append(std::move(s));
    std::string error;
    ASSERT_TRUE(SaveProject(dir.file("p.qpj"), show, publish, &error)) << error;
    const std::string text = readFile(dir.file("p.qpj"));
    EXPECT_NE(text.find("Tom &amp; Jerry&apos;s &quot;best&quot; &lt;1&gt; &#xe9;t&#xe9;.bmp"), std::string::npos);
    SlideShow back;
    ASSERT_TRUE(LoadProject(dir.file("p.qpj"), back, publish, &error)) << error;
    EXPECT_EQ(back.slideAt(0)->image.src, odd);

    // A file declaring UTF-8 gives its text as UTF-8; our own files read
    // after it still come back byte for byte.
    std::string utf8 = project("bg_image=\"caf\xc3\xa9\"");
    replaceAll(utf8, "<xml version=\"1.0\">", "<xml version=\"1.0\" encoding=\"UTF-8\">");
    ASSERT_TRUE(load(utf8, back, publish));
    EXPECT_EQ(back.bgImage, "/nonexistent-project-folder/caf\xc3\xa9");
    ASSERT_TRUE(LoadProject(dir.file("p.qpj"), back, publish, &error)) << error;
    EXPECT_EQ(back.slideAt(0)->image.src, odd);
}

TEST(ProjectFile, RelativePathsAreTakenFromTheProjectFolder) {
    TempDir dir;
    std::filesystem::create_directories(dir.file("proj/pics"));
    writeTinyBmp(dir.file("proj/pics/a.bmp"));
    writeFile(dir.file("proj/show.qpj"),
              project("bg_image=\"pics/bg.bmp\"",
                      "<slide type=\"image\" src=\"pics/../pics/a.bmp\" >\n"
                      "<sound_data include=\"true\">\n<sound src=\"s.wav\" />\n</sound_data>\n</slide>\n",
                      "<publish_data output=\"../out\" >\n</publish_data>\n"));
    SlideShow show;
    PublishSettings publish;
    std::string error;
    ASSERT_TRUE(LoadProject(dir.file("proj/show.qpj"), show, publish, &error)) << error;
    EXPECT_EQ(show.slideAt(0)->image.src, dir.file("proj/pics/a.bmp"));
    EXPECT_EQ(show.slideAt(0)->sound.sounds.at(0).src, dir.file("proj/s.wav"));
    EXPECT_EQ(show.bgImage, dir.file("proj/pics/bg.bmp"));
    EXPECT_EQ(publish.output, dir.file("out"));
}

namespace {

class ScriptedHandler : public MissingPictureHandler {
public:
    std::vector<Choice> choices;
    std::optional<std::string> image, folder;
    std::vector<std::string> asked, notRelocatedPaths;
    Choice ask(const std::string& path) override {
        asked.push_back(path);
        Choice c = choices.empty() ? Choice::DontRelocate : choices.front();
        if (!choices.empty()) choices.erase(choices.begin());
        return c;
    }
    std::optional<std::string> chooseImage(const std::string&) override { return image; }
    std::optional<std::string> chooseFolder(const std::string&) override { return folder; }
    void notRelocated(const std::string& path) override { notRelocatedPaths.push_back(path); }
};

std::string imageSlide(const std::string& src, uint32_t duration) {
    return "<slide type=\"image\" src=\"" + src + "\" duration=\"" + std::to_string(duration) + "\" >\n</slide>\n";
}

}  // namespace

TEST(ProjectFile, MissingPictures) {
    TempDir dir;
    std::filesystem::create_directories(dir.file("moved"));
    writeTinyBmp(dir.file("here.bmp"));
    writeTinyBmp(dir.file("moved/a.bmp"));
    writeTinyBmp(dir.file("moved/b.bmp"));
    writeTinyBmp(dir.file("other.bmp"));
    const std::string gone = "/gone/away";
    const std::string text =
        project("", imageSlide(gone + "/a.bmp", 1) + imageSlide(dir.file("here.bmp"), 2) +
                        imageSlide(gone + "/b.bmp", 3) + imageSlide(gone + "/c.bmp", 4));

    // A batch run fails at the first missing picture and changes nothing.
    SlideShow show;
    PublishSettings publish;
    show.fps = 30;
    std::string error;
    EXPECT_FALSE(load(text, show, publish, &error));
    EXPECT_EQ(error, "The image file /gone/away/a.bmp could not be found.");
    EXPECT_EQ(show.fps, 30.0f);
    EXPECT_EQ(show.count(), 0);

    // Relocate once; the folder is remembered for b; c is not there either
    // and the user declines.
    ScriptedHandler h;
    h.choices = {MissingPictureHandler::Choice::Relocate, MissingPictureHandler::Choice::DontRelocate};
    h.folder = dir.file("moved");
    LoadOptions options;
    options.handler = &h;
    ASSERT_TRUE(load(text, show, publish, &error, options)) << error;
    EXPECT_EQ(h.asked, (std::vector<std::string>{gone + "/a.bmp", gone + "/c.bmp"}));
    ASSERT_EQ(show.count(), 3);
    EXPECT_EQ(show.slideAt(0)->image.src, dir.file("moved/a.bmp"));
    EXPECT_EQ(show.slideAt(1)->duration, 2u);
    EXPECT_EQ(show.slideAt(2)->image.src, dir.file("moved/b.bmp"));

    // Relocating to a folder without the file tells the user and drops the slide.
    ScriptedHandler wrong;
    wrong.choices = {MissingPictureHandler::Choice::Relocate};
    wrong.folder = dir.path().string();
    options.handler = &wrong;
    ASSERT_TRUE(load(project("", imageSlide(gone + "/a.bmp", 1)), show, publish, &error, options));
    EXPECT_EQ(show.count(), 0);
    EXPECT_EQ(wrong.notRelocatedPaths, (std::vector<std::string>{gone + "/a.bmp"}));

    // Replace takes the chosen picture; a dismissed chooser drops the slide.
    ScriptedHandler replace;
    replace.choices = {MissingPictureHandler::Choice::Replace};
    replace.image = dir.file("other.bmp");
    options.handler = &replace;
    ASSERT_TRUE(load(project("", imageSlide(gone + "/a.bmp", 1)), show, publish, &error, options));
    ASSERT_EQ(show.count(), 1);
    EXPECT_EQ(show.slideAt(0)->image.src, dir.file("other.bmp"));
    replace.choices = {MissingPictureHandler::Choice::Replace};
    replace.image.reset();
    ASSERT_TRUE(load(project("", imageSlide(gone + "/a.bmp", 1)), show, publish, &error, options));
    EXPECT_EQ(show.count(), 0);

    // Cancel fails the whole load and leaves the show as it was.
    ASSERT_TRUE(load(project("fps=\"20\"", imageSlide(dir.file("here.bmp"), 9)), show, publish));
    ScriptedHandler cancel;
    cancel.choices = {MissingPictureHandler::Choice::Cancel};
    options.handler = &cancel;
    EXPECT_FALSE(load(project("fps=\"50\"", imageSlide(gone + "/a.bmp", 1)), show, publish, &error, options));
    EXPECT_NE(error.find("/gone/away/a.bmp"), std::string::npos);
    EXPECT_EQ(show.fps, 20.0f);
    ASSERT_EQ(show.count(), 1);
    EXPECT_EQ(show.slideAt(0)->duration, 9u);
    EXPECT_EQ(show.slideAt(0)->show(), &show);
}

TEST(ProjectFile, DamagedFilesGiveAClearErrorAndChangeNothing) {
    TempDir dir;
    SlideShow show;
    PublishSettings publish;
    show.fps = 25;
    publish.output = "/keep";
    auto keep = show.createSlide(SlideType::Blank);
    keep->duration = 77;
    show.append(std::move(keep));
    auto unchanged = [&] {
        return show.fps == 25.0f && show.count() == 1 && show.slideAt(0)->duration == 77u && publish.output == "/keep";
    };
    std::string error;

    EXPECT_FALSE(LoadProject(dir.file("absent.qpj"), show, publish, &error));
    EXPECT_EQ(error, "The project could not be opened because the file was not found.");
    EXPECT_FALSE(LoadProject(dir.path().string(), show, publish, &error));
    EXPECT_NE(error.find("folder"), std::string::npos);
    EXPECT_FALSE(LoadProject("/dev/zero", show, publish, &error));
    EXPECT_NE(error.find("not a regular file"), std::string::npos);

    writeFile(dir.file("junk.qpj"), "this is not XML at all \x01\x02");
    EXPECT_FALSE(LoadProject(dir.file("junk.qpj"), show, publish, &error));
    EXPECT_NE(error.find("not a valid XML file"), std::string::npos) << error;

    std::string full = project("fps=\"30\"", blankSlide() + blankSlide());
    writeFile(dir.file("cut.qpj"), full.substr(0, full.size() / 2));
    EXPECT_FALSE(LoadProject(dir.file("cut.qpj"), show, publish, &error));
    EXPECT_NE(error.find("line"), std::string::npos) << error;

    writeFile(dir.file("other.qpj"), "<xml version=\"1.0\">\n<slide_show fps=\"30\" />\n</xml>\n");
    EXPECT_FALSE(LoadProject(dir.file("other.qpj"), show, publish, &error));
    EXPECT_NE(error.find("no quillet element"), std::string::npos);
    // The quillet element must sit below the wrapper.
    writeFile(dir.file("bare.qpj"), "<quillet><slide_show fps=\"30\" /></quillet>");
    EXPECT_FALSE(LoadProject(dir.file("bare.qpj"), show, publish, &error));

    writeFile(dir.file("empty.qpj"), "");
    EXPECT_FALSE(LoadProject(dir.file("empty.qpj"), show, publish, &error));

    // Too large, and too many slides.
    writeFile(dir.file("big.qpj"), full);
    LoadOptions small;
    small.maxFileSize = 100;
    EXPECT_FALSE(LoadProject(dir.file("big.qpj"), show, publish, &error, small));
    EXPECT_NE(error.find("too large"), std::string::npos);
    LoadOptions few;
    few.maxSlides = 1;
    EXPECT_FALSE(LoadProject(dir.file("big.qpj"), show, publish, &error, few));
    EXPECT_NE(error.find("more than 1 slides"), std::string::npos);
    EXPECT_TRUE(unchanged());

    // And a good file does replace everything.
    ASSERT_TRUE(LoadProject(dir.file("big.qpj"), show, publish, &error)) << error;
    EXPECT_EQ(show.count(), 2);
    EXPECT_EQ(show.fps, 30.0f);
}

TEST(ProjectFile, SavingNeverDestroysThePreviousFile) {
    TempDir dir;
    SlideShow show;
    PublishSettings publish;
    std::filesystem::create_directories(dir.file("shows"));
    const std::string path = dir.file("shows/show.qpj");
    writeFile(path, "previous");
    // The disk fills up half way through the new file (a file-size limit
    // stands in for a full disk, and holds for root too).
    const int status = quillet::test::RunWithFileSizeLimit(64, [&] {
        std::string error;
        if (SaveProject(path, show, publish, &error)) return 1;
        return error == "the project could not be saved: cannot write: File too large" ? 0 : 2;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(readFile(path), "previous");
    size_t files = 0;
    for ([[maybe_unused]] auto& e : std::filesystem::directory_iterator(dir.file("shows"))) ++files;
    EXPECT_EQ(files, 1u);  // no private file left beside it

    std::string error;
    ASSERT_TRUE(SaveProject(path, show, publish, &error)) << error;
    EXPECT_EQ(readFile(path), ProjectText(show, publish));
}
