// The built-in patterns a decorative frame can be filled with: small RGB
// tiles made here from periodic noise, so they repeat without seams and no
// picture files need to be installed.
#pragma once

#include <string>
#include <vector>

#include "media/Bitmap.h"

namespace quillet {

// The names offered for a frame's pattern, in the order offered.
const std::vector<std::string>& FramePatternNames();
// The tile of the named pattern (names compared ignoring case); an empty
// bitmap for an unknown name. Tiles are 24-bit and repeat both ways.
Bitmap MakeFramePattern(const std::string& name);

}  // namespace quillet
