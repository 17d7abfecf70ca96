// A slide's bitmap character: what each image type stores, read back as the
// players read it (djpeg for the JPEG data, our reader for the lossless).
#include <gtest/gtest.h>

#include "media/Exif.h"
#include "media/SlidePicture.h"
#include "movie/BitmapCharacter.h"
#include "support/TempDir.h"
#include "swf/SwfTag.h"
#include "swf/SwfTags.h"
#include "swf/tags/JpegTags.h"
#include "swf/tags/LosslessTags.h"

namespace quillet {
namespace {

using Rgb = std::array<int, 3>;
const Rgb kRed{200, 30, 40}, kYellow{250, 250, 0};
// 40x30 in four flat quadrants.
const std::string kDraw = "-size 40x30 xc:'rgb(200,30,40)' +antialias "
                          "-fill 'rgb(20,180,60)' -draw 'rectangle 20,0 39,14' "
                          "-fill 'rgb(30,40,220)' -draw 'rectangle 0,15 19,29' "
                          "-fill 'rgb(250,250,0)' -draw 'rectangle 20,15 39,29' ";

// The packed pixels as a character (id 1 unless given), or null.
std::unique_ptr<SwfLosslessBase> Pack(uint32_t w, uint32_t h, const uint8_t* pixels, int channels, const uint8_t* alpha,
                                      int bits, bool withAlpha, uint16_t id = 1) {
    LosslessPixels packed;
    if (!PackLossless(w, h, pixels, channels, alpha, bits, withAlpha, packed)) return nullptr;
    std::unique_ptr<SwfLosslessBase> t;
    if (withAlpha) t = std::make_unique<DefineBitsLossless2Tag>();
    else t = std::make_unique<DefineBitsLosslessTag>();
    t->SetId(id);
    t->format = packed.format;
    t->width = static_cast<uint16_t>(w);
    t->height = static_cast<uint16_t>(h);
    t->colorTableSize = packed.colorTableSize;
    t->zlibData = std::move(packed.zlibData);
    return t;
}

// A slide showing the picture 1:1 (no fitting), placed at 0,0.
SlideImage Slide1to1(const std::string& path, ImageType type) {
    SlideImage s;
    AssignOptions o;
    o.stageWidth = 40;
    o.stageHeight = 30;
    s.scaleToFit = false;
    EXPECT_EQ(AssignPicture(s, path, o), AssignFailure::None);
    s.imageType = type;
    return s;
}

TEST(BitmapCharacter, EveryImageTypeAsThePlayersReadIt) {
    test::TempDir dir;
    auto file = [&](const std::string& name) { return dir.file(name); };
    ASSERT_EQ(test::runCommand("convert " + kDraw + "\\( -size 40x30 xc:white -fill 'gray(50%)' "
                               "-draw 'rectangle 20,0 39,29' \\) -alpha off -compose copy_opacity -composite "
                               "PNG32:" + file("quad-alpha.png")), 0);
    for (int t = 0; t <= 8; ++t) {
        const ImageType type = static_cast<ImageType>(t);
        SCOPED_TRACE(imageTypeKeyword(type));
        SlideImage s = Slide1to1(file("quad-alpha.png"), type);
        s.width = 80;  // rendered at twice the size
        s.height = 60;
        BitmapCharacter p = EncodeBitmapCharacter(PrepareSlideImage(s, {}));
        ASSERT_TRUE(p.ok) << p.error;
        EXPECT_EQ(p.naturalWidth, 40);
        // What the cache keeps reads back the same.
        BitmapCharacter again;
        ASSERT_TRUE(DeserializeCharacter(SerializeCharacter(p), again));
        EXPECT_EQ(SerializeCharacter(again), SerializeCharacter(p));
        std::unique_ptr<SwfTag> tag = MakeBitmapTag(p, 7);
        switch (type) {
            case ImageType::JpegExternal:
                EXPECT_FALSE(tag);
                continue;
            case ImageType::JpegImportData: {
                // The file's 40x30 stretched over the 80x60 shape by the fill.
                EXPECT_EQ(p.width, 80u);
                auto* j = dynamic_cast<DefineBitsJPEG2Tag*>(tag.get());
                ASSERT_TRUE(j);
                const std::string bytes = test::readFile(file("quad-alpha.png"));
                EXPECT_EQ(std::string(j->jpeg.begin(), j->jpeg.end()), bytes);
                continue;
            }
            default: break;
        }
        ASSERT_TRUE(tag);
        EXPECT_EQ(tag->GetId(), 7);
        if (type == ImageType::Jpeg || type == ImageType::JpegTransparent) {
            std::vector<uint8_t> jpeg;
            if (auto* j2 = dynamic_cast<DefineBitsJPEG2Tag*>(tag.get())) jpeg = j2->jpeg;
            if (auto* j3 = dynamic_cast<DefineBitsJPEG3Tag*>(tag.get())) {
                jpeg = j3->jpeg;
                std::vector<uint8_t> alpha;
                ASSERT_TRUE(ZlibExpand(j3->alphaZlib.data(), j3->alphaZlib.size(), 1 << 20, alpha, nullptr));
                ASSERT_EQ(alpha.size(), 80u * 60);
                EXPECT_EQ(alpha[10 * 80 + 5], 255);
                EXPECT_NEAR(alpha[10 * 80 + 70], 128, 2);
            }
            ASSERT_EQ(tag->Code(), type == ImageType::Jpeg ? SwfTagCode::DefineBitsJPEG2 : SwfTagCode::DefineBitsJPEG3);
            const std::string path = file("out.jpg");
            test::writeFile(path, std::string(jpeg.begin(), jpeg.end()));
            std::string ppm;
            ASSERT_EQ(test::runCommand("djpeg -pnm " + path, &ppm), 0);
            ASSERT_EQ(ppm.rfind("P6\n80 60\n255\n", 0), 0u);
            const uint8_t* px = reinterpret_cast<const uint8_t*>(ppm.data()) + 13;
            EXPECT_NEAR(px[(10 * 80 + 10) * 3], kRed[0], 12);
            EXPECT_NEAR(px[(45 * 80 + 70) * 3 + 2], kYellow[2], 12);
            // With alpha the colours are stored multiplied by it.
            EXPECT_NEAR(px[(45 * 80 + 70) * 3], type == ImageType::Jpeg ? 250 : 125, 12);
            continue;
        }
        auto* lossless = dynamic_cast<SwfLosslessBase*>(tag.get());
        ASSERT_TRUE(lossless);
        const bool alpha = type == ImageType::Rgb8Transparent || type == ImageType::Rgb24Transparent;
        EXPECT_EQ(tag->Code(), alpha ? SwfTagCode::DefineBitsLossless2 : SwfTagCode::DefineBitsLossless);
        EXPECT_EQ(lossless->format, type == ImageType::Rgb8 || type == ImageType::Rgb8Transparent ? 3
                                    : type == ImageType::Rgb15                                     ? 4
                                                                                                   : 5);
        std::vector<uint8_t> rgba;
        ASSERT_TRUE(lossless->Decode(rgba));
        ASSERT_EQ(rgba.size(), 80u * 60 * 4);
        const uint8_t* left = &rgba[(10 * 80 + 5) * 4];
        const uint8_t* right = &rgba[(45 * 80 + 70) * 4];
        const int tol = type == ImageType::Rgb15 ? 8 : 2;
        EXPECT_NEAR(left[0], kRed[0], tol);
        EXPECT_EQ(left[3], 255);
        if (alpha) {
            // Stored premultiplied: half-transparent yellow keeps half its red.
            EXPECT_NEAR(right[3], 128, 2);
            EXPECT_NEAR(right[0], 125, 3);
        } else {
            EXPECT_NEAR(right[0], kYellow[0], tol);
        }
        EXPECT_FALSE(SerializeTag(*tag).empty());
    }
}

TEST(PackLossless, PixelsAsThePlayersReadThem) {
    // 3 x 2 pixels: red, green, blue / white, black, grey.
    const std::vector<uint8_t> rgb{255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255, 0, 0, 0, 128, 128, 128};
    std::vector<uint8_t> out;
    for (int bits : {8, 15, 24, 32}) {
        auto t = Pack(3, 2, rgb.data(), 3, nullptr, bits, false);
        ASSERT_TRUE(t) << bits;
        ASSERT_TRUE(t->Decode(out));
        for (size_t i = 0; i < 6; ++i) {
            for (int c = 0; c < 3; ++c) {
                const int want = rgb[i * 3 + c];
                // 15-bit pixels keep 5 bits per channel.
                EXPECT_NEAR(out[i * 4 + c], want, bits == 15 ? 8 : 0) << bits << " pixel " << i;
            }
            EXPECT_EQ(out[i * 4 + 3], 255);
        }
    }
    EXPECT_EQ(Pack(3, 2, rgb.data(), 3, nullptr, 8, false)->colorTableSize, 6);
    EXPECT_EQ(Pack(3, 2, rgb.data(), 3, nullptr, 8, false)->format, SwfLosslessBase::ColorMapped8);
    EXPECT_EQ(Pack(3, 2, rgb.data(), 3, nullptr, 16, false), nullptr);
    EXPECT_EQ(Pack(0, 2, rgb.data(), 3, nullptr, 24, false), nullptr);

    // With alpha the colours are stored premultiplied.
    const std::vector<uint8_t> rgba{200, 100, 50, 128, 10, 20, 30, 0};
    for (int bits : {8, 32}) {
        auto t = Pack(2, 1, rgba.data(), 4, nullptr, bits, true);
        ASSERT_TRUE(t);
        ASSERT_TRUE(t->Decode(out));
        EXPECT_EQ(out, (std::vector<uint8_t>{100, 50, 25, 128, 0, 0, 0, 0})) << bits;
    }
    const std::vector<uint8_t> alpha{255, 64};
    auto split = Pack(2, 1, rgb.data(), 3, alpha.data(), 24, true);
    ASSERT_TRUE(split->Decode(out));
    EXPECT_EQ(out, (std::vector<uint8_t>{255, 0, 0, 255, 0, 64, 0, 64}));

    // More than 256 colours: a median-cut palette close to the picture.
    std::vector<uint8_t> ramp;
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x) ramp.insert(ramp.end(), {uint8_t(x * 8), uint8_t(y * 8), uint8_t((x + y) * 4)});
    auto cut = Pack(32, 32, ramp.data(), 3, nullptr, 8, false);
    EXPECT_EQ(cut->colorTableSize, 256);
    ASSERT_TRUE(cut->Decode(out));
    double error = 0;
    for (size_t i = 0; i < 32 * 32; ++i)
        for (int c = 0; c < 3; ++c) error += std::abs(int(out[i * 4 + c]) - int(ramp[i * 3 + c]));
    EXPECT_LT(error / (32 * 32 * 3), 8.0);

    // Damaged data are reported, not read beyond.
    cut->zlibData.resize(cut->zlibData.size() / 2);
    std::string why;
    EXPECT_FALSE(cut->Decode(out, &why));
    EXPECT_FALSE(why.empty());
}

}  // namespace
}  // namespace quillet
