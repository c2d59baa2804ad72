#include "EffectTable.h"

#include "Commands.h"

#include <cstdlib>
#include <limits>

namespace kelalbum {
namespace {

/// A number of the whole of @p text, no more and no less.
bool Parse(const std::string& text, double& number) {
    char* end = nullptr;
    number = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0';
}

bool Parse(const std::string& text, float& number) {
    double wide = 0;
    const bool parsed = Parse(text, wide);
    number = static_cast<float>(wide);
    return parsed;
}

bool Parse(const std::string& text, short& number) {
    double wide = 0;
    if (!Parse(text, wide) || !(wide >= std::numeric_limits<short>::min() && wide <= std::numeric_limits<short>::max()))
        return false;
    number = static_cast<short>(wide);
    return number == wide;
}

// "800x600", sides from 1 to 65,535.
bool Parse(const std::string& text, Size& size) {
    const std::size_t cross = text.find('x');
    double width = 0;
    double height = 0;
    if (cross == std::string::npos || !Parse(text.substr(0, cross), width) || !Parse(text.substr(cross + 1), height))
        return false;
    const auto isSide = [](double side) { return side >= 1 && side <= 0xFFFF && side == static_cast<int>(side); };
    if (!isSide(width) || !isSide(height))
        return false;
    size = Size(static_cast<int>(width), static_cast<int>(height));
    return true;
}

/// @return null if @p value is not of the effect's kind.
using Maker = EffectOnPicture (*)(const std::string& value);

template <bool (XPDib::*Member)()>
EffectOnPicture Plain(const std::string& value) {
    if (!value.empty())
        return nullptr;
    return [](XPDib& picture) { return (picture.*Member)(); };
}

template <class Value, class Parameter, bool (XPDib::*Member)(Parameter)>
EffectOnPicture With(const std::string& text) {
    Value value{};
    if (!Parse(text, value))
        return nullptr;
    return [value](XPDib& picture) { return (picture.*Member)(value); };
}

template <bool (XPDib::*Member)(short)>
constexpr Maker kWhole = With<short, short, Member>;
template <bool (XPDib::*Member)(const Size&)>
constexpr Maker kSize = With<Size, const Size&, Member>;

struct Row {
    const char* name;
    const char* value; ///< how the usage shows it, empty for none
    Maker make;
};

const Row kEffects[] = {
    {"brightness", "-100..100", kWhole<&XPDib::Brightness>},
    {"concave", "", Plain<&XPDib::Concave>},
    {"contrast", "-100..100", kWhole<&XPDib::Contrast>},
    {"convex", "", Plain<&XPDib::Convex>},
    {"emboss", "", Plain<&XPDib::Emboss>},
    {"equalize", "", Plain<&XPDib::Equalize>},
    {"erode", "", Plain<&XPDib::Erode>},
    {"flip", "", Plain<&XPDib::Flip>},
    {"gamma", "FACTOR", With<float, float, &XPDib::Gamma>},
    {"mirror", "", Plain<&XPDib::Mirror>},
    {"mosaic", "PIXELS", kWhole<&XPDib::Mosaic>},
    {"negate", "", Plain<&XPDib::Negate>},
    {"outline", "", Plain<&XPDib::Outline>},
    {"pinch", "-100..100", kWhole<&XPDib::Pinch>},
    {"posterize", "LEVELS", kWhole<&XPDib::Posterize>},
    {"resample", "WIDTHxHEIGHT", kSize<&XPDib::Resample>},
    {"resize", "WIDTHxHEIGHT", kSize<&XPDib::Resize>},
    {"rotate", "DEGREES", With<double, double, &XPDib::Rotate>},
    {"sharpen", "0..100", kWhole<&XPDib::Sharpen>},
    {"soften", "0..100", kWhole<&XPDib::Soften>},
    {"solarize", "THRESHOLD", kWhole<&XPDib::Solarize>},
    {"swirl", "DEGREES", With<double, double, &XPDib::Swirl>},
};

} // namespace

EffectOnPicture FindEffect(const std::string& name, const std::string& value) {
    for (const Row& row : kEffects) {
        if (row.name != name)
            continue;
        if (EffectOnPicture effect = row.make(value))
            return effect;
        throw Misuse{*row.value == '\0' ? name + " takes no value" : name + " takes a value: " + row.value};
    }
    throw Misuse{"there is no effect " + name};
}

std::string EffectNames() {
    constexpr std::size_t kLineLength = 90;
    std::string lines;
    std::string line;
    for (const Row& row : kEffects) {
        const std::string item = std::string(row.name) + (*row.value == '\0' ? "" : " ") + row.value;
        if (line.size() + item.size() > kLineLength) {
            lines += "    " + line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : ", ") + item;
    }
    return lines + "    " + line + "\n";
}

} // namespace kelalbum
