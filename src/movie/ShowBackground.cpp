#include "movie/ShowBackground.h"

#include <algorithm>

#include "media/FramePatterns.h"
#include "media/ImageImporter.h"
#include "media/SlidePicture.h"
#include "model/SlideShow.h"
#include "swf/SwfShape.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

namespace {

// A tile larger than this is shrunk: a pattern is a texture, not a picture.
constexpr int kMaxPatternTile = 512;

// The picture at `width` x `height` (0: its own size, shrunk to at most
// `maxSide`), as a JPEG character at `quality`.
BitmapCharacter PreparePicture(const std::string& path, int width, int height, int quality, int maxSide,
                               std::vector<std::string>& warnings, const char* what) {
    ImageImporter importer;
    int w = 0, h = 0;
    if (!importer.Open(path) || !importer.GetNaturalSize(w, h)) {
        warnings.push_back("The " + std::string(what) + " " + path + " cannot be used: " + importer.error());
        return {};
    }
    SlideImage image;
    image.src = path;
    image.sourceWidth = w;
    image.sourceHeight = h;
    image.cropRect = {0, 0, w, h};
    image.quality = std::clamp(quality, 0, 100);
    image.scaleToFit = false;
    image.autoAlign = false;
    image.keepAspectRatio = false;
    if (width <= 0 || height <= 0) {
        const double shrink = std::min(1.0, static_cast<double>(maxSide) / std::max(w, h));
        width = std::max(1, static_cast<int>(w * shrink));
        height = std::max(1, static_cast<int>(h * shrink));
    }
    image.width = width;
    image.height = height;
    BitmapCharacter c = EncodeBitmapCharacter(PrepareSlideImage(importer, image, {}));
    if (!c.ok) warnings.push_back("The " + std::string(what) + " " + path + " cannot be used: " + c.error);
    return c;
}

BitmapCharacter PatternTile(const std::string& name, std::vector<std::string>& warnings) {
    PreparedPicture tile;
    tile.pixels = MakeFramePattern(name);
    if (tile.pixels.empty()) {
        warnings.push_back("The frame pattern \"" + name + "\" is not one of the built-in patterns; the frame is drawn in its colour");
        return {};
    }
    tile.ok = true;
    tile.type = ImageType::Rgb24;
    tile.width = tile.pixels.width();
    tile.height = tile.pixels.height();
    tile.naturalWidth = static_cast<int>(tile.width);
    tile.naturalHeight = static_cast<int>(tile.height);
    return EncodeBitmapCharacter(std::move(tile));
}

// Defines the character's bitmap under a fresh id (from a copy: the dry run
// and the real write both use the same prepared data).
uint16_t DefineBitmap(MovieContext& ctx, const BitmapCharacter& character) {
    BitmapCharacter copy = character;
    const uint16_t id = ctx.NewCharacterId();
    ctx.movie.AddTag(MakeBitmapTag(copy, id));
    return id;
}

// One pixel of the bitmap is one pixel of the stage.
SwfMatrix PixelFill(int32_t x, int32_t y) { return SwfMatrix::ScaleF(20.0, 20.0, x, y); }

void WriteImage(MovieContext& ctx, const SlideShow& show, const BitmapCharacter& image) {
    const uint16_t bitmapId = DefineBitmap(ctx, image);
    const int32_t stageW = ctx.StageWidth(), stageH = ctx.StageHeight();
    SwfRect area(0, stageW, 0, stageH);
    SwfFillStyle fill;
    if (show.bgImageTile) {
        fill = SwfFillStyle::MakeBitmap(bitmapId, PixelFill(0, 0), false);
    } else {
        // Fitted pictures are made at their size; others keep theirs, centred.
        const int32_t w = PixelsToTwips(image.width), h = PixelsToTwips(image.height);
        const int32_t x = show.bgImageScaleToFit ? 0 : (stageW - w) / 2;
        const int32_t y = show.bgImageScaleToFit ? 0 : (stageH - h) / 2;
        area = SwfRect(x, x + w, y, y + h);
        fill = SwfFillStyle::MakeBitmap(bitmapId, PixelFill(x, y));
    }
    const uint16_t shapeId = ctx.NewCharacterId();
    ctx.movie.AddTag(DefineShapeTag::Rectangle(shapeId, area, fill));
    ctx.movie.AddTag(PlaceObject2Tag::Place(ctx.NewDepth(), shapeId, SwfMatrix()));
}

SwfColor Blend(uint32_t rgb, uint32_t toward, double amount) {
    auto channel = [&](int shift) {
        const double a = (rgb >> shift) & 0xFF, b = (toward >> shift) & 0xFF;
        return static_cast<uint8_t>(a + (b - a) * amount + 0.5);
    };
    return SwfColor(channel(16), channel(8), channel(0));
}

// A gradient across a frame side from its outer edge (ratio 0) to its inner
// edge (255). `vertical` sides run up and down the stage, so their gradient
// runs along x; the others are turned a quarter so it runs along y.
SwfMatrix AcrossSide(int32_t from, int32_t to, bool vertical) {
    const double scale = (to - from) / 32768.0;
    const int32_t middle = (from + to) / 2;
    if (vertical) return SwfMatrix::ScaleF(scale, 1.0, middle, 0);
    SwfMatrix m = SwfMatrix::ScaleF(0.0, 0.0, 0, middle);
    m.SetRotate(static_cast<int32_t>(scale * 65536), false, true);
    m.SetRotate(static_cast<int32_t>(-scale * 65536), true, true);
    return m;
}

using Frame = SlideShow::Frame;

// The fill of one side: flat for "color_flat" and the patterns; lit from the
// top left for "color" (lighter top and left, darker bottom and right); a
// rounded, raised rim for "color_hilite"; brushed steel for "metal".
SwfFillStyle SideFill(Frame kind, uint32_t color, int side, int32_t from, int32_t to, uint16_t patternId) {
    const bool vertical = side == 1 || side == 3;  // 0 top, 1 right, 2 bottom, 3 left
    const bool lit = side == 0 || side == 3;
    switch (kind) {
        case Frame::Color:
            return SwfFillStyle::MakeSolid(lit ? Blend(color, 0xFFFFFF, 0.35) : Blend(color, 0, 0.35));
        case Frame::ColorHilite:
            return SwfFillStyle::MakeLinearGradient(
                AcrossSide(from, to, vertical),
                {{0, Blend(color, 0, 0.45)}, {110, Blend(color, 0xFFFFFF, 0.55)}, {255, Blend(color, 0, 0.25)}});
        case Frame::Metal:
            return SwfFillStyle::MakeLinearGradient(AcrossSide(from, to, vertical),
                                                    {{0, SwfColor(88, 92, 98)},
                                                     {60, SwfColor(214, 218, 222)},
                                                     {120, SwfColor(150, 154, 160)},
                                                     {190, SwfColor(236, 238, 240)},
                                                     {255, SwfColor(104, 108, 114)}});
        case Frame::Pattern:
        case Frame::PatternCustom:
            if (patternId) return SwfFillStyle::MakeBitmap(patternId, PixelFill(0, 0), false);
            [[fallthrough]];
        default:
            return SwfFillStyle::MakeSolid(SwfColor::FromRgb(color));
    }
}

void WriteFrame(MovieContext& ctx, const SlideShow& show, const BitmapCharacter& pattern) {
    const int32_t stageW = ctx.StageWidth(), stageH = ctx.StageHeight();
    // The visible rectangle, kept inside the stage; the whole stage when it
    // is empty.
    int32_t left = PixelsToTwips(std::clamp(show.showBoundsLeft, 0, show.width()));
    int32_t right = PixelsToTwips(std::clamp(show.showBoundsRight, 0, show.width()));
    int32_t top = PixelsToTwips(std::clamp(show.showBoundsTop, 0, show.height()));
    int32_t bottom = PixelsToTwips(std::clamp(show.showBoundsBottom, 0, show.height()));
    if (right <= left || bottom <= top) left = 0, top = 0, right = stageW, bottom = stageH;
    const bool cover = left > 0 || top > 0 || right < stageW || bottom < stageH;
    const bool frame = show.bgFrame != Frame::None;
    if (!cover && !frame) return;

    uint16_t patternId = 0;
    if (frame && pattern.ok && (show.bgFrame == Frame::Pattern || show.bgFrame == Frame::PatternCustom))
        patternId = DefineBitmap(ctx, pattern);
    SwfShapeBuilder b;
    if (cover) {
        // The stage clockwise and the visible rectangle the other way round:
        // the fill lies between them.
        b.SetFill1(b.AddFillStyle(SwfFillStyle::MakeSolid(SwfColor::FromRgb(show.bgColor))));
        b.Polygon({{0, 0}, {stageW, 0}, {stageW, stageH}, {0, stageH}});
        b.Polygon({{left, top}, {left, bottom}, {right, bottom}, {right, top}});
    }
    if (frame) {
        // Widths inside the visible rectangle, each at most half of it.
        const int32_t halfW = (right - left) / 2, halfH = (bottom - top) / 2;
        const int32_t l = left + std::clamp(PixelsToTwips(show.bgFrameLeft), 0, halfW);
        const int32_t r = right - std::clamp(PixelsToTwips(show.bgFrameRight), 0, halfW);
        const int32_t t = top + std::clamp(PixelsToTwips(show.bgFrameTop), 0, halfH);
        const int32_t d = bottom - std::clamp(PixelsToTwips(show.bgFrameBottom), 0, halfH);
        // Four mitred sides, each a clockwise quadrilateral.
        const std::vector<std::pair<int32_t, int32_t>> sides[4] = {
            {{left, top}, {right, top}, {r, t}, {l, t}},
            {{right, top}, {right, bottom}, {r, d}, {r, t}},
            {{right, bottom}, {left, bottom}, {l, d}, {r, d}},
            {{left, bottom}, {left, top}, {l, t}, {l, d}},
        };
        const std::pair<int32_t, int32_t> across[4] = {{top, t}, {right, r}, {bottom, d}, {left, l}};
        for (int s = 0; s < 4; ++s) {
            if (sides[s][0] == sides[s][3] && sides[s][1] == sides[s][2]) continue;  // a side of width 0
            b.SetFill1(b.AddFillStyle(
                SideFill(show.bgFrame, show.bgFrameColor, s, across[s].first, across[s].second, patternId)));
            b.Polygon(sides[s]);
        }
    }
    const uint16_t shapeId = ctx.NewCharacterId();
    ctx.movie.AddTag(std::make_unique<DefineShapeTag>(shapeId, SwfRect(0, stageW, 0, stageH), b.Build()));
    ctx.movie.AddTag(PlaceObject2Tag::Place(kStageFrameDepth, shapeId, SwfMatrix()));
}

}  // namespace

ShowBackdrop PrepareBackdrop(const SlideShow& show) {
    ShowBackdrop backdrop;
    if (show.useBgImage && !show.bgImage.empty()) {
        const bool fit = show.bgImageScaleToFit && !show.bgImageTile;
        // A fitted picture fills the stage (whatever size it had when it was chosen).
        const int w = fit ? show.width() : 0;
        const int h = fit ? show.height() : 0;
        backdrop.image = PreparePicture(show.bgImage, w, h, show.bgImageQuality, SlideShow::kMaxStageSize,
                                        backdrop.warnings, "background picture");
    }
    if (show.bgFrame == Frame::Pattern)
        backdrop.pattern = PatternTile(show.bgFramePattern, backdrop.warnings);
    else if (show.bgFrame == Frame::PatternCustom)
        backdrop.pattern = PreparePicture(show.bgFrameCustomPattern, 0, 0, 90, kMaxPatternTile, backdrop.warnings,
                                          "frame pattern");
    return backdrop;
}

void WriteBackdrop(MovieContext& ctx, const SlideShow& show, const ShowBackdrop& backdrop) {
    if (backdrop.image.ok) WriteImage(ctx, show, backdrop.image);
    WriteFrame(ctx, show, backdrop.pattern);
}

}  // namespace quillet
