#include "model/Slide.h"

#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/Bitmap.h"
#include "media/ImageFilter.h"
#include "model/SlideShow.h"
#include "settings/AppSettings.h"

namespace quillet {

const char* slideTypeKeyword(SlideType type) { return type == SlideType::Blank ? "blank" : "image"; }

Slide::Slide(SlideType slideType, SlideShow* owner) : type(slideType), show_(owner) { reset(); }

Slide::~Slide() = default;

void Slide::reset() {
    camera_.clear();
    filters_.clear();
    transition_ = std::make_unique<Transition>();
    overlay_ = std::make_unique<OverlayEffect>("");
    captions = CaptionList{};
    sound.reset();
    popup = PopupWindow{};
    clickAction = ClickAction{};
    duration = 2000;

    const AppSettings& settings = AppSettings::current();
    image = SlideImage{};
    image.quality = settings.defaultImageQuality;
    auto align = [](int v) { return (v >= 0 && v <= 2) ? v : 1; };
    image.hAlign = static_cast<HAlign>(align(settings.defaultImageHAlign));
    image.vAlign = static_cast<VAlign>(align(settings.defaultImageVAlign));
    image.autoAlign = settings.defaultImageAlign;
    image.scaleToFit = settings.defaultImageScaleToFit;
    image.keepAspectRatio = settings.defaultImageKeepAspectRatio;
    image.adjustBitmapShift = settings.defaultImageAdjustBitmapShift;

    if (show_) fitToShow(*show_);
    bitmap_.reset();
}

void Slide::copyFrom(const Slide& other) {
    if (&other == this) return;
    type = other.type;
    image = other.image;
    captions = other.captions;
    sound = other.sound;
    popup = other.popup;
    duration = other.duration;
    clickAction = other.clickAction;
    transition_ = other.transition_->Clone();
    overlay_ = other.overlay_->Create();
    overlay_->SetName(other.overlay_->name());
    filters_.clear();
    for (const auto& f : other.filters_) addFilter(f->Clone(), false);
    camera_.clear();
    for (const auto& m : other.camera_) {
        if (camera_.size() >= kMaxCopiedMoves) break;
        addCameraEffect(m->Clone(), kAppend);
    }
    bitmap_.reset();
}

void Slide::setWidth(int width) {
    if (image.width != 0 && width == 0 && show_) show_->markChanged();
    image.width = width;
}

void Slide::setHeight(int height) {
    if (image.height != 0 && height == 0 && show_) show_->markChanged();
    image.height = height;
}

void Slide::rotate(int delta) {
    // Whole turns change nothing; dropping them first keeps the sum in range
    // whatever a file asks for.
    RotateSlideImage(image, delta % 360);
}
void Slide::setFlipVertical(bool on) { SetFlipVertical(image, on); }
void Slide::setFlipHorizontal(bool on) { SetFlipHorizontal(image, on); }

void Slide::fitToShow(const SlideShow& s) { FitSlideImage(image, s.width(), s.height()); }

void Slide::fitToShow() {
    if (show_) fitToShow(*show_);
}

uint64_t Slide::totalTime() const {
    uint64_t total = duration;
    if (transition_->name() != "None") total += transition_->duration();
    for (const auto& m : camera_) total += m->duration;
    return total;
}

void Slide::setTransitionIn(std::unique_ptr<Transition> transition) {
    transition_.reset();  // the old one goes first
    transition_ = transition ? std::move(transition) : std::make_unique<Transition>();
}

void Slide::setOverlayEffect(std::unique_ptr<OverlayEffect> effect) {
    overlay_ = effect ? std::move(effect) : std::make_unique<OverlayEffect>("");
}

CameraEffect* Slide::cameraMoveAt(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= camera_.size()) return nullptr;
    return camera_[static_cast<size_t>(index)].get();
}

int Slide::addCameraEffect(std::unique_ptr<CameraEffect> move, int index) {
    if (!move) return -1;
    const int n = static_cast<int>(camera_.size());
    if (index < n) {
        int at = index > 0 ? index : 0;
        camera_.insert(camera_.begin() + at, std::move(move));
        return at;
    }
    camera_.push_back(std::move(move));
    return static_cast<int>(camera_.size()) - 1;
}

bool Slide::removeCameraEffect(int index) {
    if (index < 0 || static_cast<size_t>(index) >= camera_.size()) return false;
    camera_.erase(camera_.begin() + index);
    return true;
}

bool Slide::addFilter(std::unique_ptr<ImageFilter> filter, bool applyNow) {
    if (!filter) return false;
    if (applyNow && bitmap_ && !bitmap_->empty()) {
        auto working = std::make_unique<Bitmap>();
        working->CopyFrom(*bitmap_);
        if (image.bitmapWidth > 0 && image.bitmapHeight > 0)
            working->Resize(static_cast<uint32_t>(image.bitmapWidth), static_cast<uint32_t>(image.bitmapHeight));
        if (filter->Apply(*working)) bitmap_ = std::move(working);
    }
    filters_.push_back(std::move(filter));
    return true;
}

bool Slide::removeFilter(int index) {
    if (index < 0 || static_cast<size_t>(index) >= filters_.size()) return false;
    filters_.erase(filters_.begin() + index);
    return true;
}

void Slide::setCachedBitmap(std::unique_ptr<Bitmap> bitmap) { bitmap_ = std::move(bitmap); }
void Slide::dropCachedBitmap() { bitmap_.reset(); }

}  // namespace quillet
