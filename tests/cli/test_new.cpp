// quillet new: a show made from pictures on the command line.
#include <gtest/gtest.h>

#include <filesystem>

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
using quillet::test::TempDir;
using quillet::test::writeFile;

namespace {

class NewCommand : public ::testing::Test {
protected:
    void SetUp() override {
        // A private settings folder, so the user's own settings play no part.
        std::filesystem::create_directories(dir.file("config"));
        ASSERT_EQ(runCommand("convert -size 400x300 gradient:red-blue " + quote(dir.file("wide.jpg")) +
                             " && convert -size 300x400 xc:green " + quote(dir.file("tall pic.png"))),
                  0);
        writeFile(dir.file("notes.jpg"), "not a picture\n");
    }
    CliRun quillet(const std::string& args) { return test::RunQuillet(dir, "new " + args); }
    bool load(const std::string& path, SlideShow& show) {
        PublishSettings publish;
        std::string error;
        const bool ok = LoadProject(path, show, publish, &error);
        EXPECT_TRUE(ok) << error;
        return ok;
    }
    TempDir dir;
};

TEST_F(NewCommand, BuildsAShowWithTheGivenSettings) {
    const std::string show = dir.file("show.qpj");
    CliRun r = quillet(quote(dir.file("wide.jpg")) + " " + quote(dir.file("tall pic.png")) + " -o " + quote(show) +
                    " --stage 640x480 --fps 24 --duration 3000 --transition 'cross FADE' --music " +
                    quote(dir.file("wide.jpg")));  // the file's contents are read at export
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("2 Slides"), std::string::npos) << r.out;
    SlideShow s;
    ASSERT_TRUE(load(show, s));
    EXPECT_EQ(s.width(), 640);
    EXPECT_EQ(s.height(), 480);
    EXPECT_EQ(s.fps, 24.0f);
    ASSERT_EQ(s.count(), 2);
    const Slide& a = *s.slideAt(0);
    EXPECT_EQ(a.image.src, dir.file("wide.jpg"));
    EXPECT_EQ(a.duration, 3000u);
    EXPECT_EQ(a.transitionIn().name(), "Cross Fade");
    // Fitted to the stage with the default settings: 400x300 -> 640x480.
    EXPECT_EQ(a.image.width, 640);
    EXPECT_EQ(a.image.height, 480);
    EXPECT_EQ(a.image.quality, 80);
    const Slide& b = *s.slideAt(1);
    EXPECT_EQ(b.image.src, dir.file("tall pic.png"));
    EXPECT_EQ(b.image.width, 360);  // 300x400 on 640x480, centred
    EXPECT_EQ(b.image.height, 480);
    EXPECT_EQ(b.image.x, 140);
    // The music plays over the whole show, repeating.
    ASSERT_TRUE(s.sound.hasSound());
    EXPECT_EQ(s.sound.sounds[0].src, dir.file("wide.jpg"));
    EXPECT_TRUE(s.sound.sounds[0].loop);
}

TEST_F(NewCommand, BadPicturesAreNamedAndTheRestIsWritten) {
    const std::string show = dir.file("show.qpj");
    CliRun r = quillet(quote(dir.file("missing.jpg")) + " " + quote(dir.file("wide.jpg")) + " " +
                    quote(dir.file("notes.jpg")) + " -o " + quote(show));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find(dir.file("missing.jpg") + ": The image could not be added because the file was not found."),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find(dir.file("notes.jpg") +
                         ": Unable to add the slide. The file may not be a valid image file or may not be "
                         "supported. Please read the help file for all supported file formats."),
              std::string::npos)
        << r.err;
    SlideShow s;
    ASSERT_TRUE(load(show, s));
    ASSERT_EQ(s.count(), 1);
    EXPECT_EQ(s.slideAt(0)->image.src, dir.file("wide.jpg"));
    EXPECT_EQ(s.width(), 320);  // the default stage
    EXPECT_EQ(s.slideAt(0)->duration, 2000u);
    EXPECT_EQ(s.slideAt(0)->transitionIn().name(), "None");
}

TEST_F(NewCommand, ExifOrientationByFlagOrSetting) {
    const std::string turned = dir.file("turned.jpg");
    ASSERT_EQ(runCommand("cp " + quote(dir.file("wide.jpg")) + " " + quote(turned) +
                         " && exiftool -q -q -overwrite_original -ExifVersion=0230 -Orientation#=6 " + quote(turned)),
              0);
    auto rotation = [&](const std::string& extra) {
        const std::string show = dir.file("exif.qpj");
        CliRun r = quillet(quote(turned) + " -o " + quote(show) + extra);
        EXPECT_EQ(r.status, 0) << r.err;
        SlideShow s;
        if (!load(show, s) || s.count() != 1) return -1;
        return s.slideAt(0)->image.rotation;
    };
    EXPECT_EQ(rotation(""), 0);
    EXPECT_EQ(rotation(" --exif"), 90);
    AppSettings settings;
    settings.readExifData = true;
    ASSERT_TRUE(settings.save(dir.file("config/settings.ini")));
    EXPECT_EQ(rotation(""), 90);
}

TEST_F(NewCommand, UsageErrors) {
    const std::string pic = quote(dir.file("wide.jpg"));
    const std::string out = " -o " + quote(dir.file("x.qpj"));
    EXPECT_EQ(quillet(pic).status, 2);                                  // no -o
    EXPECT_EQ(quillet("-o " + quote(dir.file("x.qpj"))).status, 2);     // no pictures
    EXPECT_EQ(quillet(pic + out + " --stage 0x100").status, 2);
    EXPECT_EQ(quillet(pic + out + " --stage 640").status, 2);
    EXPECT_EQ(quillet(pic + out + " --fps 500").status, 2);
    EXPECT_EQ(quillet(pic + out + " --duration -5").status, 2);
    CliRun r = quillet(pic + out + " --transition 'No Such Thing'");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("No Such Thing"), std::string::npos);
    EXPECT_EQ(quillet(pic + out + " --transition 'Cross Fade' --random-transitions").status, 2);
    // Options after the name: each wrong part is named with what is allowed.
    const struct {
        const char* argument;
        const char* message;
    } kBadOptions[] = {
        {"Push:direction=lefty", "\"lefty\" is not a value of direction; allowed: up, down, right, left,"},
        {"Push:way=left", "unknown option \"way\"; options: direction"},
        {"Fade In:direction=left", "unknown option \"direction\"; this one has no options"},
        {"Push:direction", "('direction' has no '=')"},
        {"Spin In:spins=many", "\"many\" is not a value of spins"},
        {"Spin In:clockwise=yes", "allowed: true, false"},
        {"Slide In From:final_x=1.5", "a whole number"},
        {"Color Fade:fade_color=#12345", "allowed: a colour as #RRGGBB"},
    };
    for (const auto& bad : kBadOptions) {
        CliRun b = quillet(pic + out + " --transition '" + bad.argument + "'");
        EXPECT_EQ(b.status, 2) << bad.argument;
        EXPECT_NE(b.err.find(bad.message), std::string::npos) << bad.argument << ": " << b.err;
    }
    EXPECT_EQ(quillet(pic + out + " --music " + quote(dir.file("no such.wav"))).status, 1);
    EXPECT_FALSE(std::filesystem::exists(dir.file("x.qpj")));

    // Keywords as in the project file; a colour as #RRGGBB is saved red-lowest.
    ASSERT_EQ(quillet(pic + out + " --transition 'checker:type=drop_up,direction=random'").status, 0);
    EXPECT_NE(readFile(dir.file("x.qpj")).find("<transition name=\"Checker\" duration=\"2000\" type=\"drop_up\" "
                                               "direction=\"random\" />"),
              std::string::npos);
    ASSERT_EQ(quillet(pic + out + " --transition 'Color Fade:fade_color=#102030'").status, 0);
    EXPECT_NE(readFile(dir.file("x.qpj")).find("fade_color=\"3153936\""), std::string::npos);

    // Random transitions: every slide gets one from the registry.
    CliRun ok = quillet(pic + " " + pic + " " + pic + out + " --random-transitions");
    ASSERT_EQ(ok.status, 0) << ok.err;
    SlideShow s;
    ASSERT_TRUE(load(dir.file("x.qpj"), s));
    for (const auto& slide : s.slides())
        EXPECT_TRUE(TransitionRegistry::instance().Find(slide->transitionIn().name())) << slide->transitionIn().name();
}

}  // namespace
