// Writes the frames of one slide: its picture character, the shape that
// shows it, the frame labels with their slide-index scripts, the entrance
// transition, the camera moves and the hold frames.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "effects/SlideRender.h"
#include "media/SlideImage.h"
#include "movie/MovieOverlays.h"

namespace quillet {

class CaptionWriter;
class Slide;
class SwfWriter;
struct BitmapCharacter;

struct SlideStepInput {
    const Slide* slide = nullptr;
    const SlideImage* image = nullptr;   // the picture settings exported (the slide's own when null)
    int index = 0;                       // 1-based
    BitmapCharacter* picture = nullptr;  // prepared ahead; null for a blank slide
    uint32_t backgroundColor = 0;        // 0x00RRGGBB, what a blank slide shows
    int stageWidth = 0, stageHeight = 0; // pixels
    std::string movieFolder;             // where the movie goes: pictures loaded at play time are found from there
    // Written into the slide's first full frame (after its transition): the
    // slide's click button, the gate that holds a show on its first slide
    // until a click... Depths added to `leaving` are cleared as the next
    // slide's transition starts.
    std::function<void(MovieContext&, const SlideOnStage& shown, std::vector<uint16_t>& leaving)> onShown;
};

// The address by which a movie in `movieFolder` finds a picture at play time:
// relative to the movie (a page serves them side by side), else the path itself.
std::string PictureUrl(const std::string& picturePath, const std::string& movieFolder);

class SlideStep {
public:
    SlideStep(SwfWriter& writer, float fps, uint32_t& nextCharacterId, uint32_t& nextDepth);

    // Writes slide `in.index`; `outgoing` is the slide shown before it (null
    // for the first). Returns the incoming slide's state on the stage, which
    // becomes the outgoing one of the next step.
    SlideOnStage WriteSlide(const SlideStepInput& in, SlideOnStage* outgoing);
    // The hold after the camera moves: trunc(duration * 0.001 * fps).
    static int HoldFrames(uint32_t durationMs, float fps);
    // Where the slides' captions are written; none without it.
    void SetCaptions(CaptionWriter* captions) { captions_ = captions; }

private:
    uint16_t DefinePicture(const SlideStepInput& in, SlideOnStage& stage);
    uint16_t DefineBackgroundShape(const SlideStepInput& in);
    void WriteLabel(const char* format, int index);

    SwfWriter& writer_;
    MovieContext ctx_;
    int externalCounter_ = 0;
    CaptionWriter* captions_ = nullptr;
    MovieOverlays overlays_;  // defined once per movie, shown over the slides that use them
    std::vector<uint16_t> leavingDepths_;  // the previous slide's captions and buttons, removed as the next comes on
};

}  // namespace quillet
