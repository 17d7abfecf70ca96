#include "swf/tags/DefineSpriteTag.h"

#include "swf/SwfReader.h"

namespace quillet {

void DefineSpriteTag::OffsetIds(int16_t delta) {
    id_ = Offset(id_, delta);
    for (auto& t : tags_) t->OffsetIds(delta);
}

SwfTag& DefineSpriteTag::Add(std::unique_ptr<SwfTag> tag) {
    locations_.clear();
    tags_.push_back(std::move(tag));
    return *tags_.back();
}

uint16_t DefineSpriteTag::FrameCount() const {
    if (frameCount_) return *frameCount_;
    uint16_t n = 0;
    for (const auto& t : tags_)
        if (t->Code() == SwfTagCode::ShowFrame) ++n;
    return n;
}

void DefineSpriteTag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    body.WriteU16(FrameCount());
    for (const auto& t : tags_) t->Write(body);
    if (tags_.empty() || tags_.back()->Code() != SwfTagCode::End) body.WriteU16(0);  // End
}

void DefineSpriteTag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    frameCount_ = body.ReadU16();
    tags_.clear();
    locations_.clear();
    if (!body.ok()) return;
    ++body.depth;
    ReadSwfTags(body, tags_, &locations_, 0);
    --body.depth;
}

}  // namespace quillet
