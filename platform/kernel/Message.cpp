#include <kelcore/platform/messages.h>

#include "platform/kernel/LastError.h"
#include "platform/kernel/MessageLanguage.h"
#include "platform/kernel/MessageTable.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

using namespace kel::platform;

constexpr DWORD kKnownFlags = FORMAT_MESSAGE_MAX_WIDTH_MASK | FORMAT_MESSAGE_ALLOCATE_BUFFER |
                              FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_FROM_HMODULE |
                              FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_ARGUMENT_ARRAY;
constexpr DWORD kEnglish = 9;

bool IsTextLanguage(DWORD language) {
    return language == 0 || language == 0x0400 || language == 0x0800 ||
           (language <= 0xFFFF && (language & 0x3FF) == kEnglish);
}

DWORD ComposeSystemText(DWORD id, DWORD language, MessageText& text) {
    if (!IsTextLanguage(language))
        return ERROR_RESOURCE_LANG_NOT_FOUND;
    const char* const sentence = SystemText(id);
    if (sentence == nullptr)
        return ERROR_MR_MID_NOT_FOUND;
    text.Put(sentence, std::strlen(sentence));
    text.PutSourceBreak();
    return NO_ERROR;
}

DWORD ComposeMessage(const char* message, bool keepInserts, MessageArguments& arguments, MessageText& text) {
    if (message == nullptr || !PutMessage(text, message, keepInserts, arguments))
        return ERROR_INVALID_PARAMETER;
    return text.IsOver() ? ERROR_INSUFFICIENT_BUFFER : NO_ERROR;
}

DWORD Compose(DWORD flags, LPCVOID source, DWORD id, DWORD language, va_list* list, MessageText& text) {
    if ((flags & ~kKnownFlags) != 0)
        return ERROR_INVALID_PARAMETER;
    if ((flags & FORMAT_MESSAGE_FROM_STRING) != 0) {
        const auto* const message = static_cast<const char*>(source);
        const bool keepInserts = (flags & FORMAT_MESSAGE_IGNORE_INSERTS) != 0;
        if ((flags & FORMAT_MESSAGE_ARGUMENT_ARRAY) != 0) {
            MessageArguments arguments(reinterpret_cast<const ULONG_PTR*>(list));
            return ComposeMessage(message, keepInserts, arguments, text);
        }
        MessageArguments arguments(list);
        return ComposeMessage(message, keepInserts, arguments, text);
    }
    if ((flags & FORMAT_MESSAGE_FROM_SYSTEM) != 0)
        return ComposeSystemText(id, language, text);
    return (flags & FORMAT_MESSAGE_FROM_HMODULE) != 0 ? ERROR_RESOURCE_DATA_NOT_FOUND : ERROR_INVALID_PARAMETER;
}

// Gives the text to the caller, in the caller's buffer or in a new one.
DWORD Deliver(const std::string& text, bool allocate, LPSTR buffer, DWORD size) {
    if (text.empty())
        return ERROR_NO_WORK_DONE;
    if (allocate) {
        const HLOCAL memory = LocalAlloc(LMEM_FIXED, std::max<SIZE_T>(size, text.size() + 1));
        if (memory == nullptr)
            return ERROR_NOT_ENOUGH_MEMORY;
        std::memcpy(buffer, &memory, sizeof memory);
        buffer = static_cast<char*>(memory);
    } else if (size <= text.size()) {
        return ERROR_INSUFFICIENT_BUFFER;
    }
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return NO_ERROR;
}

} // namespace

DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD id, DWORD language, LPSTR buffer, DWORD size,
                     va_list* arguments) try {
    const bool allocate = (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0;
    if (buffer == nullptr)
        return Fail(ERROR_INVALID_PARAMETER);
    if (allocate)
        std::memset(buffer, 0, sizeof(HLOCAL));
    MessageText text(flags & FORMAT_MESSAGE_MAX_WIDTH_MASK);
    DWORD error = Compose(flags, source, id, language, arguments, text);
    if (error == NO_ERROR)
        error = Deliver(text.Text(), allocate, buffer, size);
    if (error != NO_ERROR)
        return Fail(error);
    return static_cast<DWORD>(text.Text().size());
} catch (const std::bad_alloc&) {
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}
