#include "swf/tags/JpegTags.h"

#include <zlib.h>

#include <algorithm>

namespace quillet {

std::vector<uint8_t> ZlibCompress(const uint8_t* data, size_t size) {
    uLongf bound = compressBound(static_cast<uLong>(size));
    std::vector<uint8_t> out(bound);
    if (compress2(out.data(), &bound, data, static_cast<uLong>(size), 9) != Z_OK) return {};
    out.resize(bound);
    return out;
}

bool ZlibExpand(const uint8_t* data, size_t size, size_t maxOutput, std::vector<uint8_t>& out, std::string* error) {
    out.clear();
    z_stream z{};
    if (inflateInit(&z) != Z_OK) {
        if (error) *error = "zlib cannot start";
        return false;
    }
    z.next_in = const_cast<Bytef*>(data);
    z.avail_in = static_cast<uInt>(size);
    uint8_t buffer[16384];
    int rc = Z_OK;
    while (rc == Z_OK) {
        z.next_out = buffer;
        z.avail_out = sizeof buffer;
        rc = inflate(&z, Z_NO_FLUSH);
        const size_t produced = sizeof buffer - z.avail_out;
        if (out.size() + produced > maxOutput) {
            inflateEnd(&z);
            if (error) *error = kZlibTooLarge;
            return false;
        }
        out.insert(out.end(), buffer, buffer + produced);
        if (rc == Z_BUF_ERROR && z.avail_in == 0) break;
    }
    inflateEnd(&z);
    if (rc != Z_STREAM_END) {
        if (error) *error = rc == Z_BUF_ERROR ? "compressed data end early" : "compressed data are damaged";
        return false;
    }
    return true;
}

void DefineBitsJPEG3Tag::WriteBody(SwfStream& body) const {
    body.WriteU16(id_);
    body.WriteU32(static_cast<uint32_t>(jpeg.size()));
    body.WriteLarge(jpeg);
    body.WriteLarge(alphaZlib);
}

void DefineBitsJPEG3Tag::ReadBody(SwfInput& body) {
    id_ = body.ReadU16();
    const uint32_t jpegSize = body.ReadU32();
    jpeg = body.ReadBytes(jpegSize);
    alphaZlib = body.ReadRest();
}

}  // namespace quillet
