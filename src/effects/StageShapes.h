// Shapes and masks the transitions draw with: solid polygons on the stage,
// morph shapes whose polygons move between two states (one definition, a
// ratio per frame), and clip-depth masks over a slide or a copy of it.
//
// Masks live on the main timeline: the mask takes a fresh depth and clips
// the depth right above it, where the masked slide (or copy) is placed.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "effects/SlideRender.h"
#include "swf/SwfRecords.h"

namespace quillet {

using StagePoint = std::pair<int32_t, int32_t>;  // twips
using StagePolygon = std::vector<StagePoint>;     // closed; any winding

// A rectangle as a four-point polygon (top-left, top-right, bottom-right, bottom-left).
StagePolygon RectanglePolygon(int32_t x, int32_t y, int32_t width, int32_t height);

// Defines a shape of the polygons filled solid black (only the area matters
// to a mask) and returns its id. Polygons must not overlap: where two of one
// shape overlap, the player leaves the overlap empty.
uint16_t DefinePolygons(const std::vector<StagePolygon>& polygons, MovieContext& ctx,
                        SwfColor color = SwfColor(0, 0, 0));

// Defines a morph shape whose polygons move from `start` to `end`, point by
// point (both lists hold the same number of polygons, each with the same
// number of points), filled solid black, and returns its id. A polygon may
// collapse to a line or a point at either end.
uint16_t DefineMorphPolygons(const std::vector<StagePolygon>& start, const std::vector<StagePolygon>& end,
                             MovieContext& ctx);

// The morph ratio for a progress from 0 to 1 (clamped): 0..65535.
uint16_t MorphRatio(double progress);

// Places `maskId` on a fresh depth as a mask over the slide, moves the slide
// to the depth right above for good (later tags for it address it there) and
// places it with PlaceSlide. Returns the mask's depth; 0 (and only the slide
// placed) for a slide without a character.
uint16_t PlaceMaskedSlide(SlideOnStage* slide, uint16_t maskId, MovieContext& ctx, const SwfMatrix& maskMatrix = {},
                          std::optional<uint16_t> ratio = std::nullopt);

// Places `maskId` on a fresh depth as a mask over a copy of the slide (its
// current matrix) on the depth right above. Returns the copy's depth (the
// mask's is one less); 0 for a null slide or one without a character.
uint16_t PlaceMaskedCopy(const SlideOnStage* slide, uint16_t maskId, MovieContext& ctx,
                         const SwfMatrix& maskMatrix = {}, std::optional<uint16_t> ratio = std::nullopt);

// Moves what is at `depth` (a mask) by a matrix and/or a morph ratio.
void ModifyMask(uint16_t depth, const SwfMatrix& matrix, std::optional<uint16_t> ratio, MovieContext& ctx);

// Removes whatever is at the depth; nothing for depth 0.
void RemoveDepth(uint16_t depth, MovieContext& ctx);

}  // namespace quillet
