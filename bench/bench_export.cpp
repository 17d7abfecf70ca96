// Export of real photos: wall time, CPU time and peak memory of each case,
// beside the floor that no export can beat by much: decoding the same
// photos, one after another on one core, with libjpeg's DCT scaling at the
// least M/8 that still covers each slide (what `djpeg -scale M/8` does).
//
//   build/bench/bench_export [slides]      (default 50)
//
// Cases, each run in a child process so that its peak memory is its own:
//   two cores / one core   the show of `slides` photos, no cache
//   huge                   16 slides of one 5640x3172 progressive photo
//   cache                  the show exported into an empty cache, then again
//                          after one slide's duration changed, then after
//                          one slide's filter changed
// The photos are Debian's mate-backgrounds (installed by scripts/setup.sh):
// 16 JPEGs from 1280x1024 to 5640x3172, 6 of them progressive.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "io/ReadFile.h"
#include "media/ImageFilter.h"
#include "media/JpegReader.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"

using namespace quillet;
namespace fs = std::filesystem;

namespace {

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

std::vector<std::string> Photos() {
    std::vector<std::string> photos;
    for (const char* folder : {"/usr/share/backgrounds/mate/nature", "/usr/share/backgrounds/mate/abstract",
                               "/usr/share/backgrounds/mate/desktop"})
        if (fs::exists(folder))
            for (const auto& e : fs::directory_iterator(folder))
                if (e.path().extension() == ".jpg") photos.push_back(e.path().string());
    std::sort(photos.begin(), photos.end());
    return photos;
}

void BuildShow(SlideShow& show, const std::vector<std::string>& photos, int count) {
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
        move->SetMove(-640, -480, 1.2);
        slide->addCameraEffect(std::move(move));
        show.append(std::move(slide));
    }
}

struct Figures {
    double wall = 0, cpu = 0, peakMb = 0;
    int prepared = 0, cached = 0;
    bool ok = false;
};

// Runs `work` in a child; its wall time, CPU time and peak memory come back.
Figures InChild(const std::function<Figures()>& work) {
    int pipeFds[2];
    if (pipe(pipeFds) != 0) return {};
    const pid_t pid = fork();
    if (pid == 0) {
        close(pipeFds[0]);
        Figures f = work();
        (void)!write(pipeFds[1], &f, sizeof f);
        _exit(0);
    }
    close(pipeFds[1]);
    Figures f;
    if (read(pipeFds[0], &f, sizeof f) != sizeof f) f.ok = false;
    close(pipeFds[0]);
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    f.cpu = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
            static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    f.peakMb = static_cast<double>(usage.ru_maxrss) / 1024;
    return f;
}

Figures Export(const SlideShow& show, const std::string& out, const ExportOptions& options) {
    Figures f;
    const double start = Now();
    ExportResult r = MovieExporter(show).ExportMovie(out, nullptr, options);
    f.wall = Now() - start;
    f.ok = r.ok;
    f.prepared = r.picturesPrepared;
    f.cached = r.picturesFromCache;
    if (!r.ok) std::fprintf(stderr, "bench_export: %s\n", r.error.c_str());
    return f;
}

// The floor: each slide's photo decoded on this thread at the least DCT
// scale that covers its fitted size, every row read.
Figures DecodeFloor(const SlideShow& show) {
    Figures f;
    const double start = Now();
    for (const auto& slide : show.slides()) {
        std::vector<uint8_t> bytes;
        if (!ReadFileLimited(slide->image.src, 1u << 30, bytes, nullptr)) continue;
        JpegReader reader;
        if (!reader.Open(bytes.data(), bytes.size())) continue;
        // The fitted size within the stage, as a new slide gets it.
        const double fit = std::min(640.0 / reader.width(), 480.0 / reader.height());
        reader.ScaleFor(static_cast<uint32_t>(reader.width() * fit + 0.5),
                        static_cast<uint32_t>(reader.height() * fit + 0.5), reader.width(), reader.height());
        reader.ReadRows([](uint32_t, const uint8_t*) { return true; });
    }
    f.wall = Now() - start;
    f.ok = true;
    return f;
}

void Print(const char* name, const Figures& f, double floor) {
    std::printf("%-34s wall %6.2f s  cpu %6.2f s  peak %5.0f MB", name, f.wall, f.cpu, f.peakMb);
    if (floor > 0) std::printf("  %.2fx floor", f.wall / floor);
    if (f.prepared || f.cached) std::printf("  (%d prepared, %d from cache)", f.prepared, f.cached);
    std::printf("%s\n", f.ok ? "" : "  FAILED");
}

}  // namespace

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::atoi(argv[1]) : 50;
    const std::vector<std::string> photos = Photos();
    if (photos.empty()) {
        std::fprintf(stderr, "bench_export: no photos in /usr/share/backgrounds/mate (run scripts/setup.sh)\n");
        return 1;
    }
    const std::string folder = (fs::temp_directory_path() / ("quillet-bench-" + std::to_string(getpid()))).string();
    fs::create_directories(folder);
    const std::string out = folder + "/show.swf";

    SlideShow show;
    BuildShow(show, photos, count);
    // Warm the page cache so the first case does not pay for the disk.
    for (const auto& p : photos) {
        std::vector<uint8_t> b;
        ReadFileLimited(p, 1u << 30, b, nullptr);
    }
    std::printf("%d slides of %zu photos, 640x480, q80, 1 s cross fades, 3 s pan/zoom holds\n", count, photos.size());
    const Figures floor = InChild([&] { return DecodeFloor(show); });
    Print("floor: DCT-scaled decode, 1 core", floor, 0);

    ExportOptions two;
    two.threads = 2;
    Print("export, 2 cores", InChild([&] { return Export(show, out, two); }), floor.wall);
    ExportOptions one;
    one.threads = 1;
    Print("export, 1 core", InChild([&] { return Export(show, out, one); }), floor.wall);

    SlideShow huge;
    BuildShow(huge, {"/usr/share/backgrounds/mate/abstract/Elephants_5640x3172.jpg"}, 16);
    Print("16 slides of 5640x3172 progressive", InChild([&] { return Export(huge, out, two); }), 0);

    ExportOptions cached = two;
    cached.cacheFolder = folder + "/cache";
    Print("export into an empty cache", InChild([&] { return Export(show, out, cached); }), floor.wall);
    show.slideAt(count / 2)->duration = 4000;
    Print("again, one duration changed", InChild([&] { return Export(show, out, cached); }), floor.wall);
    show.slideAt(count / 2)->addFilter(ImageFilterRegistry::instance().Create("Sepia"));
    Print("again, one filter added", InChild([&] { return Export(show, out, cached); }), floor.wall);

    std::error_code ec;
    fs::remove_all(folder, ec);
    return 0;
}
