// DefineButton: button records and one action list.
#include "swf/tags/ButtonTags.h"

namespace quillet {

void DefineButtonTag::OffsetIds(int16_t delta) {
    id_ = Offset(id_, delta);
    for (auto& r : records) r.characterId = Offset(r.characterId, delta);
}

void DefineButtonTag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    WriteButtonRecords(body, records, false);
    actions.Write(body, true);
}

void DefineButtonTag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    ReadButtonRecords(body, records, false);
    actions.clear();
    if (body.ok()) actions.Read(body, true);
}

}  // namespace quillet
