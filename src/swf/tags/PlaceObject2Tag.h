#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "swf/SwfAction.h"
#include "swf/SwfRecords.h"
#include "swf/SwfTag.h"

namespace quillet {

// One clip event handler of a placed sprite (PlaceObject2 clip actions).
struct SwfClipAction {
    // Event bits as the u32 of SWF 6 and later reads them: byte 0 holds
    // KeyUp 0x80, KeyDown 0x40, MouseUp 0x20, MouseDown 0x10, MouseMove 0x08,
    // Unload 0x04, EnterFrame 0x02, Load 0x01; byte 1 DragOver..Data; byte 2
    // Construct 0x04, KeyPress 0x02, DragOut 0x01. SWF 5 stores bytes 0-1 only.
    uint32_t events = 0;
    uint8_t keyCode = 0;  // with KeyPress
    SwfActionList actions;
    static constexpr uint32_t kKeyPress = 0x020000;
    static constexpr uint32_t kLoad = 0x01, kEnterFrame = 0x02, kMouseDown = 0x10, kMouseUp = 0x20;
};

// PlaceObject2: places a new character at a depth, or (move) modifies what is
// there: matrix, colour transform with alpha, morph ratio, instance name,
// clip depth (masks), clip actions. Fields that are absent are not written.
//
//   auto p = PlaceObject2Tag::Place(depth, bitmapShapeId, SwfMatrix::Translate(x, y));
//   auto m = PlaceObject2Tag::Modify(depth); m->colorTransform = SwfColorTransformAlpha::Alpha(128);
class PlaceObject2Tag final : public SwfTag {
public:
    PlaceObject2Tag() = default;
    // A new character at an empty depth.
    static std::unique_ptr<PlaceObject2Tag> Place(uint16_t depth, uint16_t characterId,
                                                  std::optional<SwfMatrix> matrix = std::nullopt,
                                                  std::optional<SwfColorTransformAlpha> colorTransform = std::nullopt);
    // Changes to what is at the depth (move flag set, no character).
    static std::unique_ptr<PlaceObject2Tag> Modify(uint16_t depth,
                                                   std::optional<SwfMatrix> matrix = std::nullopt,
                                                   std::optional<SwfColorTransformAlpha> colorTransform = std::nullopt);
    // Replaces the character at a depth (move flag and a character).
    static std::unique_ptr<PlaceObject2Tag> Replace(uint16_t depth, uint16_t characterId);

    uint16_t Code() const override { return SwfTagCode::PlaceObject2; }
    void OffsetIds(int16_t delta) override;

    bool move = false;
    uint16_t depth = 0;
    std::optional<uint16_t> characterId;
    std::optional<SwfMatrix> matrix;
    std::optional<SwfColorTransformAlpha> colorTransform;
    std::optional<uint16_t> ratio;
    std::optional<std::string> name;
    std::optional<uint16_t> clipDepth;  // a mask: clips the depths up to this one
    std::vector<SwfClipAction> clipActions;
    uint32_t allEventFlags = 0;  // union of the clip actions' events; recomputed when written
    // Byte offset of the name string within the body, -1 without a name (the
    // writer's offset index uses it).
    int NameOffsetInBody() const;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
