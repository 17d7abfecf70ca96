#include "swf/SwfStream.h"

#include <algorithm>
#include <cstring>

namespace quillet {

int BitsNeeded(uint32_t magnitude, bool isSigned) {
    // Zero needs no bits at all, signed or not: an all-zero rectangle is just
    // its 5-bit width field.
    if (magnitude == 0) return 0;
    int n = 0;
    while (magnitude != 0) {
        ++n;
        magnitude >>= 1;
    }
    return isSigned ? n + 1 : n;
}

int SignedBitsNeeded(std::initializer_list<int32_t> values) {
    uint32_t m = 0;
    for (int32_t v : values) m = std::max(m, Magnitude(v));
    return std::min(BitsNeeded(m, true), 32);
}

void SwfStream::FlushBitByte() {
    bytes_.push_back(bitByte_);
    lastByteIndex_ = static_cast<uint32_t>(bytes_.size() - 1);
    ++byteCount_;
    bitByte_ = 0;
    bitsUsed_ = 0;
}

void SwfStream::WriteBits(uint32_t value, int n) {
    for (int bit = n - 1; bit >= 0; --bit) {
        if (bitsUsed_ >= 8) FlushBitByte();
        if ((value >> bit) & 1u) bitByte_ |= static_cast<uint8_t>(0x80u >> bitsUsed_);
        ++bitsUsed_;
    }
}

void SwfStream::Align() {
    if (bitsUsed_ > 0) FlushBitByte();
}

void SwfStream::WriteU8(uint8_t v) {
    Align();
    bytes_.push_back(v);
    ++byteCount_;
}

void SwfStream::WriteU16(uint16_t v) {
    Align();
    bytes_.push_back(static_cast<uint8_t>(v));
    bytes_.push_back(static_cast<uint8_t>(v >> 8));
    byteCount_ += 2;
}

void SwfStream::WriteU32(uint32_t v) {
    Align();
    for (int i = 0; i < 4; ++i) bytes_.push_back(static_cast<uint8_t>(v >> (8 * i)));
    byteCount_ += 4;
}

void SwfStream::WriteF32(float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, 4);
    WriteU32(bits);
}

void SwfStream::WriteBytes(const void* data, size_t size) {
    Align();
    const auto* p = static_cast<const uint8_t*>(data);
    bytes_.insert(bytes_.end(), p, p + size);
    byteCount_ += static_cast<uint32_t>(size);
}

void SwfStream::WriteLarge(const std::vector<uint8_t>& data) {
    if (!lend || data.size() < kLendAtLeast) {
        WriteBytes(data);
        return;
    }
    Align();
    borrowed_.push_back({bytes_.size(), data.data(), data.size()});
    byteCount_ += static_cast<uint32_t>(data.size());
}

void SwfStream::CopyBorrowedIn() {
    if (borrowed_.empty()) return;
    std::vector<uint8_t> whole;
    whole.reserve(byteCount_ + 1);
    ForEachRun([&whole](const uint8_t* p, size_t n) {
        whole.insert(whole.end(), p, p + n);
        return true;
    });
    bytes_ = std::move(whole);
    borrowed_.clear();
    if (!bytes_.empty()) lastByteIndex_ = static_cast<uint32_t>(bytes_.size() - 1);
}

size_t SwfStream::OwnOffset(size_t offset) const {
    for (const Borrowed& b : borrowed_) {
        if (offset < b.at) break;
        offset -= b.size;
    }
    return offset;
}

void SwfStream::WriteString(std::string_view text) {
    WriteBytes(text.data(), text.size());
    WriteU8(0);
}

void SwfStream::WriteStream(const SwfStream& other) {
    if (!other.borrowed_.empty()) {
        if (bitsUsed_ == 0 && other.bitsUsed_ == 0) {
            // Aligned: the borrowed runs move over as they are.
            for (const Borrowed& b : other.borrowed_) borrowed_.push_back({bytes_.size() + b.at, b.data, b.size});
            bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
            byteCount_ += other.byteCount_;
            if (!bytes_.empty()) lastByteIndex_ = static_cast<uint32_t>(bytes_.size() - 1);
            return;
        }
        SwfStream copy = other;
        copy.CopyBorrowedIn();
        WriteStream(copy);
        return;
    }
    if (bitsUsed_ == 0) {
        // Aligned: whole bytes can be copied as they are.
        bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
        byteCount_ += static_cast<uint32_t>(other.bytes_.size());
        if (!bytes_.empty()) lastByteIndex_ = static_cast<uint32_t>(bytes_.size() - 1);
    } else {
        for (uint8_t b : other.bytes_) WriteBits(b, 8);
    }
    if (other.bitsUsed_ > 0) WriteBits(static_cast<uint32_t>(other.bitByte_) >> (8 - other.bitsUsed_), other.bitsUsed_);
}

const std::vector<uint8_t>& SwfStream::Bytes() {
    Align();
    CopyBorrowedIn();
    return bytes_;
}

void SwfStream::Reset() {
    bytes_.clear();
    bitByte_ = 0;
    bitsUsed_ = 0;
    byteCount_ = 0;
    lastByteIndex_ = 0;
    borrowed_.clear();
}

void SwfStream::PatchU16(size_t offset, uint16_t v) {
    offset = OwnOffset(offset);
    if (offset + 2 > bytes_.size()) return;
    bytes_[offset] = static_cast<uint8_t>(v);
    bytes_[offset + 1] = static_cast<uint8_t>(v >> 8);
}

void SwfStream::PatchU32(size_t offset, uint32_t v) {
    offset = OwnOffset(offset);
    if (offset + 4 > bytes_.size()) return;
    for (int i = 0; i < 4; ++i) bytes_[offset + i] = static_cast<uint8_t>(v >> (8 * i));
}

}  // namespace quillet
