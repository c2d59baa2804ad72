#include "bench/text/Texts.h"

#include <glib.h>

namespace {

using namespace kel::bench;

// A text that the library has allocated.
template <class Unit>
class Owned {
public:
    using value_type = Unit;

    Owned(Unit* units, glong count) : m_units(units), m_count(count) {}
    Owned(Owned&& other) noexcept : m_units(std::exchange(other.m_units, nullptr)), m_count(other.m_count) {}
    ~Owned() { g_free(m_units); }

    const Unit* data() const { return m_units; }
    glong size() const { return m_count; }

private:
    Unit* m_units;
    glong m_count;
};

Call ToUtf8(const WideTexts& texts) {
    const auto convert = [](const Wide& text) {
        glong count = 0;
        const auto* const units = reinterpret_cast<const gunichar2*>(text.data());
        gchar* const bytes = g_utf16_to_utf8(units, static_cast<glong>(text.size()), nullptr, &count, nullptr);
        return Owned<gchar>(bytes, count);
    };
    return ForEach(texts, convert, BytesOf<Owned<gchar>>);
}

Call FromUtf8(const NarrowTexts& texts) {
    const auto convert = [](const std::string& text) {
        glong count = 0;
        gunichar2* const units =
            g_utf8_to_utf16(text.data(), static_cast<glong>(text.size()), nullptr, &count, nullptr);
        return Owned<gunichar2>(units, count);
    };
    return ForEach(texts, convert, BytesOf<Owned<gunichar2>>);
}

const Enter<Utf8Converter> entered{{"glib", &ToUtf8, &FromUtf8}};

} // namespace
