#include "effects/CameraEffect.h"

#include <cstdio>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

CameraEffect::~CameraEffect() = default;

const char* CameraEffect::XmlName() const { return "none"; }

std::string CameraEffect::Describe() const { return {}; }

std::unique_ptr<CameraEffect> CameraEffect::Clone() const {
    return std::unique_ptr<CameraEffect>(new CameraEffect(*this));
}

void CameraEffect::ReadXml(const XmlNode& element) { element.readUnsigned("duration", duration); }

void CameraEffect::WriteStart(XmlWriter& writer) const {
    writer.write("<camera_fx");
    writer.attributeRaw("name", XmlName());
    writer.attribute("duration", static_cast<unsigned>(duration));
}

void CameraEffect::WriteXml(XmlWriter& writer) const {
    WriteStart(writer);
    writer.write(" />\n");
}

int CameraEffect::FrameCount(float fps) const {
    return static_cast<int>(static_cast<double>(duration) * 0.001 * static_cast<double>(fps) + 0.5);
}

void CameraEffect::Render(SlideOnStage& slide, MovieContext& ctx) const {
    for (int n = FrameCount(ctx.fps); n > 0; --n) EndFrame(ctx);
}

void PanZoomEffect::Render(SlideOnStage& slide, MovieContext& ctx) const {
    const int n = FrameCount(ctx.fps);
    double sx = slide.matrix.scaleX / 65536.0;
    double sy = slide.matrix.scaleY / 65536.0;
    int32_t tx = slide.matrix.translateX;
    int32_t ty = slide.matrix.translateY;
    const double dz = n > 0 ? (zoom - sx) / n : 0;
    const double dx = n > 0 ? static_cast<double>(panX) / n : 0;
    const double dy = n > 0 ? static_cast<double>(panY) / n : 0;
    // Saturated: a zoom of 1e12 or a pan of 2^31 twips from a hand-made
    // project stops at the largest value the file can hold.
    auto fixed = [](double v) { return ToFixed16(v); };
    for (int i = 0; i < n; ++i) {
        tx = SaturateField(tx + dx);
        ty = SaturateField(ty + dy);
        sx += dz;
        sy += dz;
        if (slide.characterId != 0)
            ctx.movie.AddTag(PlaceObject2Tag::Modify(slide.depth, SwfMatrix::Scale(fixed(sx), fixed(sy), tx, ty)));
        EndFrame(ctx);
    }
    slide.matrix = SwfMatrix::Scale(fixed(sx), fixed(sy), tx, ty);
}

// ---------------------------------------------------------------------------

const char* PanZoomEffect::XmlName() const { return "pan_zoom"; }

std::string PanZoomEffect::Describe() const {
    // Pans in whole pixels (integer division truncates toward zero), zoom in
    // truncated percent: 0.333 shows as 33.
    const int pixelsX = panX / 20;
    const int pixelsY = panY / 20;
    const int percent = static_cast<int>(zoom * 100.0);
    const bool panned = panX != 0 || panY != 0;
    const bool zoomed = zoom != 1.0;
    char buf[96];
    if (!panned && !zoomed)
        return "None";
    else if (!panned)
        std::snprintf(buf, sizeof buf, "Zoom (%d)", percent);
    else if (!zoomed)
        std::snprintf(buf, sizeof buf, "Pan (%d, %d)", pixelsX, pixelsY);
    else
        std::snprintf(buf, sizeof buf, "Pan (%d, %d); Zoom (%d)", pixelsX, pixelsY, percent);
    return buf;
}

std::unique_ptr<CameraEffect> PanZoomEffect::Clone() const {
    return std::unique_ptr<CameraEffect>(new PanZoomEffect(*this));
}

void PanZoomEffect::ReadXml(const XmlNode& element) {
    CameraEffect::ReadXml(element);
    element.readInt("pan_x", panX);
    element.readInt("pan_y", panY);
    element.readDouble("zoom", zoom);
}

void PanZoomEffect::WriteXml(XmlWriter& writer) const {
    WriteStart(writer);
    writer.attribute("pan_x", static_cast<int>(panX));
    writer.attribute("pan_y", static_cast<int>(panY));
    writer.attributeReal("zoom", zoom);
    writer.write(" />\n");
}

// ---------------------------------------------------------------------------

std::unique_ptr<CameraEffect> MakeCameraEffect(const std::string& name) {
    if (name == "none") return std::make_unique<CameraEffect>();
    if (name == "pan_zoom") return std::make_unique<PanZoomEffect>();
    return nullptr;
}

std::unique_ptr<CameraEffect> ReadCameraEffect(const XmlNode& element) {
    if (!element) return nullptr;
    std::string name;
    if (!element.readString("name", name)) return nullptr;
    std::unique_ptr<CameraEffect> effect = MakeCameraEffect(name);
    if (effect) effect->ReadXml(element);
    return effect;
}

std::vector<std::string> CameraEffectNames() { return {"none", "pan_zoom"}; }

}  // namespace quillet
