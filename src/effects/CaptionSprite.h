// Captions in a movie: each face's font defined once with the glyphs the
// movie uses, each caption's text as a static text character inside a sprite
// of its own, whose timeline holds the wait before the caption's start, the
// entrance effect and the removal after its duration.
//
//   CaptionWriter captions(fonts);
//   captions.Collect(caption, "caption 1 of slide 3");  // every caption, before writing
//   uint16_t depth = captions.Place(caption, "caption 1 of slide 3", ctx);
//
// A caption's time is counted from the frame its sprite is placed in; the
// movie places a slide's captions in the first frame after its transition.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "effects/Caption.h"
#include "effects/SlideRender.h"

namespace quillet {

class FontCatalog;
class FontFace;

// What depth 1 of a caption's sprite shows while its entrance effect plays.
struct CaptionEffectFrame {
    int32_t x = 0, y = 0;     // translation, twips
    int32_t alphaMult = 256;  // 8.8 alpha multiplier
};

struct CaptionEffectPlan {
    bool fades = false;          // placed and modified with a colour transform
    CaptionEffectFrame start;    // as the text is placed
    // One entry per frame of the effect, each modifying the placement; empty
    // for "None" (one frame, the text as placed).
    std::vector<CaptionEffectFrame> frames;
};

// The entrance effect over n = the integer part of the frame rate frames (at
// least one), for a stage `stageWidth` twips wide. The moves travel the stage
// width in steps of W / n (truncated) whatever their direction, ending
// W mod n twips short of the caption's place.
CaptionEffectPlan PlanCaptionEffect(CaptionEffectKind kind, float fps, int32_t stageWidth);

// Frames from milliseconds, truncated as the slides' hold frames are.
int CaptionFrames(uint32_t milliseconds, float fps);

// How warnings name a caption: "caption 2 of slide 5", or "show caption 1"
// for slide 0 (the show's own captions). Both counted from 1.
std::string CaptionName(int caption, int slide);

// The show's own captions stand at the top depths, above every slide:
// the first at 65532, the next below it (the playback and mute controls
// take 65535 and 65534, the decorative frame 65533).
constexpr uint16_t kShowCaptionTopDepth = 65532;

class CaptionWriter {
public:
    explicit CaptionWriter(FontCatalog& fonts);

    // Notes the characters a caption draws and in which face, so that each
    // face is defined once with all of them. `where` names the caption in
    // warnings ("caption 2 of slide 5").
    void Collect(const Caption& caption, const std::string& where);
    // Writes what the caption needs (its font the first time, its text, its
    // sprite) and places the sprite at `depth`, or at a new depth when 0.
    // Returns the depth used; 0 when the caption draws nothing (empty text).
    uint16_t Place(const Caption& caption, const std::string& where, MovieContext& ctx, uint16_t depth = 0);

    // A line for each font that was not installed, naming it and the first
    // caption that asked for it.
    std::vector<std::string> Warnings() const;

private:
    struct FaceUse {
        std::set<char32_t> codes;
        uint16_t fontId = 0;  // 0 until defined
        std::map<char32_t, uint32_t> index;
    };
    struct Missing {
        std::string firstCaption;
        int captions = 0;
    };
    FontFace* FaceFor(const Caption& caption, const std::string& where);
    uint16_t DefineFont(FontFace& face, FaceUse& use, MovieContext& ctx);

    FontCatalog& fonts_;
    std::map<FontFace*, FaceUse> uses_;
    std::map<std::string, Missing> missing_;  // by font name
    std::set<std::string> counted_;           // captions already counted in missing_
};

}  // namespace quillet
