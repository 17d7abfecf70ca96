#include "swf/tags/DefineMorphShapeTag.h"

#include <algorithm>

namespace quillet {

namespace {

void WriteMorphFill(SwfStream& out, const SwfMorphFillStyle& f) {
    out.WriteU8(f.type);
    if (f.type == SwfFillStyle::Solid) {
        f.startColor.WriteRgba(out);
        f.endColor.WriteRgba(out);
    } else if (f.type == SwfFillStyle::LinearGradient || f.type == SwfFillStyle::RadialGradient) {
        f.startMatrix.Write(out);
        out.Align();
        f.endMatrix.Write(out);
        out.Align();
        const size_t n = std::min<size_t>(f.gradient.size(), 15);
        out.WriteU8(static_cast<uint8_t>(n));
        for (size_t i = 0; i < n; ++i) {
            out.WriteU8(f.gradient[i].startRatio);
            f.gradient[i].startColor.WriteRgba(out);
            out.WriteU8(f.gradient[i].endRatio);
            f.gradient[i].endColor.WriteRgba(out);
        }
    } else {
        out.WriteU16(f.bitmapId);
        f.startMatrix.Write(out);
        out.Align();
        f.endMatrix.Write(out);
        out.Align();
    }
}

void ReadMorphFill(SwfInput& in, SwfMorphFillStyle& f) {
    f.type = in.ReadU8();
    if (f.type == SwfFillStyle::Solid) {
        f.startColor.ReadRgba(in);
        f.endColor.ReadRgba(in);
    } else if (f.type == SwfFillStyle::LinearGradient || f.type == SwfFillStyle::RadialGradient) {
        f.startMatrix.Read(in);
        f.endMatrix.Read(in);
        const uint8_t n = in.ReadU8();
        if (!in.Need(size_t(n) * 10, "morph gradient")) return;
        for (uint8_t i = 0; i < n; ++i) {
            SwfMorphGradientRecord r;
            r.startRatio = in.ReadU8();
            r.startColor.ReadRgba(in);
            r.endRatio = in.ReadU8();
            r.endColor.ReadRgba(in);
            f.gradient.push_back(r);
        }
    } else if (f.type >= 0x40 && f.type <= 0x43) {
        f.bitmapId = in.ReadU16();
        f.startMatrix.Read(in);
        f.endMatrix.Read(in);
        in.Align();
    } else if (in.ok()) {
        in.Fail("unknown morph fill style type " + std::to_string(f.type));
    }
}

size_t ReadCount(SwfInput& in) {
    size_t n = in.ReadU8();
    if (n == 0xFF) n = in.ReadU16();
    return n;
}

void WriteCount(SwfStream& out, size_t n) {
    if (n < 0xFF) {
        out.WriteU8(static_cast<uint8_t>(n));
    } else {
        out.WriteU8(0xFF);
        out.WriteU16(static_cast<uint16_t>(n));
    }
}

}  // namespace

void DefineMorphShapeTag::OffsetIds(int16_t delta) {
    id_ = Offset(id_, delta);
    for (auto& f : fillStyles)
        if (f.type >= 0x40 && f.type <= 0x43 && f.bitmapId != 0xFFFF) f.bitmapId = Offset(f.bitmapId, delta);
}

void DefineMorphShapeTag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    startBounds.Write(body);
    endBounds.Write(body);
    SwfStream rest;
    rest.version = body.version;
    const size_t nf = std::min<size_t>(fillStyles.size(), 0xFFFF);
    WriteCount(rest, nf);
    for (size_t i = 0; i < nf; ++i) WriteMorphFill(rest, fillStyles[i]);
    const size_t nl = std::min<size_t>(lineStyles.size(), 0xFFFF);
    WriteCount(rest, nl);
    for (size_t i = 0; i < nl; ++i) {
        rest.WriteU16(lineStyles[i].startWidth);
        rest.WriteU16(lineStyles[i].endWidth);
        lineStyles[i].startColor.WriteRgba(rest);
        lineStyles[i].endColor.WriteRgba(rest);
    }
    startEdges.Write(rest, 3);
    body.WriteU32(rest.Size());  // from behind this field to the end edges
    body.WriteStream(rest);
    endEdges.Write(body, 3);
}

void DefineMorphShapeTag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    startBounds.Read(body);
    endBounds.Read(body);
    const uint32_t offset = body.ReadU32();
    const size_t restStart = body.Position();
    fillStyles.clear();
    lineStyles.clear();
    const size_t nf = ReadCount(body);
    if (!body.Need(nf, "morph fill styles")) return;
    for (size_t i = 0; i < nf && body.ok(); ++i) {
        SwfMorphFillStyle f;
        ReadMorphFill(body, f);
        fillStyles.push_back(std::move(f));
    }
    const size_t nl = ReadCount(body);
    if (!body.Need(nl * 12, "morph line styles")) return;
    for (size_t i = 0; i < nl; ++i) {
        SwfMorphLineStyle l;
        l.startWidth = body.ReadU16();
        l.endWidth = body.ReadU16();
        l.startColor.ReadRgba(body);
        l.endColor.ReadRgba(body);
        lineStyles.push_back(l);
    }
    startEdges.Read(body, 3);
    if (body.ok() && body.Position() - restStart != offset) {
        body.Fail("morph shape end-edge offset does not match its start edges");
        return;
    }
    endEdges.Read(body, 3);
}

}  // namespace quillet
