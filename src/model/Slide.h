// One slide of a show: a picture (or a blank stage) with its display time,
// the transition that brings it in, camera moves, filters, an overlay effect,
// captions, sound and click actions.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "effects/Caption.h"
#include "media/SlideImage.h"
#include "model/ClickAction.h"
#include "model/SlideSound.h"

namespace quillet {

class Bitmap;
class CameraEffect;
class ImageFilter;
class OverlayEffect;
class SlideShow;
class Transition;

enum class SlideType : int { Blank = 0, Image = 1 };  // written "blank" / "image"

class Slide {
public:
    // A slide made for `show` (which may be null); every field at its default.
    Slide(SlideType type, SlideShow* show);
    ~Slide();
    Slide(const Slide&) = delete;
    Slide& operator=(const Slide&) = delete;

    // Every field back to its default: the picture defaults come from the
    // application settings as they are now; a "None" transition of 2000 ms,
    // an unnamed overlay effect, no camera moves, filters, captions or sound.
    // A slide of a show is then fitted to its stage. The cached bitmap goes.
    void reset();
    // The duplicate command: every field copied, effects cloned. The slide
    // stays with its own show.
    void copyFrom(const Slide& other);

    SlideType type;
    SlideImage image;          // the picture file and its placement settings
    CaptionList captions;
    SlideSound sound;
    PopupWindow popup;
    uint32_t duration = 2000;  // milliseconds the slide is shown
    ClickAction clickAction;

    SlideShow* show() const { return show_; }
    void setShow(SlideShow* show) { show_ = show; }

    // Placement size. Clearing a size that was set counts as a change of the
    // show's document.
    void setWidth(int width);
    void setHeight(int height);

    // Turns by `delta` degrees (rotation kept in 0..359); a quarter turn swaps
    // the sizes and turns the crop rectangle.
    void rotate(int delta);
    // A change of value mirrors the corner order as well.
    void setFlipVertical(bool on);
    void setFlipHorizontal(bool on);
    // Size (when scaleToFit) and position (when autoAlign) for the show's stage.
    void fitToShow(const SlideShow& show);
    void fitToShow();  // for its own show; nothing without one

    // duration + the transition's duration unless it is "None" + every camera move.
    uint64_t totalTime() const;

    // The transition into this slide (never null).
    const Transition& transitionIn() const { return *transition_; }
    Transition& transitionIn() { return *transition_; }
    // Replaces the transition; null puts a fresh "None" in its place.
    void setTransitionIn(std::unique_ptr<Transition> transition);

    // The overlay effect played over the slide (never null; a new slide's has
    // an empty name).
    const OverlayEffect& overlayEffect() const { return *overlay_; }
    void setOverlayEffect(std::unique_ptr<OverlayEffect> effect);

    // Camera moves in play order.
    const std::vector<std::unique_ptr<CameraEffect>>& cameraEffects() const { return camera_; }
    size_t cameraEffectCount() const { return camera_.size(); }
    CameraEffect* cameraMoveAt(int index) const;  // null when out of range
    // An index below the count inserts there (at the front for 0 or less) and
    // returns it; any other index appends and returns the new last index.
    // A null move is refused with -1. Readers pass kAppend.
    static constexpr int kAppend = 0xFFFFF;
    int addCameraEffect(std::unique_ptr<CameraEffect> move, int index = kAppend);
    bool removeCameraEffect(int index);
    // The most moves a copy carries over.
    static constexpr size_t kMaxCopiedMoves = 0x100000;

    // Filters in application order.
    const std::vector<std::unique_ptr<ImageFilter>>& imageFilters() const { return filters_; }
    // Appends the filter; false for null. With applyNow the filter also runs at
    // once over a working copy of the cached bitmap (sized bitmapWidth by
    // bitmapHeight), which then replaces the cached bitmap.
    bool addFilter(std::unique_ptr<ImageFilter> filter, bool applyNow = false);
    bool removeFilter(int index);

    // The prepared picture kept for previews; null when there is none.
    const Bitmap* cachedBitmap() const { return bitmap_.get(); }
    void setCachedBitmap(std::unique_ptr<Bitmap> bitmap);
    void dropCachedBitmap();

    // The slide list's facts.
    bool hasSound() const { return sound.hasSound(); }
    bool hasCaptions() const { return !captions.empty(); }
    bool hasCameraMoves() const { return !camera_.empty(); }

private:
    SlideShow* show_ = nullptr;
    std::unique_ptr<Transition> transition_;
    std::unique_ptr<OverlayEffect> overlay_;
    std::vector<std::unique_ptr<CameraEffect>> camera_;
    std::vector<std::unique_ptr<ImageFilter>> filters_;
    std::unique_ptr<Bitmap> bitmap_;
};

const char* slideTypeKeyword(SlideType type);  // "image" / "blank"

}  // namespace quillet
