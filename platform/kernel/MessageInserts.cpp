#include "platform/kernel/MessageInserts.h"

#include "platform/crt/FormatOutput.h"

namespace kel::platform {
namespace {

// The values of one insert, in their order.
class InsertValues {
public:
    InsertValues(MessageArguments& arguments, unsigned number) : m_arguments(arguments), m_next(number - 1) {}

    int Int() { return static_cast<int>(Next()); }
    const void* Pointer() { return reinterpret_cast<const void*>(Next()); }
    std::int64_t Quad(ArgumentSize /*size*/, bool /*isSigned*/) { return static_cast<std::int64_t>(Next()); }

private:
    ULONG_PTR Next() { return m_arguments.At(m_next++); }

    MessageArguments& m_arguments;
    std::size_t m_next;
};

bool PutValue(MessageText& out, const Conversion& conversion, InsertValues& values) {
    switch (conversion.type) {
    case 's':
    case 'S':
        PutText(out, conversion, values);
        return true;
    case 'c':
    case 'C':
        PutCharacter(out, conversion, values);
        return true;
    case 'd':
    case 'i':
    case 'u':
    case 'o':
    case 'x':
    case 'X':
    case 'p':
        PutInteger(out, conversion, values);
        return true;
    default:
        return false;
    }
}

} // namespace

MessageArguments::MessageArguments(va_list* list) : m_isList(list != nullptr) {
    if (m_isList)
        va_copy(m_list, *list);
}

MessageArguments::~MessageArguments() {
    if (m_isList)
        va_end(m_list);
}

ULONG_PTR MessageArguments::At(std::size_t index) {
    if (m_array != nullptr)
        return m_array[index];
    while (m_read <= index)
        m_values[m_read++] = va_arg(m_list, ULONG_PTR);
    return m_values[index];
}

const char* PutInsert(MessageText& out, unsigned number, const char* text, MessageArguments& arguments) {
    if (!arguments.AreThere())
        return nullptr;
    InsertValues values(arguments, number);
    Conversion conversion;
    conversion.type = 's';
    if (*text != '!')
        return PutValue(out, conversion, values) ? text : nullptr;
    ConversionParser parser(text + 1, values);
    if (!parser.Parse(conversion) || *parser.At() != '!')
        return nullptr;
    return PutValue(out, conversion, values) ? parser.At() + 1 : nullptr;
}

} // namespace kel::platform
