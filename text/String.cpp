#include <kelcore/text.h>

#include "text/UnitScan.h"

#include <kelcore/platform.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

constexpr unsigned short kFixedNotation[] = {'%', 'l', 'f', 0};

template <class Map>
void MapToFirstNul(String& text, Map map) {
    text.resize(std::min(text.find(static_cast<unsigned short>(0)), text.size()));
    std::transform(text.begin(), text.end(), text.begin(),
                   [map](unsigned short unit) { return static_cast<unsigned short>(map(unit)); });
}

String Join(const unsigned short* left, std::size_t leftSize, const unsigned short* right, std::size_t rightSize) {
    String result;
    result.reserve(leftSize + rightSize);
    result.append(left, leftSize).append(right, rightSize);
    return result;
}

std::size_t LengthOf(const unsigned short* text) {
    return WideString::traits_type::length(text);
}

// Moves @p count units from @p source behind the @p kept ones that stay, less those that are @p removed. Every unit is
// written and the position moves only past those that stay, so that there is no branch to guess wrong.
// @return the units that stay now.
std::size_t Compact(unsigned short* units, std::size_t kept, const unsigned short* source, std::size_t count,
                    unsigned short removed) {
    for (std::size_t i = 0; i != count; ++i) {
        const unsigned short unit = source[i];
        units[kept] = unit;
        kept += unit != removed;
    }
    return kept;
}

// Compact for one whole step, most of which hold nothing to remove. The step is held aside, since its target may
// overlap it.
std::size_t CompactStep(unsigned short* units, std::size_t kept, const unsigned short* source, unsigned short removed) {
    unsigned short step[kel::UnitScan::kStep];
    std::memcpy(step, source, sizeof step);
    if (kel::UnitScan::MatchStep(step, removed) != 0)
        return Compact(units, kept, step, kel::UnitScan::kStep, removed);
    std::memcpy(units + kept, step, sizeof step);
    return kept + kel::UnitScan::kStep;
}

} // namespace

String::String() = default;

String::String(const String& other) = default;

String::String(const unsigned short* text) : WideString(text) {}

String::String(const unsigned short* text, unsigned int count) : WideString(text, count) {}

String::String(unsigned short unit) : WideString(1, unit) {}

String::String(const WideString& text) : WideString(text) {}

String::String(const NarrowString& text) : WideString(StdA2W(text)) {}

String::String(int value) {
    *this << value;
}

String::String(double value) {
    Format(kFixedNotation, value);
}

String& String::operator=(const String& other) = default;

const String& String::operator=(const unsigned short* text) {
    assign(text);
    return *this;
}

const String& String::operator=(unsigned short unit) {
    assign(1, unit);
    return *this;
}

const String& String::operator=(const NarrowString& text) {
    WideString::operator=(StdA2W(text));
    return *this;
}

String::operator const unsigned short*() const {
    return c_str();
}

String::operator NarrowString() const {
    return StdW2A(*this);
}

String String::Left(int count) const {
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    return String(data(), static_cast<unsigned int>(std::min(wanted, size())));
}

String String::Right(int count) const {
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    return wanted >= size() ? *this : String(c_str() + (size() - wanted));
}

int String::CompareNoCase(const unsigned short* other, int count) const {
    const auto* own = reinterpret_cast<const WCHAR*>(c_str());
    const auto* their = reinterpret_cast<const WCHAR*>(other);
    return count < 0 ? _wcsicmp(own, their) : _wcsnicmp(own, their, static_cast<std::size_t>(count));
}

void String::ToLower() {
    MapToFirstNul(*this, [](unsigned short unit) { return towlower(unit); });
}

void String::ToUpper() {
    MapToFirstNul(*this, [](unsigned short unit) { return towupper(unit); });
}

const String& String::operator<<(int value) {
    char digits[12];
    const auto written = std::to_chars(digits, digits + sizeof digits, value);
    unsigned short units[sizeof digits];
    unsigned short* const end = std::copy(digits, written.ptr, units);
    append(units, end);
    return *this;
}

const String& String::operator<<(double value) {
    append(String(value));
    return *this;
}

void String::Insert(int position, unsigned short unit, int count) {
    // A negative position or count turns into one that no text reaches, which the standard string refuses.
    insert(static_cast<size_type>(position), static_cast<size_type>(count), unit);
}

int String::Remove(unsigned short unit) {
    unsigned short* const units = data();
    const unsigned short* const end = units + size();
    const unsigned short* const last = kel::UnitScan::FindLast(units, end, unit);
    if (last == nullptr)
        return -1;
    const unsigned short* source = kel::UnitScan::FindFirst(units, end, unit);
    const auto lastIndex = static_cast<std::size_t>(last - units);
    auto kept = static_cast<std::size_t>(source - units);
    for (; static_cast<std::size_t>(end - source) >= kel::UnitScan::kStep; source += kel::UnitScan::kStep)
        kept = CompactStep(units, kept, source, unit);
    kept = Compact(units, kept, source, static_cast<std::size_t>(end - source), unit);
    const std::size_t removed = size() - kept;
    resize(kept);
    return static_cast<int>(lastIndex + 1 - removed);
}

String operator+(const String& left, const String& right) {
    return Join(left.data(), left.size(), right.data(), right.size());
}

String operator+(const String& left, const unsigned short* right) {
    return Join(left.data(), left.size(), right, LengthOf(right));
}

String operator+(const unsigned short* left, const String& right) {
    return Join(left, LengthOf(left), right.data(), right.size());
}

String operator+(const String& left, unsigned short right) {
    return Join(left.data(), left.size(), &right, 1);
}

String operator+(unsigned short left, const String& right) {
    return Join(&left, 1, right.data(), right.size());
}
