// Field-by-field comparison of shows and slides for the tests, effects included (compared
// by their saved form). Used to check that a project reads back as written.
#pragma once

#include <string>

namespace quillet {

class Slide;
class SlideShow;

// True when equal; otherwise `difference` (when given) names the first field
// that differs, e.g. "slide 3: duration".
bool SameSlide(const Slide& a, const Slide& b, std::string* difference = nullptr);
bool SameShow(const SlideShow& a, const SlideShow& b, std::string* difference = nullptr);

}  // namespace quillet
