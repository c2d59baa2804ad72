#include <kelcore/platform/stdio.h>

#include "platform/crt/FormatOutput.h"

#include <algorithm>

namespace {

using namespace kel::platform;

// A variable-argument list of the caller; values leave a copy of it in order.
class ListArguments {
public:
    explicit ListArguments(va_list list) { va_copy(m_list, list); }
    ~ListArguments() { va_end(m_list); }
    ListArguments(const ListArguments&) = delete;
    ListArguments& operator=(const ListArguments&) = delete;

    int Int() { return va_arg(m_list, int); }
    double Double() { return va_arg(m_list, double); }
    void* Pointer() { return va_arg(m_list, void*); }
    std::int64_t Quad(ArgumentSize size, bool isSigned) {
        if (size == ArgumentSize::Quad)
            return va_arg(m_list, std::int64_t);
        const std::ptrdiff_t value = va_arg(m_list, std::ptrdiff_t);
        return isSigned ? value : static_cast<std::int64_t>(static_cast<std::size_t>(value));
    }

private:
    va_list m_list;
};

// A buffer of the caller that takes what fits; what does not is counted.
class BufferOutput {
public:
    using Unit = WCHAR;

    BufferOutput(WCHAR* text, std::size_t count)
        : m_begin(text), m_next(text), m_end(text == nullptr ? nullptr : text + std::min<std::size_t>(count, INT_MAX)),
          m_counting(text == nullptr) {}

    void Put(WCHAR unit) {
        if (m_next != m_end)
            *m_next++ = unit;
        else
            ++m_lost;
    }
    void Put(const WCHAR* text, std::size_t length) {
        const std::size_t fits = Fitting(length);
        m_next = std::copy_n(text, fits, m_next);
    }
    void PutAscii(const char* text, std::size_t length) {
        const std::size_t fits = Fitting(length);
        for (std::size_t i = 0; i != fits; ++i)
            m_next[i] = static_cast<unsigned char>(text[i]);
        m_next += fits;
    }
    void Fill(char character, std::int64_t count) {
        m_next = std::fill_n(m_next, Fitting(static_cast<std::size_t>(count)), static_cast<unsigned char>(character));
    }

    // The text of the format up to its next percent sign or its end.
    const WCHAR* PutPlain(const WCHAR* format) {
        while (*format != 0 && *format != '%')
            Put(*format++);
        return format;
    }

    // Whether more output can change nothing any more.
    [[nodiscard]] bool IsOver() const { return m_lost > (m_counting ? std::size_t{INT_MAX} : 0); }

    [[nodiscard]] int Result() const {
        const std::size_t units = static_cast<std::size_t>(m_next - m_begin) + m_lost;
        if ((m_lost != 0 && !m_counting) || units > INT_MAX)
            return -1;
        if (m_next != m_end)
            *m_next = 0;
        return static_cast<int>(units);
    }

private:
    std::size_t Fitting(std::size_t length) {
        const std::size_t fits = std::min(length, static_cast<std::size_t>(m_end - m_next));
        m_lost += length - fits;
        return fits;
    }

    WCHAR* m_begin;
    WCHAR* m_next;
    WCHAR* m_end;
    std::size_t m_lost = 0;
    bool m_counting;
};

void PutDouble(BufferOutput& out, const Conversion& conversion, double value) {
    NumberField field;
    RenderDouble(conversion, value, field);
    PutNumber(out, conversion, field);
}

void PutArgument(BufferOutput& out, const Conversion& conversion, ListArguments& arguments) {
    switch (conversion.type) {
    case 's':
    case 'S':
        return PutText(out, conversion, arguments);
    case 'c':
    case 'C':
        return PutCharacter(out, conversion, arguments);
    case 'd':
    case 'i':
    case 'u':
    case 'o':
    case 'x':
    case 'X':
    case 'p':
        return PutInteger(out, conversion, arguments);
    case 'n':
        // A format must not be able to write into memory.
        arguments.Pointer();
        return;
    default:
        return PutDouble(out, conversion, arguments.Double());
    }
}

void Print(BufferOutput& out, const WCHAR* format, ListArguments& arguments) {
    for (format = out.PutPlain(format); *format == '%' && !out.IsOver(); format = out.PutPlain(format)) {
        if (format[1] == '%') {
            out.Put('%');
            format += 2;
            continue;
        }
        Conversion conversion;
        ConversionParser parser(format + 1, arguments);
        if (parser.Parse(conversion))
            PutArgument(out, conversion, arguments);
        format = parser.At();
    }
}

} // namespace

int _vsnwprintf(WCHAR* text, size_t count, const WCHAR* format, va_list arguments) {
    BufferOutput out(text, count);
    ListArguments values(arguments);
    Print(out, format, values);
    return out.Result();
}

int _snwprintf(WCHAR* text, size_t count, const WCHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = _vsnwprintf(text, count, format, arguments);
    va_end(arguments);
    return result;
}

int _vscwprintf(const WCHAR* format, va_list arguments) {
    return _vsnwprintf(nullptr, 0, format, arguments);
}

int _scwprintf(const WCHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = _vscwprintf(format, arguments);
    va_end(arguments);
    return result;
}
