#include "platform/kernel/MessageLanguage.h"

#include <cstring>

namespace kel::platform {
namespace {

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

class Expansion {
public:
    Expansion(MessageText& out, const char* message, bool keepInserts, MessageArguments& arguments)
        : m_out(out), m_at(message), m_keepInserts(keepInserts), m_arguments(arguments) {}

    bool Run() {
        while (*m_at != 0 && !m_ended && !m_out.IsOver())
            if (!Step())
                return false;
        return true;
    }

private:
    bool Step() {
        switch (*m_at) {
        case '%':
            ++m_at;
            return Escape();
        case '\r':
            m_at += m_at[1] == '\n' ? 2 : 1;
            m_out.PutSourceBreak();
            return true;
        case '\n':
            ++m_at;
            m_out.PutSourceBreak();
            return true;
        default:
            const std::size_t length = std::strcspn(m_at, "%\r\n");
            m_out.Put(m_at, length);
            m_at += length;
            return true;
        }
    }

    bool Escape() {
        if (*m_at == 0)
            return false;
        if (Layout())
            return true;
        if (m_keepInserts)
            return Keep();
        if (IsDigit(*m_at))
            return Insert();
        m_out.PutGlue(*m_at == 'b' ? ' ' : *m_at);
        ++m_at;
        return true;
    }

    // The escapes that hold whether or not inserts are kept.
    bool Layout() {
        switch (*m_at) {
        case '0':
            m_ended = true;
            break;
        case 'n':
            m_out.PutHardBreak();
            break;
        case 'r':
            m_out.PutGlue('\r');
            break;
        case 't':
            m_out.PutGlue('\t');
            break;
        default:
            return false;
        }
        ++m_at;
        return true;
    }

    // The second percent sign of a pair must not begin an escape of its own.
    bool Keep() {
        m_out.PutGlue('%');
        if (*m_at == '%') {
            m_out.PutGlue('%');
            ++m_at;
        }
        return true;
    }

    bool Insert() {
        auto number = static_cast<unsigned>(*m_at++ - '0');
        if (IsDigit(*m_at))
            number = number * 10 + static_cast<unsigned>(*m_at++ - '0');
        m_out.BeginInsert();
        m_at = PutInsert(m_out, number, m_at, m_arguments);
        m_out.EndInsert();
        return m_at != nullptr;
    }

    MessageText& m_out;
    const char* m_at;
    bool m_keepInserts;
    MessageArguments& m_arguments;
    bool m_ended = false;
};

} // namespace

bool PutMessage(MessageText& out, const char* message, bool keepInserts, MessageArguments& arguments) {
    return Expansion(out, message, keepInserts, arguments).Run();
}

} // namespace kel::platform
