// Captions at scale: 1,000 captions over 100 blank slides (ten faces and
// styles, every effect, accented text) exported against the same show
// without captions; prints both times, the difference and the fonts defined.
// Run by hand: bench_captions [slides] [captions per slide].
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "io/TempFolder.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

using namespace quillet;
using Clock = std::chrono::steady_clock;

namespace {

void Build(SlideShow& show, int slides, int perSlide) {
    const char* faces[] = {"DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono", "Arial"};
    const auto& effects = CaptionEffectNames();
    for (int i = 0; i < slides; ++i) {
        auto slide = show.createSlide(SlideType::Blank);
        slide->duration = 3000;
        for (int k = 0; perSlide > 0 && k < perSlide; ++k) {
            Caption c;
            c.text = "Slide " + std::to_string(i + 1) + ", caption " + std::to_string(k + 1) + " \xc3\xa9t\xc3\xa9";
            c.fontName = faces[k % 4];
            c.bold = k % 3 == 1;
            c.italic = k % 5 == 2;
            c.fontSize = 12 + 4 * (k % 6);
            c.effect = effects[static_cast<size_t>(k) % effects.size()];
            c.startTime = static_cast<uint32_t>(k * 100);
            c.showTillNext = k % 2 == 0;
            c.alignToDoc = false;
            c.x = 20 + 30 * k;
            c.y = 20 + 40 * k;
            slide->captions.items.push_back(c);
        }
        show.append(std::move(slide));
    }
}

double Export(const SlideShow& show, const std::string& path, int* fonts) {
    MovieExporter exporter(show);
    const auto start = Clock::now();
    const ExportResult r = exporter.ExportMovie(path);
    const double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    if (!r.ok) std::fprintf(stderr, "export failed: %s\n", r.error.c_str());
    SwfReader reader;
    *fonts = 0;
    if (reader.ReadFile(path))
        for (const auto& tag : reader.Tags()) *fonts += dynamic_cast<const DefineFont2Tag*>(tag.get()) != nullptr;
    return ms;
}

}  // namespace

int main(int argc, char** argv) {
    const int slides = argc > 1 ? std::atoi(argv[1]) : 100;
    const int perSlide = argc > 2 ? std::atoi(argv[2]) : 10;
    std::string error;
    const std::string with = PrivateTempFile("with-captions.swf", &error);
    const std::string without = PrivateTempFile("without-captions.swf", &error);
    if (with.empty() || without.empty()) return 1;
    SlideShow plain, captioned;
    Build(plain, slides, 0);
    Build(captioned, slides, perSlide);
    int fontsPlain = 0, fontsCaptioned = 0;
    double best = 1e9, bestPlain = 1e9;
    for (int run = 0; run < 3; ++run) {
        bestPlain = std::min(bestPlain, Export(plain, without, &fontsPlain));
        best = std::min(best, Export(captioned, with, &fontsCaptioned));
    }
    std::printf("%d slides, %d captions: export %.1f ms, without captions %.1f ms, captions %.1f ms; "
                "%d fonts defined; %ju bytes\n",
                slides, slides * perSlide, best, bestPlain, best - bestPlain, fontsCaptioned,
                static_cast<uintmax_t>(std::filesystem::file_size(with)));
    return 0;
}
