// Exports a show of real photos and prints wall time, time per slide and
// peak memory. Run with two slide counts to see that memory does not grow
// with the length of the show:
//   build/bench/bench_export 10 && build/bench/bench_export 50
// The photos are Debian's mate-backgrounds (installed by scripts/setup.sh).
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"

using namespace quillet;
namespace fs = std::filesystem;

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::atoi(argv[1]) : 50;
    std::vector<std::string> photos;
    for (const char* folder : {"/usr/share/backgrounds/mate/nature", "/usr/share/backgrounds/mate/abstract"})
        if (fs::exists(folder))
            for (const auto& e : fs::directory_iterator(folder))
                if (e.path().extension() == ".jpg") photos.push_back(e.path().string());
    if (photos.empty()) {
        std::fprintf(stderr, "bench_export: no photos in /usr/share/backgrounds/mate (run scripts/setup.sh)\n");
        return 1;
    }
    std::sort(photos.begin(), photos.end());

    SlideShow show;
    show.setSize(640, 480);
    show.fps = 12;
    for (int i = 0; i < count; ++i) {
        auto slide = show.createSlide(SlideType::Image);
        slide->image.src = photos[static_cast<size_t>(i) % photos.size()];
        slide->image.quality = 80;
        slide->duration = 3000;
        auto fade = TransitionRegistry::instance().Find("Cross Fade")->Clone();
        fade->SetDuration(1000);
        slide->setTransitionIn(std::move(fade));
        auto move = std::make_unique<PanZoomEffect>();
        move->duration = 3000;
        move->zoom = 1.2;
        move->panX = -640;
        move->panY = -480;
        slide->addCameraEffect(std::move(move));
        show.append(std::move(slide));
    }

    std::string out = (fs::temp_directory_path() / "quillet-bench-export.swf").string();
    auto start = std::chrono::steady_clock::now();
    ExportResult r = MovieExporter(show).ExportMovie(out);
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (!r.ok) {
        std::fprintf(stderr, "bench_export: %s\n", r.error.c_str());
        return 1;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("slides %d (%zu distinct photos), frames %u, movie %.1f MB\n", count, photos.size(), r.frameCount,
                static_cast<double>(fs::file_size(out)) / 1e6);
    std::printf("wall %.2f s, %.0f ms per slide, peak memory %.0f MB\n", seconds, seconds * 1000 / count,
                static_cast<double>(usage.ru_maxrss) / 1024);
    fs::remove(out);
    return 0;
}
