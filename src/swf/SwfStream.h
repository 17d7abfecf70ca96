// The byte and bit buffer that every record and tag serialises itself into.
//
// Bits are packed most significant first into a partial byte; any byte-sized
// write aligns first, so a record that ends inside a byte is padded with zero
// bits as soon as the next byte field follows. Multi-byte values are
// little-endian, as the movie format wants them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

// Number of significant bits of `magnitude` (0 for 0), plus one when `isSigned`.
// A group of signed fields takes its width from the largest magnitude, where a
// negative value counts as its magnitude (-4 counts as 4, so it takes 4 bits,
// one more than two's complement would need; we keep that on purpose).
int BitsNeeded(uint32_t magnitude, bool isSigned);
// Width for a group of signed fields: BitsNeeded(max |v|, true), at most 32.
int SignedBitsNeeded(std::initializer_list<int32_t> values);
// Magnitude of a signed value as the width rule counts it (|INT32_MIN| fits).
inline uint32_t Magnitude(int32_t v) { return v < 0 ? 0u - static_cast<uint32_t>(v) : static_cast<uint32_t>(v); }

class SwfStream {
public:
    SwfStream() = default;

    // Appends the low `n` bits of value (n in 0..32), most significant first.
    // Signed values go through the same routine as their two's complement.
    void WriteBits(uint32_t value, int n);
    void WriteSignedBits(int32_t value, int n) { WriteBits(static_cast<uint32_t>(value), n); }
    void WriteBit(bool bit) { WriteBits(bit ? 1u : 0u, 1); }
    // Completes a partly filled byte (unused low bits zero) and appends it.
    void Align();

    void WriteU8(uint8_t v);
    void WriteU16(uint16_t v);
    void WriteU32(uint32_t v);
    void WriteS16(int16_t v) { WriteU16(static_cast<uint16_t>(v)); }
    void WriteS32(int32_t v) { WriteU32(static_cast<uint32_t>(v)); }
    void WriteF32(float v);
    // Raw bytes (aligned first).
    void WriteBytes(const void* data, size_t size);
    void WriteBytes(const std::vector<uint8_t>& data) { WriteBytes(data.data(), data.size()); }
    // A tag's bulk data (a picture, a sound). In a stream that may borrow
    // (`lend`), large data is not copied: the stream notes where it stands and
    // the caller keeps `data` alive and unchanged until the stream is written
    // out. Otherwise the same as WriteBytes.
    void WriteLarge(const std::vector<uint8_t>& data);
    // The bytes of `text` followed by a zero byte.
    void WriteString(std::string_view text);

    // Appends another stream's bits: its whole bytes as 8-bit groups, then its
    // pending bits, so an unaligned stream splices into an unaligned one.
    void WriteStream(const SwfStream& other);

    // Bytes written so far, borrowed ones included; a partly filled byte is not counted.
    uint32_t Size() const { return byteCount_; }
    // Aligns and hands out the buffer (borrowed data copied in first).
    const std::vector<uint8_t>& Bytes();
    // Aligns and passes the stream's bytes to `sink` in order, own and
    // borrowed runs alike, without copying; false as soon as `sink` is.
    template <class Sink>
    bool ForEachRun(Sink&& sink);
    // Empties the stream (version and muted stay).
    void Reset();

    // Overwrites bytes already written (for length fields filled in later).
    void PatchU16(size_t offset, uint16_t v);
    void PatchU32(size_t offset, uint32_t v);

    int PendingBits() const { return bitsUsed_; }
    uint32_t LastByteIndex() const { return lastByteIndex_; }

    // The version of the movie being written (tags may consult it) and the
    // writer's muted flag; SwfWriter sets both before a tag is written.
    uint8_t version = 4;
    uint8_t muted = 0;
    // Large data may be borrowed rather than copied (the writer sets it; tags
    // pass it on to the streams they build their bodies in).
    bool lend = false;
    static constexpr size_t kLendAtLeast = 4096;

private:
    struct Borrowed {
        size_t at;  // where it stands in bytes_ (before the byte at that index)
        const uint8_t* data;
        size_t size;
    };

    void FlushBitByte();
    void CopyBorrowedIn();
    size_t OwnOffset(size_t offset) const;  // a stream offset as an index into bytes_

    std::vector<uint8_t> bytes_;
    uint8_t bitByte_ = 0;
    int bitsUsed_ = 0;
    uint32_t byteCount_ = 0;
    uint32_t lastByteIndex_ = 0;
    std::vector<Borrowed> borrowed_;
};

template <class Sink>
bool SwfStream::ForEachRun(Sink&& sink) {
    Align();
    size_t from = 0;
    for (const Borrowed& b : borrowed_) {
        if (b.at > from && !sink(bytes_.data() + from, b.at - from)) return false;
        if (!sink(b.data, b.size)) return false;
        from = b.at;
    }
    return from >= bytes_.size() || sink(bytes_.data() + from, bytes_.size() - from);
}

}  // namespace quillet
