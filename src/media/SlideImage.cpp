#include "media/SlideImage.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace quillet {

namespace {

const char* const kImageTypeKeywords[] = {
    "jpeg",          "rgb_8",           "rgb_15",           "rgb_24",           "jpeg_external",
    "jpeg_import_data", "jpeg_transparent", "rgb_8_transparent", "rgb_24_transparent",
};
const char* const kHAlignKeywords[] = {"left", "center", "right"};
const char* const kVAlignKeywords[] = {"top", "center", "bottom"};

bool isQuarterTurn(int degrees) {
    return degrees == 90 || degrees == -90 || degrees == 270 || degrees == -270;
}

int normaliseDegrees(int degrees) {
    if (degrees < 0) degrees += 360;
    if (degrees >= 360) degrees %= 360;
    return degrees;
}

// Turns the corner record the way the picture turns: a clockwise quarter turn
// brings the bottom-left corner to the top-left, so every entry moves one
// place towards the end; a half turn exchanges opposite corners.
void turnCorners(std::array<uint8_t, 4>& c, int degrees) {
    if (degrees == 90 || degrees == -270) {
        c = {c[3], c[0], c[1], c[2]};
    } else if (degrees == 270 || degrees == -90) {
        c = {c[1], c[2], c[3], c[0]};
    } else if (degrees == 180 || degrees == -180) {
        std::swap(c[0], c[2]);
        std::swap(c[1], c[3]);
    }
}

int32_t toFixed16(double value) { return static_cast<int32_t>(value * 65536.0 + 0.5); }

}  // namespace

const char* imageTypeKeyword(ImageType type) {
    int i = static_cast<int>(type);
    if (i < 0 || i > 8) return "";
    return kImageTypeKeywords[i];
}

bool imageTypeFromKeyword(const std::string& keyword, ImageType& out) {
    for (int i = 0; i <= 8; ++i) {
        if (keyword == kImageTypeKeywords[i]) {
            out = static_cast<ImageType>(i);
            return true;
        }
    }
    return false;
}

const char* hAlignKeyword(HAlign a) {
    int i = static_cast<int>(a);
    return (i >= 0 && i <= 2) ? kHAlignKeywords[i] : "";
}

const char* vAlignKeyword(VAlign a) {
    int i = static_cast<int>(a);
    return (i >= 0 && i <= 2) ? kVAlignKeywords[i] : "";
}

bool hAlignFromKeyword(const std::string& keyword, HAlign& out) {
    for (int i = 0; i < 3; ++i) {
        if (keyword == kHAlignKeywords[i]) {
            out = static_cast<HAlign>(i);
            return true;
        }
    }
    return false;
}

bool vAlignFromKeyword(const std::string& keyword, VAlign& out) {
    for (int i = 0; i < 3; ++i) {
        if (keyword == kVAlignKeywords[i]) {
            out = static_cast<VAlign>(i);
            return true;
        }
    }
    return false;
}

int displayedWidth(const SlideImage& image) {
    return isQuarterTurn(image.rotation) ? image.sourceHeight : image.sourceWidth;
}

int displayedHeight(const SlideImage& image) {
    return isQuarterTurn(image.rotation) ? image.sourceWidth : image.sourceHeight;
}

void FitSlideImage(SlideImage& image, int stageWidth, int stageHeight, int originX, int originY) {
    int sourceW = image.crop ? image.cropRect.width() : displayedWidth(image);
    int sourceH = image.crop ? image.cropRect.height() : displayedHeight(image);

    if (image.scaleToFit) {
        if (!image.keepAspectRatio || sourceW <= 0 || sourceH <= 0) {
            // Without proportions to keep (or without a picture to measure)
            // the slide simply covers the stage.
            image.width = stageWidth;
            image.height = stageHeight;
        } else {
            int w = sourceW;
            int h = sourceH;
            if (sourceW != stageWidth) {
                w = stageWidth;
                h = static_cast<int>(static_cast<double>(sourceH) * stageWidth / sourceW + 0.5);
            }
            if (h > stageHeight) {
                int previous = h;
                h = stageHeight;
                w = static_cast<int>(static_cast<double>(w) * stageHeight / previous + 0.5);
            }
            image.width = w;
            image.height = h;
        }
    }

    if (image.autoAlign) {
        // Each half is shifted on its own, so an odd excess rounds as these
        // two shifts give and not as (stage - size) / 2.
        switch (image.hAlign) {
            case HAlign::Left: image.x = 0; break;
            case HAlign::Center: image.x = (stageWidth >> 1) - (image.width >> 1); break;
            case HAlign::Right: image.x = stageWidth - image.width; break;
        }
        switch (image.vAlign) {
            case VAlign::Top: image.y = 0; break;
            case VAlign::Center: image.y = (stageHeight >> 1) - (image.height >> 1); break;
            case VAlign::Bottom: image.y = stageHeight - image.height; break;
        }
        image.x += originX;
        image.y += originY;
    }
}

bool SetCropRect(SlideImage& image, CropRect rect, int stageWidth, int stageHeight, int originX,
                 int originY) {
    const CropRect given = rect;
    if (rect.right < rect.left) std::swap(rect.left, rect.right);
    if (rect.bottom < rect.top) std::swap(rect.top, rect.bottom);
    if (rect.left < 0) rect.left = 0;
    if (rect.top < 0) rect.top = 0;
    const int dw = displayedWidth(image);
    const int dh = displayedHeight(image);
    if (rect.right > dw) rect.right = dw;
    if (rect.bottom > dh) rect.bottom = dh;
    const bool corrected = !(rect == given);
    if (!(rect == image.cropRect)) {
        image.cropRect = rect;
        FitSlideImage(image, stageWidth, stageHeight, originX, originY);
    }
    return corrected;
}

void NormaliseOrientation(SlideImage& image) {
    using Record = std::array<uint8_t, 4>;
    struct Row {
        Record record;
        int rotation;
        bool flipVertical, flipHorizontal;
        Record before;
    };
    static const Row kRows[] = {
        {{1, 2, 3, 4}, 0, false, false, {1, 2, 3, 4}},
        {{4, 1, 2, 3}, 90, false, false, {1, 2, 3, 4}},
        {{3, 4, 1, 2}, 180, false, false, {1, 2, 3, 4}},
        {{2, 3, 4, 1}, 270, false, false, {1, 2, 3, 4}},
        {{4, 3, 2, 1}, 0, true, false, {4, 3, 2, 1}},
        {{2, 1, 4, 3}, 0, false, true, {2, 1, 4, 3}},
        {{1, 4, 3, 2}, 270, false, true, {2, 1, 4, 3}},
        {{3, 2, 1, 4}, 90, false, true, {2, 1, 4, 3}},
    };
    const Record current = image.cornerOrder;
    image.cornerOrder = {1, 2, 3, 4};
    image.flipVertical = false;
    image.flipHorizontal = false;
    image.rotation = 0;
    for (const Row& row : kRows) {
        if (row.record == current) {
            image.rotation = row.rotation;
            image.flipVertical = row.flipVertical;
            image.flipHorizontal = row.flipHorizontal;
            image.cornerOrder = row.before;
            break;
        }
    }
    image.rotation = normaliseDegrees(image.rotation);
    turnCorners(image.cornerOrder, image.rotation);
}

CropRect CropToSourceRect(const SlideImage& image) {
    const CropRect& c = image.cropRect;
    const int cw = c.width();
    const int ch = c.height();
    const int dw = displayedWidth(image);
    const int dh = displayedHeight(image);
    CropRect s;
    switch (image.rotation) {
        case 90:
            s.left = image.flipHorizontal ? dh - c.bottom : c.top;
            s.top = dw - c.right;
            s.right = s.left + ch;
            s.bottom = dw - c.left;
            break;
        case 180:
            s.left = dw - c.right;
            s.top = dh - c.bottom;
            s.right = dw - c.left;
            s.bottom = dh - c.top;
            break;
        case 270:
            s.left = image.flipHorizontal ? c.top : dh - c.bottom;
            s.top = c.left;
            s.right = s.left + ch;
            s.bottom = c.right;
            break;
        default:
            s.left = image.flipHorizontal ? dw - c.right : c.left;
            s.top = image.flipVertical ? dh - c.bottom : c.top;
            s.right = s.left + cw;
            s.bottom = s.top + ch;
            break;
    }
    return s;
}

void RotateSlideImage(SlideImage& image, int delta) {
    // The crop rectangle lives in displayed coordinates, so it turns with the
    // picture: measure the displayed size before the rotation changes it.
    const int dw = displayedWidth(image);
    const int dh = displayedHeight(image);
    CropRect c = image.cropRect;
    CropRect t = c;
    const int turn = normaliseDegrees(delta % 360);
    if (turn == 90) {
        t = {dh - c.bottom, c.left, dh - c.top, c.right};
    } else if (turn == 270) {
        t = {c.top, dw - c.right, c.bottom, dw - c.left};
    } else if (turn == 180) {
        t = {dw - c.right, dh - c.bottom, dw - c.left, dh - c.top};
    }
    if (t.left < 0) t.left = 0;
    if (t.top < 0) t.top = 0;
    if (t.right < 0) t.right = 0;
    if (t.bottom < 0) t.bottom = 0;
    image.cropRect = t;

    image.rotation = normaliseDegrees(image.rotation + delta);
    if (turn == 90 || turn == 270) {
        std::swap(image.width, image.height);
        std::swap(image.bitmapWidth, image.bitmapHeight);
    }
    turnCorners(image.cornerOrder, turn);
}

void SetFlipVertical(SlideImage& image, bool on) {
    if (image.flipVertical == on) return;
    image.flipVertical = on;
    std::swap(image.cornerOrder[0], image.cornerOrder[3]);
    std::swap(image.cornerOrder[1], image.cornerOrder[2]);
}

void SetFlipHorizontal(SlideImage& image, bool on) {
    if (image.flipHorizontal == on) return;
    image.flipHorizontal = on;
    std::swap(image.cornerOrder[0], image.cornerOrder[1]);
    std::swap(image.cornerOrder[2], image.cornerOrder[3]);
}

int32_t BitmapFillScale(const SlideImage& image, bool horizontal) {
    double scale = 20.0;
    if (image.imageType == ImageType::JpegImportData) {
        // The stored JPEG keeps the file's own pixel size, so the fill
        // stretches it to the displayed size.
        int natural = horizontal ? image.sourceWidth : image.sourceHeight;
        int shown = horizontal ? image.width : image.height;
        if (natural > 0) scale = static_cast<double>(shown) / natural * 20.0;
    }
    if (image.adjustBitmapShift) scale *= 0.999;
    return toFixed16(scale);
}

int32_t ExternalJpegScale(const SlideImage& image, bool horizontal) {
    int natural = horizontal ? image.sourceWidth : image.sourceHeight;
    int shown = horizontal ? image.width : image.height;
    if (natural <= 0) return 65536;
    return toFixed16(static_cast<double>(shown) / natural);
}

std::string CheckQuality(int quality) {
    if (quality < 1 || quality > 100) return "Please enter an integer between 1 and 100.";
    return {};
}

std::string CheckDisplaySize(int widthOrHeight) {
    if (widthOrHeight < 0 || widthOrHeight > 10000) return "Please enter an integer between 0 and 10000.";
    return {};
}

std::string CheckPosition(int xOrY) {
    if (xOrY < -1073741823 || xOrY > 1073741823)
        return "Please enter an integer between -1073741823 and 1073741823.";
    return {};
}

}  // namespace quillet
