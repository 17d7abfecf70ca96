// Captions made for pictures when a show is put together from them: the
// picture's name or the day it was taken, in a plain style at the bottom of
// the stage.
#pragma once

#include <string>

#include "effects/Caption.h"

namespace quillet {

// The file name without its folder and extension.
std::string PictureNameText(const std::string& path);
// The day the picture was taken as YYYY-MM-DD: its Exif date taken (the
// original date, else the date it was stored), else the file's modification
// time in local time; empty when neither can be read.
std::string PictureDateText(const std::string& path);

// White DejaVu Sans with an em of a sixteenth of the stage height, centred a
// fortieth of the stage height above its bottom, fading in and staying until
// the next slide.
Caption MakePictureCaption(const std::string& text, int stageHeight);

}  // namespace quillet
