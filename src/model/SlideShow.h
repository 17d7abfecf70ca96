// The project in memory: the show-wide settings and the slides in play order.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "effects/Caption.h"
#include "model/Slide.h"
#include "model/SlideSound.h"
#include "model/SwfData.h"

namespace quillet {

// Where the playback controls or the mute button sit.
struct ControlPlacement {
    enum class Align : int {
        Custom = 0,        // "custom": at x, y
        TopLeft = 1,       // "top_left"
        TopCenter = 2,     // "top_center"
        TopRight = 3,      // "top_right"
        BottomLeft = 4,    // "bottom_left"
        BottomCenter = 5,  // "bottom_center"
        BottomRight = 6    // "bottom_right"
    };
    std::string controlSet;  // name of the chosen control set
    Align align = Align::BottomCenter;
    int x = 0, y = 0;           // position for Custom
    int width = 1, height = 1;  // size of the set, 1 by 1 until one is chosen
    bool enabled = false;

    bool operator==(const ControlPlacement&) const = default;
};

const char* controlAlignKeyword(ControlPlacement::Align align);  // "" when out of range
bool controlAlignFromKeyword(const std::string& keyword, ControlPlacement::Align& out);

class SlideShow {
public:
    // The decorative frame drawn round the stage.
    enum class Frame : int {
        None = 0, ColorFlat = 1, Color = 2, ColorHilite = 3, Metal = 4, Pattern = 5, PatternCustom = 6
    };  // "none", "color_flat", "color", "color_hilite", "metal", "pattern", "pattern_custom"

    // The stage accepts sizes of 1 to this many pixels each way.
    static constexpr int kMaxStageSize = 10000;

    SlideShow();
    virtual ~SlideShow();
    SlideShow(const SlideShow&) = delete;
    SlideShow& operator=(const SlideShow&) = delete;

    // Every setting back to its default; every slide deleted.
    void reset();

    int width() const { return width_; }
    int height() const { return height_; }
    // Stage size setters: a value outside 1..kMaxStageSize is refused (false)
    // and the size stays. The slides are not refitted (see refitAll).
    bool setWidth(int width);
    bool setHeight(int height);
    bool setSize(int width, int height);

    // The visible rectangle of the stage, pixels.
    int showBoundsLeft = 0, showBoundsTop = 0, showBoundsRight = 320, showBoundsBottom = 240;
    float fps = 12.0f;
    uint32_t bgColor = 0;  // 0x00RRGGBB
    SwfData swfData;
    CaptionList captions;  // over the whole show
    SlideSound sound;      // background sound of the whole show
    ControlPlacement controls;
    ControlPlacement muteControl{"", ControlPlacement::Align::BottomRight};
    std::string bgImage;
    int bgImageWidth = 320, bgImageHeight = 240;
    int bgImageQuality = 80;
    bool useBgImage = false;
    bool bgImageScaleToFit = true;
    bool bgImageTile = false;
    Frame bgFrame = Frame::None;
    int bgFrameLeft = 10, bgFrameTop = 10, bgFrameRight = 10, bgFrameBottom = 10;
    uint32_t bgFrameColor = 0;
    std::string bgFramePattern;        // a built-in pattern's name
    std::string bgFrameCustomPattern;  // the user's own pattern image
    bool useCompression = false;
    bool disablePrint = false;

    // A new slide of this show (not yet inserted).
    std::unique_ptr<Slide> createSlide(SlideType type);

    int count() const { return static_cast<int>(slides_.size()); }
    bool empty() const { return slides_.empty(); }
    const std::vector<std::unique_ptr<Slide>>& slides() const { return slides_; }
    Slide* slideAt(int index) const;  // null when out of range
    Slide* first() const;             // null when empty
    Slide* last() const;
    int indexOf(const Slide* slide) const;  // -1 when absent
    // Hands the slide to prepareSlide, then: a negative index inserts at the
    // front, an index below the count before that slide, any other appends.
    // False (and nothing kept) for null.
    bool insert(std::unique_ptr<Slide> slide, int index);
    bool append(std::unique_ptr<Slide> slide) { return insert(std::move(slide), count()); }
    // Deletes the slide; false when the index is not that of a slide.
    bool remove(int index);
    // Takes the slide out without deleting it; null when out of range.
    std::unique_ptr<Slide> take(int index);
    // The following slide (the first after the last) and the one before (the
    // last before the first); null for a slide not in the show.
    Slide* next(const Slide* slide) const;
    Slide* previous(const Slide* slide) const;

    // Sum of the slides' total times, milliseconds.
    uint64_t totalTime() const;
    // "%d Slides; Total Time: 00:12.50" ("Slide" for exactly one).
    std::string statusText() const;
    // Fits every slide to the stage again (after the stage size changed).
    void refitAll();
    // Some slide opens its click action in a popup window.
    bool hasPopup() const;

    // A counter of changes; the document compares it to see unsaved edits.
    uint64_t changeCount() const { return changes_; }
    void markChanged() { ++changes_; }
    void clearChanged() { changes_ = 0; }

    // Exchanges everything (settings and slides) with another show; the
    // slides are told their new show.
    void swapContents(SlideShow& other);

protected:
    // Every slide passes through here on its way into the show. The base
    // makes the slide belong to this show.
    virtual void prepareSlide(Slide& slide);

private:
    int width_ = 320, height_ = 240;
    std::vector<std::unique_ptr<Slide>> slides_;
    uint64_t changes_ = 0;
};

const char* frameKeyword(SlideShow::Frame frame);  // "" when out of range
bool frameFromKeyword(const std::string& keyword, SlideShow::Frame& out);

// "00:00.00", "00:00.%02d", "00:%02d.%02d" or "%02d:%02d.%02d" (minutes,
// seconds, hundredths) for a time in milliseconds.
std::string formatShowTime(uint64_t ms);

}  // namespace quillet
