// Milliseconds each image filter takes on a 640x480 photo (the size a slide
// is prepared at on a typical stage). Prints one line per filter.
//   bench_filters [PHOTO] [RUNS]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "media/Bitmap.h"
#include "media/ImageFilter.h"
#include "media/ImageImporter.h"

using namespace quillet;

int main(int argc, char** argv) {
    std::string photo = argc > 1 ? argv[1] : "/usr/share/backgrounds/mate/nature/FreshFlower.jpg";
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    ImageImporter importer;
    Bitmap original;
    if (!importer.Open(photo) || !importer.Render(original, 640, 480)) {
        std::fprintf(stderr, "bench_filters: %s: cannot load the photo\n", photo.c_str());
        return 1;
    }
    std::printf("filter                  ms per 640x480 (best of %d)\n", runs);
    const auto& registry = ImageFilterRegistry::instance();
    double total = 0;
    for (size_t i = 0; i < registry.count(); ++i) {
        const ImageFilter* filter = registry.At(static_cast<long long>(i));
        double best = 1e9;
        for (int r = 0; r < runs; ++r) {
            Bitmap b;
            b.CopyFrom(original);
            const auto t0 = std::chrono::steady_clock::now();
            filter->Apply(b);
            const auto t1 = std::chrono::steady_clock::now();
            best = std::min(best, std::chrono::duration<double, std::milli>(t1 - t0).count());
        }
        total += best;
        std::printf("%-22s %8.2f\n", filter->name().c_str(), best);
    }
    std::printf("%-22s %8.2f\n", "all twenty", total);
    return 0;
}
