// The project file (.qpj): the show, its slides and the publish settings as
// one XML text file.
//
//   <xml version="1.0">
//   <quillet version_major="1" version_minor="119">
//   <slide_show ...>  <slides> <slide ... > ... </slide> </slides>
//                     <swf_data> <caption_data> <sound_data>  </slide_show>
//   <publish_data ... > ... </publish_data>
//   </quillet>
//
//   </xml>
//
// Loading is all or nothing: the show and the publish settings are changed
// only when the whole file has been read.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillet {

class PublishSettings;
class SlideShow;
class XmlNode;
class XmlWriter;

// Asks the user what to do about a slide picture that is not where the
// project says. The desktop program shows its relocate dialog; a batch run
// has no handler and the load fails instead.
class MissingPictureHandler {
public:
    enum class Choice {
        DontRelocate,  // drop the slide and go on loading
        Cancel,        // drop the slide and fail the whole load
        Replace,       // pick a different picture
        Relocate       // pick the folder that holds a file of the same name
    };
    virtual ~MissingPictureHandler() = default;

    // The dialog "Can't find the image." with the text
    // "The image file %s could not be found. Would you like to relocate it?".
    virtual Choice ask(const std::string& missingPath) = 0;
    // The open-file dialog "Choose an image"; nothing when it is dismissed.
    virtual std::optional<std::string> chooseImage(const std::string& missingPath) = 0;
    // The folder browser "Relocate File..." / "Please Relocate:" for a folder
    // holding `fileName`; nothing when it is dismissed.
    virtual std::optional<std::string> chooseFolder(const std::string& fileName) = 0;
    // Told when relocation failed ("The image was not relocated and will not
    // be added to the slide show." under "Can't find the image.").
    virtual void notRelocated(const std::string& missingPath) {}
};

struct LoadOptions {
    // Null for a batch run: a missing picture fails the load.
    MissingPictureHandler* handler = nullptr;
    // Files larger than this are refused before parsing.
    size_t maxFileSize = 64u << 20;
    // Shows with more slides than this are refused.
    size_t maxSlides = 100000;
};

// The message for a project file that does not exist.
inline constexpr const char* kProjectNotFound = "The project could not be opened because the file was not found.";

// Loads `path` into `show` and `publish`. On failure both are left exactly as
// they were and `error` holds the problem (the caller names the file).
bool LoadProject(const std::string& path, SlideShow& show, PublishSettings& publish, std::string* error = nullptr,
                 const LoadOptions& options = {});
// The same for text held in memory; relative paths are taken relative to
// `projectFolder`, and missing pictures are looked for as for a file.
bool LoadProjectText(std::string_view text, const std::string& projectFolder, SlideShow& show,
                     PublishSettings& publish, std::string* error = nullptr, const LoadOptions& options = {});

// Saves atomically: the text goes to a temporary file beside `path`, is
// flushed to the disk and then renamed over it, so a failure never destroys
// the previous file.
bool SaveProject(const std::string& path, const SlideShow& show, const PublishSettings& publish,
                 std::string* error = nullptr);
// The whole file as text.
std::string ProjectText(const SlideShow& show, const PublishSettings& publish);

// The pieces, for tests and tools.
void WriteSlideShow(XmlWriter& writer, const SlideShow& show);

}  // namespace quillet
