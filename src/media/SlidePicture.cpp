#include "media/SlidePicture.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "media/ImageFilter.h"
#include "media/ImageImporter.h"
#include "media/JpegEncoder.h"
#include "media/PixelOps.h"
#include "media/Progress.h"

namespace quillet {

namespace {

bool isQuarterTurn(int rotation) { return rotation == 90 || rotation == 270; }

// The largest displayed size a slide may have (the picture panel's range).
constexpr int kMaxSlideSide = 10000;

bool needsAlpha(ImageType t) {
    return t == ImageType::JpegTransparent || t == ImageType::Rgb8Transparent || t == ImageType::Rgb24Transparent;
}

PreparedPicture failed(PreparedPicture p, const std::string& path, const std::string& why) {
    p.ok = false;
    p.error = path + ": " + why;
    return p;
}

}  // namespace

bool BuildAlphaPlane(ImageImporter& importer, const SlideImage& image, Bitmap& plane) {
    if (image.width <= 0 || image.height <= 0) return false;
    const uint32_t w = static_cast<uint32_t>(image.width);
    const uint32_t h = static_cast<uint32_t>(image.height);
    CropRect source;
    const CropRect* sourcePtr = nullptr;
    if (image.crop) {
        source = CropToSourceRect(image);
        sourcePtr = &source;
    }
    Bitmap alpha;
    if (!importer.RenderAlpha(alpha, sourcePtr)) return false;
    if (!importer.hasAlpha()) {
        // An opaque picture resamples to an opaque plane whatever the steps.
        plane.Create(w, h, 8);
        std::memset(plane.pixels(), 255, plane.byteSize());
        return true;
    }
    if (image.flipVertical) alpha.FlipVertical();
    if (image.flipHorizontal) alpha.FlipHorizontal();
    uint32_t aw = alpha.width(), ah = alpha.height();
    if (image.rotation != 0) {
        auto turned = pixelops::Rotate(alpha.pixels(), aw, ah, 1, image.rotation);
        alpha.Create(aw, ah, 8, std::move(turned));
    }
    alpha.Resize(w, h);
    plane.CopyFrom(alpha);
    return true;
}

bool BuildAlphaPlane(const SlideImage& image, Bitmap& plane) {
    ImageImporter importer;
    if (!importer.Open(image.src)) return false;
    return BuildAlphaPlane(importer, image, plane);
}

size_t EstimatePrepareBytes(const ImageImporter& importer, const SlideImage& image) {
    size_t bytes = importer.fileBytes().size() + importer.DecodeBytes();
    if (image.imageType == ImageType::JpegImportData || image.imageType == ImageType::JpegExternal) return bytes;
    const size_t shown = static_cast<size_t>(std::max(image.width, 0)) * static_cast<size_t>(std::max(image.height, 0));
    bytes += shown * 3 * 3;  // the render, a filter's working copy, the turned copy
    bytes += shown * 2;      // the encoded result (lossless may be larger than JPEG)
    if (needsAlpha(image.imageType)) {
        int w = 0, h = 0;
        importer.GetNaturalSize(w, h);
        const size_t part = image.crop ? static_cast<size_t>(std::max(image.cropRect.width(), 0)) *
                                             static_cast<size_t>(std::max(image.cropRect.height(), 0))
                                       : static_cast<size_t>(w) * static_cast<size_t>(h);
        bytes += part * 2 + shown * 2;  // the plane at the picture's size, turned, and resampled
    }
    return bytes;
}

PreparedPicture PrepareSlideImage(const SlideImage& settings, const std::vector<std::unique_ptr<ImageFilter>>& filters,
                                  const PrepareOptions& options) {
    ImageImporter importer;
    if (!importer.Open(settings.src)) {
        PreparedPicture out;
        out.type = settings.imageType;
        return failed(std::move(out), settings.src, importer.error());
    }
    return PrepareSlideImage(importer, settings, filters, options);
}

PreparedPicture PrepareSlideImage(ImageImporter& importer, const SlideImage& settings,
                                  const std::vector<std::unique_ptr<ImageFilter>>& filters,
                                  const PrepareOptions& options) {
    PreparedPicture out;
    out.type = settings.imageType;
    out.quality = settings.quality;
    ProgressSink* progress = options.progress;
    importer.GetNaturalSize(out.naturalWidth, out.naturalHeight);

    SlideImage image = settings;
    NormaliseOrientation(image);
    // The picture's natural size decides the geometry, not what was saved.
    image.sourceWidth = out.naturalWidth;
    image.sourceHeight = out.naturalHeight;

    if (image.imageType == ImageType::JpegImportData) {
        // The file's own bytes, untouched by crop, filters or turns.
        out.jpeg = importer.fileBytes();
        out.width = static_cast<uint32_t>(image.width > 0 ? image.width : out.naturalWidth);
        out.height = static_cast<uint32_t>(image.height > 0 ? image.height : out.naturalHeight);
        out.ok = true;
        return out;
    }
    if (image.imageType == ImageType::JpegExternal) {
        // Loaded into a placeholder at play time; only its sizes are needed.
        out.width = static_cast<uint32_t>(image.width > 0 ? image.width : 0);
        out.height = static_cast<uint32_t>(image.height > 0 ? image.height : 0);
        out.ok = true;
        return out;
    }
    if (image.width <= 0 || image.height <= 0)
        return failed(std::move(out), settings.src, "the slide's picture has no size");
    if (image.width > kMaxSlideSide || image.height > kMaxSlideSide)
        return failed(std::move(out), settings.src,
                      "the slide's size " + std::to_string(image.width) + "x" + std::to_string(image.height) +
                          " is beyond " + std::to_string(kMaxSlideSide) + " pixels a side");
    if (imageTypeKeyword(image.imageType)[0] == '\0')
        return failed(std::move(out), settings.src, "unknown image type");

    // Rendered unturned at the size it will have once turned.
    uint32_t renderW = static_cast<uint32_t>(image.width);
    uint32_t renderH = static_cast<uint32_t>(image.height);
    if (isQuarterTurn(image.rotation)) std::swap(renderW, renderH);
    CropRect source;
    const CropRect* sourcePtr = nullptr;
    if (image.crop) {
        source = CropToSourceRect(image);
        sourcePtr = &source;
    }
    Bitmap bitmap;
    if (!importer.Render(bitmap, renderW, renderH, sourcePtr, 24))
        return failed(std::move(out), settings.src, importer.error().empty() ? "the picture cannot be drawn" : importer.error());

    if (progress) progress->setSecondaryText("Filtering image...");
    for (const auto& filter : filters) {
        if (filter) filter->Apply(bitmap);
        if (progress && progress->cancelled()) {
            out.cancelled = true;
            break;
        }
    }

    if (image.flipVertical) bitmap.FlipVertical();
    if (image.flipHorizontal) bitmap.FlipHorizontal();
    bitmap.Rotate(image.rotation);
    out.width = bitmap.width();
    out.height = bitmap.height();

    if (progress) progress->setSecondaryText("Writing image...");
    if (needsAlpha(image.imageType) && !BuildAlphaPlane(importer, image, out.alpha))
        return failed(std::move(out), settings.src, "the picture's alpha channel cannot be drawn");
    if (image.imageType == ImageType::Jpeg) {
        out.jpeg = EncodeJpeg(bitmap.pixels(), out.width, out.height, 3, image.quality);
        if (out.jpeg.empty()) return failed(std::move(out), settings.src, "JPEG compression failed");
        if (!options.keepPixels) bitmap.Free();
    }
    out.pixels = std::move(bitmap);
    out.ok = true;
    return out;
}

}  // namespace quillet
