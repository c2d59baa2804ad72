#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <cstring>
#include <string>

namespace {

constexpr CLSID kClass = {0x01234567, 0x89AB, 0x00EF, {0xFE, 0x0C, 0xBA, 0x98, 0x07, 0x65, 0x43, 0x21}};
const std::string kSpelled = "{01234567-89AB-00EF-FE0C-BA9807654321}";

} // namespace

TEST_CASE("a class identifier is spelled in braces, into task memory or a buffer it fits") {
    LPOLESTR spelled = nullptr;
    REQUIRE(StringFromCLSID(kClass, &spelled) == S_OK);
    CHECK(std::string(spelled, spelled + 38) == kSpelled);
    CHECK(spelled[38] == 0);
    CoTaskMemFree(spelled);
    CoTaskMemFree(nullptr);
    for (const SIZE_T size : {0u, 100000u}) {
        void* const memory = CoTaskMemAlloc(size);
        REQUIRE(memory != nullptr);
        CoTaskMemFree(std::memset(memory, 0xA5, size));
    }

    OLECHAR buffer[40];
    buffer[0] = buffer[39] = '#';
    CHECK(StringFromGUID2(kClass, buffer, 38) == 0);
    CHECK(buffer[0] == '#');
    CHECK(StringFromGUID2(kClass, buffer, 39) == 39);
    CHECK(std::string(buffer, buffer + 40) == kSpelled + '\0' + '#');
}

TEST_CASE("identifiers are equal when all their bytes are") {
    CHECK(IsEqualGUID(kClass, GUID(kClass)));
    for (std::size_t i = 0; i != sizeof(GUID); ++i) {
        CAPTURE(i);
        GUID other = kClass;
        reinterpret_cast<unsigned char*>(&other)[i] ^= 0x10;
        CHECK((!IsEqualGUID(kClass, other) && kClass != other));
    }
}
