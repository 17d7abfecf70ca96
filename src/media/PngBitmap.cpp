#include "media/PngBitmap.h"

#include <csetjmp>
#include <cstring>
#include <vector>

#include <png.h>

namespace quillet {

namespace {

struct Cursor {
    const uint8_t* data;
    size_t size;
    size_t position;
};

void readFromMemory(png_structp png, png_bytep out, png_size_t count) {
    auto* c = static_cast<Cursor*>(png_get_io_ptr(png));
    if (count > c->size - c->position) png_error(png, "read past the end of the data");
    std::memcpy(out, c->data + c->position, count);
    c->position += count;
}

void quietWarning(png_structp, png_const_charp) {}
[[noreturn]] void quietError(png_structp png, png_const_charp) { png_longjmp(png, 1); }

// The libpng part; rows must be sized by the caller from the header, so this
// runs in two calls around a plain buffer without destructors in between.
struct Decoded {
    png_uint_32 width = 0, height = 0;
    int channels = 0;
    std::vector<png_bytep> rows;  // lives with the caller, safe across a longjmp
};

bool readImage(Cursor& cursor, std::vector<uint8_t>& pixels, Decoded& info) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, quietError, quietWarning);
    if (!png) return false;
    png_infop pinfo = png_create_info_struct(png);
    if (!pinfo) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &pinfo, nullptr);
        return false;
    }
    png_set_read_fn(png, &cursor, readFromMemory);
    png_set_sig_bytes(png, 8);
    png_read_info(png, pinfo);
    png_set_strip_16(png);
    png_set_palette_to_rgb(png);
    png_set_expand_gray_1_2_4_to_8(png);
    if (png_get_valid(png, pinfo, PNG_INFO_tRNS)) png_set_tRNS_to_alpha(png);
    png_set_gray_to_rgb(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, pinfo);
    info.width = png_get_image_width(png, pinfo);
    info.height = png_get_image_height(png, pinfo);
    info.channels = png_get_channels(png, pinfo);
    if ((info.channels != 3 && info.channels != 4) || info.width == 0 || info.height == 0 ||
        static_cast<uint64_t>(info.width) * info.height > (1u << 28))
        png_error(png, "unsupported layout");
    const size_t rowBytes = static_cast<size_t>(info.width) * info.channels;
    pixels.resize(rowBytes * info.height);
    info.rows.resize(info.height);
    for (png_uint_32 y = 0; y < info.height; ++y) info.rows[y] = pixels.data() + y * rowBytes;
    png_read_image(png, info.rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &pinfo, nullptr);
    return true;
}

}  // namespace

PngBitmap::~PngBitmap() { alpha_.reset(); }

void PngBitmap::Free() {
    Bitmap::Free();
    alpha_.reset();
}

bool PngBitmap::Decode(const uint8_t* data, size_t size) {
    Free();
    if (!data || size < 8 || png_sig_cmp(data, 0, 8) != 0) return false;
    Cursor cursor{data, size, 8};
    std::vector<uint8_t> pixels;
    Decoded info;
    if (!readImage(cursor, pixels, info)) return false;
    Create(info.width, info.height, static_cast<uint16_t>(info.channels * 8), pixels.data());
    if (info.channels == 4) {
        const size_t count = static_cast<size_t>(info.width) * info.height;
        alpha_ = std::make_unique_for_overwrite<uint8_t[]>(count);
        for (size_t i = 0; i < count; ++i) alpha_[i] = pixels[i * 4 + 3];
    }
    return true;
}

}  // namespace quillet
