#include "swf/tags/AssetTags.h"

#include <algorithm>

namespace quillet {

namespace {

void WriteAssets(SwfStream& body, const std::vector<SwfAsset>& assets) {
    const size_t n = std::min<size_t>(assets.size(), 0xFFFF);
    body.WriteU16(static_cast<uint16_t>(n));
    for (size_t i = 0; i < n; ++i) {
        body.WriteU16(assets[i].id);
        body.WriteString(assets[i].name);
    }
}

void ReadAssets(SwfInput& body, std::vector<SwfAsset>& assets) {
    const uint16_t n = body.ReadU16();
    assets.clear();
    if (!body.Need(size_t(n) * 3, "asset list")) return;
    for (uint16_t i = 0; i < n && body.ok(); ++i) {
        SwfAsset a;
        a.id = body.ReadU16();
        a.name = body.ReadString();
        assets.push_back(std::move(a));
    }
}

}  // namespace

void ExportAssetsTag::OffsetIds(int16_t delta) {
    for (auto& a : assets) a.id = Offset(a.id, delta);
}

void ExportAssetsTag::WriteBody(SwfStream& body) const { WriteAssets(body, assets); }
void ExportAssetsTag::ReadBody(SwfInput& body) { ReadAssets(body, assets); }

void ImportAssetsTag::OffsetIds(int16_t delta) {
    for (auto& a : assets) a.id = Offset(a.id, delta);
}

void ImportAssetsTag::WriteBody(SwfStream& body) const {
    body.WriteString(url);
    WriteAssets(body, assets);
}

void ImportAssetsTag::ReadBody(SwfInput& body) {
    url = body.ReadString();
    ReadAssets(body, assets);
}

}  // namespace quillet
