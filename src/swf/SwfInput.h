// A bounds-checked bit and byte reader over bytes of a movie being read.
//
// Reading past the end never touches memory outside the buffer: the first
// failure records a reason, the reader jumps to its end and every further read
// returns zero, so parsing loops end by themselves. Callers check ok() once at
// the end of a record or tag.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillet {

class SwfInput {
public:
    SwfInput() = default;
    SwfInput(const uint8_t* data, size_t size, uint8_t movieVersion = 10);
    explicit SwfInput(const std::vector<uint8_t>& data, uint8_t movieVersion = 10)
        : SwfInput(data.data(), data.size(), movieVersion) {}
    // The reader keeps a pointer to the bytes: a temporary would dangle.
    SwfInput(std::vector<uint8_t>&&, uint8_t = 10) = delete;

    bool ok() const { return error_.empty(); }
    const std::string& error() const { return error_; }
    // Records the first failure and stops reading.
    void Fail(const std::string& reason);

    size_t Position() const { return pos_; }
    size_t Size() const { return size_; }
    size_t Remaining() const { return size_ - pos_; }
    bool AtEnd() const { return pos_ >= size_ && bitsLeft_ == 0; }
    const uint8_t* Data() const { return data_; }

    uint32_t ReadBits(int n);        // unsigned, n in 0..32
    int32_t ReadSignedBits(int n);   // sign-extended, n in 0..32
    bool ReadBit() { return ReadBits(1) != 0; }
    // Drops the unread bits of a partly read byte.
    void Align() { bitsLeft_ = 0; }

    uint8_t ReadU8();
    uint16_t ReadU16();
    uint32_t ReadU32();
    int16_t ReadS16() { return static_cast<int16_t>(ReadU16()); }
    int32_t ReadS32() { return static_cast<int32_t>(ReadU32()); }
    float ReadF32();
    // A zero-terminated string; fails when no terminator is found.
    std::string ReadString();
    std::vector<uint8_t> ReadBytes(size_t n);
    std::string ReadBytesAsString(size_t n);
    std::vector<uint8_t> ReadRest();
    void Skip(size_t n);

    // A reader over the next n bytes (this one moves past them). A request
    // beyond the end fails this reader and gives an empty one.
    SwfInput Sub(size_t n);
    // Fails (with `what` in the reason) unless at least n bytes remain; use
    // before trusting a count read from the data.
    bool Need(size_t n, const char* what);

    // The movie's version; some layouts depend on it.
    uint8_t version = 10;
    // How deeply nested the current record is (sprites, function bodies);
    // readers refuse absurd nesting instead of recursing without end.
    int depth = 0;

private:
    const uint8_t* data_ = nullptr;
    size_t size_ = 0;
    size_t pos_ = 0;
    uint8_t bitByte_ = 0;
    int bitsLeft_ = 0;
    std::string error_;
};

}  // namespace quillet
