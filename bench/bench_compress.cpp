// Writes a large movie tag by tag, compresses it and expands it again, and
// prints the throughput of each step and the process's peak memory after it.
// The writer sends each tag to the file as it is added and compression works
// through 64-byte buffers, so the peak should stay near one tag's size however
// large the movie is.
//
//   bench_compress [MEGABYTES=200] [FOLDER=$TMPDIR]
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "swf/SwfCompress.h"
#include "swf/SwfTags.h"
#include "swf/SwfWriter.h"

using namespace quillet;

namespace {

double PeakRssMb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0;  // kilobytes on Linux
}

double Seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

void Report(const char* step, uint64_t bytes, double seconds) {
    std::printf("%-10s %8.1f MB in %6.2f s  %7.1f MB/s  peak RSS %6.1f MB\n", step, bytes / 1e6, seconds,
                bytes / 1e6 / seconds, PeakRssMb());
}

bool SameFiles(const std::string& a, const std::string& b) {
    std::FILE* fa = std::fopen(a.c_str(), "rb");
    std::FILE* fb = std::fopen(b.c_str(), "rb");
    bool same = fa && fb;
    char ba[65536], bb[65536];
    while (same) {
        const size_t na = std::fread(ba, 1, sizeof ba, fa);
        const size_t nb = std::fread(bb, 1, sizeof bb, fb);
        if (na != nb || std::memcmp(ba, bb, na) != 0) same = false;
        if (na == 0) break;
    }
    if (fa) std::fclose(fa);
    if (fb) std::fclose(fb);
    return same;
}

}  // namespace

int main(int argc, char** argv) {
    const uint64_t megabytes = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 200;
    std::string folder = argc > 2 ? argv[2] : std::filesystem::temp_directory_path().string();
    std::string pattern = folder + "/quillet-bench-XXXXXX";
    if (!mkdtemp(pattern.data())) {
        std::perror("mkdtemp");
        return 1;
    }
    const std::string dir = pattern;
    const std::string plain = dir + "/movie.swf", packed = dir + "/movie_c.swf", back = dir + "/movie_back.swf";
    std::printf("movie of %llu MB in %s (start: peak RSS %.1f MB)\n", static_cast<unsigned long long>(megabytes),
                dir.c_str(), PeakRssMb());

    // One-megabyte bitmap tags: half noise, half a repeating pattern, so zlib has
    // something to do either way.
    const size_t tagBytes = 1 << 20;
    std::vector<uint8_t> payload(tagBytes);
    uint32_t x = 2463534242u;
    for (size_t i = 0; i < tagBytes; ++i) {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        payload[i] = i % 2048 < 1024 ? static_cast<uint8_t>(x) : static_cast<uint8_t>(i / 7);
    }

    auto start = std::chrono::steady_clock::now();
    uint64_t written = 0;
    {
        SwfWriter writer;
        writer.Setup(640 * 20, 480 * 20, 12, 6);
        if (!writer.Open(plain, true)) {
            std::fprintf(stderr, "cannot open %s\n", plain.c_str());
            return 1;
        }
        for (uint64_t i = 0; i < megabytes; ++i) {
            payload[0] = static_cast<uint8_t>(i);
            written += writer.AddTag(std::make_unique<DefineBitsJPEG2Tag>(static_cast<uint16_t>(i + 1), payload));
            writer.AddTag(std::make_unique<ShowFrameTag>());
        }
        writer.AddTag(std::make_unique<EndTag>());
        written = writer.Close();
    }
    Report("write", written, Seconds(start));

    start = std::chrono::steady_clock::now();
    if (!CompressSwf(plain, packed, true)) {
        std::fprintf(stderr, "compression failed (error %d)\n", SwfLastError());
        return 1;
    }
    Report("compress", written, Seconds(start));
    std::printf("           compressed to %.1f MB (%.1f %%)\n", std::filesystem::file_size(packed) / 1e6,
                100.0 * std::filesystem::file_size(packed) / written);

    start = std::chrono::steady_clock::now();
    if (!ExpandSwf(packed, back, true)) {
        std::fprintf(stderr, "expansion failed (error %d)\n", SwfLastError());
        return 1;
    }
    Report("expand", written, Seconds(start));
    const bool same = SameFiles(plain, back);
    std::printf("round trip: %s\n", same ? "identical bytes" : "DIFFERENT BYTES");
    std::filesystem::remove_all(dir);
    return same ? 0 : 1;
}
