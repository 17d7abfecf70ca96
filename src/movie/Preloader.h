// The preloader: what the movie shows while it is still loading, before the
// show's first script frame.
//
// Our own preloader is one frame at the very start of the movie:
// - a sprite "PreloadBar" at the first depth, holding "BarBg" (depth 1, the
//   empty bar) and "BarFg" (depth 3, the filled part, drawn from its left
//   edge so that its _xscale is the percentage loaded), centred on the stage;
// - a text field bound to the variable "pl:text" (the variable "text" of an
//   empty clip "pl"), in the preload font, size and colour, showing the
//   preload text followed by the percentage; its font embeds the glyphs
//   "01234567890%", the space and the characters of the text;
// - the frame's script stops the main timeline; PreloadBar's enterFrame
//   script then works out, every frame, with the main timeline as its target:
//     percentLoaded = int(_root.getBytesLoaded() * 100 / _root.getBytesTotal())
//     PreloadBar/BarFg's _xscale = percentLoaded
//     pl:text = "<text> " + percentLoaded + "%"
//     if (percentLoaded >= preloadAmount) play()
// The next frame (the show's first script frame) removes the three.
//
// The "smart" type also starts the show early when the rest of the movie
// will arrive before the show needs it: once half a second has passed and
// something has loaded, the time still to load at the rate so far,
// (total - loaded) * elapsed / loaded, is compared with the show's playing
// time (the sum of its slides' durations, a lower bound); when it is not
// longer, the show starts whatever the percentage. The start time is taken
// on the preloader's frame ("plStart").
//
// A preloader imported from a file (preload_import_src) replaces ours: its
// definitions are copied in with their ids moved past the ids used so far,
// its frames go first on the main timeline with their depths moved past
// ours, and the next frame removes everything it placed. Its own script
// decides when to play on. A file that cannot be read, or that holds a tag
// we cannot copy, fails the export before any file is touched.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "effects/SlideRender.h"
#include "movie/MovieImport.h"
#include "swf/SwfAction.h"

namespace quillet {

class FontCatalog;
class SlideShow;

class Preloader {
public:
    // Reads an imported preloader or finds the font of ours. False, with the
    // reason naming the file, when the preloader cannot be built.
    bool Prepare(const SlideShow& show, FontCatalog& fonts, std::string* error);
    // Writes the preloader's frames (each ended by ShowFrame), taking fresh
    // ids and depths.
    void Write(MovieContext& ctx);
    // Removes what it placed, in the frame being built (the next one).
    void WriteRemoval(MovieContext& ctx);
    // The version of an imported preloader's movie, 0 for ours.
    uint8_t ImportedVersion() const { return imported_ ? import_.header.version : 0; }

private:
    void WriteOwn(MovieContext& ctx);

    const SlideShow* show_ = nullptr;
    FontCatalog* fonts_ = nullptr;
    bool imported_ = false;
    ImportedMovie import_;
    std::set<uint16_t> placed_;
};

// Frame scripts of our preloader, for the show's settings (exposed for tests).
// `amount` in percent; `playMs` the show's playing time for the smart type.
struct PreloadScriptSettings {
    std::string text;
    int amount = 100;
    bool smart = false;
    uint32_t playMs = 0;
};
SwfActionList BuildPreloadCheck(const PreloadScriptSettings& settings);

}  // namespace quillet
