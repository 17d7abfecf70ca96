// Saving and loading a large project: 10,000 slides with a transition, camera
// moves, a filter and captions each. Prints the times; run by hand.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"

using namespace quillet;
using Clock = std::chrono::steady_clock;

namespace {

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void build(SlideShow& show, const std::string& picture, int slides) {
    const TransitionRegistry& transitions = TransitionRegistry::instance();
    for (int i = 0; i < slides; ++i) {
        auto s = show.createSlide(i % 10 == 9 ? SlideType::Blank : SlideType::Image);
        s->image.src = picture;
        s->duration = 2000 + static_cast<uint32_t>(i % 7) * 100;
        auto t = transitions.At(i % static_cast<int>(transitions.count()))->Clone();
        t->SetDuration(1000);
        s->setTransitionIn(std::move(t));
        auto move = std::make_unique<PanZoomEffect>();
        move->SetMove(200, 0, 1.2);
        s->addCameraEffect(std::move(move));
        s->addCameraEffect(MakeCameraEffect("none"));
        s->addFilter(ImageFilterRegistry::instance().Create("Sepia"));
        Caption c;
        c.text = "Slide " + std::to_string(i + 1) + " & friends";
        s->captions.items.push_back(c);
        show.append(std::move(s));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int slides = argc > 1 ? std::atoi(argv[1]) : 10000;
    char pattern[] = "/tmp/quillet-bench-XXXXXX";
    if (!mkdtemp(pattern)) return 1;
    const std::filesystem::path dir(pattern);
    const std::string picture = (dir / "picture.jpg").string();
    std::ofstream(picture) << "x";  // loading checks only that the file exists
    const std::string path = (dir / "big.qpj").string();

    SlideShow show;
    PublishSettings publish;
    auto start = Clock::now();
    build(show, picture, slides);
    const double buildMs = millisecondsSince(start);

    std::string error;
    double saveMs = 1e30, loadMs = 1e30;
    for (int round = 0; round < 3; ++round) {  // best of three
        start = Clock::now();
        if (!SaveProject(path, show, publish, &error)) {
            std::fprintf(stderr, "save failed: %s\n", error.c_str());
            return 1;
        }
        saveMs = std::min(saveMs, millisecondsSince(start));

        SlideShow loaded;
        PublishSettings loadedPublish;
        start = Clock::now();
        if (!LoadProject(path, loaded, loadedPublish, &error)) {
            std::fprintf(stderr, "load failed: %s\n", error.c_str());
            return 1;
        }
        loadMs = std::min(loadMs, millisecondsSince(start));
        if (loaded.count() != slides) {
            std::fprintf(stderr, "loaded %d slides of %d\n", loaded.count(), slides);
            return 1;
        }
    }
    const auto bytes = std::filesystem::file_size(path);
    std::printf("project of %d slides, %.1f MB\n", slides, static_cast<double>(bytes) / 1e6);
    std::printf("build in memory: %8.1f ms\n", buildMs);
    std::printf("save:            %8.1f ms  (%.1f MB/s)\n", saveMs, static_cast<double>(bytes) / 1e3 / saveMs);
    std::printf("load:            %8.1f ms  (%.1f MB/s)\n", loadMs, static_cast<double>(bytes) / 1e3 / loadMs);
    std::filesystem::remove_all(dir);
    return 0;
}
