#include "effects/Transition.h"

#include <cstdio>

#include "effects/SlideRender.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

Transition::Transition() = default;

Transition::Transition(std::string name, OptionTable options, bool placesSlides)
    : name_(std::move(name)), options_(options), placesSlides_(placesSlides) {}

Transition::~Transition() = default;

void Transition::SetDuration(uint32_t ms) {
    if (ms == duration_) return;
    duration_ = ms;
    // A listener may remove itself while being told, so walk a copy.
    const auto listeners = listeners_;
    for (const auto& entry : listeners)
        if (entry.second) entry.second(*this);
}

size_t Transition::AddListener(Listener listener) {
    const size_t token = nextListenerToken_++;
    listeners_.emplace_back(token, std::move(listener));
    return token;
}

void Transition::RemoveListener(size_t token) {
    std::erase_if(listeners_, [token](const auto& entry) { return entry.first == token; });
}

void Transition::CopyFrom(const Transition& source) {
    placesSlides_ = source.placesSlides_;
    name_ = source.name_;
    duration_ = source.duration_;
    if (source.options_.table().data() == options_.table().data()) options_ = source.options_;
}

std::unique_ptr<Transition> Transition::Clone() const {
    auto copy = std::make_unique<Transition>();
    copy->CopyFrom(*this);
    return copy;
}

std::unique_ptr<Transition> Transition::CreateInstance() const {
    // "None" has no options to carry over: the reader gets a fresh object.
    return std::make_unique<Transition>();
}

bool Transition::Render(SlideOnStage* incoming, SlideOnStage* outgoing, MovieContext& ctx) const {
    if (!placesSlides_) return true;
    PlaceSlide(incoming, ctx);
    RemoveSlide(outgoing, ctx);
    return true;
}

int Transition::FrameCount(float fps) const {
    return static_cast<int>(static_cast<double>(duration_) * 0.001 * static_cast<double>(fps) + 0.5);
}

std::string Transition::Label() const {
    // "None" is instantaneous whatever duration it carries.
    const double seconds = name_ == "None" ? 0.0 : duration_ / 1000.0;
    char buf[320];
    std::snprintf(buf, sizeof buf, "Transition: %s (%0.2f sec)", name_.c_str(), seconds);
    return buf;
}

// ---------------------------------------------------------------------------

const TransitionRegistry& TransitionRegistry::instance() {
    static const TransitionRegistry registry = [] {
        TransitionRegistry r;
        r.Populate();
        return r;
    }();
    return registry;
}

// ---------------------------------------------------------------------------

void WriteTransition(XmlWriter& writer, const Transition& transition) {
    writer.write("<transition");
    writer.attribute("name", transition.name());
    writer.attribute("duration", static_cast<unsigned>(transition.duration()));
    transition.WriteOptions(writer);
    writer.write(" />\n");
}

std::unique_ptr<Transition> ReadTransition(const XmlNode& element) {
    if (!element) return nullptr;
    std::string name;
    if (!element.readString("name", name)) return nullptr;
    const Transition* prototype = TransitionRegistry::instance().Find(name);
    if (!prototype) return nullptr;
    std::unique_ptr<Transition> transition = prototype->CreateInstance();
    if (!transition) return nullptr;
    uint32_t duration = 0;
    if (element.readUnsigned("duration", duration)) transition->SetDuration(duration);
    transition->ReadOptions(element);
    return transition;
}

}  // namespace quillet
