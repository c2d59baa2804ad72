#include <kelcore/text.h>

#include <kelcore/platform.h>

NarrowString StdW2A(const WideString& text) {
    const auto* units = reinterpret_cast<const WCHAR*>(text.c_str());
    const int size = WideCharToMultiByte(CP_ACP, /*flags*/ 0, units, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1)
        return {};
    NarrowString result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, /*flags*/ 0, units, -1, result.data(), size, nullptr, nullptr);
    result.pop_back();
    return result;
}

WideString StdA2W(const NarrowString& text) {
    const int size = MultiByteToWideChar(CP_ACP, /*flags*/ 0, text.c_str(), -1, nullptr, 0);
    if (size <= 1)
        return {};
    WideString result(static_cast<std::size_t>(size), 0);
    MultiByteToWideChar(CP_ACP, /*flags*/ 0, text.c_str(), -1, reinterpret_cast<WCHAR*>(result.data()), size);
    result.pop_back();
    return result;
}
