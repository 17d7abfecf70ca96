#include "swf/SwfTag.h"

#include "swf/SwfTags.h"

namespace quillet {

const char* SwfTagName(uint16_t code) {
    switch (code) {
    case SwfTagCode::End: return "End";
    case SwfTagCode::ShowFrame: return "ShowFrame";
    case SwfTagCode::DefineShape: return "DefineShape";
    case SwfTagCode::FreeCharacter: return "FreeCharacter";
    case SwfTagCode::PlaceObject: return "PlaceObject";
    case SwfTagCode::RemoveObject: return "RemoveObject";
    case SwfTagCode::DefineBits: return "DefineBits";
    case SwfTagCode::DefineButton: return "DefineButton";
    case SwfTagCode::JPEGTables: return "JPEGTables";
    case SwfTagCode::SetBackgroundColor: return "SetBackgroundColor";
    case SwfTagCode::DefineFont: return "DefineFont";
    case SwfTagCode::DefineText: return "DefineText";
    case SwfTagCode::DoAction: return "DoAction";
    case SwfTagCode::DefineFontInfo: return "DefineFontInfo";
    case SwfTagCode::DefineSound: return "DefineSound";
    case SwfTagCode::StartSound: return "StartSound";
    case SwfTagCode::DefineButtonSound: return "DefineButtonSound";
    case SwfTagCode::SoundStreamHead: return "SoundStreamHead";
    case SwfTagCode::SoundStreamBlock: return "SoundStreamBlock";
    case SwfTagCode::DefineBitsLossless: return "DefineBitsLossless";
    case SwfTagCode::DefineBitsJPEG2: return "DefineBitsJPEG2";
    case SwfTagCode::DefineShape2: return "DefineShape2";
    case SwfTagCode::DefineButtonCxform: return "DefineButtonCxform";
    case SwfTagCode::Protect: return "Protect";
    case SwfTagCode::PlaceObject2: return "PlaceObject2";
    case SwfTagCode::RemoveObject2: return "RemoveObject2";
    case SwfTagCode::DefineShape3: return "DefineShape3";
    case SwfTagCode::DefineText2: return "DefineText2";
    case SwfTagCode::DefineButton2: return "DefineButton2";
    case SwfTagCode::DefineBitsJPEG3: return "DefineBitsJPEG3";
    case SwfTagCode::DefineBitsLossless2: return "DefineBitsLossless2";
    case SwfTagCode::DefineEditText: return "DefineEditText";
    case SwfTagCode::DefineSprite: return "DefineSprite";
    case SwfTagCode::FrameLabel: return "FrameLabel";
    case SwfTagCode::SoundStreamHead2: return "SoundStreamHead2";
    case SwfTagCode::DefineMorphShape: return "DefineMorphShape";
    case SwfTagCode::DefineFont2: return "DefineFont2";
    case SwfTagCode::ExportAssets: return "ExportAssets";
    case SwfTagCode::ImportAssets: return "ImportAssets";
    case SwfTagCode::EnableDebugger: return "EnableDebugger";
    case SwfTagCode::DoInitAction: return "DoInitAction";
    case SwfTagCode::DefineVideoStream: return "DefineVideoStream";
    case SwfTagCode::VideoFrame: return "VideoFrame";
    case SwfTagCode::DefineFontInfo2: return "DefineFontInfo2";
    case SwfTagCode::EnableDebugger2: return "EnableDebugger2";
    case SwfTagCode::ScriptLimits: return "ScriptLimits";
    case SwfTagCode::SetTabIndex: return "SetTabIndex";
    case SwfTagCode::FileAttributes: return "FileAttributes";
    case SwfTagCode::PlaceObject3: return "PlaceObject3";
    case SwfTagCode::ImportAssets2: return "ImportAssets2";
    case SwfTagCode::DefineFontAlignZones: return "DefineFontAlignZones";
    case SwfTagCode::CSMTextSettings: return "CSMTextSettings";
    case SwfTagCode::DefineFont3: return "DefineFont3";
    case SwfTagCode::SymbolClass: return "SymbolClass";
    case SwfTagCode::Metadata: return "Metadata";
    case SwfTagCode::DefineScalingGrid: return "DefineScalingGrid";
    case SwfTagCode::DoABC: return "DoABC";
    case SwfTagCode::DefineShape4: return "DefineShape4";
    case SwfTagCode::DefineMorphShape2: return "DefineMorphShape2";
    case SwfTagCode::DefineSceneAndFrameLabelData: return "DefineSceneAndFrameLabelData";
    case SwfTagCode::DefineBinaryData: return "DefineBinaryData";
    case SwfTagCode::DefineFontName: return "DefineFontName";
    case SwfTagCode::StartSound2: return "StartSound2";
    case SwfTagCode::DefineBitsJPEG4: return "DefineBitsJPEG4";
    case SwfTagCode::DefineFont4: return "DefineFont4";
    default: return "Unknown";
    }
}

size_t SwfTag::Read(SwfInput& body) {
    const size_t start = body.Position();
    ReadBody(body);
    return body.Position() - start;
}

size_t SwfTag::Write(SwfStream& out) {
    Prepare();
    SwfStream body;
    body.version = out.version;
    body.muted = out.muted;
    body.lend = out.lend;
    WriteBody(body);
    body.Align();
    const uint32_t before = out.Size();
    out.Align();
    WriteHeader(out, body.Size(), ForceLongHeader());
    out.WriteStream(body);
    return out.Size() - before;
}

void SwfTag::WriteHeader(SwfStream& out, uint32_t bodyLength, bool forceLong) const {
    const uint16_t c = static_cast<uint16_t>(Code() << 6);
    if (!forceLong && bodyLength < 63) {
        out.WriteU16(static_cast<uint16_t>(c | (bodyLength & 0x3F)));
    } else {
        out.WriteU16(static_cast<uint16_t>(c | 63));
        out.WriteU32(bodyLength);
    }
}

std::unique_ptr<SwfTag> CreateSwfTag(uint16_t code) {
    switch (code) {
    case SwfTagCode::End: return std::make_unique<EndTag>();
    case SwfTagCode::ShowFrame: return std::make_unique<ShowFrameTag>();
    case SwfTagCode::DefineShape: return std::make_unique<DefineShapeTag>();
    case SwfTagCode::FreeCharacter: return std::make_unique<FreeCharacterTag>();
    case SwfTagCode::PlaceObject: return std::make_unique<PlaceObjectTag>();
    case SwfTagCode::RemoveObject: return std::make_unique<RemoveObjectTag>();
    case SwfTagCode::DefineBits: return std::make_unique<DefineBitsTag>();
    case SwfTagCode::DefineButton: return std::make_unique<DefineButtonTag>();
    case SwfTagCode::JPEGTables: return std::make_unique<JPEGTablesTag>();
    case SwfTagCode::SetBackgroundColor: return std::make_unique<SetBackgroundColorTag>();
    case SwfTagCode::DefineFont: return std::make_unique<DefineFontTag>();
    case SwfTagCode::DefineText: return std::make_unique<DefineTextTag>();
    case SwfTagCode::DoAction: return std::make_unique<DoActionTag>();
    case SwfTagCode::DefineFontInfo: return std::make_unique<DefineFontInfoTag>();
    case SwfTagCode::DefineSound: return std::make_unique<DefineSoundTag>();
    case SwfTagCode::StartSound: return std::make_unique<StartSoundTag>();
    case SwfTagCode::DefineButtonSound: return std::make_unique<DefineButtonSoundTag>();
    case SwfTagCode::SoundStreamHead: return std::make_unique<SoundStreamHeadTag>();
    case SwfTagCode::SoundStreamBlock: return std::make_unique<SoundStreamBlockTag>();
    case SwfTagCode::DefineBitsLossless: return std::make_unique<DefineBitsLosslessTag>();
    case SwfTagCode::DefineBitsJPEG2: return std::make_unique<DefineBitsJPEG2Tag>();
    case SwfTagCode::DefineShape2: return std::make_unique<DefineShape2Tag>();
    case SwfTagCode::DefineButtonCxform: return std::make_unique<DefineButtonCxformTag>();
    case SwfTagCode::PlaceObject2: return std::make_unique<PlaceObject2Tag>();
    case SwfTagCode::RemoveObject2: return std::make_unique<RemoveObject2Tag>();
    case SwfTagCode::DefineShape3: return std::make_unique<DefineShape3Tag>();
    case SwfTagCode::DefineText2: return std::make_unique<DefineText2Tag>();
    case SwfTagCode::DefineButton2: return std::make_unique<DefineButton2Tag>();
    case SwfTagCode::DefineBitsJPEG3: return std::make_unique<DefineBitsJPEG3Tag>();
    case SwfTagCode::DefineBitsLossless2: return std::make_unique<DefineBitsLossless2Tag>();
    case SwfTagCode::DefineEditText: return std::make_unique<DefineEditTextTag>();
    case SwfTagCode::DefineSprite: return std::make_unique<DefineSpriteTag>();
    case SwfTagCode::FrameLabel: return std::make_unique<FrameLabelTag>();
    case SwfTagCode::SoundStreamHead2: return std::make_unique<SoundStreamHead2Tag>();
    case SwfTagCode::DefineMorphShape: return std::make_unique<DefineMorphShapeTag>();
    case SwfTagCode::DefineFont2: return std::make_unique<DefineFont2Tag>();
    case SwfTagCode::ExportAssets: return std::make_unique<ExportAssetsTag>();
    case SwfTagCode::ImportAssets: return std::make_unique<ImportAssetsTag>();
    case SwfTagCode::EnableDebugger: return std::make_unique<EnableDebuggerTag>();
    case SwfTagCode::DoInitAction: return std::make_unique<DoInitActionTag>();
    case SwfTagCode::DefineVideoStream: return std::make_unique<DefineVideoStreamTag>();
    case SwfTagCode::VideoFrame: return std::make_unique<VideoFrameTag>();
    case SwfTagCode::DefineFontInfo2: return std::make_unique<DefineFontInfo2Tag>();
    case SwfTagCode::EnableDebugger2: return std::make_unique<EnableDebugger2Tag>();
    default: return nullptr;
    }
}

std::vector<uint8_t> SerializeTag(SwfTag& tag, uint8_t version) {
    SwfStream s;
    s.version = version;
    tag.Write(s);
    return s.Bytes();
}

}  // namespace quillet
