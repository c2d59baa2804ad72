#pragma once

#include "bitmap/pixels/Roads.h"

/// @file
/// The kernels of a road, over the vectors of Vectors16.h or Vectors32.h, whichever was included before. Runs shorter
/// than a step, and the rest of longer ones, are left to the road that `Rest()` names.
namespace kel::pixels {
namespace {

constexpr std::uint32_t kColour = 0x00FFFFFF;
constexpr std::uint32_t kFourth = 0xFF000000;

// ---- Tables of byte numbers, for each lane ----

constexpr Byte kNone = 0x80; // makes a 0

template <std::size_t Size>
struct alignas(32) Table {
    Byte bytes[Size];
};

/// @return the bytes `rule(0)`, `rule(1)` …
template <std::size_t Size, class Rule>
constexpr Table<Size> TableOf(Rule rule) {
    Table<Size> table = {};
    for (std::size_t i = 0; i < Size; ++i)
        table.bytes[i] = static_cast<Byte>(rule(i));
    return table;
}

/// Byte 2 of each 32-bit pixel over its colour bytes.
constexpr auto kNinthsToColours = TableOf<16>([](std::size_t i) { return i % 4 == 3 ? kNone : i / 4 * 4 + 2; });

/// Which byte of a 32-bit pixel each byte of 24-bit pixels is.
constexpr auto kChannels = TableOf<3 * kStep + 2>([](std::size_t i) { return i % 3; });

/// Where the pixel of each of 48 bytes begins: in vectors a, then b one byte late, then c two bytes late.
constexpr auto kFirstBytes = TableOf<48>([](std::size_t i) { return i / 3 * 3 + i / 16 - i / 16 * 16; });

/// Two 24-bit pixels lie in three words. The bytes that add up to the sums of their channels in the first two of these
/// words: of the bytes in place, and of the bytes from two further on. The third word becomes 0.
constexpr auto kOwnAddends = TableOf<3 * kStep>([](std::size_t i) { return 0b001011 >> i % 6 & 1; });
constexpr auto kLaterAddends = TableOf<3 * kStep>([](std::size_t i) { return 0b001101 >> i % 6 & 1; });

/// Some value in the word of such three where the two pixels meet.
constexpr auto kBetween = TableOf<3 * kStep>([](std::size_t i) { return i % 6 == 2 ? 0x55 : i % 6 == 3 ? 0xAA : 0; });

/// Where NarrowNeighbours() leaves the byte for each byte's pixel, given words in the places of those sums.
constexpr auto kGreyPlaces = TableOf<3 * kStep>([](std::size_t i) {
    const std::size_t lane = i % 48 / 16;
    const std::size_t word = i % 48 / 6 * 3 + i / 3 % 2;
    return word % 8 + (word / 8 == lane ? 8 : 0);
});

/// All ones where a pixel begins.
constexpr auto kBeginnings = TableOf<3 * kStep>([](std::size_t i) { return i % 3 == 0 ? 0xFF : 0; });

/// The bit of each pixel in the byte that governs it.
constexpr auto kMaskBits = TableOf<16>([](std::size_t i) { return 0x80 >> i % 8; });

// ---- 32 bits a pixel ----

/// Replaces whole steps by `kernel(bytes, offset)`. @return the bytes done.
template <class Kernel>
inline std::size_t InPlace(Byte* bytes, std::size_t count, Kernel kernel) {
    constexpr std::size_t kUnrolled = 4 * kStep;
    std::size_t done = 0;
    for (; count - done >= kUnrolled; done += kUnrolled)
        for (std::size_t at = done; at < done + kUnrolled; at += kStep)
            Store(bytes + at, kernel(Load(bytes + at), at));
    for (; count - done >= kStep; done += kStep)
        Store(bytes + done, kernel(Load(bytes + done), done));
    return done;
}

/// All ones where a pixel has the colour.
inline Quads HasColour(Bytes pixels, Quads colour) {
    return Quads((Quads(pixels) & EachQuad(kColour)) == colour);
}

/// A channel is c + ((share * C - opacity * c) >> 8), or (share * C + (256 - opacity) * c) >> 8: whichever factor of c
/// fits a signed byte, so that one instruction picks a pixel's even or odd bytes and multiplies them.
template <bool Faint>
class Shader {
public:
    explicit Shader(const Tint& tint) {
        const auto factor = static_cast<Byte>(Faint ? tint.rest - 256 : tint.rest);
        m_evenFactors = Bytes(EachQuad(factor * 0x00010001U));
        m_oddFactors = Bytes(EachQuad(factor * 0x00000100U));
        m_evenShares = Words(EachQuad(tint.shares[0] | static_cast<std::uint32_t>(tint.shares[2]) << 16));
        m_oddShares = Words(EachQuad(tint.shares[1]));
    }

    /// @return tinted pixels, whose fourth byte means nothing.
    Bytes Shaded(Bytes pixels) const {
        const Words even = MultiplyAdd(pixels, m_evenFactors) + m_evenShares;
        const Words odd = MultiplyAdd(pixels, m_oddFactors) + m_oddShares;
        const Bytes high = Choose(Bytes(even >> 8), Bytes(odd), Bytes(EachQuad(0x0000FF00)));
        return Faint ? pixels + high : high;
    }

private:
    Bytes m_evenFactors;
    Bytes m_oddFactors;
    Words m_evenShares;
    Words m_oddShares;
};

template <bool Faint>
void ShadeWith(Byte* pixels, std::size_t count, const Tint& tint) {
    const Shader<Faint> shader(tint);
    const Bytes colour = Bytes(EachQuad(kColour));
    const std::size_t done =
        InPlace(pixels, 4 * count, [&](Bytes value, std::size_t) { return shader.Shaded(value) & colour; });
    Rest().shade(pixels + done, count - done / 4, tint);
}

void Shade(Byte* pixels, std::size_t count, const Tint& tint) {
    (tint.rest >= 128 ? ShadeWith<true> : ShadeWith<false>)(pixels, count, tint);
}

/// The mask's bit of each of eight pixels in their colour bytes, and what it looks like when it is set.
alignas(32) constexpr std::uint32_t kPixelBits[8] = {0x808080, 0x404040, 0x202020, 0x101010,
                                                     0x080808, 0x040404, 0x020202, 0x010101};

/// All ones in the colour bytes of the pixels, from pixel @p first of eight on, whose bit in @p mask is 1.
inline Bytes MaskOfColours(Bytes mask, std::size_t first) {
    const Bytes bits = Load(reinterpret_cast<const Byte*>(kPixelBits + first));
    // No bit is asked of a fourth byte, and 1 never comes back.
    return Bytes((mask & bits) == (bits | Bytes(EachQuad(0x01000000))));
}

template <bool Faint>
void ShadeMaskedEight(Byte* pixels, Byte mask, const Shader<Faint>& shader) {
    const Bytes bits = EachByte(mask);
    for (std::size_t first = 0; first < 8; first += kStep / 4) {
        const Bytes value = Load(pixels + 4 * first);
        Store(pixels + 4 * first, Choose(value, shader.Shaded(value), MaskOfColours(bits, first)));
    }
}

/// 64 pixels by 8 mask bytes. Runs of equal bits are common and cheap to tell.
template <bool Faint>
inline void ShadeMaskedWord(Byte* pixels, const Byte* mask, const Shader<Faint>& shader) {
    std::uint64_t bits;
    std::memcpy(&bits, mask, sizeof bits);
    const Bytes colour = Bytes(EachQuad(kColour));
    if (bits == ~std::uint64_t{0})
        InPlace(pixels, 256, [&](Bytes value, std::size_t) { return Choose(value, shader.Shaded(value), colour); });
    else if (bits != 0)
        for (std::size_t byte = 0; byte < 8; ++byte)
            ShadeMaskedEight(pixels + 32 * byte, mask[byte], shader);
}

template <bool Faint>
void ShadeMaskedWith(Byte* pixels, const Byte* mask, std::size_t count, const Tint& tint) {
    const Shader<Faint> shader(tint);
    for (; count >= 64; count -= 64, pixels += 256, mask += 8)
        ShadeMaskedWord(pixels, mask, shader);
    for (; count >= 8; count -= 8, pixels += 32, ++mask)
        ShadeMaskedEight(pixels, *mask, shader);
    Rest().shadeMasked(pixels, mask, count, tint);
}

void ShadeMasked(Byte* pixels, const Byte* mask, std::size_t count, const Tint& tint) {
    (tint.rest >= 128 ? ShadeMaskedWith<true> : ShadeMaskedWith<false>)(pixels, mask, count, tint);
}

/// Copies the pixels of one block of @p Steps vectors that have the colour. Most blocks have none, so that the source
/// need not be read nor the target written.
template <std::size_t Steps>
inline void CombineBlock32(Byte* pixels, const Byte* source, Quads key) {
    Quads any = HasColour(Load(pixels), key);
    for (std::size_t at = kStep; at < Steps * kStep; at += kStep)
        any |= HasColour(Load(pixels + at), key);
    if (!AnySet(Bytes(any)))
        return;
    for (std::size_t at = 0; at < Steps * kStep; at += kStep) {
        const Bytes value = Load(pixels + at);
        Store(pixels + at, Choose(value, Load(source + at), Bytes(HasColour(value, key))));
    }
}

void CombineKey32Run(Byte* pixels, const Byte* source, std::size_t count, std::uint32_t key) {
    const Quads keys = EachQuad(key);
    for (; count >= kStep; count -= kStep, pixels += 4 * kStep, source += 4 * kStep)
        CombineBlock32<4>(pixels, source, keys);
    for (; count >= kStep / 4; count -= kStep / 4, pixels += kStep, source += kStep)
        CombineBlock32<1>(pixels, source, keys);
    Rest().combineKey32(pixels, source, count, key);
}

void KeyToAlphaRun(Byte* pixels, std::size_t count, std::uint32_t key) {
    const Quads keys = EachQuad(key);
    const std::size_t done = InPlace(pixels, 4 * count, [=](Bytes value, std::size_t) {
        return Bytes((Quads(value) | EachQuad(kFourth)) & ~HasColour(value, keys));
    });
    Rest().keyToAlpha(pixels + done, count - done / 4, key);
}

void KeyToOverlayRun(Byte* pixels, std::size_t count, std::uint32_t key, std::uint32_t overlay) {
    const Quads keys = EachQuad(key);
    const Quads overlays = EachQuad(overlay);
    const std::size_t done =
        InPlace(pixels, 4 * count, [=](Bytes value, std::size_t) { return Bytes(HasColour(value, keys) & overlays); });
    Rest().keyToOverlay(pixels + done, count - done / 4, key, overlay);
}

/// (blue + green + red) / 9 in bits 16-23 of each pixel: 7282 / 65536 is near enough to 1 / 9 for sums to 765.
inline Quads Ninths(Bytes pixels) {
    const Words pairs = MultiplyAdd(pixels, Bytes(EachQuad(0x00010101)));
    return MultiplyAdd(pairs, Words(EachQuad(7282 * 0x00010001U)));
}

/// A grey has its top bit set, as greys begin at 128; so the bytes of greys tell themselves where they shall stand.
inline Bytes WithGreys(Bytes pixels, Bytes greys) {
    return Choose(pixels, greys, greys);
}

void GreyOut32Run(Byte* pixels, std::size_t count, std::uint32_t keep) {
    const Quads keeps = EachQuad(keep);
    const Bytes spread = EachLane(kNinthsToColours.bytes);
    const std::size_t done = InPlace(pixels, 4 * count, [=](Bytes value, std::size_t) {
        const Bytes greys = Shuffle(Bytes(Ninths(value)), spread) | Bytes(EachQuad(0x00808080));
        return WithGreys(value, greys & ~Bytes(HasColour(value, keeps)));
    });
    Rest().greyOut32(pixels + done, count - done / 4, keep);
}

/// Four steps a test: a test costs as much as a comparison.
bool Contains32Run(const Byte* pixels, std::size_t count, std::uint32_t colour) {
    constexpr std::size_t kTested = 4 * kStep;
    const Quads colours = EachQuad(colour);
    for (; count >= kTested / 4; count -= kTested / 4, pixels += kTested) {
        Quads found = HasColour(Load(pixels), colours);
        for (std::size_t at = kStep; at < kTested; at += kStep)
            found |= HasColour(Load(pixels + at), colours);
        if (AnySet(Bytes(found)))
            return true;
    }
    return Rest().contains32(pixels, count, colour);
}

// ---- 24 bits a pixel: 16 pixels, 48 bytes, in each lane of three vectors ----

constexpr std::size_t kGroup = 48 * kLanes;

/// The bytes of a table of 48, alike in each lane.
inline Three EachThree(const Byte* table) {
    return {EachLane(table), EachLane(table + 16), EachLane(table + 32)};
}

inline Three Shuffle(const Three& values, const Three& order) {
    return {Shuffle(values.a, order.a), Shuffle(values.b, order.b), Shuffle(values.c, order.c)};
}

/// From "this byte is that of the colour" to all ones in the three bytes of the pixels that are so in all three.
inline Three WholePixels(const Three& equal, const Three& order) {
    const Bytes none = EachByte(0);
    const Bytes a = equal.a & Following<1>(equal.a, equal.b) & Following<2>(equal.a, equal.b);
    const Bytes b = equal.b & Following<1>(equal.b, equal.c) & Following<2>(equal.b, equal.c);
    const Bytes c = equal.c & Following<1>(equal.c, none) & Following<2>(equal.c, none);
    // The first bytes of pixels tell; a pixel that began in the vector before is fetched along.
    return Shuffle({a, Following<15>(a, b), Following<14>(b, c)}, order);
}

void CombineKey24Run(Byte* pixels, const Byte* source, std::size_t count, std::uint32_t key) {
    const Bytes keys = Bytes(EachQuad(key));
    const Three colour = Shuffle({keys, keys, keys}, EachThree(kChannels.bytes));
    const Three order = EachThree(kFirstBytes.bytes);
    for (; count >= kGroup / 3; count -= kGroup / 3, pixels += kGroup, source += kGroup) {
        const Three value = LoadThree(pixels);
        const Three has =
            WholePixels({Bytes(value.a == colour.a), Bytes(value.b == colour.b), Bytes(value.c == colour.c)}, order);
        if (!AnySet(has.a | has.b | has.c))
            continue;
        const Three other = LoadThree(source);
        StoreThree(pixels,
                   {Choose(value.a, other.a, has.a), Choose(value.b, other.b, has.b), Choose(value.c, other.c, has.c)});
    }
    Rest().combineKey24(pixels, source, count, key);
}

/// The vectors of a group as they follow each other in memory.
inline Three LoadInOrder(const Byte* at) {
    return {Load(at), Load(at + kStep), Load(at + 2 * kStep)};
}

inline void StoreInOrder(Byte* at, const Three& value) {
    Store(at, value.a);
    Store(at + kStep, value.b);
    Store(at + 2 * kStep, value.c);
}

/// Two words for each pair of pixels, and one between pairs that means nothing; the vectors follow each other.
struct PairWords {
    Words a;
    Words b;
    Words c;
};

inline Words SumsAt(std::size_t at, Bytes own, Bytes later) {
    return MultiplyAdd(own, Load(kOwnAddends.bytes + at)) + MultiplyAdd(later, Load(kLaterAddends.bytes + at));
}

/// Sums of channels of a group, given also its bytes from two further on.
inline PairWords Sums(const Three& own, const Three& later) {
    return {SumsAt(0, own.a, later.a), SumsAt(kStep, own.b, later.b), SumsAt(2 * kStep, own.c, later.c)};
}

/// (blue + green + red) / 9 + 128.
inline PairWords Greys(const Three& own, const Three& later) {
    const PairWords sums = Sums(own, later);
    const auto grey = [](Words sum) { return MultiplyHigh(sum, EachWord(7282)) | EachWord(0x80); };
    return {grey(sums.a), grey(sums.b), grey(sums.c)};
}

/// Greys in each byte of their pixels.
inline Three Spread(const PairWords& greys) {
    return Shuffle(NarrowNeighbours(greys.a, greys.b, greys.c), LoadInOrder(kGreyPlaces.bytes));
}

/// A colour in each pixel of a group.
struct Colour24 {
    explicit Colour24(std::uint32_t colour) {
        const Bytes each = Bytes(EachQuad(colour));
        own = Shuffle({each, each, each}, LoadInOrder(kChannels.bytes));
        later = Shuffle({each, each, each}, LoadInOrder(kChannels.bytes + 2));
        hint = Differing(own, LoadInOrder(kBetween.bytes));
    }

    static Three Differing(const Three& x, const Three& y) { return {x.a ^ y.a, x.b ^ y.b, x.c ^ y.c}; }

    /// Cheap, and seldom wrong, as two bytes are compared of each pixel.
    bool MayBeIn(const Three& group) const {
        return AnySet(Bytes((Words(group.a) == Words(hint.a)) | (Words(group.b) == Words(hint.b)) |
                            (Words(group.c) == Words(hint.c))));
    }

    /// 0 for pixels of the colour.
    PairWords Differences(const Three& groupOwn, const Three& groupLater) const {
        return Sums(Differing(groupOwn, own), Differing(groupLater, later));
    }

    Three own;
    Three later; ///< from two bytes further on
    Three hint;  ///< no colour between the two words of a pair, where two pixels meet
};

inline void GreyGroupBut(const Colour24& keep, Byte* pixels, const Three& own, const Three& later) {
    const PairWords greys = Greys(own, later);
    const PairWords differ = keep.Differences(own, later);
    const Three spread =
        Spread({greys.a & Words(differ.a != 0), greys.b & Words(differ.b != 0), greys.c & Words(differ.c != 0)});
    StoreInOrder(pixels, {WithGreys(own.a, spread.a), WithGreys(own.b, spread.b), WithGreys(own.c, spread.c)});
}

/// Two bytes behind a group are read, so that a pixel must follow.
void GreyOut24Run(Byte* pixels, std::size_t count, std::uint32_t keep) {
    const Colour24 kept(keep);
    const bool keeps = keep <= kColour;
    for (; count > kStep; count -= kStep, pixels += 3 * kStep) {
        const Three own = LoadInOrder(pixels);
        const Three later = LoadInOrder(pixels + 2);
        if (keeps && kept.MayBeIn(own))
            GreyGroupBut(kept, pixels, own, later);
        else
            StoreInOrder(pixels, Spread(Greys(own, later)));
    }
    Rest().greyOut24(pixels, count, keep);
}

/// A pixel begins in the bytes of the table; its other two are read from one and two bytes further on.
bool Contains24Run(const Byte* pixels, std::size_t count, std::uint32_t colour) {
    constexpr std::size_t kTested = 3 * kStep;
    const Bytes blue = EachByte(static_cast<Byte>(colour));
    const Bytes green = EachByte(static_cast<Byte>(colour >> 8));
    const Bytes red = EachByte(static_cast<Byte>(colour >> 16));
    for (; count >= kStep + 1; count -= kStep, pixels += kTested) {
        Bytes found = EachByte(0);
        for (std::size_t at = 0; at < kTested; at += kStep) {
            const Byte* const here = pixels + at;
            found |= Bytes(Load(here) == blue) & Bytes(Load(here + 1) == green) & Bytes(Load(here + 2) == red) &
                     Load(kBeginnings.bytes + at);
        }
        if (AnySet(found))
            return true;
    }
    return Rest().contains24(pixels, count, colour);
}

// ---- 8 bits a pixel ----

void ComplementRun(Byte* bytes, std::size_t count) {
    const std::size_t done = InPlace(bytes, count, [](Bytes value, std::size_t) { return ~value; });
    Rest().complement(bytes + done, count - done);
}

void OrBitPlaneRun(Byte* pixels, const Byte* mask, std::size_t count, Byte bits, bool invert) {
    const Bytes bit = EachLane(kMaskBits.bytes);
    const Bytes set = invert ? EachByte(0) : bit;
    const Bytes added = EachByte(bits);
    const std::size_t done = InPlace(pixels, count, [=](Bytes value, std::size_t at) {
        return value | (Bytes((SpreadMask(mask + at / 8) & bit) == set) & added);
    });
    Rest().orBitPlane(pixels + done, mask + done / 8, count - done, bits, invert);
}

} // namespace
} // namespace kel::pixels
