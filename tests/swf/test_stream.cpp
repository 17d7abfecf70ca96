// The bit packer, the bounds-checked reader and the shared records, byte for byte.
#include <gtest/gtest.h>

#include "swf/SwfInput.h"
#include "swf/SwfRecords.h"
#include "swf/SwfStream.h"

using namespace quillet;

namespace {

std::vector<uint8_t> BytesOf(SwfStream& s) { return s.Bytes(); }

}  // namespace

TEST(SwfStream, BitsNeededCountsANegativeValueByItsMagnitudePlusOne) {
    EXPECT_EQ(BitsNeeded(0, false), 0);
    EXPECT_EQ(BitsNeeded(0, true), 0);
    EXPECT_EQ(BitsNeeded(1, false), 1);
    EXPECT_EQ(BitsNeeded(255, false), 8);
    EXPECT_EQ(BitsNeeded(256, true), 10);
    // -4 fits 3 bits in two's complement, but the rule counts |−4| = 4 → 3 bits + sign.
    EXPECT_EQ(SignedBitsNeeded({-4}), 4);
    EXPECT_EQ(SignedBitsNeeded({3, -1}), 3);
    EXPECT_EQ(SignedBitsNeeded({INT32_MIN}), 32);
}

TEST(SwfStream, PacksBitsMostSignificantFirstAndAlignsBeforeBytes) {
    SwfStream s;
    s.WriteBits(0b101, 3);
    EXPECT_EQ(s.Size(), 0u);  // the partial byte is not counted
    EXPECT_EQ(s.PendingBits(), 3);
    s.WriteU8(0x7F);  // aligns: 101 00000, then the byte
    s.WriteU16(0x1234);
    s.WriteU32(0xA1B2C3D4);
    s.WriteSignedBits(-1, 4);
    s.WriteBits(0xFF, 8);
    EXPECT_EQ(s.Size(), 9u);  // 12 bits written: one byte complete, four bits pending
    EXPECT_EQ(BytesOf(s), (std::vector<uint8_t>{0xA0, 0x7F, 0x34, 0x12, 0xD4, 0xC3, 0xB2, 0xA1, 0xFF, 0xF0}));

    // Eight bits exactly stay pending until the next bit or an align.
    SwfStream t;
    t.WriteBits(0xAB, 8);
    EXPECT_EQ(t.Size(), 0u);
    t.Align();
    EXPECT_EQ(t.Size(), 1u);
    t.Align();  // nothing pending: no extra byte
    EXPECT_EQ(BytesOf(t), std::vector<uint8_t>{0xAB});
    t.Reset();
    EXPECT_EQ(t.Size(), 0u);
    EXPECT_TRUE(BytesOf(t).empty());
}

TEST(SwfStream, SplicesAnUnalignedStreamIntoAnUnalignedOne) {
    SwfStream inner;
    inner.WriteBits(0xFF, 8);
    inner.WriteBits(0xFF, 8);  // one whole byte plus eight pending bits
    inner.WriteBits(0b01, 2);  // now two whole bytes, two pending bits
    SwfStream outer;
    outer.WriteBits(0b1, 1);
    outer.WriteStream(inner);
    outer.WriteBits(0b1, 1);
    // 1 | 11111111 11111111 01 | 1  → 1111 1111 | 1111 1111 | 1011 0000
    EXPECT_EQ(BytesOf(outer), (std::vector<uint8_t>{0xFF, 0xFF, 0xB0}));

    SwfStream aligned;
    aligned.WriteU8(0x11);
    aligned.WriteStream(inner);
    EXPECT_EQ(aligned.Size(), 3u);
    EXPECT_EQ(aligned.PendingBits(), 2);
    EXPECT_EQ(BytesOf(aligned), (std::vector<uint8_t>{0x11, 0xFF, 0xFF, 0x40}));

    SwfStream strings;
    strings.WriteString("ab");
    strings.WriteF32(1.0f);
    EXPECT_EQ(BytesOf(strings), (std::vector<uint8_t>{'a', 'b', 0, 0x00, 0x00, 0x80, 0x3F}));
}

// A tag's bulk data borrowed by the writer's stream must give the same bytes as
// a copied one, through nesting, splicing into an unaligned stream and patches.
TEST(SwfStream, BorrowedDataWritesTheSameBytesAsCopiedData) {
    const std::vector<uint8_t> big(SwfStream::kLendAtLeast + 3, 0x5A), small(5, 0x11);
    auto build = [&](bool lend, int leadingBits) {
        SwfStream out;
        out.lend = lend;
        out.WriteBits(1, leadingBits);
        SwfStream body;
        body.lend = lend;
        body.WriteU16(0xBEEF);
        body.WriteLarge(big);
        body.WriteLarge(small);
        body.WriteU16(0);  // patched below, after the borrowed runs
        body.WriteLarge(big);
        out.WriteU8(0x42);
        out.WriteStream(body);
        const size_t patchAt = (leadingBits ? 1 : 0) + 1 + 2 + big.size() + small.size();
        out.PatchU16(patchAt, 0x1234);
        return out;
    };
    for (int leadingBits : {0, 3}) {
        SwfStream copied = build(false, leadingBits), lent = build(true, leadingBits);
        ASSERT_EQ(lent.Size(), copied.Size());
        std::vector<uint8_t> runs;
        lent.ForEachRun([&runs](const uint8_t* p, size_t n) {
            runs.insert(runs.end(), p, p + n);
            return true;
        });
        const std::vector<uint8_t>& expected = copied.Bytes();
        EXPECT_EQ(runs, expected) << leadingBits;
        EXPECT_EQ(lent.Bytes(), expected) << leadingBits;
        EXPECT_EQ(expected[(leadingBits ? 9 : 8) + big.size()], 0x34) << leadingBits;
    }
}

TEST(SwfInput, NeverReadsPastTheEndAndKeepsTheFirstReason) {
    const std::vector<uint8_t> data{0xA0, 0x7F, 0x34, 0x12, 'h', 'i'};
    SwfInput in(data);
    EXPECT_EQ(in.ReadBits(3), 0b101u);
    EXPECT_EQ(in.ReadU8(), 0x7F);  // aligned first
    EXPECT_EQ(in.ReadU16(), 0x1234);
    EXPECT_TRUE(in.ok());
    EXPECT_EQ(in.ReadString(), "");  // no terminator
    EXPECT_FALSE(in.ok());
    EXPECT_NE(in.error().find("terminating zero"), std::string::npos);
    EXPECT_EQ(in.ReadU32(), 0u);
    EXPECT_EQ(in.ReadBits(32), 0u);
    EXPECT_NE(in.error().find("terminating zero"), std::string::npos);

    SwfInput small(data);
    SwfInput sub = small.Sub(100);
    EXPECT_FALSE(small.ok());
    EXPECT_FALSE(sub.ok());
    EXPECT_EQ(sub.ReadU8(), 0);

    const std::vector<uint8_t> e0{0xE0}, twoBytes{1, 2};
    SwfInput signedBits(e0);
    EXPECT_EQ(signedBits.ReadSignedBits(3), -1);
    SwfInput counts(twoBytes);
    EXPECT_FALSE(counts.Need(3, "list"));
    EXPECT_NE(counts.error().find("list needs 3 bytes"), std::string::npos);
}

TEST(SwfRecords, RectanglesWriteTheirWidthValuesAndPadding) {
    SwfStream zero;
    EXPECT_EQ(SwfRect().Write(zero), 1u);
    EXPECT_EQ(BytesOf(zero), std::vector<uint8_t>{0x00});

    // 550 x 400 pixels: 11000 x 8000 twips, 15 bits each (14 significant + sign).
    SwfRect stage;
    stage.Set(0, 0, 550, 400, true);
    EXPECT_EQ(stage, SwfRect(0, 11000, 0, 8000));
    SwfStream s;
    EXPECT_EQ(stage.Write(s), 9u);  // 5 + 4 * 15 = 65 bits
    SwfInput in(s.Bytes());
    SwfRect back;
    back.Read(in);
    EXPECT_EQ(back, stage);
    EXPECT_EQ(BytesOf(s)[0] >> 3, 15);

    SwfRect neg(-4, 3, 0, 0);  // |−4| needs 3 bits + sign = 4
    SwfStream n;
    neg.Write(n);
    EXPECT_EQ(BytesOf(n), (std::vector<uint8_t>{0b00100'110, 0b0'0011'000, 0b0'0000'000}));
}

TEST(SwfRecords, MatrixWithoutTranslationWritesFiveZeroBits) {
    SwfMatrix m;  // scale 1.0, no rotation, no translation
    SwfStream s;
    m.Write(s);
    s.Align();
    // 1 | 10010 | 0x10000 in 18 bits twice | 0 | 00000
    const int bits = 1 + 5 + 18 * 2 + 1 + 5;
    EXPECT_EQ(s.Size(), static_cast<uint32_t>((bits + 7) / 8));
    SwfInput in(s.Bytes());
    SwfMatrix back;
    back.Read(in);
    EXPECT_EQ(back, m);

    SwfMatrix none;
    none.hasScale = false;
    SwfStream t;
    none.Write(t);
    t.Align();
    EXPECT_EQ(BytesOf(t), std::vector<uint8_t>{0x00});  // 0, 0, 00000 → 7 bits

    SwfMatrix full = SwfMatrix::ScaleF(-0.5, 2.0, -200, 30);
    full.SetRotate(-65536, false, true);
    full.SetRotate(12345, true, true);
    SwfStream u;
    full.Write(u);
    SwfInput ui(u.Bytes());
    SwfMatrix fb;
    fb.Read(ui);
    EXPECT_EQ(fb, full);
    EXPECT_EQ(fb.scaleX, -32767);  // trunc(-0.5 * 65536 + 0.5)
    EXPECT_EQ(fb.rotateSkew0, -65536);
}

TEST(SwfRecords, ColorTransformsWithAndWithoutWidthField) {
    // No flags: two zero bits (the no-width layout adds nothing else).
    SwfColorTransform plain;
    SwfStream s;
    EXPECT_EQ(plain.Write(s), 0u);
    s.Align();
    EXPECT_EQ(BytesOf(s), std::vector<uint8_t>{0x00});

    // With multiply terms and no width field: 0 1 then three 10-bit terms.
    plain.hasMultTerms = true;
    plain.redMult = 256;
    plain.greenMult = 128;
    plain.blueMult = -1;
    SwfStream m;
    plain.Write(m);
    m.Align();
    EXPECT_EQ(m.Size(), 4u);  // 2 + 30 bits
    EXPECT_EQ(BytesOf(m)[0], 0x50);  // 01 | 010000 (first bits of 256 in 10 bits)

    // The published layout reads back.
    SwfStream w;
    plain.WriteWithWidth(w);
    SwfInput in(w.Bytes());
    SwfColorTransform back;
    back.Read(in);
    EXPECT_EQ(back, plain);

    // Alpha: opacity 0.5 → multipliers 256, 256, 256, 128; 10-bit terms.
    auto half = SwfColorTransformAlpha::Opacity(0.5);
    EXPECT_EQ(half.alphaMult, 128);
    SwfStream a;
    half.Write(a);
    a.Align();
    EXPECT_EQ(a.Size(), 6u);  // 2 + 4 + 40 bits
    SwfInput ai(a.Bytes());
    SwfColorTransformAlpha ab;
    ab.Read(ai);
    EXPECT_EQ(ab, half);
    EXPECT_EQ(SwfColorTransformAlpha::Opacity(2.0).alphaMult, 256);

    // A term beyond 15 bits is cut to its low 15 bits; the width stays 15.
    SwfColorTransformAlpha big;
    big.hasAddTerms = true;
    big.redAdd = 0x12345;
    SwfStream b;
    big.Write(b);
    SwfInput bi(b.Bytes());
    SwfColorTransformAlpha bb;
    bb.Read(bi);
    EXPECT_EQ(bb.redAdd, static_cast<int32_t>(0x2345));  // 0x12345 & 0x7FFF, sign bit clear
    EXPECT_EQ(b.Bytes()[0] & 0x3C, 15 << 2);
}
