// A transition written into a real movie file, read back with our SWF reader
// and replayed on a small model of the player's display list: depths,
// characters, matrices, colour transforms, clip-depth masks and morph ratios
// of straight- and curve-edged shapes. Sampling the stage at points shows
// what a screenshot would not: a mask drawn instead of clipping, a zoomed
// outgoing slide jumping off its camera position, a slide a twip off.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "effects/SlideRender.h"
#include "effects/Transition.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

namespace quillet::test {

constexpr int32_t kStageW = 640 * 20, kStageH = 480 * 20;
constexpr uint16_t kOutId = 5, kInId = 10;

struct Point {
    double x, y;
};
using Outline = std::vector<std::vector<Point>>;

// The 2x3 matrix as doubles: x' = a x + c y + tx, y' = b x + d y + ty.
struct Affine {
    double a, b, c, d, tx, ty;
    explicit Affine(const SwfMatrix& m);
    Affine(double a_, double b_, double c_, double d_, double x, double y) : a(a_), b(b_), c(c_), d(d_), tx(x), ty(y) {}
    Affine operator*(const Affine& in) const;
    // The point in the character's own frame; none when the matrix squashes it flat.
    std::optional<Point> Inverse(Point p) const;
};

// A shape's paths from its records, curves cut into short straight pieces.
Outline Trace(const std::vector<SwfShapeRecord>& records);
// Even-odd over all paths, each closed, as the player fills one shape.
bool Inside(const Outline& outline, Point p);

struct Layer {
    uint16_t character = 0;
    SwfMatrix matrix;
    int alpha = 256;
    uint16_t ratio = 0, clipDepth = 0;
    std::optional<SwfColorTransformAlpha> colour;
};

// What shows at a stage point: how much of each slide and of anything else
// (0..1, after the opacity of everything above), where in its picture the
// topmost copy of each slide shows, and whose picture is topmost whatever
// its opacity (0: none).
struct Seen {
    double in = 0, out = 0, other = 0;
    std::optional<Point> inAt, outAt;
    uint16_t top = 0;
};

// The incoming slide filling the stage, and one a little smaller than the
// stage and off its centre. The outgoing slide (kOutId, depth 1) always fills
// the stage after a camera zoom to 1.2.
inline const SlideOnStage kFullIncoming{kInId, 2, SwfMatrix(), 0, 0, kStageW, kStageH, 2, ""};
inline const SlideOnStage kSmallIncoming{kInId, 2, SwfMatrix(), 300, 180, 12000, 9000, 2, ""};

struct StageSetup {
    SlideOnStage in = kSmallIncoming;
    bool withOutgoing = true;
    int32_t width = kStageW, height = kStageH;
};

// One transition rendered with the counters at id 10 and depth 2, then played
// frame by frame. Placing on a used depth, or changing or removing a free
// one, fails the test as it is played.
class Stage {
public:
    Stage(Transition& t, uint32_t ms, float fps, const StageSetup& setup = {});
    Stage(std::unique_ptr<Transition> t, uint32_t ms, float fps, const StageSetup& setup = {})
        : Stage(*t, ms, fps, setup) {}

    int Frames() const { return int(frames.size()) - 1; }
    // The last (or first) PlaceObject2 for `depth` before ShowFrame number `frame` (0-based).
    PlaceObject2Tag* Place(size_t frame, uint16_t depth, bool first = false) const;
    // The alpha multiplier placed at a depth in a frame (the colour left alone); -1 when none.
    int Alpha(size_t frame, uint16_t depth) const;
    bool Removes(size_t frame, uint16_t depth) const;

    // Plays up to and including frame `frame` (1-based), in order;
    // Frames() + 1 also plays what follows the last ShowFrame.
    void PlayTo(int frame);
    void PlayAll() { PlayTo(Frames() + 1); }
    Seen At(Point p) const;
    // The outline of what is at a depth, in its own coordinates, at its ratio.
    const Outline& ShapeAt(const Layer& layer) const;
    // The first mask on the display list, or null.
    const Layer* FirstMask() const;

    SlideOnStage in, out;
    int32_t width, height;
    uintmax_t bytes = 0;
    std::vector<std::vector<SwfTag*>> frames;  // tags of each frame; the last entry trails the last ShowFrame
    std::map<uint16_t, Layer> list;            // by depth, as played so far

private:
    void Apply(SwfTag* tag);

    SwfReader reader_;
    std::map<uint16_t, Outline> shapes_;
    std::map<uint16_t, std::pair<Outline, Outline>> morphs_;
    mutable std::map<std::pair<uint16_t, uint16_t>, Outline> mixed_;  // by character and ratio
    int played_ = 0;
};

// A registry transition with some options set, and its name for traces.
struct Variant {
    std::string name;
    std::vector<std::pair<size_t, double>> options;
    std::unique_ptr<Transition> Make() const;
    std::string Describe() const;
};

// Cell centres of a columns x rows grid over a rectangle.
std::vector<Point> Grid(double x, double y, double w, double h, int columns, int rows);
bool InSlide(const SlideOnStage& s, Point p);

}  // namespace quillet::test
