// Picture import and encoding on 50 real photos (the mate-backgrounds set,
// repeated to reach 50): per photo, the time to decode it at full size, to
// render it at its slide size on a 640x480 stage (decode and scale, the
// export path), to encode that as JPEG, and a whole PrepareSlideImage; then
// the process's peak memory after each phase.
//   bench_pictures [FOLDER_GLOB_ROOT]
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "media/Bitmap.h"
#include "media/ImageImporter.h"
#include "media/JpegEncoder.h"
#include "media/MagickReader.h"
#include "media/SlideImage.h"
#include "media/SlidePicture.h"

using namespace quillet;
using Clock = std::chrono::steady_clock;

namespace {

double ms(Clock::time_point a, Clock::time_point b) { return std::chrono::duration<double, std::milli>(b - a).count(); }

long peakMiB() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024;
}

struct Stats {
    std::vector<double> values;
    void add(double v) { values.push_back(v); }
    double mean() const {
        double s = 0;
        for (double v : values) s += v;
        return values.empty() ? 0 : s / values.size();
    }
    double max() const { return values.empty() ? 0 : *std::max_element(values.begin(), values.end()); }
};

}  // namespace

int main(int argc, char** argv) {
    const std::filesystem::path root = argc > 1 ? argv[1] : "/usr/share/backgrounds/mate";
    std::vector<std::string> photos;
    std::error_code ec;
    for (auto it = std::filesystem::recursive_directory_iterator(root, ec); !ec && it != std::filesystem::recursive_directory_iterator(); ++it)
        if (it->path().extension() == ".jpg") photos.push_back(it->path().string());
    std::sort(photos.begin(), photos.end());
    if (photos.empty()) {
        std::fprintf(stderr, "bench_pictures: no photos under %s\n", root.c_str());
        return 1;
    }
    std::vector<std::string> set;
    while (set.size() < 50) set.push_back(photos[set.size() % photos.size()]);
    std::printf("%zu photos (%zu distinct), stage 640x480\n\n", set.size(), photos.size());

    // Phase 1: the export path, one photo after another.
    Stats open, render, encode, prepare;
    for (const std::string& path : set) {
        auto t0 = Clock::now();
        ImageImporter im;
        if (!im.Open(path)) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(), im.error().c_str());
            return 1;
        }
        auto t1 = Clock::now();
        SlideImage s;
        im.GetNaturalSize(s.sourceWidth, s.sourceHeight);
        s.src = path;
        FitSlideImage(s, 640, 480);
        Bitmap b;
        im.Render(b, static_cast<uint32_t>(s.width), static_cast<uint32_t>(s.height));
        auto t2 = Clock::now();
        auto jpeg = EncodeJpeg(b.pixels(), b.width(), b.height(), 3, 80);
        auto t3 = Clock::now();
        PreparedPicture p = PrepareSlideImage(s, {});
        auto t4 = Clock::now();
        if (!p.ok || jpeg.empty()) {
            std::fprintf(stderr, "%s: preparation failed\n", path.c_str());
            return 1;
        }
        open.add(ms(t0, t1));
        render.add(ms(t1, t2));
        encode.add(ms(t2, t3));
        prepare.add(ms(t3, t4));
    }
    const long peakExport = peakMiB();

    // Phase 2: decoding at full size, the direct libjpeg path against ImageMagick.
    Stats full, magick;
    std::vector<uint8_t> bytes;
    for (const std::string& path : set) {
        ImageImporter im;
        im.Open(path);
        int w, h;
        im.GetNaturalSize(w, h);
        Bitmap b;
        auto t0 = Clock::now();
        im.Render(b, static_cast<uint32_t>(w), static_cast<uint32_t>(h));
        auto t1 = Clock::now();
        full.add(ms(t0, t1));
    }
    const long peakFull = peakMiB();
    for (size_t i = 0; i < 16 && i < set.size(); ++i) {
        ImageImporter im;
        im.Open(set[i]);
        MagickReader reader(im.fileBytes().data(), im.fileBytes().size(), "jpg");
        Bitmap b;
        std::string error;
        auto t0 = Clock::now();
        reader.Decode(b, error);
        auto t1 = Clock::now();
        magick.add(ms(t0, t1));
    }
    const long peakMagick = peakMiB();

    std::printf("per photo, ms                         mean      max\n");
    std::printf("read file + header                %8.1f %8.1f\n", open.mean(), open.max());
    std::printf("render at slide size (decode+scale)%7.1f %8.1f\n", render.mean(), render.max());
    std::printf("JPEG encode at quality 80         %8.1f %8.1f\n", encode.mean(), encode.max());
    std::printf("PrepareSlideImage, type jpeg      %8.1f %8.1f\n", prepare.mean(), prepare.max());
    std::printf("decode at full size (libjpeg)     %8.1f %8.1f\n", full.mean(), full.max());
    std::printf("decode at full size (ImageMagick) %8.1f %8.1f   (first 16 photos)\n", magick.mean(), magick.max());
    std::printf("\npeak memory: %ld MiB after the export path, %ld MiB after full-size decodes, %ld MiB after ImageMagick\n",
                peakExport, peakFull, peakMagick);
    return 0;
}
