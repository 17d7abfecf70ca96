#include "media/JpegEncoder.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include <jpeglib.h>

namespace quillet {

namespace {

struct ErrorManager {
    jpeg_error_mgr pub;
    jmp_buf jump;
};

void onError(j_common_ptr cinfo) {
    auto* err = reinterpret_cast<ErrorManager*>(cinfo->err);
    longjmp(err->jump, 1);
}

void onMessage(j_common_ptr) {}

// A memory destination over a buffer we own. When the first guess of
// width x height x 3 + 1024 bytes is not enough, the buffer doubles rather
// than wrapping around.
struct Destination {
    jpeg_destination_mgr pub;
    std::unique_ptr<uint8_t[]> buffer;
    size_t capacity = 0;
    size_t written = 0;
};

void initDestination(j_compress_ptr cinfo) {
    auto* d = reinterpret_cast<Destination*>(cinfo->dest);
    d->pub.next_output_byte = d->buffer.get();
    d->pub.free_in_buffer = d->capacity;
}

boolean emptyBuffer(j_compress_ptr cinfo) {
    auto* d = reinterpret_cast<Destination*>(cinfo->dest);
    const size_t used = d->capacity;
    const size_t grown = d->capacity * 2;
    auto bigger = std::unique_ptr<uint8_t[]>(new (std::nothrow) uint8_t[grown]);
    if (!bigger) {
        cinfo->err->msg_code = 0;
        cinfo->err->error_exit(reinterpret_cast<j_common_ptr>(cinfo));
    }
    std::memcpy(bigger.get(), d->buffer.get(), used);
    d->buffer = std::move(bigger);
    d->capacity = grown;
    d->pub.next_output_byte = d->buffer.get() + used;
    d->pub.free_in_buffer = grown - used;
    return TRUE;
}

void termDestination(j_compress_ptr cinfo) {
    auto* d = reinterpret_cast<Destination*>(cinfo->dest);
    d->written = d->capacity - d->pub.free_in_buffer;
}

// The libjpeg part, kept free of objects with destructors between setjmp
// and any longjmp back to it.
bool compressInto(Destination& dest, const uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels,
                  int quality) {
    jpeg_compress_struct cinfo;
    ErrorManager err;
    cinfo.err = jpeg_std_error(&err.pub);
    err.pub.error_exit = onError;
    err.pub.output_message = onMessage;
    if (setjmp(err.jump)) {
        jpeg_destroy_compress(&cinfo);
        return false;
    }
    jpeg_create_compress(&cinfo);
    dest.pub.init_destination = initDestination;
    dest.pub.empty_output_buffer = emptyBuffer;
    dest.pub.term_destination = termDestination;
    cinfo.dest = &dest.pub;
    cinfo.image_width = width;
    cinfo.image_height = height;
    cinfo.input_components = static_cast<int>(channels);
    cinfo.in_color_space = channels == 4 ? JCS_EXT_RGBX : (channels == 1 ? JCS_GRAYSCALE : JCS_RGB);
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, quality, TRUE);
    jpeg_start_compress(&cinfo, TRUE);
    const size_t rowBytes = static_cast<size_t>(width) * channels;
    while (cinfo.next_scanline < cinfo.image_height) {
        JSAMPROW row = const_cast<JSAMPROW>(pixels + cinfo.next_scanline * rowBytes);
        jpeg_write_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_compress(&cinfo);
    jpeg_destroy_compress(&cinfo);
    return true;
}

bool compress(const uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels, int quality,
              Destination& dest) {
    if (!pixels || width == 0 || height == 0 || width > 65500 || height > 65500) return false;
    if (channels != 1 && channels != 3 && channels != 4) return false;
    dest.capacity = static_cast<size_t>(width) * height * 3 + 1024;
    dest.buffer.reset(new (std::nothrow) uint8_t[dest.capacity]);
    if (!dest.buffer) return false;
    return compressInto(dest, pixels, width, height, channels, quality);
}

int clampQuality(int q) { return q < 0 ? 0 : (q > 100 ? 100 : q); }

}  // namespace

std::vector<uint8_t> EncodeJpeg(const uint8_t* pixels, uint32_t width, uint32_t height, uint32_t channels,
                                int quality) {
    Destination dest;
    if (!compress(pixels, width, height, channels, clampQuality(quality), dest)) return {};
    return std::vector<uint8_t>(dest.buffer.get(), dest.buffer.get() + dest.written);
}

}  // namespace quillet
