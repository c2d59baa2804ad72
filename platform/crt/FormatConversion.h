#pragma once

#include <kelcore/platform/base.h>

#include <climits>

/// The printf language: one conversion, as it stands behind a percent sign.
namespace kel::platform {

enum class ArgumentSize : BYTE { Usual, Short, Long, Quad, Pointer };

struct Conversion {
    bool left = false;      ///< '-'
    bool plus = false;      ///< '+'
    bool space = false;     ///< ' '
    bool zero = false;      ///< '0'
    bool alternate = false; ///< '#'
    ArgumentSize size = ArgumentSize::Usual;
    char type = 0;
    int width = 0;
    int precision = -1; ///< negative: none given

    /// The precision, or @p usual if none is given.
    [[nodiscard]] int PrecisionOr(int usual) const { return precision < 0 ? usual : precision; }
    /// What fills a text or a character up to the width on the left.
    [[nodiscard]] char TextPadding() const { return zero && !left ? '0' : ' '; }
};

/// Reads one conversion from a NUL-terminated text; @c Arguments gives the values of its asterisks.
template <class Unit, class Arguments>
class ConversionParser {
public:
    ConversionParser(const Unit* text, Arguments& arguments) : m_at(text), m_arguments(arguments) {}

    /// @return whether there is a conversion. At() is then behind it, otherwise at the unit that cannot belong to one.
    bool Parse(Conversion& conversion) {
        while (TakeFlag(conversion))
            ++m_at;
        TakeWidth(conversion);
        TakePrecision(conversion);
        while (TakeSize(conversion)) {
        }
        if (!IsOneOf("diuoxXeEfFgGaApcCsSn"))
            return false;
        conversion.type = static_cast<char>(*m_at++);
        return true;
    }

    [[nodiscard]] const Unit* At() const { return m_at; }

private:
    [[nodiscard]] bool IsOneOf(const char* set, int ahead = 0) const {
        for (; *set != 0; ++set)
            if (m_at[ahead] == static_cast<Unit>(*set))
                return true;
        return false;
    }
    [[nodiscard]] bool IsDigit() const { return *m_at >= '0' && *m_at <= '9'; }

    bool TakeFlag(Conversion& conversion) const {
        switch (*m_at) {
        case '-':
            return conversion.left = true;
        case '+':
            return conversion.plus = true;
        case ' ':
            return conversion.space = true;
        case '0':
            return conversion.zero = true;
        case '#':
            return conversion.alternate = true;
        default:
            return false;
        }
    }

    int TakeNumber() {
        int number = 0;
        for (; IsDigit(); ++m_at) {
            const int digit = static_cast<int>(*m_at) - '0';
            number = number > (INT_MAX - digit) / 10 ? INT_MAX : number * 10 + digit;
        }
        return number;
    }

    void TakeWidth(Conversion& conversion) {
        if (*m_at != '*') {
            conversion.width = TakeNumber();
            return;
        }
        ++m_at;
        const int width = m_arguments.Int();
        conversion.left = conversion.left || width < 0;
        conversion.width = width < -INT_MAX ? INT_MAX : (width < 0 ? -width : width);
    }

    void TakePrecision(Conversion& conversion) {
        if (*m_at != '.')
            return;
        ++m_at;
        if (*m_at == '*') {
            ++m_at;
            conversion.precision = m_arguments.Int();
        } else {
            conversion.precision = TakeNumber();
        }
    }

    bool Take(Conversion& conversion, ArgumentSize size, int units) {
        // 64 bits once asked for stay, as in "llh"; otherwise the last prefix counts.
        if (conversion.size != ArgumentSize::Quad)
            conversion.size = size;
        m_at += units;
        return true;
    }

    bool TakeSize(Conversion& conversion) {
        switch (*m_at) {
        case 'h':
            return Take(conversion, ArgumentSize::Short, 1);
        case 'l':
            return m_at[1] == 'l' ? Take(conversion, ArgumentSize::Quad, 2) : Take(conversion, ArgumentSize::Long, 1);
        case 'w':
            return Take(conversion, ArgumentSize::Long, 1);
        case 'L':
            return Take(conversion, ArgumentSize::Usual, 1);
        case 'j':
            return Take(conversion, ArgumentSize::Quad, 1);
        case 'I':
            return TakeWideInteger(conversion);
        case 'z':
        case 't':
            return IsOneOf("diuoxX", 1) && Take(conversion, ArgumentSize::Pointer, 1);
        default:
            return false;
        }
    }

    bool TakeWideInteger(Conversion& conversion) {
        if (m_at[1] == '6' && m_at[2] == '4')
            return Take(conversion, ArgumentSize::Quad, 3);
        if (m_at[1] == '3' && m_at[2] == '2')
            return Take(conversion, ArgumentSize::Usual, 3);
        return IsOneOf("diuoxX", 1) && Take(conversion, ArgumentSize::Pointer, 1);
    }

    const Unit* m_at;
    Arguments& m_arguments;
};

} // namespace kel::platform
