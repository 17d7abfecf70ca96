// DefineButton2: button records with colour transforms and conditional actions.
#include "swf/tags/ButtonTags.h"

namespace quillet {

void DefineButton2Tag::OffsetIds(int16_t delta) {
    id_ = Offset(id_, delta);
    for (auto& r : records) r.characterId = Offset(r.characterId, delta);
}

void DefineButton2Tag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    body.WriteU8(trackAsMenu ? 1 : 0);
    SwfStream recs;
    recs.version = body.version;
    WriteButtonRecords(recs, records, true);
    // The offset counts from the offset field itself to the first action record.
    body.WriteU16(actions.empty() ? 0 : static_cast<uint16_t>(2 + recs.Size()));
    body.WriteStream(recs);
    for (size_t i = 0; i < actions.size(); ++i) {
        SwfStream list;
        list.version = body.version;
        actions[i].actions.Write(list, true);
        const bool last = i + 1 == actions.size();
        body.WriteU16(last ? 0 : static_cast<uint16_t>(4 + list.Size()));
        body.WriteU16(actions[i].conditions);
        body.WriteStream(list);
    }
}

void DefineButton2Tag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    trackAsMenu = body.ReadU8() & 1;
    const uint16_t actionOffset = body.ReadU16();
    ReadButtonRecords(body, records, true);
    actions.clear();
    if (actionOffset == 0 || !body.ok()) return;
    while (body.ok() && body.Remaining() > 0) {
        const uint16_t size = body.ReadU16();
        SwfButtonCondAction a;
        a.conditions = body.ReadU16();
        if (size != 0 && size < 4) {
            body.Fail("button action record shorter than its header");
            return;
        }
        SwfInput list = size == 0 ? body.Sub(body.Remaining()) : body.Sub(size - 4);
        a.actions.Read(list, true);
        if (!list.ok()) {
            body.Fail("button actions: " + list.error());
            return;
        }
        actions.push_back(std::move(a));
        if (size == 0) break;
    }
}

}  // namespace quillet
