// Copies the tags of another movie (a control set, an imported preloader)
// into the movie being written.
//
//   ImportedMovie set;
//   if (!ReadImportedMovie(path, set, &error)) ...;          // before any file is touched
//   uint16_t clipId = CopyAsSprite(std::move(set), ctx);      // its timeline as one clip
//   CopyIntoTimeline(std::move(preloader), ctx, &depths);     // its frames on the main timeline
//
// Definitions go to the main timeline with their ids moved past the ids
// handed out so far, by one offset (min id -> next id), so the copy keeps its
// own order and the counter advances by the span of ids the movie uses.
// Timeline tags either become a sprite's timeline (depths stay, a sprite has
// its own) or are written on the main timeline with their depths moved past
// the depths handed out so far.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "effects/SlideRender.h"
#include "swf/SwfTag.h"
#include "swf/SwfWriter.h"

namespace quillet {

struct ImportedMovie {
    std::string path;
    std::vector<uint8_t> bytes;  // the file as read, for further copies
    SwfHeader header;
    std::vector<std::unique_ptr<SwfTag>> tags;  // without End and the movie-wide tags

    int WidthPixels() const { return header.frameSize.Width() / 20; }
    int HeightPixels() const { return header.frameSize.Height() / 20; }
    // Lowest and highest character id defined (0, 0 when none).
    uint16_t MinId() const;
    uint16_t MaxId() const;
    // Highest depth its main timeline places at.
    uint16_t MaxDepth() const;
};

// Reads a movie for copying. Drops what belongs to a whole movie
// (background colour, file attributes, metadata, protection, debugger,
// script limits, End). Refuses, with a reason, an unreadable movie and one
// holding a tag we keep as raw bytes (its ids could not be moved).
bool ReadImportedMovie(const std::string& path, ImportedMovie& out, std::string* error);
// The same bytes read again: a fresh copy for each movie written (the
// export writes the head twice, once only counting).
ImportedMovie FreshCopy(const ImportedMovie& movie);

// Whether the tag defines something (goes to the main timeline) rather than
// acting on a timeline.
bool IsDefinitionTag(const SwfTag& tag);

// Moves every id the tags define or use so that `movie`'s lowest id becomes
// nextCharacterId + 1, and advances the counter past its highest.
void ShiftIds(ImportedMovie& movie, uint32_t& nextCharacterId);
// Adds `delta` to the depth of every placement and removal (and the clip
// depth of masks) of a timeline; a sprite's own timeline is left alone.
void ShiftDepths(std::vector<std::unique_ptr<SwfTag>>& timeline, uint16_t delta);

// Writes the definitions, then a sprite holding the timeline tags, and
// returns the sprite's id (a fresh one).
uint16_t CopyAsSprite(ImportedMovie movie, MovieContext& ctx);
// Writes the definitions and the timeline tags (frames included) on the main
// timeline, with depths moved past ctx.nextDepth, which advances by the
// movie's highest depth. `placed` receives every depth the copy places at.
void CopyIntoTimeline(ImportedMovie movie, MovieContext& ctx, std::set<uint16_t>* placed);

}  // namespace quillet
