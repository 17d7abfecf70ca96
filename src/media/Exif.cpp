#include "media/Exif.h"

#include <fstream>
#include <iterator>
#include <vector>

#include <libexif/exif-data.h>

#include "media/Bitmap.h"
#include "media/ImageImporter.h"

namespace quillet {

int ReadExifOrientation(const uint8_t* data, size_t size) {
    if (!data || size == 0) return 0;
    ExifData* ed = exif_data_new();
    if (!ed) return 0;
    // Read the block as it is: without this libexif would add the mandatory
    // tags that are missing, the Exif version among them.
    exif_data_unset_option(ed, EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_load_data(ed, data, static_cast<unsigned int>(size));
    int result = 0;
    ExifContent* exif = ed->ifd[EXIF_IFD_EXIF];
    ExifContent* ifd0 = ed->ifd[EXIF_IFD_0];
    if (exif && exif->count > 0 && exif_content_get_entry(exif, EXIF_TAG_EXIF_VERSION) && ifd0) {
        ExifEntry* entry = exif_content_get_entry(ifd0, EXIF_TAG_ORIENTATION);
        if (entry && entry->data && entry->size >= 2 &&
            (entry->format == EXIF_FORMAT_SHORT || entry->format == EXIF_FORMAT_SSHORT)) {
            const int value = exif_get_short(entry->data, exif_data_get_byte_order(ed));
            if (value >= 1 && value <= 8) result = value;
        }
    }
    exif_data_unref(ed);
    return result;
}

int ReadExifOrientation(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return 0;
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return ReadExifOrientation(bytes.data(), bytes.size());
}

void ApplyExifOrientation(SlideImage& image, int orientation) {
    switch (orientation) {
        case 2: SetFlipHorizontal(image, !image.flipHorizontal); break;
        case 3: RotateSlideImage(image, 180); break;
        case 4: SetFlipVertical(image, !image.flipVertical); break;
        case 6: RotateSlideImage(image, 90); break;
        case 8: RotateSlideImage(image, 270); break;
        default: break;  // 1 is upright; 5 and 7 (a turn and a mirror) stay as they are
    }
}

void PreviewSize(int naturalWidth, int naturalHeight, int& width, int& height) {
    width = naturalWidth;
    height = naturalHeight;
    if (naturalWidth <= 0 || naturalHeight <= 0) return;
    if (width > 256) {
        width = 256;
        height = static_cast<int>(static_cast<double>(naturalHeight) * 256 / naturalWidth + 0.5);
    }
    if (height > 256) {
        height = 256;
        width = static_cast<int>(static_cast<double>(naturalWidth) * 256 / naturalHeight + 0.5);
    }
    if (width < 1) width = 1;
    if (height < 1) height = 1;
}

AssignFailure AssignPicture(SlideImage& image, const std::string& path, const AssignOptions& options,
                            std::string* error) {
    ImageImporter importer;
    if (!importer.Open(path)) {
        if (error) *error = importer.error();
        return importer.failure() == ImageImporter::Failure::NotFound ? AssignFailure::NotFound
                                                                       : AssignFailure::NotAnImage;
    }
    int w = 0, h = 0;
    importer.GetNaturalSize(w, h);
    if (options.preview) {
        int pw, ph;
        PreviewSize(w, h, pw, ph);
        if (!importer.Render(*options.preview, static_cast<uint32_t>(pw), static_cast<uint32_t>(ph), nullptr, 32)) {
            if (error) *error = importer.error().empty() ? "the picture cannot be drawn" : importer.error();
            return AssignFailure::NotAnImage;
        }
    }
    image.src = path;
    image.sourceWidth = w;
    image.sourceHeight = h;
    image.cropRect = {0, 0, w, h};
    const bool quarter = image.rotation == 90 || image.rotation == 270;
    image.bitmapWidth = quarter ? h : w;
    image.bitmapHeight = quarter ? w : h;
    if (!image.scaleToFit) {
        image.width = w;
        image.height = h;
    }
    FitSlideImage(image, options.stageWidth, options.stageHeight, options.originX, options.originY);
    if (options.applyExif) {
        ApplyExifOrientation(image, ReadExifOrientation(importer.fileBytes().data(), importer.fileBytes().size()));
        // A quarter turn swaps the placement size; fit the turned picture again.
        FitSlideImage(image, options.stageWidth, options.stageHeight, options.originX, options.originY);
    }
    return AssignFailure::None;
}

}  // namespace quillet
