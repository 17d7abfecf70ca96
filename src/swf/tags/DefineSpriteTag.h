#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "swf/SwfTag.h"
#include "swf/SwfTagLocation.h"

namespace quillet {

// A movie clip: its own timeline of control tags (placements, frames,
// labels, scripts, sounds), assembled into a stream of its own and written as
// one tag. The frame count is the number of ShowFrame tags unless set.
//
//   auto clip = std::make_unique<DefineSpriteTag>(id);
//   clip->Add(PlaceObject2Tag::Place(1, shapeId));
//   clip->Add(std::make_unique<ShowFrameTag>());
//   // End is added when the sprite is written if the list lacks it.
class DefineSpriteTag final : public SwfTag {
public:
    DefineSpriteTag() = default;
    explicit DefineSpriteTag(uint16_t id) { id_ = id; }
    uint16_t Code() const override { return SwfTagCode::DefineSprite; }
    bool HasId() const override { return true; }
    // Moves the sprite's own id and the ids its tags refer to.
    void OffsetIds(int16_t delta) override;

    SwfTag& Add(std::unique_ptr<SwfTag> tag);
    const std::vector<std::unique_ptr<SwfTag>>& Tags() const { return tags_; }
    std::vector<std::unique_ptr<SwfTag>>& Tags() { return tags_; }
    // The frame count written: the set value, else the ShowFrame tags counted.
    uint16_t FrameCount() const;
    void SetFrameCount(uint16_t frames) { frameCount_ = frames; }
    // Where each tag sat inside the body when the sprite was read (offsets
    // from the start of the body); empty for sprites built in code.
    const std::vector<SwfTagLocation>& Locations() const { return locations_; }

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;

private:
    std::vector<std::unique_ptr<SwfTag>> tags_;
    std::optional<uint16_t> frameCount_;
    std::vector<SwfTagLocation> locations_;
};

}  // namespace quillet
