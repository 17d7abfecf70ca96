#include "ShowCompare.h"

#include <sstream>
#include <tuple>
#include <utility>

#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "model/SlideShow.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

template <typename Fn>
std::string written(Fn&& fn) {
    std::ostringstream out;
    XmlWriter w;
    w.open(out);
    fn(w);
    w.close();
    return out.str();
}

std::string effectsText(const Slide& s) {
    return written([&](XmlWriter& w) {
        WriteTransition(w, s.transitionIn());
        w.write(s.overlayEffect().name());
        w.write("\n");
        for (const auto& m : s.cameraEffects()) m->WriteXml(w);
        for (const auto& f : s.imageFilters()) WriteFilterElement(w, *f);
    });
}

class Differ {
public:
    explicit Differ(std::string* out) : out_(out) {}
    template <typename T>
    Differ& field(const char* name, const T& a, const T& b) {
        if (!failed_ && !(a == b)) fail(name);
        return *this;
    }
    void fail(const std::string& name) {
        if (failed_) return;
        failed_ = true;
        if (out_) *out_ = name;
    }
    bool ok() const { return !failed_; }

private:
    std::string* out_;
    bool failed_ = false;
};

}  // namespace

bool SameSlide(const Slide& a, const Slide& b, std::string* difference) {
    Differ d(difference);
    d.field("type", a.type, b.type)
        .field("image.src", a.image.src, b.image.src)
        .field("image", a.image, b.image)
        .field("captions", a.captions, b.captions)
        .field("sound", a.sound, b.sound)
        .field("popup", a.popup, b.popup)
        .field("duration", a.duration, b.duration)
        .field("click action", a.clickAction, b.clickAction)
        .field("transition, effect, camera moves or filters", effectsText(a), effectsText(b));
    return d.ok();
}

bool SameShow(const SlideShow& a, const SlideShow& b, std::string* difference) {
    Differ d(difference);
    d.field("width", a.width(), b.width())
        .field("height", a.height(), b.height())
        .field("show bounds", std::make_tuple(a.showBoundsLeft, a.showBoundsTop, a.showBoundsRight, a.showBoundsBottom),
               std::make_tuple(b.showBoundsLeft, b.showBoundsTop, b.showBoundsRight, b.showBoundsBottom))
        .field("fps", a.fps, b.fps)
        .field("bg color", a.bgColor, b.bgColor)
        .field("swf data", a.swfData, b.swfData)
        .field("captions", a.captions, b.captions)
        .field("sound", a.sound, b.sound)
        .field("controls", a.controls, b.controls)
        .field("mute control", a.muteControl, b.muteControl)
        .field("bg image", a.bgImage, b.bgImage)
        .field("bg image size", std::make_pair(a.bgImageWidth, a.bgImageHeight),
               std::make_pair(b.bgImageWidth, b.bgImageHeight))
        .field("bg image quality", a.bgImageQuality, b.bgImageQuality)
        .field("bg image flags", std::make_tuple(a.useBgImage, a.bgImageScaleToFit, a.bgImageTile),
               std::make_tuple(b.useBgImage, b.bgImageScaleToFit, b.bgImageTile))
        .field("bg frame", a.bgFrame, b.bgFrame)
        .field("bg frame widths", std::make_tuple(a.bgFrameLeft, a.bgFrameTop, a.bgFrameRight, a.bgFrameBottom),
               std::make_tuple(b.bgFrameLeft, b.bgFrameTop, b.bgFrameRight, b.bgFrameBottom))
        .field("bg frame color", a.bgFrameColor, b.bgFrameColor)
        .field("bg frame pattern", a.bgFramePattern, b.bgFramePattern)
        .field("bg frame custom pattern", a.bgFrameCustomPattern, b.bgFrameCustomPattern)
        .field("use compression", a.useCompression, b.useCompression)
        .field("disable print", a.disablePrint, b.disablePrint)
        .field("slide count", a.count(), b.count());
    if (!d.ok()) return false;
    for (int i = 0; i < a.count(); ++i) {
        std::string what;
        if (!SameSlide(*a.slideAt(i), *b.slideAt(i), &what)) {
            d.fail("slide " + std::to_string(i + 1) + ": " + what);
            return false;
        }
    }
    return true;
}

}  // namespace quillet
