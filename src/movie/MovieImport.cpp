#include "movie/MovieImport.h"

#include <algorithm>

#include "io/ReadFile.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

namespace quillet {

namespace {

bool IsMovieWide(uint16_t code) {
    switch (code) {
        case SwfTagCode::End:
        case SwfTagCode::SetBackgroundColor:
        case SwfTagCode::FileAttributes:
        case SwfTagCode::Metadata:
        case SwfTagCode::Protect:
        case SwfTagCode::EnableDebugger:
        case SwfTagCode::EnableDebugger2:
        case SwfTagCode::ScriptLimits:
            return true;
        default:
            return false;
    }
}

bool IsTimelineTag(uint16_t code) {
    switch (code) {
        case SwfTagCode::ShowFrame:
        case SwfTagCode::PlaceObject:
        case SwfTagCode::PlaceObject2:
        case SwfTagCode::RemoveObject:
        case SwfTagCode::RemoveObject2:
        case SwfTagCode::DoAction:
        case SwfTagCode::FrameLabel:
        case SwfTagCode::StartSound:
        case SwfTagCode::SoundStreamHead:
        case SwfTagCode::SoundStreamHead2:
        case SwfTagCode::SoundStreamBlock:
        case SwfTagCode::VideoFrame:
            return true;
        default:
            return false;
    }
}

// The depth a timeline tag acts on, null for the others.
uint16_t* DepthOf(SwfTag& tag) {
    if (auto* p = dynamic_cast<PlaceObject2Tag*>(&tag)) return &p->depth;
    if (auto* p = dynamic_cast<PlaceObjectTag*>(&tag)) return &p->depth;
    if (auto* r = dynamic_cast<RemoveObject2Tag*>(&tag)) return &r->depth;
    if (auto* r = dynamic_cast<RemoveObjectTag*>(&tag)) return &r->depth;
    return nullptr;
}

bool IsPlacement(const SwfTag& tag) {
    if (const auto* p = dynamic_cast<const PlaceObject2Tag*>(&tag)) return !p->move || p->characterId.has_value();
    return tag.Code() == SwfTagCode::PlaceObject;
}

}  // namespace

uint16_t ImportedMovie::MinId() const {
    uint16_t low = 0;
    for (const auto& tag : tags)
        if (tag->HasId() && (low == 0 || tag->GetId() < low)) low = tag->GetId();
    return low;
}

uint16_t ImportedMovie::MaxId() const {
    uint16_t high = 0;
    for (const auto& tag : tags)
        if (tag->HasId()) high = std::max(high, tag->GetId());
    return high;
}

uint16_t ImportedMovie::MaxDepth() const {
    uint16_t high = 0;
    for (const auto& tag : tags) {
        if (uint16_t* depth = DepthOf(*tag)) high = std::max(high, *depth);
        if (const auto* p = dynamic_cast<const PlaceObject2Tag*>(tag.get()); p && p->clipDepth)
            high = std::max(high, *p->clipDepth);
    }
    return high;
}

bool IsDefinitionTag(const SwfTag& tag) { return !IsTimelineTag(tag.Code()); }

namespace {

bool Parse(ImportedMovie& out, std::string* error) {
    auto fail = [&](const std::string& why) {
        if (error) *error = why;
        return false;
    };
    SwfReader reader;
    if (!reader.ReadMemory(out.bytes.data(), out.bytes.size())) return fail(reader.Error());
    out.header = reader.Header();
    out.tags.clear();
    for (auto& tag : reader.TakeTags()) {
        if (IsMovieWide(tag->Code())) continue;
        if (dynamic_cast<SwfRawTag*>(tag.get()))
            return fail(std::string("it holds a ") + SwfTagName(tag->Code()) + " tag (code " +
                        std::to_string(tag->Code()) + "), which cannot be copied into a show");
        out.tags.push_back(std::move(tag));
    }
    return true;
}

}  // namespace

bool ReadImportedMovie(const std::string& path, ImportedMovie& out, std::string* error) {
    out.path = path;
    if (!ReadFileLimited(path, SwfReader::kMaxMovieBytes, out.bytes, error)) return false;
    return Parse(out, error);
}

ImportedMovie FreshCopy(const ImportedMovie& movie) {
    ImportedMovie copy;
    copy.path = movie.path;
    copy.bytes = movie.bytes;
    Parse(copy, nullptr);  // read once already
    return copy;
}

void ShiftIds(ImportedMovie& movie, uint32_t& nextCharacterId) {
    const uint16_t low = movie.MinId(), high = movie.MaxId();
    if (low == 0) return;
    // Ids are 16-bit: the offset works modulo 65536 either way.
    const int32_t delta = static_cast<int32_t>(nextCharacterId + 1) - low;
    if (delta != 0)
        for (auto& tag : movie.tags) tag->OffsetIds(static_cast<int16_t>(delta));
    nextCharacterId += static_cast<uint32_t>(high - low) + 1;
}

void ShiftDepths(std::vector<std::unique_ptr<SwfTag>>& timeline, uint16_t delta) {
    for (auto& tag : timeline) {
        if (uint16_t* depth = DepthOf(*tag)) *depth = static_cast<uint16_t>(*depth + delta);
        if (auto* p = dynamic_cast<PlaceObject2Tag*>(tag.get()); p && p->clipDepth)
            p->clipDepth = static_cast<uint16_t>(*p->clipDepth + delta);
    }
}

uint16_t CopyAsSprite(ImportedMovie movie, MovieContext& ctx) {
    ShiftIds(movie, ctx.nextCharacterId);
    std::vector<std::unique_ptr<SwfTag>> timeline;
    for (auto& tag : movie.tags) {
        if (IsDefinitionTag(*tag)) ctx.movie.AddTag(std::move(tag));
        else timeline.push_back(std::move(tag));
    }
    auto sprite = std::make_unique<DefineSpriteTag>(ctx.NewCharacterId());
    for (auto& tag : timeline) sprite->Add(std::move(tag));
    // A movie of definitions alone still makes a clip of one frame.
    if (sprite->FrameCount() == 0) sprite->Add(std::make_unique<ShowFrameTag>());
    const uint16_t id = sprite->GetId();
    ctx.movie.AddTag(std::move(sprite));
    return id;
}

void CopyIntoTimeline(ImportedMovie movie, MovieContext& ctx, std::set<uint16_t>* placed) {
    ShiftIds(movie, ctx.nextCharacterId);
    const uint16_t delta = static_cast<uint16_t>(ctx.nextDepth);
    const uint16_t highest = movie.MaxDepth();
    ShiftDepths(movie.tags, delta);
    for (auto& tag : movie.tags) {
        if (placed && IsPlacement(*tag)) placed->insert(*DepthOf(*tag));
        ctx.movie.AddTag(std::move(tag));
    }
    ctx.nextDepth += highest;
}

}  // namespace quillet
