// Fuzz target for the project reader: any bytes must load or fail cleanly,
// and whatever loads must save and load again, reaching a fixed point after
// the format's one-way fields have settled.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "model/ProjectFile.h"
#include "model/PublishSettings.h"
#include "model/SlideShow.h"

using namespace quillet;

namespace {

// Keeps every image slide by "replacing" its picture with a fixed name, so
// the slides get read and written whatever their files.
class KeepEverything : public MissingPictureHandler {
public:
    Choice ask(const std::string&) override { return Choice::Replace; }
    std::optional<std::string> chooseImage(const std::string&) override { return std::string("/fuzz/picture.bmp"); }
    std::optional<std::string> chooseFolder(const std::string&) override { return std::nullopt; }
};

bool load(std::string_view text, SlideShow& show, PublishSettings& publish) {
    static KeepEverything handler;
    LoadOptions options;
    options.handler = &handler;
    options.maxSlides = 5000;
    std::string error;
    return LoadProjectText(text, "/fuzz", show, publish, &error, options);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    SlideShow show;
    PublishSettings publish;
    if (!load(std::string_view(reinterpret_cast<const char*>(data), size), show, publish)) return 0;

    // Written text must read back; the second rewrite must equal the first.
    const std::string first = ProjectText(show, publish);
    SlideShow again;
    PublishSettings againPublish;
    if (!load(first, again, againPublish)) std::abort();
    const std::string second = ProjectText(again, againPublish);
    SlideShow third;
    PublishSettings thirdPublish;
    if (!load(second, third, thirdPublish)) std::abort();
    if (ProjectText(third, thirdPublish) != second) std::abort();
    return 0;
}
