// Overlay effects: a sprite played on top of a slide while it is shown
// (particles, an aged-film look, a strobe). The base class is the effect
// "None". Each effect is defined once per movie and placed for every slide
// that uses it, so characterId records the definition in the movie being written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "options/OptionTable.h"
#include "options/Registry.h"

namespace quillet {

struct MovieContext;

class OverlayEffect {
public:
    OverlayEffect();                        // name "None"
    explicit OverlayEffect(std::string name);  // a "None" effect under another name ("" for new slides)
    virtual ~OverlayEffect();

    const std::string& name() const { return name_; }
    void SetName(std::string name) { name_ = std::move(name); }

    // Sprite id once defined in the movie being written; 0 before.
    uint16_t characterId = 0;

    // A fresh default object of the same class.
    virtual std::unique_ptr<OverlayEffect> Create() const;
    // A fresh object of the same class under this object's name (a slide's
    // copy: ids of a movie being written are not carried over).
    std::unique_ptr<OverlayEffect> Clone() const;
    // Overlay effects have no options of their own.
    OptionTable Options() const { return {}; }
    // True for "None" and every other effect that draws nothing.
    virtual bool IsNone() const { return true; }

    // Writes the effect's characters (shapes, sprite, programs) into the
    // movie and records the sprite's id; "None" writes nothing.
    virtual void Define(MovieContext& ctx);
    // Places the defined sprite at `depth` over the stage's top-left corner
    // (an identity matrix); nothing before Define or for "None".
    virtual void Place(MovieContext& ctx, uint16_t depth) const;

private:
    std::string name_;
};

// The prototypes in registry order (not sorted): "None", "Bubbles",
// "Fireworks", "Hearts", "Old Movie", "Snow", "Strobe".
class OverlayEffectRegistry : public Registry<OverlayEffect> {
public:
    static const OverlayEffectRegistry& instance();

private:
    OverlayEffectRegistry();
};

// A fresh effect of the named class; an unknown name gives "None". The empty
// name (a new slide's effect) gives an unnamed "None", so it saves as it was read.
std::unique_ptr<OverlayEffect> MakeOverlayEffect(const std::string& name);

}  // namespace quillet
