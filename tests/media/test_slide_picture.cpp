#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "media/Exif.h"
#include "media/ImageFilter.h"
#include "media/Progress.h"
#include "media/SlidePicture.h"
#include "support/TempDir.h"

namespace quillet {
namespace {

using Rgb = std::array<int, 3>;
const Rgb kRed{200, 30, 40}, kGreen{20, 180, 60}, kBlue{30, 40, 220}, kYellow{250, 250, 0};

class SlidePictureTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = new test::TempDir();
        // 40x30 in four flat quadrants; the right half of the alpha copy is half transparent.
        const std::string draw = "-size 40x30 xc:'rgb(200,30,40)' +antialias "
                                 "-fill 'rgb(20,180,60)' -draw 'rectangle 20,0 39,14' "
                                 "-fill 'rgb(30,40,220)' -draw 'rectangle 0,15 19,29' "
                                 "-fill 'rgb(250,250,0)' -draw 'rectangle 20,15 39,29' ";
        ASSERT_EQ(test::runCommand("convert " + draw + "PNG24:" + file("quad.png")), 0);
        ASSERT_EQ(test::runCommand("convert " + draw + "-quality 95 " + file("quad.jpg")), 0);
        ASSERT_EQ(test::runCommand("convert " + draw + "\\( -size 40x30 xc:white -fill 'gray(50%)' "
                                   "-draw 'rectangle 20,0 39,29' \\) -alpha off -compose copy_opacity -composite "
                                   "PNG32:" + file("quad-alpha.png")), 0);
    }
    static void TearDownTestSuite() {
        delete dir_;
        dir_ = nullptr;
    }
    static std::string file(const std::string& name) { return dir_->file(name); }

    // A slide showing the picture 1:1 (no fitting), placed at 0,0.
    static SlideImage slide(const std::string& path, ImageType type = ImageType::Rgb24) {
        SlideImage s;
        AssignOptions o;
        o.stageWidth = 40;
        o.stageHeight = 30;
        s.scaleToFit = false;
        EXPECT_EQ(AssignPicture(s, path, o), AssignFailure::None);
        s.imageType = type;
        return s;
    }
    static test::TempDir* dir_;
};
test::TempDir* SlidePictureTest::dir_ = nullptr;

Rgb at(const Bitmap& b, uint32_t x, uint32_t y) {
    const uint8_t* p = b.row(y) + x * 3;
    return {p[0], p[1], p[2]};
}

TEST_F(SlidePictureTest, TurnsAndMirrorsLikeTheCornerRecord) {
    // A quarter turn clockwise: blue comes to the top-left, red to the top-right.
    SlideImage s = slide(file("quad.png"));
    RotateSlideImage(s, 90);
    PreparedPicture p = PrepareSlideImage(s, {});
    ASSERT_TRUE(p.ok) << p.error;
    ASSERT_EQ(p.width, 30u);
    ASSERT_EQ(p.height, 40u);
    EXPECT_EQ(at(p.pixels, 2, 2), kBlue);
    EXPECT_EQ(at(p.pixels, 27, 2), kRed);
    EXPECT_EQ(at(p.pixels, 27, 37), kGreen);
    EXPECT_EQ(at(p.pixels, 2, 37), kYellow);

    // Turned, then mirrored left-right (the command order of the panel).
    SetFlipHorizontal(s, true);
    p = PrepareSlideImage(s, {});
    EXPECT_EQ(at(p.pixels, 2, 2), kRed);
    EXPECT_EQ(at(p.pixels, 27, 2), kBlue);

    // Mirrored top-bottom, with a crop of the displayed top-left 20x15.
    s = slide(file("quad.png"));
    SetFlipVertical(s, true);
    s.crop = true;
    SetCropRect(s, {0, 0, 20, 15}, 40, 30);
    s.width = 20;
    s.height = 15;
    p = PrepareSlideImage(s, {});
    ASSERT_EQ(p.width, 20u);
    for (uint32_t y : {0u, 14u})
        for (uint32_t x : {0u, 19u}) EXPECT_EQ(at(p.pixels, x, y), kBlue);
}

struct RecordingProgress : ProgressSink {
    std::vector<std::string> texts;
    int cancelAfter = 1000;
    mutable int asked = 0;
    void setSecondaryText(const std::string& text) override { texts.push_back(text); }
    bool cancelled() const override { return ++asked >= cancelAfter; }
};

TEST_F(SlidePictureTest, FiltersRunInOrderAndStopWhenCancelled) {
    std::vector<std::unique_ptr<ImageFilter>> filters;
    filters.push_back(ImageFilterRegistry::instance().Create("Grayscale"));
    filters.push_back(ImageFilterRegistry::instance().Create("Solarize"));
    SlideImage s = slide(file("quad.png"));
    RecordingProgress progress;
    PrepareOptions o;
    o.progress = &progress;
    o.keepPixels = true;
    PreparedPicture p = PrepareSlideImage(s, filters, o);
    ASSERT_TRUE(p.ok);
    EXPECT_FALSE(p.cancelled);
    EXPECT_EQ(progress.texts, (std::vector<std::string>{"Filtering image...", "Writing image..."}));
    ASSERT_FALSE(p.pixels.empty());
    const int grey = (3 * 200 + 4 * 30 + 2 * 40) / 9;  // 88, then solarized
    EXPECT_EQ(p.pixels.row(0)[0], 255 - grey);

    RecordingProgress stop;
    stop.cancelAfter = 1;
    o.progress = &stop;
    p = PrepareSlideImage(s, filters, o);
    EXPECT_TRUE(p.cancelled);
    EXPECT_EQ(p.pixels.row(0)[0], grey);  // the second filter never ran

    // No filters: the pixels come through unchanged.
    RecordingProgress plain;
    o.progress = &plain;
    p = PrepareSlideImage(s, {}, o);
    EXPECT_EQ(p.pixels.row(0)[0], 200);
    EXPECT_EQ(plain.texts.size(), 2u);
}

TEST_F(SlidePictureTest, FailuresGiveNoPicture) {
    SlideImage s = slide(file("quad.png"));
    s.src = file("gone.png");
    PreparedPicture p = PrepareSlideImage(s, {});
    EXPECT_FALSE(p.ok);
    EXPECT_NE(p.error.find("gone.png"), std::string::npos);
    s = slide(file("quad.png"));
    s.width = 0;
    EXPECT_FALSE(PrepareSlideImage(s, {}).ok);
}

TEST_F(SlidePictureTest, AssignmentMeasuresAndPreviews) {
    ASSERT_EQ(test::runCommand("convert -size 1024x768 xc:gray " + file("wide.png") +
                               " && convert -size 600x2000 xc:gray " + file("tall.png")), 0);
    SlideImage s;
    Bitmap preview;
    AssignOptions o;
    o.preview = &preview;
    ASSERT_EQ(AssignPicture(s, file("wide.png"), o), AssignFailure::None);
    EXPECT_EQ(s.sourceWidth, 1024);
    EXPECT_EQ(s.cropRect, (CropRect{0, 0, 1024, 768}));
    EXPECT_EQ(s.width, 320);
    EXPECT_EQ(s.height, 240);
    EXPECT_EQ(preview.width(), 256u);
    EXPECT_EQ(preview.height(), 192u);
    EXPECT_EQ(preview.bitsPerPixel(), 32);
    ASSERT_EQ(AssignPicture(s, file("tall.png"), o), AssignFailure::None);
    EXPECT_EQ(preview.width(), 77u);
    EXPECT_EQ(preview.height(), 256u);
    SlideImage fixed;
    fixed.scaleToFit = false;
    AssignPicture(fixed, file("tall.png"), {});
    EXPECT_EQ(fixed.width, 600);
    EXPECT_EQ(fixed.height, 2000);

    std::string error;
    SlideImage before = s;
    EXPECT_EQ(AssignPicture(s, file("nothing.png"), o, &error), AssignFailure::NotFound);
    test::writeFile(file("junk.png"), "junk");
    EXPECT_EQ(AssignPicture(s, file("junk.png"), o, &error), AssignFailure::NotAnImage);
    EXPECT_EQ(s, before);
}

// A real photo stored turned or mirrored, tagged with each orientation: with
// the setting on it comes out as the upright photo (5 and 7 stay as stored).
TEST_F(SlidePictureTest, ExifOrientationTurnsRealPhotosUpright) {
    const std::string photo = "/usr/share/backgrounds/mate/nature/Storm.jpg";  // carries an Exif block
    if (!std::filesystem::exists(photo)) GTEST_SKIP() << "mate-backgrounds not installed";
    const std::string upright = file("upright.jpg");
    ASSERT_EQ(test::runCommand("convert " + photo + " -resize 240x160 -quality 95 " + upright), 0);
    // How each orientation's pixels are stored, relative to the upright picture.
    const char* stored[9] = {"", "", "-flop", "-rotate 180", "-flip", "-transpose", "-rotate 270", "-transverse",
                             "-rotate 90"};
    auto render = [&](const std::string& path, bool exif) {
        SlideImage s;
        AssignOptions o;
        o.stageWidth = 240;
        o.stageHeight = 240;
        o.applyExif = exif;
        EXPECT_EQ(AssignPicture(s, path, o), AssignFailure::None);
        PrepareOptions po;
        po.keepPixels = true;
        return std::make_pair(s, PrepareSlideImage(s, {}, po));
    };
    auto [refSlide, ref] = render(upright, true);
    ASSERT_TRUE(ref.ok);
    auto meanDiff = [](const Bitmap& a, const Bitmap& b) {
        if (a.width() != b.width() || a.height() != b.height()) return 255.0;
        double sum = 0;
        for (size_t i = 0; i < a.byteSize(); ++i) sum += std::abs(a.pixels()[i] - b.pixels()[i]);
        return sum / a.byteSize();
    };
    for (int n = 1; n <= 8; ++n) {
        SCOPED_TRACE(n);
        const std::string path = file("orient" + std::to_string(n) + ".jpg");
        ASSERT_EQ(test::runCommand("convert " + upright + " " + stored[n] + " -quality 95 " + path +
                                   " && exiftool -q -q -overwrite_original -Orientation#=" + std::to_string(n) + " " + path),
                  0);
        EXPECT_EQ(ReadExifOrientation(path), n);
        auto [s, p] = render(path, true);
        ASSERT_TRUE(p.ok);
        if (n == 5 || n == 7) {
            EXPECT_EQ(s.rotation, 0);
            EXPECT_FALSE(s.flipHorizontal || s.flipVertical);
            EXPECT_EQ(p.width, 160u);  // still lying on its side
            continue;
        }
        EXPECT_LT(meanDiff(p.pixels, ref.pixels), 6.0) << "not upright";
        // With the setting off the stored picture shows as it is.
        auto [off, q] = render(path, false);
        EXPECT_EQ(off.rotation, 0);
        if (n != 1) {
            EXPECT_GT(meanDiff(q.pixels, ref.pixels), 15.0);
        }
    }
    EXPECT_EQ(refSlide.rotation, 0);
}

TEST_F(SlidePictureTest, ExifReaderRefusesWhatItShouldNot) {
    EXPECT_EQ(ReadExifOrientation(file("none.jpg")), 0);      // missing file
    EXPECT_EQ(ReadExifOrientation(file("quad.png")), 0);      // no Exif at all
    EXPECT_EQ(ReadExifOrientation(file("quad.jpg")), 0);
    // An orientation in the first directory without an Exif directory (and
    // its version tag) does not count.
    const std::string bare = file("bare.jpg");
    std::filesystem::copy_file(file("quad.jpg"), bare);
    ASSERT_EQ(test::runCommand("exiftool -q -q -overwrite_original -Orientation#=6 " + bare), 0);
    EXPECT_EQ(ReadExifOrientation(bare), 0);
    ASSERT_EQ(test::runCommand("exiftool -q -q -overwrite_original -ExifVersion=0230 " + bare), 0);
    EXPECT_EQ(ReadExifOrientation(bare), 6);
    ASSERT_EQ(test::runCommand("exiftool -q -q -overwrite_original -Orientation#=9 " + bare), 0);
    EXPECT_EQ(ReadExifOrientation(bare), 0);
    const uint8_t junk[] = {0xFF, 0xD8, 0xFF, 0xE1, 0x00, 0x10, 'E', 'x', 'i', 'f', 0, 0, 'I', 'I', 42, 0};
    EXPECT_EQ(ReadExifOrientation(junk, sizeof junk), 0);

    // Applied through the commands: the corner record follows.
    SlideImage s;
    ApplyExifOrientation(s, 6);
    EXPECT_EQ(s.rotation, 90);
    EXPECT_EQ(s.cornerOrder, (std::array<uint8_t, 4>{4, 1, 2, 3}));
    s = {};
    ApplyExifOrientation(s, 2);
    EXPECT_TRUE(s.flipHorizontal);
    ApplyExifOrientation(s, 2);
    EXPECT_FALSE(s.flipHorizontal);
    for (int n : {0, 1, 5, 7, 9}) {
        SlideImage t;
        ApplyExifOrientation(t, n);
        EXPECT_EQ(t, SlideImage{});
    }
}

}  // namespace
}  // namespace quillet
