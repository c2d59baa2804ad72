#include "toolkit/Fingerprint.h"

#include <bit>
#include <cstring>

namespace kel::toolkit {
namespace {

constexpr std::size_t kLanes = 8;
constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;

static_assert(std::endian::native == std::endian::little);

std::uint64_t Word(const BYTE* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// The turn brings the high bits, which a product only passes on upwards, back to the low ones.
std::uint64_t Mix(std::uint64_t lane, std::uint64_t word) {
    return std::rotl((lane ^ word) * kOdd, 29);
}

} // namespace

std::uint64_t Fingerprint(std::span<const BYTE> bytes, std::uint64_t seed) {
    // Lanes of their own keep the multiplier busy: one waits for its product while the others begin theirs.
    std::uint64_t lanes[kLanes];
    for (std::size_t i = 0; i < kLanes; ++i)
        lanes[i] = seed + i;
    std::size_t at = 0;
    for (; bytes.size() - at >= kLanes * 8; at += kLanes * 8)
        for (std::size_t i = 0; i < kLanes; ++i)
            lanes[i] = Mix(lanes[i], Word(bytes.data() + at + i * 8));
    std::uint64_t sum = Mix(seed, bytes.size());
    for (const std::uint64_t lane : lanes)
        sum = Mix(sum, lane);
    for (; at < bytes.size(); ++at)
        sum = Mix(sum, bytes[at]);
    return sum ^ sum >> 32;
}

std::uint64_t RowFingerprint(const DibLock& picture, int y) {
    return Fingerprint({picture.Row(y), picture.Layout().rowBytes}, static_cast<std::uint64_t>(y) * kOdd);
}

std::uint64_t RowsFingerprint(const DibLock& picture) {
    std::uint64_t sum = 0;
    for (int y = 0; y < picture.Layout().height; ++y)
        sum += RowFingerprint(picture, y);
    return sum;
}

std::uint64_t FrontFingerprint(const DibLock& picture) {
    return Fingerprint(picture.Memory().first(picture.Layout().rows));
}

} // namespace kel::toolkit
