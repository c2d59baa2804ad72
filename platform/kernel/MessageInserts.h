#pragma once

#include "platform/kernel/MessageText.h"

#include <kelcore/platform/base.h>

#include <cstdarg>

namespace kel::platform {

/// The arguments of a message, by number. Each is one pointer-sized value.
class MessageArguments {
public:
    /// The last argument that a message can name: insert 99 with two asterisks.
    static constexpr std::size_t kMost = 101;

    /// No arguments.
    MessageArguments() = default;
    /// An array, of which only what is asked for is read; null means none.
    explicit MessageArguments(const ULONG_PTR* array) : m_array(array) {}
    /// A variable-argument list, read as far as is asked for. The caller's list stays as it is.
    explicit MessageArguments(va_list* list);
    ~MessageArguments();
    MessageArguments(const MessageArguments&) = delete;
    MessageArguments& operator=(const MessageArguments&) = delete;

    [[nodiscard]] bool AreThere() const { return m_array != nullptr || m_isList; }
    /// The argument at @p index, counted from 0, below kMost.
    ULONG_PTR At(std::size_t index);

private:
    const ULONG_PTR* m_array = nullptr;
    bool m_isList = false;
    va_list m_list;
    std::size_t m_read = 0;
    ULONG_PTR m_values[kMost];
};

/// Puts out insert @p number (1 to 99).
/// @param text the text behind the number, where a conversion may follow.
/// @return the text behind the insert, null for a bad one.
const char* PutInsert(MessageText& out, unsigned number, const char* text, MessageArguments& arguments);

} // namespace kel::platform
