#include "model/SlideList.h"

#include <cstdio>

#include "effects/Transition.h"
#include "model/Slide.h"

namespace quillet {

namespace {
std::string fileNameOf(const std::string& path) {
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}
}  // namespace

SlideRowText slideRowText(const Slide& slide, int number) {
    SlideRowText row;
    const bool blank = slide.type == SlideType::Blank;
    char seconds[64];
    std::snprintf(seconds, sizeof seconds, " (%0.2f sec)", slide.duration / 1000.0);
    row.title = std::to_string(number) + ". " + (blank ? std::string("( Blank Slide )") : fileNameOf(slide.image.src)) +
                seconds;
    row.path = "Path: " + (blank ? std::string("N/A") : slide.image.src);
    if (slide.hasSound()) row.extras = "Has sound";
    if (slide.hasCaptions()) row.extras += row.extras.empty() ? "Has captions" : "; captions";
    if (slide.hasCameraMoves()) row.extras += row.extras.empty() ? "Has pan/zoom" : "; pan/zoom";
    return row;
}

std::string transitionRowText(const Slide& slide) { return slide.transitionIn().Label(); }

}  // namespace quillet
