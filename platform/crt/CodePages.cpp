#include <kelcore/platform/codepages.h>
#include <kelcore/platform/errors.h>

#include "platform/crt/TablePages.h"

#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>

using namespace kel::platform;

namespace {

constexpr UINT kUnread = 0;
constinit std::atomic<UINT> g_ansiPage{kUnread};

UINT ReadAnsiPage() {
    const char* text = std::getenv("KELCORE_ACP");
    if (text == nullptr)
        return CP_UTF8;
    char* end = nullptr;
    const unsigned long number = std::strtoul(text, &end, 10);
    const bool valid = end != text && *end == '\0' && number <= UINT_MAX;
    return valid && IsValidCodePage(static_cast<UINT>(number)) ? static_cast<UINT>(number) : CP_UTF8;
}

// Concurrent first calls may each read the environment; the first answer stays.
__attribute__((noinline)) UINT DecideAnsiPage() {
    UINT page = kUnread;
    const UINT read = ReadAnsiPage();
    return g_ansiPage.compare_exchange_strong(page, read, std::memory_order_relaxed) ? read : page;
}

inline UINT AnsiPage() {
    const UINT page = g_ansiPage.load(std::memory_order_relaxed);
    return page != kUnread ? page : DecideAnsiPage();
}

/// The page that a symbolic number stands for, or the number itself.
UINT PageNumber(UINT codePage) {
    return codePage <= CP_THREAD_ACP ? AnsiPage() : codePage;
}

int Fail(DWORD error) {
    SetLastError(error);
    return 0;
}

/// A code page by its number: UTF-8, one with tables, or an unknown one.
class Page {
public:
    explicit Page(UINT codePage) : m_number(PageNumber(codePage)) {
        if (m_number != CP_UTF8)
            m_table = FindTablePage(m_number);
    }

    [[nodiscard]] bool Known() const { return m_number == CP_UTF8 || m_table != nullptr; }
    [[nodiscard]] bool IsUtf8() const { return m_table == nullptr; }
    [[nodiscard]] const TablePage* Table() const { return m_table; }

private:
    UINT m_number;
    const TablePage* m_table = nullptr;
};

/// Whether @p text, @p count and the result's buffer are acceptable; @p count becomes the length in elements.
template <class From, class To>
bool Measure(const From* text, int count, const To* result, int room, std::size_t& length) {
    if (text == nullptr || count == 0 || room < 0 || (result == nullptr && room > 0))
        return false;
    if (static_cast<const void*>(text) == static_cast<const void*>(result))
        return false;
    if (count > 0) {
        length = static_cast<std::size_t>(count);
        return true;
    }
    for (length = 0; text[length] != 0; ++length) {
    }
    ++length;
    return true;
}

/// What a call answers for a conversion that ended so after @p total elements.
int Answer(Stop stop, std::size_t total) {
    if (stop == Stop::Malformed)
        return Fail(ERROR_NO_UNICODE_TRANSLATION);
    if (stop == Stop::Full)
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    return total <= INT_MAX ? static_cast<int>(total) : Fail(ERROR_INVALID_PARAMETER);
}

/// Learns the size of a result by converting into a scratch buffer again and again.
template <class AnyJob, class To, class Convert>
__attribute__((noinline)) int Query(AnyJob& job, To*, const Convert& convert) {
    To scratch[1024];
    std::size_t total = 0;
    Stop stop = Stop::Full;
    while (stop == Stop::Full) {
        job.to = scratch;
        job.toEnd = std::end(scratch);
        stop = convert(job);
        total += static_cast<std::size_t>(job.to - scratch);
    }
    return Answer(stop, total);
}

/// Runs @p convert into the room of @p job, or just asks for the size if there is none.
/// @return the elements written or needed, 0 after setting the last error.
template <class AnyJob, class Convert>
int Run(AnyJob& job, const Convert& convert) {
    auto* const result = job.to;
    if (job.Room() == 0)
        return Query(job, result, convert);
    const Stop stop = convert(job);
    return Answer(stop, static_cast<std::size_t>(job.to - result));
}

DefaultChar DefaultOf(const TablePage& page, LPCSTR text) {
    if (text == nullptr)
        return {page.defaultCode};
    const auto first = static_cast<unsigned char>(text[0]);
    const auto second = page.IsLead(first) ? static_cast<unsigned char>(text[1]) : 0u;
    return {static_cast<Code>(first | second << 8)};
}

void DescribeLeads(const TablePage& page, BYTE* ranges) {
    int used = 0;
    for (unsigned byte = 0x80; byte < 256 && used + 2 < MAX_LEADBYTES; ++byte) {
        if (!page.IsLead(static_cast<unsigned char>(byte)))
            continue;
        ranges[used++] = static_cast<BYTE>(byte);
        while (byte < 255 && page.IsLead(static_cast<unsigned char>(byte + 1)))
            ++byte;
        ranges[used++] = static_cast<BYTE>(byte);
    }
}

} // namespace

UINT WINAPI GetACP() {
    return AnsiPage();
}

BOOL WINAPI IsValidCodePage(UINT codePage) {
    return codePage > CP_THREAD_ACP && Page(codePage).Known();
}

BOOL WINAPI GetCPInfo(UINT codePage, LPCPINFO info) {
    const Page page(codePage);
    if (info == nullptr || !page.Known())
        return Fail(ERROR_INVALID_PARAMETER);
    *info = CPINFO();
    if (page.IsUtf8()) {
        info->MaxCharSize = 4;
        info->DefaultChar[0] = '?';
        return TRUE;
    }
    info->MaxCharSize = page.Table()->doubleByte ? 2 : 1;
    info->DefaultChar[0] = static_cast<BYTE>(page.Table()->defaultCode);
    info->DefaultChar[1] = static_cast<BYTE>(page.Table()->defaultCode >> 8);
    DescribeLeads(*page.Table(), info->LeadByte);
    return TRUE;
}

BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte) {
    const Page page(codePage);
    if (!page.Known())
        return Fail(ERROR_INVALID_PARAMETER);
    return !page.IsUtf8() && page.Table()->IsLead(byte);
}

BOOL WINAPI IsDBCSLeadByte(BYTE byte) {
    return IsDBCSLeadByteEx(CP_ACP, byte);
}

BOOL WINAPI AreFileApisANSI() {
    return TRUE;
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR units, int unitCount, LPSTR bytes, int byteCount,
                               LPCSTR defaultChar, BOOL* usedDefault) {
    const Page page(codePage);
    std::size_t length = 0;
    if (!page.Known() || !Measure(units, unitCount, bytes, byteCount, length))
        return Fail(ERROR_INVALID_PARAMETER);
    const DWORD accepted = page.IsUtf8() ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS | WC_DEFAULTCHAR;
    if ((flags & ~accepted) != 0)
        return Fail(ERROR_INVALID_FLAGS);
    if (page.IsUtf8() && (defaultChar != nullptr || usedDefault != nullptr))
        return Fail(ERROR_INVALID_PARAMETER);
    EncodeJob job = {units, units + length, bytes, bytes + byteCount, (flags & WC_ERR_INVALID_CHARS) != 0};
    if (page.IsUtf8())
        return Run(job, EncodeUtf8);
    const TablePage& table = *page.Table();
    DefaultChar missing = DefaultOf(table, defaultChar);
    const int result = Run(job, [&](EncodeJob& part) { return EncodeTable(table, part, missing); });
    if (usedDefault != nullptr)
        *usedDefault = missing.used;
    return result;
}

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR bytes, int byteCount, LPWSTR units, int unitCount) {
    const Page page(codePage);
    std::size_t length = 0;
    if (!page.Known() || !Measure(bytes, byteCount, units, unitCount, length))
        return Fail(ERROR_INVALID_PARAMETER);
    const DWORD accepted = MB_ERR_INVALID_CHARS | (page.IsUtf8() ? 0 : MB_PRECOMPOSED);
    if ((flags & ~accepted) != 0)
        return Fail(ERROR_INVALID_FLAGS);
    DecodeJob job = {bytes, bytes + length, units, units + unitCount, (flags & MB_ERR_INVALID_CHARS) != 0};
    if (page.IsUtf8())
        return Run(job, DecodeUtf8);
    return Run(job, [&](DecodeJob& part) { return DecodeTable(*page.Table(), part); });
}
