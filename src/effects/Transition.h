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

namespace quillet {

class XmlNode;
class XmlWriter;
struct SlideOnStage;
struct MovieContext;

// Declarative description of one option control of a transition, rendered by
// the desktop panel. Labels, ids and items are shown exactly as they stand.
struct TransitionOption {
    enum class Kind { List, Integer, Real, Bool, Color } kind = Kind::List;
    std::string label;               // "Direction", "Spins:"; for Bool the check box text
    int controlId = 0;               // the value control (list, field, check box, chooser)
    std::vector<std::string> items;  // list items in index order
    // Additions beyond the core description:
    int labelId = 0;                 // the static label's control id; 0 when there is none
    std::string attribute;           // XML attribute; empty when the option is not saved
    double defaultValue = 0;         // index, number, 0/1, or colour as a number
    int decimals = 0;                // digits a Real field shows
    std::string trailingLabel;       // text right of the control ("times"); usually empty
};

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

    // Copies placesSlides, name and duration; subclasses add their options.
    // Listeners are not copied.
    virtual void CopyFrom(const Transition& source);
    // A new object of the same class with the same values.
    virtual std::unique_ptr<Transition> Clone() const;
    // Sets the class's options to their defaults (duration and name stay).
    virtual void ResetOptions();
    // The object the project reader attaches to a slide: a fresh "None" for
    // the base, a clone of the prototype for every other class.
    virtual std::unique_ptr<Transition> CreateInstance() const;
    // The class's own XML attributes. A missing attribute or an unknown
    // keyword leaves the option as it is.
    virtual void ReadOptions(const XmlNode& element);
    // Writes ` key="value"` for each saved option.
    virtual void WriteOptions(XmlWriter& writer) const;
    // The panel's option controls; empty for classes without options.
    virtual std::vector<TransitionOption> Options() const;

    // Writes the transition into the movie where `incoming` is to appear:
    // places it, writes the frames (each ended by one ShowFrame), removes
    // `outgoing` (null for the first slide). The base ("None") only places
    // and removes, so the change is instantaneous; it writes nothing when the
    // transition does not place slides.
    virtual bool Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const;

    // Option values by the index of Options(), in the units of the control:
    // a list index, a number, 0/1 for a check box (as the box shows it), a
    // colour 0x00BBGGRR. SetOptionValue returns true when the value changed
    // (the panel's "apply" semantics); out-of-range values are clamped.
    virtual double OptionValue(size_t index) const;
    virtual bool SetOptionValue(size_t index, double value);

    // Frames the transition takes at the movie's frame rate, rounded.
    int FrameCount(float fps) const;
    // The slide list's text: "Transition: Cross Fade (2.00 sec)".
    std::string Label() const;

protected:
    explicit Transition(std::string name, bool placesSlides = true);

private:
    std::string name_ = "None";
    uint32_t duration_ = 2000;
    bool placesSlides_ = true;
    std::vector<std::pair<size_t, Listener>> listeners_;
    size_t nextListenerToken_ = 1;
};

// The prototypes offered to the user, kept sorted by display name.
class TransitionRegistry {
public:
    TransitionRegistry() = default;  // empty; Populate() fills it
    // The application's registry, populated on first use.
    static const TransitionRegistry& instance();

    // One prototype of every class, inserted with Add.
    void Populate();
    // Inserts before the first entry whose name compares greater (bytes,
    // case-sensitive); an equal name goes after those already there. Null is ignored.
    void Add(std::unique_ptr<Transition> prototype);

    size_t count() const { return prototypes_.size(); }
    const Transition* At(int index) const;                  // null when out of range
    const Transition* Find(const std::string& name) const;  // case-insensitive
    const Transition* Random() const;                       // rand() % count; null when empty

private:
    std::vector<std::unique_ptr<Transition>> prototypes_;
};

// The `<transition name="..." duration="..." ... />` line.
void WriteTransition(XmlWriter& writer, const Transition& transition);
// A transition from a `transition` element; null for a missing or unknown name.
std::unique_ptr<Transition> ReadTransition(const XmlNode& element);

}  // namespace quillet
