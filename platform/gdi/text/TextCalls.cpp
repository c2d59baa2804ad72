#include "platform/gdi/text/TextDrawing.h"
#include "platform/kernel/Faults.h"

#include <utility>

namespace kel::platform {
namespace {

constexpr UINT kMostText = 0x7FFFFFFF;

TextRun RunOf(LPCSTR text, std::size_t count) {
    return RunOfAnsi(text, count);
}
TextRun RunOf(LPCWSTR text, std::size_t count) {
    return RunOfWide(text, count);
}

template <class Unit>
BOOL DrawOut(const char* name, HDC dc, const TextPlacement& placement, const Unit* text, UINT count) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    if (count > kMostText || (count != 0 && !text))
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(false, [&] { return DrawRun(*context, RunOf(text, count), placement); });
}

template <class Unit>
BOOL MeasureText(const char* name, HDC dc, const Unit* text, int count, LPSIZE size) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    if (count < 0 || (count != 0 && !text) || !size)
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(false, [&] {
        const ContextFont font(*context);
        if (!font)
            return false;
        *size = font.ExtentOf(RunOf(text, static_cast<std::size_t>(count)));
        return true;
    });
}

template <class Value>
Value Read(const char* name, HDC dc, Value ContextState::*value, Value failure) {
    if (CallFails(name))
        return failure;
    const auto context = FindContext(dc);
    return context ? context->State().*value : failure;
}

template <class Value>
Value Replace(const char* name, HDC dc, Value ContextState::*value, Value wanted, Value failure) {
    if (CallFails(name))
        return failure;
    const auto context = FindContext(dc);
    return context ? std::exchange(context->State().*value, wanted) : failure;
}

constexpr int kNoExtra = static_cast<int>(0x80000000);

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI ExtTextOutA(HDC dc, int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT count,
                        const INT* advances) {
    return DrawOut("ExtTextOutA", dc, {{x, y}, options, rect, advances}, text, count);
}

BOOL WINAPI ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text, UINT count,
                        const INT* advances) {
    return DrawOut("ExtTextOutW", dc, {{x, y}, options, rect, advances}, text, count);
}

BOOL WINAPI TextOutA(HDC dc, int x, int y, LPCSTR text, int count) {
    return DrawOut("TextOutA", dc, {{x, y}, 0, nullptr, nullptr}, text, static_cast<UINT>(count));
}

BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int count) {
    return DrawOut("TextOutW", dc, {{x, y}, 0, nullptr, nullptr}, text, static_cast<UINT>(count));
}

BOOL WINAPI GetTextExtentPoint32A(HDC dc, LPCSTR text, int count, LPSIZE size) {
    return MeasureText("GetTextExtentPoint32A", dc, text, count, size);
}

BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int count, LPSIZE size) {
    return MeasureText("GetTextExtentPoint32W", dc, text, count, size);
}

UINT WINAPI SetTextAlign(HDC dc, UINT align) {
    return Replace("SetTextAlign", dc, &ContextState::textAlign, align, UINT{GDI_ERROR});
}

UINT WINAPI GetTextAlign(HDC dc) {
    return Read("GetTextAlign", dc, &ContextState::textAlign, UINT{GDI_ERROR});
}

int WINAPI SetTextCharacterExtra(HDC dc, int extra) {
    return Replace("SetTextCharacterExtra", dc, &ContextState::characterExtra, extra, kNoExtra);
}

int WINAPI GetTextCharacterExtra(HDC dc) {
    return Read("GetTextCharacterExtra", dc, &ContextState::characterExtra, kNoExtra);
}
