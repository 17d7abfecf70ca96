// Camera effects: what fills a slide's display time after its transition.
// The base class is the still camera ("none"); PanZoomEffect moves and scales
// the slide linearly ("pan_zoom").
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "options/OptionTable.h"
#include "options/Registry.h"

namespace quillet {

class XmlNode;
class XmlWriter;
struct SlideOnStage;
struct MovieContext;

class CameraEffect {
public:
    CameraEffect();  // the still camera, "none"
    virtual ~CameraEffect();

    uint32_t duration = 1000;  // milliseconds

    // The name in the file and in the registry: "none", "pan_zoom".
    const std::string& name() const { return name_; }
    const OptionSet& options() const { return options_; }
    OptionSet& options() { return options_; }
    OptionTable Options() const { return options_.table(); }
    // The slide list's text; empty for the still camera.
    virtual std::string Describe() const;
    virtual std::unique_ptr<CameraEffect> Clone() const;
    // Reads the duration and the options; a missing one keeps the current value.
    void ReadXml(const XmlNode& element);
    // The `<camera_fx name="..." duration="..." ... />` line.
    void WriteXml(XmlWriter& writer) const;
    // Frames the effect takes at the movie's frame rate, rounded.
    int FrameCount(float fps) const;
    // Writes the effect's frames for the slide. The still camera holds the
    // slide for its frames; a move updates the slide's matrix to its end state.
    virtual void Render(SlideOnStage& slide, MovieContext& ctx) const;

protected:
    CameraEffect(std::string name, OptionTable options);
    CameraEffect(const CameraEffect&) = default;
    CameraEffect& operator=(const CameraEffect&) = default;

private:
    std::string name_;
    OptionSet options_;
};

class PanZoomEffect : public CameraEffect {
public:
    PanZoomEffect();

    int32_t panX() const { return options().Int(0); }    // `pan_x`: offset to move the slide by, twips
    int32_t panY() const { return options().Int(1); }    // `pan_y`
    double zoom() const { return options().Value(2); }   // `zoom`: target scale of the slide, 1.0 = 100 %
    void SetMove(int32_t x, int32_t y, double scale);

    // "None", "Zoom (150)", "Pan (10, -1)" or "Pan (10, -1); Zoom (150)";
    // pans in whole pixels truncated toward zero, zoom in truncated percent.
    std::string Describe() const override;
    std::unique_ptr<CameraEffect> Clone() const override;
    // Moves and scales the slide linearly from its current matrix: both
    // scales by the same step (from the X scale), translation truncated to
    // whole twips on every frame (so a fractional step falls a little short).
    void Render(SlideOnStage& slide, MovieContext& ctx) const override;
};

// The camera classes, in menu order; names compare exactly.
class CameraEffectRegistry : public Registry<CameraEffect> {
public:
    static const CameraEffectRegistry& instance();

private:
    CameraEffectRegistry();
};

// A camera effect from a `camera_fx` element, chosen by its exact `name`;
// null when the name is missing or unknown.
std::unique_ptr<CameraEffect> ReadCameraEffect(const XmlNode& element);
// A default effect of the named class; null when unknown.
std::unique_ptr<CameraEffect> MakeCameraEffect(const std::string& name);

}  // namespace quillet
