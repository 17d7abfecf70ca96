// Fuzz target for the movie reader: any bytes must either be refused with a
// reason or read into tags; what was read must write back, read again, and
// write again to the same bytes. Never a crash or an out-of-bounds read.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "swf/SwfReader.h"
#include "swf/SwfStream.h"

namespace {

std::vector<uint8_t> Serialize(quillet::SwfReader& reader) {
    const quillet::SwfHeader& h = reader.Header();
    quillet::SwfStream s;
    s.version = h.version;
    s.WriteBytes("FWS", 3);
    s.WriteU8(h.version);
    s.WriteU32(0);
    h.frameSize.Write(s);
    s.WriteU16(h.frameRateRaw);
    s.WriteU16(h.frameCount);
    for (auto& tag : reader.Tags()) tag->Write(s);
    std::vector<uint8_t> bytes = s.Bytes();
    const uint32_t length = static_cast<uint32_t>(bytes.size());
    std::memcpy(&bytes[4], &length, 4);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    quillet::SwfReader reader;
    if (!reader.ReadMemory(data, size)) {
        if (reader.Error().empty()) std::abort();  // a refusal always says why
        return 0;
    }
    const std::vector<uint8_t> first = Serialize(reader);
    quillet::SwfReader again;
    if (!again.ReadMemory(first.data(), first.size())) std::abort();
    if (Serialize(again) != first) std::abort();
    return 0;
}
