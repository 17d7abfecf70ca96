// The texts of the main window's slide list: three lines per slide and a
// transition row, and the status line (SlideShow::statusText).
#pragma once

#include <string>

namespace quillet {

class Slide;

struct SlideRowText {
    std::string title;   // "3. beach.jpg (2.00 sec)" or "3. ( Blank Slide ) (2.00 sec)"
    std::string path;    // "Path: /photos/beach.jpg" or "Path: N/A"
    std::string extras;  // "Has sound; captions; pan/zoom", or empty
};

// `number` is the slide's 1-based position.
SlideRowText slideRowText(const Slide& slide, int number);
// "Transition: Cross Fade (2.00 sec)"; a "None" transition always shows 0.00 sec.
std::string transitionRowText(const Slide& slide);

}  // namespace quillet
