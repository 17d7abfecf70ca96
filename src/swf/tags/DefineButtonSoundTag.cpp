// DefineButtonSound: four state-change sounds of a button.
#include "swf/tags/ButtonTags.h"

namespace quillet {

void DefineButtonSoundTag::OffsetIds(int16_t delta) {
    buttonId = Offset(buttonId, delta);
    for (auto& s : soundIds)
        if (s != 0) s = Offset(s, delta);
}

void DefineButtonSoundTag::WriteBody(SwfStream& body) const {
    body.WriteU16(buttonId);
    for (size_t i = 0; i < 4; ++i) {
        body.WriteU16(soundIds[i]);
        if (soundIds[i] != 0) soundInfos[i].Write(body);
    }
}

void DefineButtonSoundTag::ReadBody(SwfInput& body) {
    buttonId = body.ReadU16();
    for (size_t i = 0; i < 4; ++i) {
        soundIds[i] = body.ReadU16();
        soundInfos[i] = SwfSoundInfo();
        if (soundIds[i] != 0) soundInfos[i].Read(body);
    }
}

}  // namespace quillet
