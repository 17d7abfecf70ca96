#include "swf/tags/PlaceObject2Tag.h"

namespace quillet {

std::unique_ptr<PlaceObject2Tag> PlaceObject2Tag::Place(uint16_t depth, uint16_t characterId,
                                                        std::optional<SwfMatrix> matrix,
                                                        std::optional<SwfColorTransformAlpha> colorTransform) {
    auto t = std::make_unique<PlaceObject2Tag>();
    t->depth = depth;
    t->characterId = characterId;
    t->matrix = matrix;
    t->colorTransform = colorTransform;
    return t;
}

std::unique_ptr<PlaceObject2Tag> PlaceObject2Tag::Modify(uint16_t depth, std::optional<SwfMatrix> matrix,
                                                         std::optional<SwfColorTransformAlpha> colorTransform) {
    auto t = std::make_unique<PlaceObject2Tag>();
    t->move = true;
    t->depth = depth;
    t->matrix = matrix;
    t->colorTransform = colorTransform;
    return t;
}

std::unique_ptr<PlaceObject2Tag> PlaceObject2Tag::Replace(uint16_t depth, uint16_t characterId) {
    auto t = std::make_unique<PlaceObject2Tag>();
    t->move = true;
    t->depth = depth;
    t->characterId = characterId;
    return t;
}

void PlaceObject2Tag::OffsetIds(int16_t delta) {
    if (characterId) characterId = Offset(*characterId, delta);
}

namespace {

void WriteEventFlags(SwfStream& out, uint32_t flags, uint8_t version) {
    if (version >= 6) out.WriteU32(flags);
    else out.WriteU16(static_cast<uint16_t>(flags));
}

uint32_t ReadEventFlags(SwfInput& in) { return in.version >= 6 ? in.ReadU32() : in.ReadU16(); }

// Everything in front of the name; shared by the writer and NameOffsetInBody.
void WriteHead(const PlaceObject2Tag& t, SwfStream& body) {
    uint8_t flags = 0;
    if (!t.clipActions.empty()) flags |= 0x80;
    if (t.clipDepth) flags |= 0x40;
    if (t.name) flags |= 0x20;
    if (t.ratio) flags |= 0x10;
    if (t.colorTransform) flags |= 0x08;
    if (t.matrix) flags |= 0x04;
    if (t.characterId) flags |= 0x02;
    if (t.move) flags |= 0x01;
    body.WriteU8(flags);
    body.WriteU16(t.depth);
    if (t.characterId) body.WriteU16(*t.characterId);
    if (t.matrix) {
        t.matrix->Write(body);
        body.Align();
    }
    if (t.colorTransform) {
        t.colorTransform->Write(body);
        body.Align();
    }
    if (t.ratio) body.WriteU16(*t.ratio);
}

}  // namespace

int PlaceObject2Tag::NameOffsetInBody() const {
    if (!name) return -1;
    SwfStream s;
    WriteHead(*this, s);
    return static_cast<int>(s.Size());
}

void PlaceObject2Tag::WriteBody(SwfStream& body) const {
    WriteHead(*this, body);
    if (name) body.WriteString(*name);
    if (clipDepth) body.WriteU16(*clipDepth);
    if (!clipActions.empty()) {
        uint32_t all = 0;
        for (const auto& a : clipActions) all |= a.events;
        body.WriteU16(0);
        WriteEventFlags(body, all, body.version);
        for (const auto& a : clipActions) {
            WriteEventFlags(body, a.events, body.version);
            SwfStream record;
            record.version = body.version;
            if (body.version >= 6 && (a.events & SwfClipAction::kKeyPress)) record.WriteU8(a.keyCode);
            a.actions.Write(record, true);
            body.WriteU32(record.Size());
            body.WriteStream(record);
        }
        WriteEventFlags(body, 0, body.version);
    }
}

void PlaceObject2Tag::ReadBody(SwfInput& body) {
    const uint8_t flags = body.ReadU8();
    move = flags & 0x01;
    depth = body.ReadU16();
    characterId.reset();
    matrix.reset();
    colorTransform.reset();
    ratio.reset();
    name.reset();
    clipDepth.reset();
    clipActions.clear();
    if (flags & 0x02) characterId = body.ReadU16();
    if (flags & 0x04) {
        SwfMatrix m;
        m.Read(body);
        body.Align();
        matrix = m;
    }
    if (flags & 0x08) {
        SwfColorTransformAlpha c;
        c.Read(body);
        colorTransform = c;
    }
    if (flags & 0x10) ratio = body.ReadU16();
    if (flags & 0x20) name = body.ReadString();
    if (flags & 0x40) clipDepth = body.ReadU16();
    if (flags & 0x80) {
        body.ReadU16();  // reserved
        allEventFlags = ReadEventFlags(body);
        while (body.ok()) {
            const uint32_t events = ReadEventFlags(body);
            if (events == 0 || !body.ok()) break;
            const uint32_t size = body.ReadU32();
            SwfInput record = body.Sub(size);
            if (!body.ok()) break;
            SwfClipAction action;
            action.events = events;
            if (body.version >= 6 && (events & SwfClipAction::kKeyPress)) action.keyCode = record.ReadU8();
            action.actions.Read(record, true);
            if (!record.ok()) {
                body.Fail("clip action: " + record.error());
                break;
            }
            clipActions.push_back(std::move(action));
        }
    }
}

}  // namespace quillet
