#include "effects/CaptionDefaults.h"

#include <libexif/exif-data.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include <sys/stat.h>

#include "effects/FontFace.h"

namespace quillet {

namespace {

// "YYYY:MM:DD HH:MM:SS" as Exif writes it; empty when it is not that.
std::string ExifDay(ExifData* data, ExifTag tag) {
    ExifEntry* entry = exif_data_get_entry(data, tag);
    if (!entry || entry->format != EXIF_FORMAT_ASCII || entry->size < 10) return {};
    const std::string text(reinterpret_cast<const char*>(entry->data), 10);
    for (size_t i = 0; i < text.size(); ++i) {
        const bool separator = i == 4 || i == 7;
        if (separator ? text[i] != ':' : (text[i] < '0' || text[i] > '9')) return {};
    }
    if (text == "0000:00:00") return {};
    return text.substr(0, 4) + "-" + text.substr(5, 2) + "-" + text.substr(8, 2);
}

}  // namespace

std::string PictureNameText(const std::string& path) { return std::filesystem::path(path).stem().string(); }

std::string PictureDateText(const std::string& path) {
    if (ExifData* data = exif_data_new_from_file(path.c_str())) {
        std::string day = ExifDay(data, EXIF_TAG_DATE_TIME_ORIGINAL);
        if (day.empty()) day = ExifDay(data, EXIF_TAG_DATE_TIME);
        exif_data_unref(data);
        if (!day.empty()) return day;
    }
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) return {};
    const std::time_t t = info.st_mtime;
    std::tm local{};
    if (!localtime_r(&t, &local)) return {};
    char day[16];
    std::strftime(day, sizeof day, "%Y-%m-%d", &local);
    return day;
}

Caption MakePictureCaption(const std::string& text, int stageHeight) {
    Caption caption;
    caption.text = text;
    caption.fontName = kFallbackFontFamily;
    // An em of H/16 pixels is H/16 * 3/4 points.
    caption.fontSize = std::max(6, stageHeight * 3 / 64);
    caption.color = 0xFFFFFF;
    caption.hAlign = Caption::HCenter;
    caption.vAlign = Caption::Bottom;
    caption.alignToDoc = true;
    caption.y = -std::max(2, stageHeight / 40);
    caption.showTillNext = true;
    caption.effect = "Fade In";
    return caption;
}

}  // namespace quillet
