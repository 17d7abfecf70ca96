#include "movie/SlideStep.h"

#include <cstdio>
#include <filesystem>

#include "effects/CameraEffect.h"
#include "effects/CaptionSprite.h"
#include "effects/Transition.h"
#include "movie/BitmapCharacter.h"
#include "model/Slide.h"
#include "swf/ShowScripts.h"
#include "swf/SwfActions.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

namespace quillet {

std::string PictureUrl(const std::string& picturePath, const std::string& movieFolder) {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path picture = fs::absolute(picturePath, ec);
    fs::path folder = fs::absolute(movieFolder.empty() ? "." : movieFolder, ec);
    fs::path rel = picture.lexically_normal().lexically_relative(folder.lexically_normal());
    const std::string path = (ec || rel.empty()) ? picturePath : rel.generic_string();
    // The player resolves this as a URL: a space, '#', '?' or '%' in a file
    // name (or any non-ASCII byte) must be escaped to reach the file.
    static const char kHex[] = "0123456789ABCDEF";
    std::string url;
    url.reserve(path.size());
    for (unsigned char c : path) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                           c == '/' || c == '-' || c == '_' || c == '.' || c == '~';
        if (plain) {
            url += static_cast<char>(c);
        } else {
            url += '%';
            url += kHex[c >> 4];
            url += kHex[c & 15];
        }
    }
    return url;
}

SlideStep::SlideStep(SwfWriter& writer, float fps, uint32_t& nextCharacterId, uint32_t& nextDepth)
    : writer_(writer), ctx_{writer, fps, nextCharacterId, nextDepth} {}

int SlideStep::HoldFrames(uint32_t durationMs, float fps) {
    // Truncated, not rounded: 2500 ms at 12 fps hold 30 frames, 50 ms none.
    return static_cast<int>(durationMs * 0.001 * fps);
}

void SlideStep::WriteLabel(const char* format, int index) {
    char label[48];
    std::snprintf(label, sizeof label, format, index);
    writer_.AddTag(std::make_unique<FrameLabelTag>(label));
    SwfActionList actions;
    AppendSetCurrentSlide(actions, index);
    writer_.AddTag(std::make_unique<DoActionTag>(std::move(actions)));
}

uint16_t SlideStep::DefineBackgroundShape(const SlideStepInput& in) {
    // A blank slide (or one whose picture could not be used) shows the
    // background: a stage-sized rectangle of the background colour, so that
    // transitions into and out of it look as they would with a picture.
    uint16_t id = ctx_.NewCharacterId();
    SwfRect rect = SwfRect::FromPixels(0, 0, in.stageWidth, in.stageHeight);
    writer_.AddTag(DefineShapeTag::Rectangle(id, rect, SwfFillStyle::MakeSolid(SwfColor::FromRgb(in.backgroundColor))));
    return id;
}

uint16_t SlideStep::DefinePicture(const SlideStepInput& in, SlideOnStage& stage) {
    const SlideImage& image = in.image ? *in.image : in.slide->image;
    BitmapCharacter& picture = *in.picture;
    // The geometry of the picture as it was measured for this export.
    SlideImage measured = image;
    measured.sourceWidth = picture.naturalWidth;
    measured.sourceHeight = picture.naturalHeight;
    const int32_t w = PixelsToTwips(picture.width);
    const int32_t h = PixelsToTwips(picture.height);
    stage.width = w;
    stage.height = h;

    if (picture.type == ImageType::JpegExternal) {
        // An empty clip that loads the picture file when the movie plays. The
        // outer sprite is the slide's character; the inner one, scaled from
        // the file's own size to the slide's, receives the picture.
        uint16_t innerId = ctx_.NewCharacterId();
        auto inner = std::make_unique<DefineSpriteTag>(innerId);
        inner->Add(std::make_unique<ShowFrameTag>());
        writer_.AddTag(std::move(inner));

        std::string target = ExternalJpegTargetName(++externalCounter_);
        uint16_t outerId = ctx_.NewCharacterId();
        auto outer = std::make_unique<DefineSpriteTag>(outerId);
        auto place = PlaceObject2Tag::Place(
            1, innerId, SwfMatrix::Scale(ExternalJpegScale(measured, true), ExternalJpegScale(measured, false)));
        place->name = target;
        outer->Add(std::move(place));
        SwfActionList load;
        auto& push = load.Emplace<ActionPush>();
        push.String(PictureUrl(image.src, in.movieFolder)).String(target);
        load.Emplace<ActionGetURL2>(ActionGetURL2::None, true, false);  // loadMovie(src, target)
        load.Emplace<ActionStop>();
        outer->Add(std::make_unique<DoActionTag>(std::move(load)));
        outer->Add(std::make_unique<ShowFrameTag>());
        writer_.AddTag(std::move(outer));
        return outerId;
    }

    uint16_t bitmapId = ctx_.NewCharacterId();
    writer_.AddTag(MakeBitmapTag(picture, bitmapId));
    uint16_t shapeId = ctx_.NewCharacterId();
    SwfMatrix fill = SwfMatrix::Scale(BitmapFillScale(measured, true), BitmapFillScale(measured, false));
    writer_.AddTag(DefineShapeTag::Rectangle(shapeId, SwfRect(0, w, 0, h), SwfFillStyle::MakeBitmap(bitmapId, fill)));
    return shapeId;
}

SlideOnStage SlideStep::WriteSlide(const SlideStepInput& in, SlideOnStage* outgoing) {
    const Slide& slide = *in.slide;
    SlideOnStage stage;
    stage.number = in.index;
    if (in.picture && in.picture->ok) {
        stage.characterId = DefinePicture(in, stage);
        const SlideImage& image = in.image ? *in.image : slide.image;
        stage.x = PixelsToTwips(image.x);
        stage.y = PixelsToTwips(image.y);
    } else {
        stage.characterId = DefineBackgroundShape(in);
        stage.width = PixelsToTwips(in.stageWidth);
        stage.height = PixelsToTwips(in.stageHeight);
    }
    stage.depth = ctx_.NewDepth();
    stage.matrix = SwfMatrix::Translate(stage.x, stage.y);

    // The previous slide's captions and buttons leave as this slide's transition starts.
    for (uint16_t depth : leavingDepths_) writer_.AddTag(std::make_unique<RemoveObject2Tag>(depth));
    leavingDepths_.clear();
    overlays_.Remove(ctx_);
    WriteLabel("slidepre_%d", in.index);
    slide.transitionIn().Render(&stage, outgoing, ctx_);
    WriteLabel("slide_%d", in.index);
    if (in.onShown) in.onShown(ctx_, stage, leavingDepths_);
    overlays_.Show(slide.overlayEffect(), ctx_);
    // A slide's time starts when its transition is over: its captions' start
    // times count from this frame.
    if (captions_) {
        const auto& items = slide.captions.items;
        for (size_t i = 0; i < items.size(); ++i)
            if (uint16_t depth = captions_->Place(items[i], CaptionName(static_cast<int>(i) + 1, in.index), ctx_))
                leavingDepths_.push_back(depth);
    }
    for (const auto& move : slide.cameraEffects()) move->Render(stage, ctx_);
    for (int i = HoldFrames(slide.duration, ctx_.fps); i > 0; --i) EndFrame(ctx_);
    return stage;
}

}  // namespace quillet
