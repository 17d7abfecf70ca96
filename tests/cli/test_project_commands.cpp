// The project commands of the quillet program: show, resave and list, driven
// as a user would run them.
#include <gtest/gtest.h>

#include <filesystem>

#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"
#include "settings/AppSettings.h"
#include "support/Cli.h"
#include "support/TempDir.h"

using namespace quillet;
using quillet::test::CliRun;
using quillet::test::quote;
using quillet::test::readFile;
using quillet::test::runCommand;
using quillet::test::ScopedEnv;
using quillet::test::TempDir;
using quillet::test::writeFile;

namespace {

CliRun runQuillet(const std::string& args, const TempDir& dir) { return test::RunQuillet(dir, args); }

std::unique_ptr<Transition> transition(const char* name, uint32_t ms) {
    auto t = TransitionRegistry::instance().Find(name)->Clone();
    t->SetDuration(ms);
    return t;
}

// A show of image and blank slides with captions, sounds and camera moves.
void makeShow(const TempDir& dir, const std::string& path) {
    for (const char* name : {"red.png", "sea view.png"}) {
        std::string output;
        ASSERT_EQ(runCommand("convert -size 64x48 xc:red " + quote(dir.file(name)), &output, true), 0) << output;
    }
    SlideShow show;
    PublishSettings publish;

    auto a = show.createSlide(SlideType::Image);
    a->image.src = dir.file("red.png");
    a->duration = 1500;
    a->captions.items.emplace_back();
    show.append(std::move(a));

    auto b = show.createSlide(SlideType::Blank);
    b->duration = 2000;
    b->setTransitionIn(transition("Cross Fade", 1250));
    auto move = std::make_unique<PanZoomEffect>();
    move->duration = 3000;
    b->addCameraEffect(std::move(move));
    show.append(std::move(b));

    auto c = show.createSlide(SlideType::Image);
    c->image.src = dir.file("sea view.png");
    c->duration = 60000;
    c->setTransitionIn(transition("None", 5000));  // never counted
    c->sound.include = true;
    c->sound.sounds.push_back({dir.file("waves.mp3")});
    c->captions.items.emplace_back();
    c->addCameraEffect(MakeCameraEffect("none"));
    show.append(std::move(c));

    std::string error;
    ASSERT_TRUE(SaveProject(path, show, publish, &error)) << error;
}

}  // namespace

TEST(CliShow, PrintsTheStatusLineAndTheSlideRows) {
    TempDir dir;
    const std::string project = dir.file("trip.qpj");
    makeShow(dir, project);
    if (HasFatalFailure()) return;

    CliRun r = runQuillet("show " + quote(project), dir);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    // 1500 + (2000 + 1250 + 3000) + (60000 + 1000) = 68750 ms
    EXPECT_EQ(r.out,
              "3 Slides; Total Time: 01:08.75\n"
              "Transition: None (0.00 sec)\n"
              "1. red.png (1.50 sec)\n"
              "Path: " + dir.file("red.png") + "\n"
              "Has captions\n"
              "Transition: Cross Fade (1.25 sec)\n"
              "2. ( Blank Slide ) (2.00 sec)\n"
              "Path: N/A\n"
              "Has pan/zoom\n"
              "Transition: None (0.00 sec)\n"
              "3. sea view.png (60.00 sec)\n"
              "Path: " + dir.file("sea view.png") + "\n"
              "Has sound; captions; pan/zoom\n");
    // The singular and plural of the status line: SlideShow.TotalTimeStatusTextAndPopup.
}

TEST(CliShow, ErrorsNameTheFileAndTheProblem) {
    TempDir dir;
    CliRun r = runQuillet("show " + quote(dir.file("absent.qpj")), dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "quillet: " + dir.file("absent.qpj") +
                         ": The project could not be opened because the file was not found.\n");

    writeFile(dir.file("bad.qpj"), "<xml version=\"1.0\">\n<quillet>\n<slide_show fps=\"12\">\n");
    r = runQuillet("show " + quote(dir.file("bad.qpj")), dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find(dir.file("bad.qpj") + ": not a valid XML file"), std::string::npos) << r.err;

    writeFile(dir.file("foreign.qpj"), "<xml version=\"1.0\">\n<project />\n</xml>\n");
    r = runQuillet("show " + quote(dir.file("foreign.qpj")), dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("no quillet element"), std::string::npos) << r.err;

    // A picture that is gone fails the load in a batch run and names the picture.
    makeShow(dir, dir.file("trip.qpj"));
    if (HasFatalFailure()) return;
    std::filesystem::remove(dir.file("sea view.png"));
    r = runQuillet("show " + quote(dir.file("trip.qpj")), dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "quillet: " + dir.file("trip.qpj") + ": The image file " + dir.file("sea view.png") +
                         " could not be found.\n");

    r = runQuillet("show", dir);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("usage: quillet show SHOW.qpj"), std::string::npos);
    r = runQuillet("show a.qpj b.qpj", dir);
    EXPECT_EQ(r.status, 2);
    r = runQuillet("show --frobnicate a.qpj", dir);
    EXPECT_EQ(r.status, 2);
}

TEST(CliResave, WritesTheSameProjectAgain) {
    TempDir dir;
    const std::string project = dir.file("trip.qpj");
    makeShow(dir, project);
    if (HasFatalFailure()) return;

    CliRun r = runQuillet("resave " + quote(project) + " -o " + quote(dir.file("copy.qpj")), dir);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readFile(dir.file("copy.qpj")), readFile(project));

    // A file in an older hand: missing attributes take their defaults.
    writeFile(dir.file("old.qpj"),
              "<xml version=\"1.0\">\n<quillet>\n<slide_show width=\"400\" fps=\"0\">\n<slides>\n"
              "<slide type=\"blank\" duration=\"900\" />\n</slides>\n</slide_show>\n</quillet>\n</xml>\n");
    r = runQuillet("resave " + quote(dir.file("old.qpj")) + " --output " + quote(dir.file("new.qpj")), dir);
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string text = readFile(dir.file("new.qpj"));
    EXPECT_NE(text.find("<slide_show width=\"400\" height=\"240\" fps=\"12\""), std::string::npos);
    EXPECT_NE(text.find("show_bounds_right=\"400\""), std::string::npos);
    EXPECT_NE(text.find("duration=\"900\""), std::string::npos);

    // The output cannot be written: the message names it, nothing is left behind.
    r = runQuillet("resave " + quote(project) + " -o " + quote(dir.file("no/such/folder/x.qpj")), dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find(dir.file("no/such/folder/x.qpj") + ": the project could not be saved"), std::string::npos)
        << r.err;

    // A project reached through a symbolic link is saved into the file it
    // names; the link stays a link (also when that file does not exist yet).
    std::filesystem::create_directories(dir.file("shows"));
    std::filesystem::create_symlink("shows/real.qpj", dir.file("link.qpj"));
    std::filesystem::create_symlink("shows/later.qpj", dir.file("dangling.qpj"));
    writeFile(dir.file("shows/real.qpj"), "old");
    for (const char* link : {"link.qpj", "dangling.qpj"}) {
        r = runQuillet("resave " + quote(project) + " -o " + quote(dir.file(link)), dir);
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(std::filesystem::is_symlink(dir.file(link))) << link;
        EXPECT_EQ(readFile(dir.file(link)), readFile(project)) << link;
    }

    r = runQuillet("resave " + quote(project), dir);
    EXPECT_EQ(r.status, 2);
    r = runQuillet("resave " + quote(dir.file("absent.qpj")) + " -o " + quote(dir.file("x.qpj")), dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_FALSE(std::filesystem::exists(dir.file("x.qpj")));
}

TEST(CliEnvironment, TheUsersOwnSettingsAndCacheTakeNoPart) {
    TempDir dir, user;
    // The user's settings would give new slides quality 13.
    AppSettings mine;
    mine.defaultImageQuality = 13;
    ASSERT_TRUE(mine.save(user.file("config/quillet/settings.ini")));
    const std::string settings = readFile(user.file("config/quillet/settings.ini"));
    std::filesystem::create_directories(user.file("cache"));
    ScopedEnv home("HOME", user.path().c_str());
    ScopedEnv config("XDG_CONFIG_HOME", user.file("config").c_str());
    ScopedEnv configDir("QUILLET_CONFIG_DIR", user.file("config/quillet").c_str());
    ScopedEnv cache("XDG_CACHE_HOME", user.file("cache").c_str());

    std::string output;
    ASSERT_EQ(runCommand("convert -size 64x48 xc:red " + quote(dir.file("red.png")), &output, true), 0) << output;
    CliRun r = runQuillet("new " + quote(dir.file("red.png")) + " -o " + quote(dir.file("show.qpj")), dir);
    ASSERT_EQ(r.status, 0) << r.err;
    r = runQuillet("export " + quote(dir.file("show.qpj")) + " -o " + quote(dir.file("show.swf")), dir);
    ASSERT_EQ(r.status, 0) << r.err;
    SlideShow show;
    PublishSettings publish;
    ASSERT_TRUE(LoadProject(dir.file("show.qpj"), show, publish));
    ASSERT_EQ(show.count(), 1);
    EXPECT_EQ(show.slideAt(0)->image.quality, 80);
    EXPECT_EQ(readFile(user.file("config/quillet/settings.ini")), settings);
    EXPECT_TRUE(std::filesystem::is_empty(user.file("cache")));
}

TEST(CliList, NamesSortedAndOptionsWithTheirKeywordsAndDefaults) {
    TempDir dir;
    CliRun r = runQuillet("list transitions", dir);
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.out.substr(0, 21), "Blinds In\nBlinds Out\n");  // sorted by name

    // Only saved options are listed; a list offers the keywords reading
    // accepts and shows its default as it is written.
    r = runQuillet("list transitions --options", dir);
    ASSERT_EQ(r.status, 0);
    for (const char* line : {
             "Checker\n  type: appear, fade_in, zoom_in,",
             "vertical_top_to_bottom_right, vertical_top_to_bottom_left,",
             "spiral_bottom_right_ccw, random (default horizontal_left_to_right_down)\n",
             "Color Fade\n  fade_color: a colour as #RRGGBB or a number (red in the lowest byte) (default #FFFFFF)\n",
             "Sliding Bars\n  direction: horizontal,",
             "Spin In\n  spins: a number (default 1.8)\n  clockwise: true, false (default true)\n",
             "Cross Fade\nCross Scale\n",
         })
        EXPECT_NE(r.out.find(line), std::string::npos) << line;
    EXPECT_EQ(r.out.find("Window\n  type: square_close, square_open, rectangle_close"), std::string::npos);
    EXPECT_NE(runQuillet("list camera --options", dir).out.find("pan_zoom\n  pan_x: a whole number"), std::string::npos);
    EXPECT_NE(runQuillet("list filters --options", dir).out.find("Add Noise\n  type: uniform, gaussian,"),
              std::string::npos);

    r = runQuillet("list colours", dir);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("unknown list 'colours'"), std::string::npos);
    EXPECT_EQ(runQuillet("list", dir).status, 2);
}
