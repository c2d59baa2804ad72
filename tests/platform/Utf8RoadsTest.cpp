#include "platform/crt/Utf8Kernels.h"
#include "platform/crt/Utf8Scalar.h"

#include <doctest/doctest.h>

#include <memory>
#include <random>
#include <vector>

using namespace kel::platform;

namespace {

std::mt19937 g_random(7);

std::size_t Pick(std::size_t count) {
    return g_random() % count;
}

/// Runs of one script after the other, some of lone surrogates; the style decides which scripts take part.
std::vector<WCHAR> Mix(std::size_t length, std::size_t style) {
    const unsigned first[] = {1, 0xA0, 0x400, 0x4E00, 0x10000, 0xD800, 0};
    const unsigned count[] = {0x7F, 0x60, 0x100, 0x5000, 0x100000, 0x800, 0x10000};
    std::vector<WCHAR> units;
    while (units.size() < length) {
        const std::size_t script = style < 7 ? style : Pick(7);
        for (std::size_t run = 1 + Pick(8); run > 0; --run) {
            const auto code = static_cast<unsigned>(first[script] + Pick(count[script]));
            if (code >= 0x10000)
                units.push_back(static_cast<WCHAR>(0xD7C0 + (code >> 10)));
            units.push_back(static_cast<WCHAR>(code < 0x10000 ? code : 0xDC00 | (code & 0x3FF)));
        }
    }
    units.resize(length);
    return units;
}

/// Replaces, drops and adds bytes, mostly such as begin, continue or can never be in a sequence.
void Damage(std::vector<char>& bytes) {
    constexpr char kBad[] = "\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xE0\xED\xEF\xF0\xF4\xF5\xFF";
    for (std::size_t hits = Pick(4); hits > 0 && !bytes.empty(); --hits) {
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(Pick(bytes.size()));
        const std::size_t kind = Pick(3);
        if (kind == 0)
            *place = kBad[Pick(15)];
        else if (kind == 1)
            bytes.erase(place);
        else
            bytes.insert(place, kBad[Pick(15)]);
    }
}

/// Whether both roads come equally far with the same result. Source and room are blocks of their own and of exact size,
/// so that a sanitizer sees every step outside of them.
template <class From, class To>
bool Agree(const std::vector<From>& source, std::size_t room, bool strict, Stop (*plain)(Job<From, To>&),
           Stop (*fast)(const Utf8Kernel*, Job<From, To>&), const Utf8Kernel* kernel) {
    const std::size_t offset = Pick(32);
    const std::unique_ptr<From[]> from(new From[offset + source.size()]);
    std::copy(source.begin(), source.end(), from.get() + offset);
    const std::unique_ptr<To[]> expected(new To[room]);
    const std::unique_ptr<To[]> actual(new To[room]);
    const auto job = [&](To* to) {
        return Job<From, To>{from.get() + offset, from.get() + offset + source.size(), to, to + room, strict};
    };
    Job<From, To> slow = job(expected.get());
    Job<From, To> quick = job(actual.get());
    const Stop end = plain(slow);
    return fast(kernel, quick) == end && quick.from == slow.from &&
           quick.to - actual.get() == slow.to - expected.get() && std::equal(expected.get(), slow.to, actual.get());
}

} // namespace

TEST_CASE("every road of UTF-8 gives what the plain one gives, for any text, damage and room") {
    for (const Utf8Kernel* kernel : {static_cast<const Utf8Kernel*>(nullptr), BestUtf8Kernel()})
        for (std::size_t style = 0; style < 20; ++style)
            for (std::size_t length = 0; length <= 130; ++length) {
                INFO(kernel, " ", style, " ", length);
                const std::vector<WCHAR> units = Mix(length, style);
                const bool strict = Pick(4) == 0;
                const std::size_t most = 3 * length;
                REQUIRE(Agree(units, Pick(2) == 0 ? most + 64 : Pick(most + 1), strict, EncodeUtf8Scalar,
                              EncodeUtf8With, kernel));

                std::vector<char> bytes(most);
                EncodeJob job{units.data(), units.data() + length, bytes.data(), bytes.data() + most, false};
                EncodeUtf8Scalar(job);
                bytes.resize(static_cast<std::size_t>(job.to - bytes.data()));
                Damage(bytes);
                const std::size_t enough = bytes.size() + 32;
                REQUIRE(Agree(bytes, Pick(2) == 0 ? enough : Pick(enough), strict, DecodeUtf8Scalar, DecodeUtf8With,
                              kernel));
            }
}
