#include "effects/CameraEffect.h"

#include <cstdio>

#include "effects/SlideRender.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

namespace {

constinit const OptionSpec kPanZoomOptions[] = {
    {.kind = OptionKind::Integer, .attribute = "pan_x"},
    {.kind = OptionKind::Integer, .attribute = "pan_y"},
    {.kind = OptionKind::Real, .attribute = "zoom", .defaultValue = 1.0},
};

}  // namespace

CameraEffect::CameraEffect() : name_("none") {}

CameraEffect::CameraEffect(std::string name, OptionTable options) : name_(std::move(name)), options_(options) {}

CameraEffect::~CameraEffect() = default;

std::string CameraEffect::Describe() const { return {}; }

std::unique_ptr<CameraEffect> CameraEffect::Clone() const {
    return std::unique_ptr<CameraEffect>(new CameraEffect(*this));
}

void CameraEffect::ReadXml(const XmlNode& element) {
    element.readUnsigned("duration", duration);
    options_.Read(element);
}

void CameraEffect::WriteXml(XmlWriter& writer) const {
    writer.write("<camera_fx");
    writer.attributeRaw("name", name_);
    writer.attribute("duration", static_cast<unsigned>(duration));
    options_.Write(writer);
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
    const double dz = n > 0 ? (zoom() - sx) / n : 0;
    const double dx = n > 0 ? static_cast<double>(panX()) / n : 0;
    const double dy = n > 0 ? static_cast<double>(panY()) / n : 0;
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

PanZoomEffect::PanZoomEffect() : CameraEffect("pan_zoom", kPanZoomOptions) {}

void PanZoomEffect::SetMove(int32_t x, int32_t y, double scale) {
    options().SetValue(0, x);
    options().SetValue(1, y);
    options().SetValue(2, scale);
}

std::string PanZoomEffect::Describe() const {
    // Pans in whole pixels (integer division truncates toward zero), zoom in
    // truncated percent: 0.333 shows as 33.
    const int pixelsX = panX() / 20;
    const int pixelsY = panY() / 20;
    const int percent = static_cast<int>(zoom() * 100.0);
    const bool panned = panX() != 0 || panY() != 0;
    const bool zoomed = zoom() != 1.0;
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

// ---------------------------------------------------------------------------

CameraEffectRegistry::CameraEffectRegistry() {
    Add(std::make_unique<CameraEffect>());
    Add(std::make_unique<PanZoomEffect>());
}

const CameraEffectRegistry& CameraEffectRegistry::instance() {
    static const CameraEffectRegistry registry;
    return registry;
}

std::unique_ptr<CameraEffect> MakeCameraEffect(const std::string& name) {
    const CameraEffect* prototype = CameraEffectRegistry::instance().Find(name);
    return prototype ? prototype->Clone() : nullptr;
}

std::unique_ptr<CameraEffect> ReadCameraEffect(const XmlNode& element) {
    if (!element) return nullptr;
    std::string name;
    if (!element.readString("name", name)) return nullptr;
    std::unique_ptr<CameraEffect> effect = MakeCameraEffect(name);
    if (effect) effect->ReadXml(element);
    return effect;
}

}  // namespace quillet
