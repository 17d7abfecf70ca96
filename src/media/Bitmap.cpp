#include "media/Bitmap.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "media/PixelOps.h"

namespace quillet {

void Bitmap::Free() {
    pixels_.reset();
    byteSize_ = 0;
}

bool Bitmap::Create(uint32_t width, uint32_t height, uint16_t bitsPerPixel) {
    Free();
    width_ = width;
    height_ = height;
    bitsPerPixel_ = bitsPerPixel;
    byteSize_ = static_cast<size_t>(bitsPerPixel >> 3) * width * height;
    pixels_ = std::make_unique_for_overwrite<uint8_t[]>(byteSize_ ? byteSize_ : 1);
    return true;
}

bool Bitmap::Create(uint32_t width, uint32_t height, uint16_t bitsPerPixel, const uint8_t* data) {
    Create(width, height, bitsPerPixel);
    if (data && byteSize_) std::memcpy(pixels_.get(), data, byteSize_);
    return true;
}

bool Bitmap::Create(uint32_t width, uint32_t height, uint16_t bitsPerPixel, std::unique_ptr<uint8_t[]> data) {
    if (!data) return Create(width, height, bitsPerPixel);
    Free();
    width_ = width;
    height_ = height;
    bitsPerPixel_ = bitsPerPixel;
    byteSize_ = static_cast<size_t>(bitsPerPixel >> 3) * width * height;
    pixels_ = std::move(data);
    return true;
}

void Bitmap::SetBuffer(std::unique_ptr<uint8_t[]> data, size_t byteSize) {
    pixels_ = std::move(data);
    byteSize_ = pixels_ ? byteSize : 0;
}

std::unique_ptr<uint8_t[]> Bitmap::ReleaseBuffer() {
    byteSize_ = 0;
    return std::move(pixels_);
}

void Bitmap::Resize(uint32_t newWidth, uint32_t newHeight) {
    if (!pixels_ || (newWidth == width_ && newHeight == height_)) return;
    if (channels() == 0) return;
    auto result = Resample(pixels_.get(), width_, height_, channels(), newWidth, newHeight);
    if (!result) return;
    width_ = newWidth;
    height_ = newHeight;
    byteSize_ = static_cast<size_t>(channels()) * newWidth * newHeight;
    pixels_ = std::move(result);
}

void Bitmap::FlipVertical() {
    if (!pixels_) return;
    pixelops::FlipVertical(pixels_.get(), width_, height_, channels());
}

void Bitmap::FlipHorizontal() {
    if (!pixels_) return;
    pixelops::FlipHorizontal(pixels_.get(), width_, height_, channels());
}

void Bitmap::Rotate(int degrees) {
    if (degrees == 0 || !pixels_) return;
    const bool known = degrees == 90 || degrees == -270 || degrees == 270 || degrees == -90 ||
                       degrees == 180 || degrees == -180;
    if (!known || (bitsPerPixel_ != 24 && bitsPerPixel_ != 32)) {
        // Kept as it always behaved: an unsupported request leaves a blank
        // buffer of the same size rather than failing.
        pixels_ = std::make_unique<uint8_t[]>(byteSize_ ? byteSize_ : 1);
        return;
    }
    uint32_t w = width_, h = height_;
    auto turned = pixelops::Rotate(pixels_.get(), w, h, channels(), degrees);
    pixels_ = std::move(turned);
    width_ = w;
    height_ = h;
}

void Bitmap::CopyFrom(const Bitmap& other) {
    if (&other == this) return;
    Create(other.width_, other.height_, other.bitsPerPixel_, other.pixels_.get());
}

namespace {

struct Contribution {
    uint32_t first;               // first source index
    std::vector<float> weights;   // weights for first, first+1, ...
};

// One pass of the triangle filter: for each destination index the source
// indices that contribute and their normalised weights.
std::vector<Contribution> contributions(uint32_t sourceLength, uint32_t destLength) {
    std::vector<Contribution> list(destLength);
    const double s = static_cast<double>(destLength) / sourceLength;
    const double halfWidth = s < 1.0 ? 1.0 / s : 1.0;
    const double last = static_cast<double>(sourceLength) - 1;
    for (uint32_t i = 0; i < destLength; ++i) {
        const double c = i / s;
        const double lo = std::max(0.0, std::floor(c - halfWidth));
        const double hi = std::min(last, std::ceil(c + halfWidth));
        Contribution& entry = list[i];
        entry.first = static_cast<uint32_t>(lo);
        double sum = 0;
        std::vector<double> w;
        for (double j = lo; j <= hi; j += 1.0) {
            double d = std::fabs(c - j);
            double weight = 0;
            if (s < 1.0) {
                if (d * s < 1.0) weight = (1.0 - d * s) * s;
            } else if (d < 1.0) {
                weight = 1.0 - d;
            }
            w.push_back(weight);
            sum += weight;
        }
        // Drop the zero-weight samples at both ends so the inner loops only
        // multiply and add what counts.
        size_t begin = 0, end = w.size();
        while (begin < end && w[begin] == 0.0) ++begin;
        while (end > begin && w[end - 1] == 0.0) --end;
        if (begin == end) {
            // Nothing within reach (cannot happen for sane sizes): nearest sample.
            entry.first = static_cast<uint32_t>(std::clamp(std::lround(c), 0L, static_cast<long>(last)));
            entry.weights = {1.0f};
            continue;
        }
        entry.first += static_cast<uint32_t>(begin);
        for (size_t k = begin; k < end; ++k)
            entry.weights.push_back(static_cast<float>(sum != 0.0 ? w[k] / sum : w[k]));
    }
    return list;
}

inline uint8_t toByte(float v) {
    if (v <= 0.0f) return 0;
    if (v >= 255.0f) return 255;
    return static_cast<uint8_t>(v + 0.5f);
}

}  // namespace

std::unique_ptr<uint8_t[]> Resample(const uint8_t* source, uint32_t sourceWidth, uint32_t sourceHeight,
                                    uint32_t channels, uint32_t destWidth, uint32_t destHeight) {
    if (!source || channels == 0) return nullptr;
    if (sourceWidth == destWidth && sourceHeight == destHeight) return nullptr;
    if (!sourceWidth || !sourceHeight || !destWidth || !destHeight) return nullptr;

    // Horizontal pass: destination width by source height.
    const size_t midRow = static_cast<size_t>(destWidth) * channels;
    auto mid = std::make_unique_for_overwrite<uint8_t[]>(midRow * sourceHeight);
    if (destWidth == sourceWidth) {
        std::memcpy(mid.get(), source, midRow * sourceHeight);
    } else {
        const auto list = contributions(sourceWidth, destWidth);
        const size_t srcRow = static_cast<size_t>(sourceWidth) * channels;
        float acc[8];
        for (uint32_t y = 0; y < sourceHeight; ++y) {
            const uint8_t* in = source + y * srcRow;
            uint8_t* out = mid.get() + y * midRow;
            for (uint32_t x = 0; x < destWidth; ++x) {
                const Contribution& c = list[x];
                const uint8_t* p = in + static_cast<size_t>(c.first) * channels;
                if (channels <= 8) {
                    for (uint32_t k = 0; k < channels; ++k) acc[k] = 0;
                    for (float w : c.weights) {
                        for (uint32_t k = 0; k < channels; ++k) acc[k] += w * p[k];
                        p += channels;
                    }
                    for (uint32_t k = 0; k < channels; ++k) out[k] = toByte(acc[k]);
                } else {
                    for (uint32_t k = 0; k < channels; ++k) {
                        float a = 0;
                        const uint8_t* q = p + k;
                        for (float w : c.weights) {
                            a += w * *q;
                            q += channels;
                        }
                        out[k] = toByte(a);
                    }
                }
                out += channels;
            }
        }
    }

    // Vertical pass: destination width by destination height.
    if (destHeight == sourceHeight) return mid;
    auto result = std::make_unique_for_overwrite<uint8_t[]>(midRow * destHeight);
    const auto list = contributions(sourceHeight, destHeight);
    std::vector<float> acc(midRow);
    for (uint32_t y = 0; y < destHeight; ++y) {
        std::fill(acc.begin(), acc.end(), 0.0f);
        const Contribution& c = list[y];
        uint32_t row = c.first;
        for (float w : c.weights) {
            const uint8_t* in = mid.get() + row * midRow;
            for (size_t k = 0; k < midRow; ++k) acc[k] += w * in[k];
            ++row;
        }
        uint8_t* out = result.get() + y * midRow;
        for (size_t k = 0; k < midRow; ++k) out[k] = toByte(acc[k]);
    }
    return result;
}

}  // namespace quillet
