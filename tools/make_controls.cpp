// make_controls OUTDIR: draws our playback and mute control sets and writes
// them as movies into OUTDIR/Controls and OUTDIR/Mute Controls, where the
// exporter finds them (see movie/ControlSets.h for what a set holds).
//
// Each set is a one-frame movie whose stage is the set's size. Its buttons
// are drawn here from polygons; their scripts come from ControlSets so that
// the sets and the show's own scripts agree on every name.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "effects/SlideRender.h"
#include "movie/ControlSets.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

using namespace quillet;

namespace {

using Point = std::pair<double, double>;  // pixels
using Polygon = std::vector<Point>;

constexpr double kPi = 3.14159265358979323846;

struct Look {
    SwfColor panel;      // the set's background
    SwfColor icon;       // icons at rest
    SwfColor hover;      // icons under the pointer
    double corner = 6;   // panel corner radius, pixels
};

// Clockwise on the screen (y down) so that the inside is on fill 1.
Polygon Clockwise(Polygon p) {
    double area = 0;
    for (size_t i = 0; i < p.size(); ++i) {
        const Point& a = p[i];
        const Point& b = p[(i + 1) % p.size()];
        area += a.first * b.second - b.first * a.second;
    }
    if (area < 0) std::reverse(p.begin(), p.end());
    return p;
}

Polygon Rect(double x, double y, double w, double h) { return {{x, y}, {x + w, y}, {x + w, y + h}, {x, y + h}}; }

Polygon RoundRect(double x, double y, double w, double h, double r) {
    Polygon p;
    const double cx[4] = {x + w - r, x + w - r, x + r, x + r};
    const double cy[4] = {y + r, y + h - r, y + h - r, y + r};
    for (int c = 0; c < 4; ++c)
        for (int i = 0; i <= 6; ++i) {
            const double a = (-90 + c * 90 + i * 15) * kPi / 180;
            p.push_back({cx[c] + r * std::cos(a), cy[c] + r * std::sin(a)});
        }
    return p;
}

Polygon Circle(double cx, double cy, double r, int n = 32) {
    Polygon p;
    for (int i = 0; i < n; ++i) p.push_back({cx + r * std::cos(2 * kPi * i / n), cy + r * std::sin(2 * kPi * i / n)});
    return p;
}

// Icons in a box of `s` pixels with its top-left corner at (x, y).
std::vector<Polygon> PlayIcon(double x, double y, double s) {
    return {{{x + s * 0.25, y + s * 0.15}, {x + s * 0.85, y + s * 0.5}, {x + s * 0.25, y + s * 0.85}}};
}
std::vector<Polygon> PauseIcon(double x, double y, double s) {
    return {Rect(x + s * 0.22, y + s * 0.15, s * 0.2, s * 0.7), Rect(x + s * 0.58, y + s * 0.15, s * 0.2, s * 0.7)};
}
// Two triangles pointing left or right; with a bar for first/last.
std::vector<Polygon> SkipIcon(double x, double y, double s, bool right, bool bar) {
    std::vector<Polygon> out;
    const double top = y + s * 0.22, mid = y + s * 0.5, bottom = y + s * 0.78;
    const double x0 = x + s * (bar ? 0.3 : 0.12), w = s * (bar ? 0.28 : 0.38);
    for (int i = 0; i < 2; ++i) {
        const double a = x0 + i * w;
        out.push_back(right ? Polygon{{a, top}, {a + w, mid}, {a, bottom}} : Polygon{{a + w, top}, {a, mid}, {a + w, bottom}});
    }
    if (bar) out.push_back(right ? Rect(x0 + 2 * w, top, s * 0.1, bottom - top) : Rect(x0 - s * 0.1, top, s * 0.1, bottom - top));
    return out;
}
std::vector<Polygon> SpeakerIcon(double x, double y, double s, bool on) {
    std::vector<Polygon> out;
    out.push_back({{x + s * 0.12, y + s * 0.38}, {x + s * 0.3, y + s * 0.38}, {x + s * 0.52, y + s * 0.16},
                   {x + s * 0.52, y + s * 0.84}, {x + s * 0.3, y + s * 0.62}, {x + s * 0.12, y + s * 0.62}});
    if (on) {
        // Two arcs as thin bands.
        for (double r : {0.16, 0.3}) {
            Polygon band;
            const double cx = x + s * 0.52, cy = y + s * 0.5, r0 = s * r, r1 = s * (r + 0.07);
            for (int i = 0; i <= 8; ++i) {
                const double a = (-50 + i * 12.5) * kPi / 180;
                band.push_back({cx + r1 * std::cos(a), cy + r1 * std::sin(a)});
            }
            for (int i = 8; i >= 0; --i) {
                const double a = (-50 + i * 12.5) * kPi / 180;
                band.push_back({cx + r0 * std::cos(a), cy + r0 * std::sin(a)});
            }
            out.push_back(band);
        }
    } else {
        // A cross beside the speaker: one twelve-point outline (two
        // overlapping bars would leave their crossing empty).
        const double cx = x + s * 0.74, cy = y + s * 0.5, a = s * 0.17, t = s * 0.05;
        const double plus[12][2] = {{t, -a}, {t, -t}, {a, -t}, {a, t},   {t, t},   {t, a},
                                    {-t, a}, {-t, t}, {-a, t}, {-a, -t}, {-t, -t}, {-t, -a}};
        Polygon cross;
        const double c = std::cos(kPi / 4), n = std::sin(kPi / 4);
        for (const auto& p : plus) cross.push_back({cx + p[0] * c - p[1] * n, cy + p[0] * n + p[1] * c});
        out.push_back(cross);
    }
    return out;
}

class SetWriter {
public:
    SetWriter(int width, int height) : width_(width), height_(height), ctx_{writer_, 12.0f, ids_, depths_} {}

    uint16_t Shape(const std::vector<Polygon>& polygons, SwfColor color) {
        SwfShapeBuilder b;
        b.SetFill1(b.AddFillStyle(SwfFillStyle::MakeSolid(color)));
        for (const Polygon& polygon : polygons) {
            std::vector<std::pair<int32_t, int32_t>> points;
            for (const auto& [x, y] : Clockwise(polygon))
                points.push_back({static_cast<int32_t>(std::lround(x * 20)), static_cast<int32_t>(std::lround(y * 20))});
            b.Polygon(points);
        }
        const uint16_t id = ctx_.NewCharacterId();
        tags_.push_back(std::make_unique<DefineShape3Tag>(id, b.Bounds(), b.Build()));
        return id;
    }

    // A button over `area` showing `icon` (hover colour under the pointer,
    // nudged down a pixel while pressed) that runs `script` on release.
    uint16_t Button(const Polygon& area, const std::vector<Polygon>& icon, const Look& look, SwfActionList script) {
        const uint16_t hit = Shape({area}, SwfColor(0, 0, 0));
        const uint16_t rest = Shape(icon, look.icon);
        const uint16_t over = Shape(icon, look.hover);
        auto button = std::make_unique<DefineButton2Tag>(ctx_.NewCharacterId());
        auto record = [](uint8_t states, uint16_t id, SwfMatrix m = SwfMatrix()) {
            SwfButtonRecord r;
            r.states = states;
            r.characterId = id;
            r.matrix = m;
            return r;
        };
        button->records.push_back(record(SwfButtonRecord::HitTest, hit));
        button->records.push_back(record(SwfButtonRecord::Up, rest));
        button->records.push_back(record(SwfButtonRecord::Over, over));
        button->records.push_back(record(SwfButtonRecord::Down, over, SwfMatrix::Translate(0, 20)));
        SwfButtonCondAction release;
        release.actions = std::move(script);
        button->actions.push_back(std::move(release));
        const uint16_t id = button->GetId();
        tags_.push_back(std::move(button));
        return id;
    }

    // A two-frame clip: `first` at frame 0, `second` at frame 1, each with its script.
    uint16_t TwoStateClip(uint16_t first, uint16_t second, SwfActionList firstScript, SwfActionList secondScript) {
        auto clip = std::make_unique<DefineSpriteTag>(ctx_.NewCharacterId());
        clip->Add(PlaceObject2Tag::Place(1, first));
        clip->Add(std::make_unique<DoActionTag>(std::move(firstScript)));
        clip->Add(std::make_unique<ShowFrameTag>());
        clip->Add(std::make_unique<RemoveObject2Tag>(1));
        clip->Add(PlaceObject2Tag::Place(1, second));
        clip->Add(std::make_unique<DoActionTag>(std::move(secondScript)));
        clip->Add(std::make_unique<ShowFrameTag>());
        const uint16_t id = clip->GetId();
        tags_.push_back(std::move(clip));
        return id;
    }

    void Place(uint16_t id, const char* name = nullptr) {
        auto place = PlaceObject2Tag::Place(++depth_, id);
        if (name) place->name = name;
        places_.push_back(std::move(place));
    }

    bool Write(const std::filesystem::path& file) {
        writer_.Setup(width_ * 20, height_ * 20, 12.0f, 5);
        if (!writer_.Open(file.string(), true)) {
            std::fprintf(stderr, "make_controls: %s: %s\n", file.c_str(), writer_.Error().c_str());
            return false;
        }
        writer_.AddTag(std::make_unique<SetBackgroundColorTag>(SwfColor(128, 128, 128)));
        for (auto& tag : tags_) writer_.AddTag(std::move(tag));
        for (auto& tag : places_) writer_.AddTag(std::move(tag));
        writer_.AddTag(std::make_unique<ShowFrameTag>());
        writer_.AddTag(std::make_unique<EndTag>());
        writer_.Close();
        if (!writer_.Good()) std::fprintf(stderr, "make_controls: %s: %s\n", file.c_str(), writer_.Error().c_str());
        return writer_.Good();
    }

private:
    int width_, height_;
    SwfWriter writer_;
    uint32_t ids_ = 0, depths_ = 0;
    MovieContext ctx_;
    uint16_t depth_ = 0;
    std::vector<std::unique_ptr<SwfTag>> tags_;
    std::vector<std::unique_ptr<SwfTag>> places_;
};

enum class Slot { First, Previous, PlayPause, Next, Last };

// A playback set: a panel with one square slot per control, left to right.
bool WritePlaybackSet(const std::filesystem::path& file, const std::vector<Slot>& slots, int slotSize, const Look& look,
                      bool roundPanel) {
    const int pad = slotSize / 6;
    const int width = static_cast<int>(slots.size()) * slotSize + 2 * pad, height = slotSize + 2 * pad;
    SetWriter set(width, height);
    const uint16_t panel = set.Shape(
        {roundPanel ? Circle(width / 2.0, height / 2.0, height / 2.0 - 0.5) : RoundRect(0, 0, width, height, look.corner)},
        look.panel);
    set.Place(panel);
    const double iconSize = slotSize * 0.7, inset = (slotSize - iconSize) / 2;
    for (size_t i = 0; i < slots.size(); ++i) {
        const double x = pad + static_cast<double>(i) * slotSize, y = pad;
        const Polygon area = Rect(x, y, slotSize, slotSize);
        const double ix = x + inset, iy = y + inset;
        switch (slots[i]) {
            case Slot::PlayPause: {
                const uint16_t play = set.Button(area, PlayIcon(ix, iy, iconSize), look,
                                                 ControlButtonScript(ControlButton::Play));
                const uint16_t pause = set.Button(area, PauseIcon(ix, iy, iconSize), look,
                                                  ControlButtonScript(ControlButton::Pause));
                set.Place(set.TwoStateClip(play, pause, PlayPauseFrameScript(0), PlayPauseFrameScript(1)),
                          kPlayPauseName);
                break;
            }
            case Slot::Previous:
                set.Place(set.Button(area, SkipIcon(ix, iy, iconSize, false, false), look,
                                     ControlButtonScript(ControlButton::Previous)), "previous_btn");
                break;
            case Slot::Next:
                set.Place(set.Button(area, SkipIcon(ix, iy, iconSize, true, false), look,
                                     ControlButtonScript(ControlButton::Next)), "next_btn");
                break;
            case Slot::First:
                set.Place(set.Button(area, SkipIcon(ix, iy, iconSize, false, true), look,
                                     ControlButtonScript(ControlButton::First)), "first_btn");
                break;
            case Slot::Last:
                set.Place(set.Button(area, SkipIcon(ix, iy, iconSize, true, true), look,
                                     ControlButtonScript(ControlButton::Last)), "last_btn");
                break;
        }
    }
    return set.Write(file);
}

bool WriteMuteSet(const std::filesystem::path& file, int size, const Look& look, bool roundPanel) {
    SetWriter set(size, size);
    set.Place(set.Shape({roundPanel ? Circle(size / 2.0, size / 2.0, size / 2.0 - 0.5)
                                    : RoundRect(0, 0, size, size, look.corner)},
                        look.panel));
    const Polygon area = Rect(0, 0, size, size);
    const double iconSize = size * 0.8, inset = (size - iconSize) / 2;
    const uint16_t on = set.Button(area, SpeakerIcon(inset, inset, iconSize, true), look,
                                   ControlButtonScript(ControlButton::Mute));
    const uint16_t off = set.Button(area, SpeakerIcon(inset, inset, iconSize, false), look,
                                    ControlButtonScript(ControlButton::Unmute));
    set.Place(set.TwoStateClip(on, off, MuteFrameScript(), MuteFrameScript()), kMuteButtonName);
    return set.Write(file);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_controls OUTDIR\n");
        return 2;
    }
    namespace fs = std::filesystem;
    const fs::path out = argv[1];
    std::error_code ec;
    fs::create_directories(out / kControlsFolder, ec);
    fs::create_directories(out / kMuteControlsFolder, ec);
    const Look dark{SwfColor(24, 24, 28, 210), SwfColor(240, 240, 240), SwfColor(255, 190, 60), 8};
    const Look silver{SwfColor(214, 217, 222, 235), SwfColor(50, 54, 62), SwfColor(20, 110, 210), 5};
    const Look blue{SwfColor(30, 90, 180, 220), SwfColor(255, 255, 255), SwfColor(255, 230, 120), 0};
    bool ok = true;
    const fs::path controls = out / kControlsFolder, mute = out / kMuteControlsFolder;
    ok &= WritePlaybackSet(controls / "Dark Bar.swf", {Slot::Previous, Slot::PlayPause, Slot::Next}, 30, dark, false);
    ok &= WritePlaybackSet(controls / "Silver Full.swf",
                           {Slot::First, Slot::Previous, Slot::PlayPause, Slot::Next, Slot::Last}, 26, silver, false);
    ok &= WritePlaybackSet(controls / "Round Play.swf", {Slot::PlayPause}, 30, blue, true);
    ok &= WriteMuteSet(mute / "Speaker Dark.swf", 30, dark, false);
    ok &= WriteMuteSet(mute / "Speaker Round.swf", 32, blue, true);
    return ok ? 0 : 1;
}
