// Sharing characters between movies: ExportAssets and ImportAssets.
#pragma once

#include <string>
#include <vector>

#include "swf/SwfTag.h"

namespace quillet {

struct SwfAsset {
    uint16_t id = 0;
    std::string name;
    bool operator==(const SwfAsset&) const = default;
};

class ExportAssetsTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::ExportAssets; }
    void OffsetIds(int16_t delta) override;
    std::vector<SwfAsset> assets;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

class ImportAssetsTag final : public SwfTag {
public:
    uint16_t Code() const override { return SwfTagCode::ImportAssets; }
    void OffsetIds(int16_t delta) override;
    std::string url;
    std::vector<SwfAsset> assets;

protected:
    void WriteBody(SwfStream& body) const override;
    void ReadBody(SwfInput& body) override;
};

}  // namespace quillet
