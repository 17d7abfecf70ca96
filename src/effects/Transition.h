// Transitions: the effect by which a slide replaces the one shown before it.
//
// A transition is a data object (name, duration, options), the prototype kept
// in the registry, and later the generator of its own frames. The base class
// is also the concrete class of "None". Each further transition lives in its
// own file under effects/transitions/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
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

class Transition {
public:
    Transition();  // name "None", duration 2000, placesSlides true
    virtual ~Transition();
    Transition(const Transition&) = delete;
    Transition& operator=(const Transition&) = delete;

    const std::string& name() const { return name_; }
    uint32_t duration() const { return duration_; }
    bool placesSlides() const { return placesSlides_; }

    // Stores the duration and notifies the listeners, only when it changes.
    void SetDuration(uint32_t ms);

    // Change listeners (the slide list and panel watch the duration).
    using Listener = std::function<void(const Transition&)>;
    size_t AddListener(Listener listener);  // returns a token for RemoveListener
    void RemoveListener(size_t token);

    // The class's options: their table drives reading, writing, copying,
    // comparison, the panel and the command line.
    const OptionSet& options() const { return options_; }
    OptionSet& options() { return options_; }
    OptionTable Options() const { return options_.table(); }
    // A value in the units of its control (list index, number, 0/1 as the
    // box shows it, colour 0x00BBGGRR); setting it clamps and returns true
    // when it changed (the panel's "apply").
    double OptionValue(size_t index) const { return options_.Value(index); }
    bool SetOptionValue(size_t index, double value) { return options_.SetValue(index, value); }
    void ResetOptions() { options_.Reset(); }
    // A missing attribute or an unknown keyword leaves the option as it is.
    void ReadOptions(const XmlNode& element) { options_.Read(element); }
    void WriteOptions(XmlWriter& writer) const { options_.Write(writer); }

    // Copies placesSlides, name, duration and, from an object of the same
    // class, the options. Listeners are not copied.
    void CopyFrom(const Transition& source);
    // A new object of the same class with the same values.
    virtual std::unique_ptr<Transition> Clone() const;
    // The object the project reader attaches to a slide: a fresh "None" for
    // the base, a clone of the prototype for every other class.
    virtual std::unique_ptr<Transition> CreateInstance() const;

    // Writes the transition into the movie where `incoming` is to appear:
    // places it, writes the frames (each ended by one ShowFrame), removes
    // `outgoing` (null for the first slide). The base ("None") only places
    // and removes, so the change is instantaneous; it writes nothing when the
    // transition does not place slides.
    virtual bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const;

    // Frames the transition takes at the movie's frame rate, rounded.
    int FrameCount(float fps) const;
    // The slide list's text: "Transition: Cross Fade (2.00 sec)".
    std::string Label() const;

protected:
    explicit Transition(std::string name, OptionTable options = {}, bool placesSlides = true);

private:
    std::string name_ = "None";
    OptionSet options_;
    uint32_t duration_ = 2000;
    bool placesSlides_ = true;
    std::vector<std::pair<size_t, Listener>> listeners_;
    size_t nextListenerToken_ = 1;
};

// Gives a class its Clone (a new object of the class, then CopyFrom) and its
// CreateInstance (a clone of the prototype).
template <class Derived, class Base = Transition>
class TransitionClass : public Base {
public:
    using Base::Base;
    std::unique_ptr<Transition> Clone() const override {
        auto copy = std::make_unique<Derived>();
        copy->CopyFrom(*this);
        return copy;
    }
    std::unique_ptr<Transition> CreateInstance() const override { return Clone(); }
};

// The prototypes offered to the user, kept sorted by display name; names are
// looked up without regard to letter case.
class TransitionRegistry : public Registry<Transition> {
public:
    TransitionRegistry() : Registry(Order::ByName, Lookup::IgnoreCase) {}  // empty; Populate() fills it
    // The application's registry, populated on first use.
    static const TransitionRegistry& instance();
    // One prototype of every class, inserted with Add.
    void Populate();
};

// The `<transition name="..." duration="..." ... />` line.
void WriteTransition(XmlWriter& writer, const Transition& transition);
// A transition from a `transition` element; null for a missing or unknown name.
std::unique_ptr<Transition> ReadTransition(const XmlNode& element);

}  // namespace quillet
