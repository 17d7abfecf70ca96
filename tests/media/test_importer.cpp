#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include <zlib.h>

#include "media/ImageImporter.h"
#include "media/JpegReader.h"
#include "support/TempDir.h"

namespace quillet {
namespace {

// The test picture: 40x30 in four flat quadrants.
const uint8_t kQuadrants[4][3] = {{200, 30, 40}, {20, 180, 60}, {30, 40, 220}, {250, 250, 0}};

class ImporterTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = new test::TempDir();
        const std::string base = dir_->file("base.png");
        ASSERT_EQ(test::runCommand("convert -size 40x30 xc:'rgb(200,30,40)' +antialias "
                                   "-fill 'rgb(20,180,60)' -draw 'rectangle 20,0 39,14' "
                                   "-fill 'rgb(30,40,220)' -draw 'rectangle 0,15 19,29' "
                                   "-fill 'rgb(250,250,0)' -draw 'rectangle 20,15 39,29' PNG24:" + base),
                  0);
        for (const char* ext : {"bmp", "gif", "jpg", "pct", "png", "psd", "tif", "tga"}) {
            std::string out = dir_->file(std::string("pic.") + ext);
            std::string prefix = std::string(ext) == "bmp" ? "BMP3:" : "";
            ASSERT_EQ(test::runCommand("convert " + base + " " + prefix + out), 0) << ext;
        }
        test::runCommand("convert " + base + " -depth 8 rgb:" + dir_->file("base.rgb"));
    }
    static void TearDownTestSuite() {
        delete dir_;
        dir_ = nullptr;
    }
    static std::string file(const std::string& name) { return dir_->file(name); }
    static test::TempDir* dir_;
};
test::TempDir* ImporterTest::dir_ = nullptr;

TEST_F(ImporterTest, OpensEveryFormatWithItsSizeAndPixels) {
    const std::string expected = test::readFile(file("base.rgb"));
    ASSERT_EQ(expected.size(), 40u * 30 * 3);
    for (const char* ext : {"bmp", "gif", "jpg", "pct", "png", "psd", "tif", "tga"}) {
        SCOPED_TRACE(ext);
        ImageImporter im;
        ASSERT_TRUE(im.Open(file(std::string("pic.") + ext))) << im.error();
        int w = 0, h = 0;
        ASSERT_TRUE(im.GetNaturalSize(w, h));
        EXPECT_EQ(w, 40);
        EXPECT_EQ(h, 30);
        Bitmap b;
        ASSERT_TRUE(im.Render(b, 40, 30)) << im.error();
        ASSERT_EQ(b.byteSize(), expected.size());
        if (std::string(ext) == "jpg") {
            // Lossy: the middle of each quadrant is close to its colour.
            const int centres[4][2] = {{10, 7}, {30, 7}, {10, 22}, {30, 22}};
            for (int q = 0; q < 4; ++q)
                for (int c = 0; c < 3; ++c)
                    EXPECT_NEAR(b.row(centres[q][1])[centres[q][0] * 3 + c], kQuadrants[q][c], 6);
        } else {
            EXPECT_EQ(std::memcmp(b.pixels(), expected.data(), expected.size()), 0);
        }
    }
}

TEST_F(ImporterTest, RendersRectanglesNearestNeighbour) {
    ImageImporter im;
    ASSERT_TRUE(im.Open(file("pic.png")));
    // Doubling: every source pixel becomes a 2x2 block.
    Bitmap big;
    ASSERT_TRUE(im.Render(big, 80, 60));
    EXPECT_EQ(big.row(29)[39 * 3], 200);
    EXPECT_EQ(big.row(29)[40 * 3], 20);
    EXPECT_EQ(big.row(30)[39 * 3], 30);
    // A crop rendered at its own size is a 1:1 copy of that region.
    CropRect crop{15, 10, 25, 20};
    Bitmap part;
    ASSERT_TRUE(im.Render(part, 10, 10, &crop, 32));
    EXPECT_EQ(part.bitsPerPixel(), 32);
    EXPECT_EQ(part.row(0)[0], 200);        // (15,10)
    EXPECT_EQ(part.row(0)[5 * 4 + 1], 180);  // (20,10)
    EXPECT_EQ(part.row(5)[0 * 4 + 2], 220);  // (15,15)
    EXPECT_EQ(part.row(9)[9 * 4 + 0], 250);  // (24,19)
    EXPECT_EQ(part.row(9)[9 * 4 + 3], 255);  // opaque
    // Halving picks one pixel of each pair, never a blend.
    Bitmap small;
    ASSERT_TRUE(im.Render(small, 20, 15));
    for (size_t i = 0; i < small.byteSize(); i += 3) {
        bool known = false;
        for (const auto& q : kQuadrants) known |= small.pixels()[i] == q[0] && small.pixels()[i + 1] == q[1];
        ASSERT_TRUE(known) << i;
    }
    // A source reaching outside the picture repeats the edge; empty sizes fail.
    CropRect outside{30, 20, 60, 40};
    ASSERT_TRUE(im.Render(small, 6, 4, &outside));
    EXPECT_EQ(small.row(3)[5 * 3], 250);
    EXPECT_FALSE(im.Render(small, 0, 4));
    CropRect empty{5, 5, 5, 9};
    EXPECT_FALSE(im.Render(small, 4, 4, &empty));
}

TEST_F(ImporterTest, AlphaChannelAndOpaqueFormats) {
    std::string raw;
    for (int i = 0; i < 8; ++i) raw += i == 7 ? std::string("\xFF\x00\x00\x33", 4) : std::string("\x00\x00\xFF\xFF", 4);
    test::writeFile(file("alpha.raw"), raw);
    ASSERT_EQ(test::runCommand("convert -size 4x2 -depth 8 rgba:" + file("alpha.raw") + " PNG32:" + file("alpha.png")), 0);
    ImageImporter im;
    ASSERT_TRUE(im.Open(file("alpha.png")));
    Bitmap rgba;
    ASSERT_TRUE(im.Render(rgba, 4, 2, nullptr, 32));
    EXPECT_TRUE(im.hasAlpha());
    EXPECT_EQ(rgba.row(0)[3], 255);
    EXPECT_NEAR(rgba.row(1)[15], 51, 1);
    Bitmap a;
    CropRect right{2, 0, 4, 2};
    ASSERT_TRUE(im.RenderAlpha(a, &right));
    EXPECT_EQ(a.bitsPerPixel(), 8);
    EXPECT_EQ(a.width(), 2u);
    EXPECT_EQ(a.row(0)[1], 255);
    EXPECT_NEAR(a.row(1)[1], 51, 1);

    ImageImporter jpeg;
    ASSERT_TRUE(jpeg.Open(file("pic.jpg")));
    EXPECT_TRUE(jpeg.isJpeg());
    EXPECT_FALSE(jpeg.hasAlpha());
    ASSERT_TRUE(jpeg.RenderAlpha(a));
    EXPECT_EQ(a.width(), 40u);
    EXPECT_EQ(a.row(29)[39], 255);
    EXPECT_EQ(jpeg.fileBytes().size(), std::filesystem::file_size(file("pic.jpg")));
}

TEST_F(ImporterTest, BadFilesAreReportedNotCrashed) {
    ImageImporter im;
    EXPECT_FALSE(im.Open(file("missing.jpg")));
    EXPECT_EQ(im.failure(), ImageImporter::Failure::NotFound);
    test::writeFile(file("text.jpg"), "this is not a picture\n");
    EXPECT_FALSE(im.Open(file("text.jpg")));
    EXPECT_EQ(im.failure(), ImageImporter::Failure::NotAnImage);
    test::writeFile(file("empty.png"), "");
    EXPECT_FALSE(im.Open(file("empty.png")));
    EXPECT_FALSE(im.Open(dir_->path().string()));  // a folder

    // A JPEG cut in half still opens and renders (the missing part grey);
    // a JPEG cut inside its header does not.
    ASSERT_EQ(test::runCommand("convert -size 400x300 gradient:red-blue " + file("grad.jpg")), 0);
    std::string full = test::readFile(file("grad.jpg"));
    test::writeFile(file("half.jpg"), full.substr(0, full.size() / 2));
    ImageImporter half;
    ASSERT_TRUE(half.Open(file("half.jpg")));
    Bitmap b;
    EXPECT_TRUE(half.Render(b, 400, 300));
    test::writeFile(file("head.jpg"), full.substr(0, 40));
    ImageImporter head;
    EXPECT_FALSE(head.Open(file("head.jpg")));
    // A PNG named .jpg is still a PNG.
    std::filesystem::copy_file(file("pic.png"), file("png-named.jpg"));
    ImageImporter misnamed;
    ASSERT_TRUE(misnamed.Open(file("png-named.jpg")));
    EXPECT_TRUE(misnamed.Render(b, 40, 30));
    EXPECT_EQ(b.row(0)[0], 200);
}

TEST_F(ImporterTest, RealPhotosDecodeLikeImageMagick) {
    const std::string photo = "/usr/share/backgrounds/mate/nature/GreenMeadow.jpg";
    if (!std::filesystem::exists(photo)) GTEST_SKIP() << "mate-backgrounds not installed";
    ImageImporter im;
    ASSERT_TRUE(im.Open(photo));
    int w, h;
    ASSERT_TRUE(im.GetNaturalSize(w, h));
    EXPECT_EQ(w, 1280);
    EXPECT_EQ(h, 1024);
    Bitmap b;
    ASSERT_TRUE(im.Render(b, 1280, 1024));
    ASSERT_EQ(test::runCommand("convert " + photo + " -depth 8 rgb:" + file("meadow.rgb")), 0);
    const std::string expected = test::readFile(file("meadow.rgb"));
    ASSERT_EQ(expected.size(), b.byteSize());
    EXPECT_EQ(std::memcmp(expected.data(), b.pixels(), b.byteSize()), 0) << "direct libjpeg path differs";

    // A crop shown at half its size is decoded at 4/8 by the DCT (as
    // djpeg -scale 4/8 decodes it) and sampled under each pixel's centre.
    CropRect crop{100, 200, 740, 680};
    Bitmap part;
    ASSERT_TRUE(im.Render(part, 320, 240, &crop));
    ASSERT_EQ(test::runCommand("djpeg -scale 4/8 -pnm " + photo + " | convert - -depth 8 rgb:" + file("half.rgb")), 0);
    const std::string half = test::readFile(file("half.rgb"));
    ASSERT_EQ(half.size(), 640u * 512 * 3);
    const uint8_t* src = reinterpret_cast<const uint8_t*>(half.data());
    for (int y : {0, 100, 239})
        for (int x : {0, 160, 319}) {
            int sx = (100 + 2 * x + 1) / 2, sy = (200 + 2 * y + 1) / 2;
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(part.row(y)[x * 3 + c], src[(size_t(sy) * 640 + sx) * 3 + c]) << x << "," << y;
        }

    const std::string big = "/usr/share/backgrounds/mate/abstract/Elephants_5640x3172.jpg";  // progressive
    ASSERT_TRUE(std::filesystem::exists(big));
    ImageImporter e;
    ASSERT_TRUE(e.Open(big));
    ASSERT_TRUE(e.GetNaturalSize(w, h));
    EXPECT_EQ(w, 5640);
    EXPECT_EQ(h, 3172);
    ASSERT_TRUE(e.Render(b, 640, 360));

    // A real PNG with transparency goes through ImageMagick.
    const std::string png = "/usr/share/backgrounds/mate/abstract/Arc-Colors-Transparent-Wallpaper.png";
    ImageImporter p;
    ASSERT_TRUE(p.Open(png));
    ASSERT_TRUE(p.GetNaturalSize(w, h));
    EXPECT_EQ(w, 2140);
    EXPECT_EQ(h, 1200);
    ASSERT_TRUE(p.Render(b, 2140, 1200, nullptr, 32));
    EXPECT_TRUE(p.hasAlpha());
    ASSERT_EQ(test::runCommand("convert " + png + " -depth 8 rgba:" + file("arc.rgba")), 0);
    const std::string arc = test::readFile(file("arc.rgba"));
    ASSERT_EQ(arc.size(), b.byteSize());
    EXPECT_EQ(std::memcmp(arc.data(), b.pixels(), b.byteSize()), 0);
}

TEST_F(ImporterTest, OversizedInputsAreRefusedBeforeDecoding) {
    // A 20000x20000 progressive JPEG, as far as its header says: the frame
    // header's size fields of a small one are rewritten.
    ASSERT_EQ(test::runCommand("convert -size 64x48 gradient:red-blue -interlace JPEG " + file("p.jpg")), 0);
    std::string jpeg = test::readFile(file("p.jpg"));
    const size_t sof = jpeg.find("\xFF\xC2");
    ASSERT_NE(sof, std::string::npos);
    jpeg[sof + 5] = jpeg[sof + 7] = static_cast<char>(20000 >> 8);
    jpeg[sof + 6] = jpeg[sof + 8] = static_cast<char>(20000 & 0xFF);
    test::writeFile(file("huge.jpg"), jpeg);
    // A PNG whose header says 20000x20000 (its checksum made good again).
    std::string png = test::readFile(file("pic.png"));
    ASSERT_EQ(png.substr(12, 4), "IHDR");
    for (int at : {16, 20}) {
        png[at + 2] = static_cast<char>(20000 >> 8);
        png[at + 3] = static_cast<char>(20000 & 0xFF);
    }
    const uLong crc = crc32(0, reinterpret_cast<const Bytef*>(png.data() + 12), 17);
    for (int i = 0; i < 4; ++i) png[29 + i] = static_cast<char>(crc >> (24 - 8 * i));
    test::writeFile(file("huge.png"), png);
    // A PNG whose text chunk claims 1.8 GB (ImageMagick would allocate it).
    std::string text = test::readFile(file("pic.png"));
    text.insert(33, std::string("\x70\x00\x00\x25tEXtComment", 15));
    test::writeFile(file("text.png"), text);
    // 6 GB named .png (sparse: no disk is spent).
    ASSERT_EQ(test::runCommand("truncate -s 6G " + file("six.png")), 0);
    // Bytes of a format we do not import, named as one we do.
    test::writeFile(file("drawing.png"), "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'/>");
    test::writeFile(file("page.tif"), "%!PS-Adobe-3.0\n");

    struct Case {
        const char* name;
        const char* why;
    } cases[] = {
        {"huge.jpg", "too large (20000x20000"},
        {"huge.png", "too large (20000x20000"},
        {"six.png", "too large (6442450944 bytes"},
        {"text.png", "a chunk of 1879048229 bytes runs past the end"},
        {"drawing.png", "not a picture in a format that can be imported"},
        {"page.tif", "not a picture in a format that can be imported"},
    };
    for (const Case& c : cases) {
        ImageImporter im;
        EXPECT_FALSE(im.Open(file(c.name))) << c.name;
        EXPECT_EQ(im.failure(), ImageImporter::Failure::NotAnImage) << c.name;
        EXPECT_NE(im.error().find(c.why), std::string::npos) << c.name << ": " << im.error();
    }
}

}  // namespace
}  // namespace quillet
