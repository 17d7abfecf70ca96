#include "media/SlidePicture.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "media/ImageFilter.h"
#include "media/ImageImporter.h"
#include "media/JpegBitmap.h"
#include "media/PixelOps.h"
#include "media/Progress.h"
#include "swf/tags/JpegTags.h"
#include "swf/tags/LosslessTags.h"

namespace quillet {

PreparedPicture::PreparedPicture() = default;
PreparedPicture::~PreparedPicture() = default;
PreparedPicture::PreparedPicture(PreparedPicture&&) noexcept = default;
PreparedPicture& PreparedPicture::operator=(PreparedPicture&&) noexcept = default;

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
    ProgressSink* progress = options.progress;
    importer.GetNaturalSize(out.naturalWidth, out.naturalHeight);

    SlideImage image = settings;
    NormaliseOrientation(image);
    // The picture's natural size decides the geometry, not what was saved.
    image.sourceWidth = out.naturalWidth;
    image.sourceHeight = out.naturalHeight;

    out.fillScaleX = BitmapFillScale(image, true);
    out.fillScaleY = BitmapFillScale(image, false);

    if (image.imageType == ImageType::JpegImportData) {
        // The file's own bytes, untouched by crop, filters or turns.
        out.jpeg = importer.fileBytes();
        out.width = static_cast<uint32_t>(image.width > 0 ? image.width : out.naturalWidth);
        out.height = static_cast<uint32_t>(image.height > 0 ? image.height : out.naturalHeight);
        out.ok = true;
        return out;
    }
    if (image.imageType == ImageType::JpegExternal) {
        // Loaded into a placeholder at play time; only its scale is needed.
        out.externalScaleX = ExternalJpegScale(image, true);
        out.externalScaleY = ExternalJpegScale(image, false);
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
    Bitmap alpha;
    if (needsAlpha(image.imageType) && !BuildAlphaPlane(importer, image, alpha))
        return failed(std::move(out), settings.src, "the picture's alpha channel cannot be drawn");

    switch (image.imageType) {
        case ImageType::Jpeg:
            out.jpeg = EncodeJpeg(bitmap.pixels(), out.width, out.height, 3, image.quality);
            if (out.jpeg.empty()) return failed(std::move(out), settings.src, "JPEG compression failed");
            break;
        case ImageType::JpegTransparent: {
            // The players take the colours of a JPEG with alpha as already
            // multiplied by their alpha (and clamp them to it).
            std::vector<uint8_t> premultiplied(bitmap.pixels(), bitmap.pixels() + bitmap.byteSize());
            const uint8_t* a = alpha.pixels();
            for (size_t i = 0, n = alpha.byteSize(); i < n; ++i)
                for (size_t c = 0; c < 3; ++c) {
                    uint8_t& v = premultiplied[i * 3 + c];
                    v = static_cast<uint8_t>((v * a[i] + 127) / 255);
                }
            out.jpeg = EncodeJpeg(premultiplied.data(), out.width, out.height, 3, image.quality);
            if (out.jpeg.empty()) return failed(std::move(out), settings.src, "JPEG compression failed");
            out.alphaZlib = ZlibCompress(alpha.pixels(), alpha.byteSize());
            break;
        }
        case ImageType::Rgb8:
        case ImageType::Rgb15:
        case ImageType::Rgb24: {
            const int bits = image.imageType == ImageType::Rgb8 ? 8 : (image.imageType == ImageType::Rgb15 ? 15 : 24);
            out.lossless = DefineBitsLosslessTag::FromRgb(0, out.width, out.height, bitmap.pixels(), bits, 3);
            break;
        }
        case ImageType::Rgb8Transparent:
        case ImageType::Rgb24Transparent: {
            const int bits = image.imageType == ImageType::Rgb8Transparent ? 8 : 32;
            out.lossless = DefineBitsLossless2Tag::FromRgbAndAlpha(0, out.width, out.height, bitmap.pixels(),
                                                                   alpha.pixels(), bits);
            break;
        }
        default: break;
    }
    if ((image.imageType != ImageType::Jpeg && image.imageType != ImageType::JpegTransparent) && !out.lossless)
        return failed(std::move(out), settings.src, "the lossless bitmap cannot be built");
    if (options.keepPixels) {
        out.pixels = std::make_unique<Bitmap>();
        *out.pixels = std::move(bitmap);
    }
    out.ok = true;
    return out;
}

std::unique_ptr<SwfTag> MakeBitmapTag(PreparedPicture& picture, uint16_t characterId) {
    if (!picture.hasBitmap()) return nullptr;
    switch (picture.type) {
        case ImageType::Jpeg:
        case ImageType::JpegImportData:
            return std::make_unique<DefineBitsJPEG2Tag>(characterId, std::move(picture.jpeg));
        case ImageType::JpegTransparent:
            return std::make_unique<DefineBitsJPEG3Tag>(characterId, std::move(picture.jpeg),
                                                        std::move(picture.alphaZlib));
        default:
            if (!picture.lossless) return nullptr;
            picture.lossless->SetId(characterId);
            return std::unique_ptr<SwfTag>(picture.lossless.release());
    }
}

std::string ExternalJpegTargetName(int counter) {
    char name[32];
    std::snprintf(name, sizeof name, "jpegtarget_%d", counter);
    return name;
}

}  // namespace quillet
