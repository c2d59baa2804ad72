#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <cstring>
#include <string>

namespace {

constexpr CLSID kClass = {0x01234567, 0x89AB, 0x00EF, {0xFE, 0x0C, 0xBA, 0x98, 0x07, 0x65, 0x43, 0x21}};
constexpr char kSpelled[] = "{01234567-89AB-00EF-FE0C-BA9807654321}";

std::string Ascii(LPCOLESTR text) {
    std::string ascii;
    for (; *text != 0; ++text)
        ascii += static_cast<char>(*text);
    return ascii;
}

} // namespace

TEST_CASE("a class identifier is spelled in braces, into task memory or a buffer it fits") {
    LPOLESTR spelled = nullptr;
    REQUIRE(StringFromCLSID(kClass, &spelled) == S_OK);
    CHECK(Ascii(spelled) == kSpelled);
    CoTaskMemFree(spelled);
    REQUIRE(StringFromCLSID(IID_IUnknown, &spelled) == S_OK);
    CHECK(Ascii(spelled) == "{00000000-0000-0000-C000-000000000046}");
    CoTaskMemFree(spelled);

    OLECHAR buffer[40];
    buffer[0] = buffer[39] = '#';
    CHECK(StringFromGUID2(kClass, buffer, 38) == 0);
    CHECK(buffer[0] == '#');
    CHECK(StringFromGUID2(kClass, buffer, 39) == 39);
    CHECK(Ascii(buffer) == kSpelled);
    CHECK(buffer[39] == '#');
}

TEST_CASE("identifiers are equal when all their bytes are") {
    for (std::size_t i = 0; i != sizeof(GUID); ++i) {
        CAPTURE(i);
        GUID other = kClass;
        CHECK(IsEqualGUID(kClass, other));
        reinterpret_cast<unsigned char*>(&other)[i] ^= 0x10;
        CHECK_FALSE(IsEqualGUID(kClass, other));
        CHECK(kClass != other);
    }
}

TEST_CASE("task memory may be of no bytes, and freeing none is fine") {
    CoTaskMemFree(nullptr);
    for (const SIZE_T size : {0u, 1u, 100000u}) {
        void* const memory = CoTaskMemAlloc(size);
        REQUIRE(memory != nullptr);
        std::memset(memory, 0xA5, size);
        CoTaskMemFree(memory);
    }
}
