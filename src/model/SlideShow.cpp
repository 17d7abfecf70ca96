#include "model/SlideShow.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "effects/Transition.h"

namespace quillet {

namespace {
const char* const kAlignKeywords[] = {"custom",      "top_left",      "top_center",  "top_right",
                                      "bottom_left", "bottom_center", "bottom_right"};
const char* const kFrameKeywords[] = {"none",  "color_flat", "color",         "color_hilite",
                                      "metal", "pattern",    "pattern_custom"};
}  // namespace

const char* controlAlignKeyword(ControlPlacement::Align align) {
    int i = static_cast<int>(align);
    return (i >= 0 && i < 7) ? kAlignKeywords[i] : "";
}

bool controlAlignFromKeyword(const std::string& keyword, ControlPlacement::Align& out) {
    for (int i = 0; i < 7; ++i) {
        if (keyword == kAlignKeywords[i]) {
            out = static_cast<ControlPlacement::Align>(i);
            return true;
        }
    }
    return false;
}

const char* frameKeyword(SlideShow::Frame frame) {
    int i = static_cast<int>(frame);
    return (i >= 0 && i < 7) ? kFrameKeywords[i] : "";
}

bool frameFromKeyword(const std::string& keyword, SlideShow::Frame& out) {
    for (int i = 0; i < 7; ++i) {
        if (keyword == kFrameKeywords[i]) {
            out = static_cast<SlideShow::Frame>(i);
            return true;
        }
    }
    return false;
}

std::string formatShowTime(uint64_t ms) {
    char buf[64];
    const unsigned hundredths = static_cast<unsigned>(ms % 1000 / 10);
    if (ms == 0) return "00:00.00";
    if (ms < 1000) {
        std::snprintf(buf, sizeof buf, "00:00.%02u", hundredths);
    } else if (ms < 60000) {
        std::snprintf(buf, sizeof buf, "00:%02u.%02u", static_cast<unsigned>(ms / 1000), hundredths);
    } else {
        std::snprintf(buf, sizeof buf, "%02llu:%02u.%02u", static_cast<unsigned long long>(ms / 60000),
                      static_cast<unsigned>(ms / 1000 % 60), hundredths);
    }
    return buf;
}

SlideShow::SlideShow() = default;

SlideShow::~SlideShow() = default;

void SlideShow::reset() {
    slides_.clear();
    width_ = 320;
    height_ = 240;
    showBoundsLeft = showBoundsTop = 0;
    showBoundsRight = 320;
    showBoundsBottom = 240;
    fps = 12.0f;
    bgColor = 0;
    swfData.reset();
    captions = CaptionList{};
    sound.reset();
    controls = ControlPlacement{};
    muteControl = ControlPlacement{};
    muteControl.align = ControlPlacement::Align::BottomRight;
    bgImage.clear();
    bgImageWidth = width_;
    bgImageHeight = height_;
    bgImageQuality = 80;
    useBgImage = false;
    bgImageScaleToFit = true;
    bgImageTile = false;
    bgFrame = Frame::None;
    bgFrameLeft = bgFrameTop = bgFrameRight = bgFrameBottom = 10;
    bgFrameColor = 0;
    bgFramePattern.clear();
    bgFrameCustomPattern.clear();
    useCompression = false;
    disablePrint = false;
}

bool SlideShow::setWidth(int width) {
    if (width < 1 || width > kMaxStageSize) return false;
    width_ = width;
    return true;
}

bool SlideShow::setHeight(int height) {
    if (height < 1 || height > kMaxStageSize) return false;
    height_ = height;
    return true;
}

bool SlideShow::setSize(int width, int height) {
    const bool widthTaken = setWidth(width);
    const bool heightTaken = setHeight(height);
    return widthTaken && heightTaken;
}

std::unique_ptr<Slide> SlideShow::createSlide(SlideType type) { return std::make_unique<Slide>(type, this); }

Slide* SlideShow::slideAt(int index) const {
    if (index < 0 || index >= count()) return nullptr;
    return slides_[static_cast<size_t>(index)].get();
}

Slide* SlideShow::first() const { return slides_.empty() ? nullptr : slides_.front().get(); }
Slide* SlideShow::last() const { return slides_.empty() ? nullptr : slides_.back().get(); }

int SlideShow::indexOf(const Slide* slide) const {
    if (!slide) return -1;
    for (size_t i = 0; i < slides_.size(); ++i)
        if (slides_[i].get() == slide) return static_cast<int>(i);
    return -1;
}

void SlideShow::prepareSlide(Slide& slide) { slide.setShow(this); }

bool SlideShow::insert(std::unique_ptr<Slide> slide, int index) {
    if (!slide) return false;
    prepareSlide(*slide);
    if (index < 0) {
        slides_.insert(slides_.begin(), std::move(slide));
    } else if (index < count()) {
        slides_.insert(slides_.begin() + index, std::move(slide));
    } else {
        slides_.push_back(std::move(slide));
    }
    return true;
}

bool SlideShow::remove(int index) { return take(index) != nullptr; }

std::unique_ptr<Slide> SlideShow::take(int index) {
    if (index < 0 || index >= count()) return nullptr;
    std::unique_ptr<Slide> slide = std::move(slides_[static_cast<size_t>(index)]);
    slides_.erase(slides_.begin() + index);
    return slide;
}

Slide* SlideShow::next(const Slide* slide) const {
    int i = indexOf(slide);
    if (i < 0) return nullptr;
    return slides_[static_cast<size_t>((i + 1) % count())].get();
}

Slide* SlideShow::previous(const Slide* slide) const {
    int i = indexOf(slide);
    if (i < 0) return nullptr;
    return slides_[static_cast<size_t>(i == 0 ? count() - 1 : i - 1)].get();
}

uint64_t SlideShow::totalTime() const {
    uint64_t total = 0;
    for (const auto& s : slides_) total += s->totalTime();
    return total;
}

std::string SlideShow::statusText() const {
    // A show of no slides takes the plural too.
    std::string text = std::to_string(count()) + (count() == 1 ? " Slide" : " Slides") + "; Total Time: ";
    return text + formatShowTime(totalTime());
}

void SlideShow::refitAll() {
    for (auto& s : slides_) s->fitToShow(*this);
}

bool SlideShow::hasPopup() const {
    return std::any_of(slides_.begin(), slides_.end(),
                       [](const auto& s) { return s->clickAction.enable && s->clickAction.popup; });
}

void SlideShow::swapContents(SlideShow& o) {
    using std::swap;
    swap(width_, o.width_);
    swap(height_, o.height_);
    swap(showBoundsLeft, o.showBoundsLeft);
    swap(showBoundsTop, o.showBoundsTop);
    swap(showBoundsRight, o.showBoundsRight);
    swap(showBoundsBottom, o.showBoundsBottom);
    swap(fps, o.fps);
    swap(bgColor, o.bgColor);
    swap(swfData, o.swfData);
    swap(captions, o.captions);
    swap(sound, o.sound);
    swap(controls, o.controls);
    swap(muteControl, o.muteControl);
    swap(bgImage, o.bgImage);
    swap(bgImageWidth, o.bgImageWidth);
    swap(bgImageHeight, o.bgImageHeight);
    swap(bgImageQuality, o.bgImageQuality);
    swap(useBgImage, o.useBgImage);
    swap(bgImageScaleToFit, o.bgImageScaleToFit);
    swap(bgImageTile, o.bgImageTile);
    swap(bgFrame, o.bgFrame);
    swap(bgFrameLeft, o.bgFrameLeft);
    swap(bgFrameTop, o.bgFrameTop);
    swap(bgFrameRight, o.bgFrameRight);
    swap(bgFrameBottom, o.bgFrameBottom);
    swap(bgFrameColor, o.bgFrameColor);
    swap(bgFramePattern, o.bgFramePattern);
    swap(bgFrameCustomPattern, o.bgFrameCustomPattern);
    swap(useCompression, o.useCompression);
    swap(disablePrint, o.disablePrint);
    swap(slides_, o.slides_);
    for (auto& s : slides_) s->setShow(this);
    for (auto& s : o.slides_) s->setShow(&o);
}

}  // namespace quillet
