// What the overlay effects build from: filled shapes with alpha, and sprites
// that run a program every frame.
//
// Each effect is a sprite of two frames that loops by itself, both frames
// carrying the same program, so the program runs once per frame of the
// movie without a goto (a goto would run the target frame's script a
// second time). A program starts with a one-time part guarded by `inited`.
// Particles are copies (duplicateMovieClip) of a template clip placed in the
// effect's first frame; the template itself hides and stops, and every copy
// moves itself with the same program.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "effects/SlideRender.h"
#include "swf/SwfShape.h"

namespace quillet {

// Depth of the first particle copy: copies made by script live above the
// depths a timeline uses.
inline constexpr int kFirstCopyDepth = 16384;

// A closed clockwise circle (eight quadratic curves) around cx, cy, in twips.
void AddCircle(SwfShapeBuilder& shape, int32_t cx, int32_t cy, int32_t radius);
// A radial gradient spread over a circle of `radius` twips around cx, cy.
SwfFillStyle RadialFill(int32_t cx, int32_t cy, int32_t radius, std::vector<SwfGradientRecord> stops);
// Writes the shape as a DefineShape3 (colours with alpha) and returns its id.
uint16_t DefineAlphaShape(const SwfShapeBuilder& shape, MovieContext& ctx);

struct PartPlacement {
    uint16_t characterId = 0;
    std::string name;  // instance name, for the program to address it
    SwfMatrix matrix;
};

// A two-frame looping sprite: `parts` placed on its first frame at depths 1,
// 2, ..., `program` run on every frame. Returns its id. Without a program,
// a still sprite of one frame (a part a program moves by its instance name).
uint16_t DefineProgramSprite(const std::vector<PartPlacement>& parts, const std::string& program, MovieContext& ctx);

// The program of a particle: a copy runs `init` once and `update` on every
// frame; the template (instance name `templateName`) hides and stops.
std::string ParticleProgram(const std::string& templateName, const std::string& init, const std::string& update);
// The program of an effect: `init` once, `tick` on every frame.
std::string EffectProgram(const std::string& init, const std::string& tick);
// Program text making `count` copies of the template: templateName1 ..
// templateNameN at depths from kFirstCopyDepth on.
std::string CopyLoop(const std::string& templateName, int count);

// The program text with every {name} replaced by its number.
std::string FillIn(std::string text, const std::vector<std::pair<std::string, double>>& values);

// The particle count for a stage: `per640x480` on a 640x480 stage, scaled by
// the stage's area and held to [minimum, maximum] so playback keeps its pace.
int ParticleCount(const MovieContext& ctx, int per640x480, int minimum, int maximum);
// The stage in pixels.
double StagePixelsWide(const MovieContext& ctx);
double StagePixelsHigh(const MovieContext& ctx);

}  // namespace quillet
