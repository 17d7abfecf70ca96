#include <gtest/gtest.h>

#include <tuple>

#include "media/SlideImage.h"

namespace quillet {
namespace {

SlideImage picture(int w, int h) {
    SlideImage s;
    s.sourceWidth = w;
    s.sourceHeight = h;
    s.bitmapWidth = w;
    s.bitmapHeight = h;
    s.cropRect = {0, 0, w, h};
    return s;
}

using Corners = std::array<uint8_t, 4>;

TEST(FitSlideImage, ScalesToStageKeepingProportions) {
    struct Case {
        const char* what;
        int w, h;
        bool keep, fit;
        int rotation;
        int width, height, x;  // expected on a 320x240 stage
    };
    const Case cases[] = {
        {"landscape of the stage's shape", 400, 300, true, true, 0, 320, 240, 0},
        {"portrait: 320x427 first, then reduced to the stage height", 300, 400, true, true, 0, 180, 240, 70},
        {"as wide as the stage but taller: only the height step", 320, 481, true, true, 0,
         static_cast<int>(320.0 * 240 / 481 + 0.5), 240, 80},
        {"without proportions the slide covers the stage", 300, 400, false, true, 0, 320, 240, 0},
        {"without fit it keeps its size", 300, 400, true, false, 0, 50, 60, 135},
        {"a quarter turn fits the displayed (swapped) size", 300, 400, true, true, 90, 320, 240, 0},
    };
    for (const Case& c : cases) {
        SlideImage s = picture(c.w, c.h);
        s.keepAspectRatio = c.keep;
        s.scaleToFit = c.fit;
        s.rotation = c.rotation;
        s.width = 50;
        s.height = 60;
        FitSlideImage(s, 320, 240);
        EXPECT_EQ(std::tie(s.width, s.height, s.x), std::tie(c.width, c.height, c.x)) << c.what;
    }
}

TEST(FitSlideImage, AlignmentHalvesEachSideAndAddsOrigin) {
    SlideImage s = picture(101, 50);
    s.scaleToFit = false;
    s.width = 101;
    s.height = 51;
    FitSlideImage(s, 320, 240);
    EXPECT_EQ(s.x, 160 - 50);
    EXPECT_EQ(s.y, 120 - 25);
    s.hAlign = HAlign::Right;
    s.vAlign = VAlign::Bottom;
    FitSlideImage(s, 320, 240, 7, 9);
    EXPECT_EQ(s.x, 320 - 101 + 7);
    EXPECT_EQ(s.y, 240 - 51 + 9);
    s.autoAlign = false;
    s.x = -5;
    FitSlideImage(s, 320, 240);
    EXPECT_EQ(s.x, -5);

    // The crop rectangle is the source size when crop is on.
    s = picture(1000, 1000);
    s.crop = true;
    s.cropRect = {0, 0, 400, 100};
    FitSlideImage(s, 320, 240);
    EXPECT_EQ(s.width, 320);
    EXPECT_EQ(s.height, 80);
}

TEST(SetCropRect, NormalisesClampsAndRefits) {
    SlideImage s = picture(400, 300);
    s.crop = true;
    EXPECT_TRUE(SetCropRect(s, {200, 10, 100, 110}, 320, 240));  // right-to-left
    EXPECT_EQ(s.cropRect, (CropRect{100, 10, 200, 110}));
    EXPECT_EQ(s.width, 240);  // 100x100 fits the stage height
    EXPECT_EQ(s.height, 240);
    EXPECT_TRUE(SetCropRect(s, {-5, -5, 500, 400}, 320, 240));
    EXPECT_EQ(s.cropRect, (CropRect{0, 0, 400, 300}));
    EXPECT_FALSE(SetCropRect(s, {10, 20, 30, 40}, 320, 240));
    EXPECT_EQ(s.cropRect, (CropRect{10, 20, 30, 40}));
    // Clamped against the displayed size after a quarter turn.
    s = picture(400, 300);
    s.rotation = 270;
    EXPECT_TRUE(SetCropRect(s, {0, 0, 400, 400}, 320, 240));
    EXPECT_EQ(s.cropRect, (CropRect{0, 0, 300, 400}));
}

TEST(Orientation, RotateAndFlipCommandsKeepTheRecord) {
    SlideImage s = picture(40, 30);
    RotateSlideImage(s, 270);
    RotateSlideImage(s, 180);
    EXPECT_EQ(s.rotation, 90);
    s = picture(40, 30);
    s.width = 40;
    s.height = 30;
    RotateSlideImage(s, -90);
    EXPECT_EQ(s.rotation, 270);
    EXPECT_EQ(s.width, 30);
    EXPECT_EQ(s.height, 40);
    EXPECT_EQ(s.bitmapWidth, 30);
    EXPECT_EQ(s.cornerOrder, (Corners{2, 3, 4, 1}));

    s = picture(40, 30);
    RotateSlideImage(s, 90);
    EXPECT_EQ(s.cornerOrder, (Corners{4, 1, 2, 3}));
    RotateSlideImage(s, 180);
    EXPECT_EQ(s.cornerOrder, (Corners{2, 3, 4, 1}));

    s = picture(40, 30);
    SetFlipVertical(s, true);
    EXPECT_EQ(s.cornerOrder, (Corners{4, 3, 2, 1}));
    SetFlipVertical(s, true);  // unchanged value: no swap
    EXPECT_EQ(s.cornerOrder, (Corners{4, 3, 2, 1}));
    SetFlipVertical(s, false);
    EXPECT_EQ(s.cornerOrder, (Corners{1, 2, 3, 4}));
    SetFlipHorizontal(s, true);
    EXPECT_EQ(s.cornerOrder, (Corners{2, 1, 4, 3}));
}

TEST(Orientation, NormaliseFoldsEveryRecord) {
    struct Case {
        Corners record;
        int rotation;
        bool v, h;
    };
    const Case cases[] = {
        {{1, 2, 3, 4}, 0, false, false},   {{4, 1, 2, 3}, 90, false, false},
        {{3, 4, 1, 2}, 180, false, false}, {{2, 3, 4, 1}, 270, false, false},
        {{4, 3, 2, 1}, 0, true, false},    {{2, 1, 4, 3}, 0, false, true},
        {{1, 4, 3, 2}, 270, false, true},  {{3, 2, 1, 4}, 90, false, true},
    };
    for (const Case& c : cases) {
        SlideImage s = picture(10, 10);
        s.cornerOrder = c.record;
        s.flipVertical = !c.v;  // stale values are cleared
        s.rotation = 180;
        NormaliseOrientation(s);
        EXPECT_EQ(s.rotation, c.rotation);
        EXPECT_EQ(s.flipVertical, c.v);
        EXPECT_EQ(s.flipHorizontal, c.h);
        EXPECT_EQ(s.cornerOrder, c.record) << "the record again describes the picture as shown";
    }
    SlideImage s = picture(10, 10);
    s.cornerOrder = {1, 3, 2, 4};
    s.rotation = 90;
    NormaliseOrientation(s);
    EXPECT_EQ(s.rotation, 0);
    EXPECT_EQ(s.cornerOrder, (Corners{1, 2, 3, 4}));

    // Commands in any order normalise to flip-then-rotate: turn a quarter, then mirror.
    s = picture(10, 10);
    RotateSlideImage(s, 90);
    SetFlipHorizontal(s, true);
    NormaliseOrientation(s);
    EXPECT_EQ(s.rotation, 270);
    EXPECT_TRUE(s.flipHorizontal);
    EXPECT_FALSE(s.flipVertical);
}

TEST(Orientation, CropFollowsTheRotationAndMapsBackToTheSource) {
    // A 40x30 picture with a crop of its top-left 10x5 corner (as displayed).
    SlideImage s = picture(40, 30);
    s.crop = true;
    s.cropRect = {0, 0, 10, 5};
    const CropRect source = CropToSourceRect(s);
    EXPECT_EQ(source, (CropRect{0, 0, 10, 5}));
    for (int delta : {90, 180, 270, -90}) {
        SlideImage t = s;
        RotateSlideImage(t, delta);
        NormaliseOrientation(t);
        EXPECT_EQ(CropToSourceRect(t), source) << delta;
    }
    // Flips: the same source region, wherever it shows.
    SlideImage t = s;
    SetFlipHorizontal(t, true);
    t.cropRect = {30, 0, 40, 5};
    NormaliseOrientation(t);
    EXPECT_EQ(CropToSourceRect(t), source);
    t = s;
    SetFlipVertical(t, true);
    t.cropRect = {0, 25, 10, 30};
    NormaliseOrientation(t);
    EXPECT_EQ(CropToSourceRect(t), source);
    // Mirrored and turned: 3,2,1,4 shows the source's top-left corner at the
    // bottom-right, 1,4,3,2 at the top-left (both with a 30x40 display).
    t = s;
    t.cornerOrder = {3, 2, 1, 4};
    NormaliseOrientation(t);
    t.cropRect = {25, 30, 30, 40};
    EXPECT_EQ(CropToSourceRect(t), source);
    t = s;
    t.cornerOrder = {1, 4, 3, 2};
    NormaliseOrientation(t);
    t.cropRect = {0, 0, 5, 10};
    EXPECT_EQ(CropToSourceRect(t), source);
}

TEST(BitmapFill, ScaleByImageTypeAndShift) {
    SlideImage s = picture(800, 600);
    s.width = 400;
    s.height = 300;
    EXPECT_EQ(BitmapFillScale(s, true), 20 * 65536);
    s.adjustBitmapShift = true;
    EXPECT_EQ(BitmapFillScale(s, false), static_cast<int32_t>(20.0 * 0.999 * 65536.0 + 0.5));
    s.adjustBitmapShift = false;
    s.imageType = ImageType::JpegImportData;
    EXPECT_EQ(BitmapFillScale(s, true), 10 * 65536);
    s.height = 200;
    EXPECT_EQ(BitmapFillScale(s, false), static_cast<int32_t>(200.0 / 600 * 20.0 * 65536.0 + 0.5));
    EXPECT_EQ(ExternalJpegScale(s, true), 32768);
}

TEST(RangeChecks, MessagesNameTheRange) {
    EXPECT_EQ(CheckQuality(1), "");
    EXPECT_EQ(CheckQuality(100), "");
    EXPECT_NE(CheckQuality(0).find("1 and 100"), std::string::npos);
    EXPECT_NE(CheckQuality(101), "");
    EXPECT_EQ(CheckDisplaySize(10000), "");
    EXPECT_NE(CheckDisplaySize(-1).find("0 and 10000"), std::string::npos);
    EXPECT_EQ(CheckPosition(-1073741823), "");
    EXPECT_NE(CheckPosition(1073741824), "");
}

}  // namespace
}  // namespace quillet
