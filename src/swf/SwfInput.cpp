#include "swf/SwfInput.h"

#include <cstring>

namespace quillet {

SwfInput::SwfInput(const uint8_t* data, size_t size, uint8_t movieVersion)
    : version(movieVersion), data_(data), size_(data ? size : 0) {}

void SwfInput::Fail(const std::string& reason) {
    if (error_.empty()) error_ = reason.empty() ? "malformed data" : reason;
    pos_ = size_;
    bitsLeft_ = 0;
}

bool SwfInput::Need(size_t n, const char* what) {
    if (!ok()) return false;
    if (n > Remaining()) {
        Fail(std::string(what) + " needs " + std::to_string(n) + " bytes but only " + std::to_string(Remaining()) +
             " remain");
        return false;
    }
    return true;
}

uint32_t SwfInput::ReadBits(int n) {
    uint32_t value = 0;
    for (int i = 0; i < n; ++i) {
        if (bitsLeft_ == 0) {
            if (pos_ >= size_) {
                Fail("unexpected end of data");
                return 0;
            }
            bitByte_ = data_[pos_++];
            bitsLeft_ = 8;
        }
        --bitsLeft_;
        value = (value << 1) | ((bitByte_ >> bitsLeft_) & 1u);
    }
    return value;
}

int32_t SwfInput::ReadSignedBits(int n) {
    if (n <= 0) return 0;
    uint32_t v = ReadBits(n);
    if (n < 32 && (v & (1u << (n - 1)))) v |= ~((1u << n) - 1);
    return static_cast<int32_t>(v);
}

uint8_t SwfInput::ReadU8() {
    Align();
    if (pos_ + 1 > size_) {
        Fail("unexpected end of data");
        return 0;
    }
    return data_[pos_++];
}

uint16_t SwfInput::ReadU16() {
    Align();
    if (Remaining() < 2) {
        Fail("unexpected end of data");
        return 0;
    }
    uint16_t v = static_cast<uint16_t>(data_[pos_] | (data_[pos_ + 1] << 8));
    pos_ += 2;
    return v;
}

uint32_t SwfInput::ReadU32() {
    Align();
    if (Remaining() < 4) {
        Fail("unexpected end of data");
        return 0;
    }
    uint32_t v = 0;
    for (int i = 3; i >= 0; --i) v = (v << 8) | data_[pos_ + i];
    pos_ += 4;
    return v;
}

float SwfInput::ReadF32() {
    uint32_t bits = ReadU32();
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
}

std::string SwfInput::ReadString() {
    Align();
    if (!ok()) return {};
    if (Remaining() == 0) {
        Fail("string without terminating zero");
        return {};
    }
    const void* end = std::memchr(data_ + pos_, 0, Remaining());
    if (!end) {
        Fail("string without terminating zero");
        return {};
    }
    size_t len = static_cast<const uint8_t*>(end) - (data_ + pos_);
    std::string s(reinterpret_cast<const char*>(data_ + pos_), len);
    pos_ += len + 1;
    return s;
}

std::vector<uint8_t> SwfInput::ReadBytes(size_t n) {
    Align();
    if (n == 0) return {};
    if (n > Remaining()) {
        Fail("unexpected end of data");
        return {};
    }
    std::vector<uint8_t> v(data_ + pos_, data_ + pos_ + n);
    pos_ += n;
    return v;
}

std::string SwfInput::ReadBytesAsString(size_t n) {
    Align();
    if (n == 0) return {};
    if (n > Remaining()) {
        Fail("unexpected end of data");
        return {};
    }
    std::string s(reinterpret_cast<const char*>(data_ + pos_), n);
    pos_ += n;
    return s;
}

std::vector<uint8_t> SwfInput::ReadRest() { return ReadBytes(Remaining()); }

void SwfInput::Skip(size_t n) {
    Align();
    if (n > Remaining()) {
        Fail("unexpected end of data");
        return;
    }
    pos_ += n;
}

SwfInput SwfInput::Sub(size_t n) {
    Align();
    if (n > Remaining()) {
        Fail("a length of " + std::to_string(n) + " bytes runs past the end of the data (" +
             std::to_string(Remaining()) + " remain)");
        SwfInput empty(nullptr, 0, version);
        empty.depth = depth;
        empty.Fail(error_);
        return empty;
    }
    SwfInput sub(data_ + pos_, n, version);
    sub.depth = depth;
    pos_ += n;
    return sub;
}

}  // namespace quillet
