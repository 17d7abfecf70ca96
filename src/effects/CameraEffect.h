// Camera effects: what fills a slide's display time after its transition.
// The base class is the still camera ("none"); PanZoomEffect moves and scales
// the slide linearly ("pan_zoom").
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quillet {

class XmlNode;
class XmlWriter;
struct SlideOnStage;
struct MovieContext;

class CameraEffect {
public:
    CameraEffect() = default;
    virtual ~CameraEffect();

    uint32_t duration = 1000;  // milliseconds

    virtual const char* XmlName() const;  // "none"
    // The slide list's text; empty for the still camera.
    virtual std::string Describe() const;
    virtual std::unique_ptr<CameraEffect> Clone() const;
    // Reads the attributes; a missing one keeps the current value.
    virtual void ReadXml(const XmlNode& element);
    // The `<camera_fx name="..." duration="..." ... />` line.
    virtual void WriteXml(XmlWriter& writer) const;

    // Frames the effect takes at the movie's frame rate, rounded.
    int FrameCount(float fps) const;
    // Writes the effect's frames for the slide. The still camera holds the
    // slide for its frames; a move updates the slide's matrix to its end state.
    virtual void Render(SlideOnStage& slide, MovieContext& ctx) const;

protected:
    CameraEffect(const CameraEffect&) = default;
    CameraEffect& operator=(const CameraEffect&) = default;
    // Writes `<camera_fx name="X" duration="N"` without the end.
    void WriteStart(XmlWriter& writer) const;
};

class PanZoomEffect : public CameraEffect {
public:
    PanZoomEffect() = default;
    PanZoomEffect(const PanZoomEffect&) = default;
    PanZoomEffect& operator=(const PanZoomEffect&) = default;

    double zoom = 1.0;  // target scale of the slide, 1.0 = 100 %
    int32_t panX = 0;   // offset to move the slide by, twips
    int32_t panY = 0;

    const char* XmlName() const override;  // "pan_zoom"
    // "None", "Zoom (150)", "Pan (10, -1)" or "Pan (10, -1); Zoom (150)";
    // pans in whole pixels truncated toward zero, zoom in truncated percent.
    std::string Describe() const override;
    std::unique_ptr<CameraEffect> Clone() const override;
    void ReadXml(const XmlNode& element) override;
    void WriteXml(XmlWriter& writer) const override;
    // Moves and scales the slide linearly from its current matrix: both
    // scales by the same step (from the X scale), translation truncated to
    // whole twips on every frame (so a fractional step falls a little short).
    void Render(SlideOnStage& slide, MovieContext& ctx) const override;
};

// A camera effect from a `camera_fx` element, chosen by its exact `name`;
// null when the name is missing or unknown.
std::unique_ptr<CameraEffect> ReadCameraEffect(const XmlNode& element);
// A default effect of the named class; null when unknown.
std::unique_ptr<CameraEffect> MakeCameraEffect(const std::string& name);
std::vector<std::string> CameraEffectNames();  // {"none", "pan_zoom"}

}  // namespace quillet
