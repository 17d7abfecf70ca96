// Shows for the model tests: tiny picture files and a show that uses every
// element and attribute of the project file.
#pragma once

#include <string>

namespace quillet {
class PublishSettings;
class SlideShow;
}  // namespace quillet

namespace quillet::test {

// A 2 by 2 24-bit BMP file: enough for a slide picture that must exist.
void writeTinyBmp(const std::string& path);

// Fills `show` and `publish` with every kind of content, using pictures and
// sounds in `folder` (made here). Values avoid the file format's deliberate
// one-way fields, so the show reads back equal to itself.
void buildFullShow(SlideShow& show, PublishSettings& publish, const std::string& folder);

}  // namespace quillet::test
