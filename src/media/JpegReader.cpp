#include "media/JpegReader.h"

#include <csetjmp>
#include <cstdio>
#include <string>
#include <vector>

#include <jpeglib.h>
#include <jerror.h>

namespace quillet {

struct JpegReader::State {
    jpeg_decompress_struct cinfo;
    jpeg_error_mgr err;
    jmp_buf jump;
    bool created = false;
    bool started = false;
    std::string message;  // libjpeg's words for the last fatal error
};

namespace {

void onError(j_common_ptr cinfo) {
    auto* state = static_cast<JpegReader::State*>(cinfo->client_data);
    char text[JMSG_LENGTH_MAX] = {};
    (*cinfo->err->format_message)(cinfo, text);
    state->message = text;
    if (cinfo->err->msg_code == JERR_NO_BACKING_STORE || cinfo->err->msg_code == JERR_OUT_OF_MEMORY)
        state->message = "decoding it would take more than " + std::to_string(kJpegMemoryLimit >> 20) + " MB";
    longjmp(state->jump, 1);
}

// Warnings (a truncated file, extraneous bytes) are not fatal: the picture
// is shown as far as it goes, as other viewers do.
void onMessage(j_common_ptr) {}
void onEmit(j_common_ptr, int) {}

}  // namespace

bool looksLikeJpeg(const uint8_t* data, size_t size) {
    return size >= 3 && data[0] == 0xFF && data[1] == 0xD8 && data[2] == 0xFF;
}

JpegReader::JpegReader() : state_(std::make_unique<State>()) {}

JpegReader::~JpegReader() {
    if (state_->created) jpeg_destroy_decompress(&state_->cinfo);
}

bool JpegReader::Open(const uint8_t* data, size_t size) {
    State& s = *state_;
    if (!looksLikeJpeg(data, size) || s.created) return false;
    s.cinfo.err = jpeg_std_error(&s.err);
    s.err.error_exit = onError;
    s.err.output_message = onMessage;
    s.err.emit_message = onEmit;
    s.cinfo.client_data = &s;
    if (setjmp(s.jump)) return false;
    jpeg_create_decompress(&s.cinfo);
    s.created = true;
    s.cinfo.mem->max_memory_to_use = kJpegMemoryLimit;
    s.cinfo.client_data = &s;
    jpeg_mem_src(&s.cinfo, data, static_cast<unsigned long>(size));
    if (jpeg_read_header(&s.cinfo, TRUE) != JPEG_HEADER_OK) return false;
    const J_COLOR_SPACE cs = s.cinfo.jpeg_color_space;
    if (cs != JCS_YCbCr && cs != JCS_GRAYSCALE && cs != JCS_RGB) return false;
    s.cinfo.out_color_space = JCS_RGB;
    width_ = outputWidth_ = s.cinfo.image_width;
    height_ = outputHeight_ = s.cinfo.image_height;
    progressive_ = jpeg_has_multiple_scans(&s.cinfo);
    decodeBytes_ = static_cast<size_t>(width_) * 3 * 32;
    if (progressive_) {
        decodeBytes_ = 0;
        for (int c = 0; c < s.cinfo.num_components; ++c) {
            const jpeg_component_info& comp = s.cinfo.comp_info[c];
            decodeBytes_ += static_cast<size_t>(comp.width_in_blocks + 1) * (comp.height_in_blocks + 1) * DCTSIZE2 *
                            sizeof(JCOEF);
        }
    }
    return width_ > 0 && height_ > 0;
}

void JpegReader::ScaleFor(uint32_t needWidth, uint32_t needHeight, uint32_t partWidth, uint32_t partHeight) {
    State& s = *state_;
    if (!s.created || s.started || width_ == 0 || partWidth == 0 || partHeight == 0) return;
    int m = 1;
    // ceil(part * m / 8) pixels of the part come out at scale m/8.
    auto covers = [](uint64_t part, uint64_t need, int eighths) { return (part * eighths + 7) / 8 >= need; };
    while (m < 8 && !(covers(partWidth, needWidth, m) && covers(partHeight, needHeight, m))) ++m;
    scale_ = m;
    s.cinfo.scale_num = static_cast<unsigned>(m);
    s.cinfo.scale_denom = 8;
    if (setjmp(s.jump)) return;
    jpeg_calc_output_dimensions(&s.cinfo);
    outputWidth_ = s.cinfo.output_width;
    outputHeight_ = s.cinfo.output_height;
}

namespace {

bool startDecompress(jpeg_decompress_struct* cinfo, jmp_buf* jump) {
    if (setjmp(*jump)) return false;
    jpeg_start_decompress(cinfo);
    return true;
}

bool readOne(jpeg_decompress_struct* cinfo, jmp_buf* jump, JSAMPROW row) {
    if (setjmp(*jump)) return false;
    return jpeg_read_scanlines(cinfo, &row, 1) == 1;
}

}  // namespace

bool JpegReader::ReadRows(const std::function<bool(uint32_t, const uint8_t*)>& row) {
    State& s = *state_;
    if (!s.created || s.started || width_ == 0) return false;
    s.started = true;
    if (!startDecompress(&s.cinfo, &s.jump)) return false;
    if (s.cinfo.output_components != 3) return false;
    std::vector<uint8_t> buffer(static_cast<size_t>(s.cinfo.output_width) * 3);
    while (s.cinfo.output_scanline < s.cinfo.output_height) {
        const uint32_t y = s.cinfo.output_scanline;
        if (!readOne(&s.cinfo, &s.jump, buffer.data())) return false;
        if (!row(y, buffer.data())) break;
    }
    // Stopping early (or finishing) either way: abort releases the decoder's
    // working memory without reading the rest of the data.
    jpeg_abort_decompress(&s.cinfo);
    return true;
}

}  // namespace quillet

namespace quillet {
const std::string& JpegReader::error() const { return state_->message; }
}  // namespace quillet
