#include "Workplace.h"

#include <cstdarg>
#include <cstring>

namespace {

constexpr DWORD kFromText = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING;

// The text, or the error code in angle brackets.
std::string Result(DWORD length, char* text) {
    const DWORD error = GetLastError();
    const std::string result = length == 0 ? "<" + std::to_string(error) + ">" : std::string(text, length);
    CHECK((text == nullptr) == (length == 0));
    CHECK((text == nullptr || text[length] == 0));
    LocalFree(text);
    return result;
}

std::string Message(DWORD flags, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char* text = reinterpret_cast<char*>(&arguments);
    const DWORD length = FormatMessageA(kFromText | flags, format, 0, 0, reinterpret_cast<char*>(&text), 0, &arguments);
    va_end(arguments);
    return Result(length, text);
}

std::string SystemMessage(DWORD code, DWORD language = 0) {
    char* text = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = FormatMessageA(flags, nullptr, code, language, reinterpret_cast<char*>(&text), 0, nullptr);
    return Result(length, text);
}

template <class... Arguments>
void Flagged(DWORD flags, const char* format, const char* expected, Arguments... arguments) {
    CHECK_MESSAGE(Message(flags, format, arguments...) == expected, format);
}

template <class... Arguments>
void Gives(const char* format, const char* expected, Arguments... arguments) {
    Flagged(/*flags*/ 0, format, expected, arguments...);
}

const WCHAR kWide[] = {'w', 'i', 'd', 'e', 0};

} // namespace

TEST_CASE("inserts take their arguments by number and print by their conversions") {
    Gives("%2%1 and %2", "ba and b", "a", "b");
    Gives("%10 %100 %1a", "j j0 aa", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j");
    Gives("%1!d! %2!5d!|%3!-5d!|%4!05d!|%5!x! %6!X! %7!u!", "-5    42|42   |00042|ff FF 7", -5, 42, 42, 42, 255, 255,
          7);
    Gives("%1!s! %2!hs! %3!ws! %4!ls! %5!S!", "a b wide wide wide", "a", "b", kWide, kWide, kWide);
    Gives("%1!.3s! %2!7.3s!|%3!c!%4!lc!", "abc     abc|AB", "abcdef", "abcdef", 'A', 'B');
    Gives("%1!*s!|", "    ab|", 6, "ab");
    Gives("%1!*.*s!|", "     a|", 6, 1, "ab");
    Gives("%2!-*d!|", "3     |", 1, 6, 3);
    Gives("%1 %2!s!", "(null) (null)", static_cast<char*>(nullptr), static_cast<char*>(nullptr));
}

TEST_CASE("escapes and line breaks") {
    Gives("a%nb%rc%td%%e%.f%!g% h%ki", "a\r\nb\rc\td%e.f!g hki");
    Gives("abc%0def", "abc");
    Gives("a\nb\r\nc\rd\n\re\n", "a\r\nb\r\nc\r\nd\r\n\r\ne\r\n");
    Gives("%1", "x\ny", "x\ny");
    Gives("100%", "<87>");
    Gives("", "<235>");
    Gives("%0abc", "<235>");
    Gives("%1", "<235>", "");
}

TEST_CASE("bad inserts are refused, unless all are left as they are") {
    for (const char* format : {"a%1!", "a%1!d", "a%1!5"})
        Gives(format, "<87>", "a");
    const DWORD flag = FORMAT_MESSAGE_IGNORE_INSERTS;
    Flagged(flag, "%1 %2!d! %% % %.%!%k%b %12!s!|", "%1 %2!d! %% % %.%!%k%b %12!s!|");
    Flagged(flag, "a%nb%rc%td\ne%0f", "a\r\nb\rc\td\r\ne");
    Flagged(flag, "%1!d", "%1!d");
    Flagged(flag, "a%", "<87>");
    if (!kOnLayer) // whose refusals go further than on Windows
        return;
    for (const char* format : {"%1!k!", "%1!!", "%1!d d!", "%1!%d!", "%1!d%!", "%1!f!", "%1!n!", "%1! !", "%1!5%d!"})
        Gives(format, "<87>", "a");
}

TEST_CASE("a width breaks lines at spaces, cuts long words and leaves inserts whole") {
    Flagged(255, "a\nb\r\n\r\nc  d%ne%r f", "a b  c  d\r\ne\r f");
    Flagged(8, "one two three four five", "one two\r\nthree\r\nfour\r\nfive");
    Flagged(5, "ab abcdefghijklm xy", "ab\r\nabcde\r\nfghij\r\nklm\r\nxy");
    Flagged(10, "one%ntwo three%n%nabc", "one\r\ntwo three\r\n\r\nabc");
    Flagged(10, "%1!5d! %2!5d! %3!5d!", "    1\r\n    2\r\n    3", 1, 2, 3);
}

TEST_CASE("arguments come from an array as well, and the caller's buffer must hold the text and its terminator") {
    const ULONG_PTR values[] = {reinterpret_cast<ULONG_PTR>("x"), 4, 2, 7, 9};
    auto* const array = reinterpret_cast<va_list*>(const_cast<ULONG_PTR*>(values));
    const DWORD flags = FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY;
    char text[16];
    for (const DWORD size : {0u, 6u, 7u}) {
        CAPTURE(size);
        std::memset(text, '~', sizeof text);
        const DWORD length = FormatMessageA(flags, "%1 %2!*.*d!", 0, 0, text, size, array);
        CHECK(ErrorOf(length == 6) == (size > 6 ? 0 : ERROR_INSUFFICIENT_BUFFER));
        CHECK(std::string(text, 7) == (size > 6 ? std::string("x   07\0", 7) : "~~~~~~~"));
    }
    const auto error = [&](DWORD how, const char* format) {
        return ErrorOf(FormatMessageA(how, format, 5, 0, text, sizeof text, nullptr) == 5);
    };
    CHECK(error(flags, "%1") == ERROR_INVALID_PARAMETER);
    CHECK(error(flags, "plain") == 0);
    CHECK(error(/*no source*/ 0, "plain") == ERROR_INVALID_PARAMETER);
    CHECK(error(FORMAT_MESSAGE_FROM_HMODULE, nullptr) == ERROR_RESOURCE_DATA_NOT_FOUND);
    Gives("%1!70000d!", "<122>", 1);
    Gives(std::string(66000, 'a').c_str(), "<122>");
}

TEST_CASE("every usual error code has a text that ends its line") {
    // What the layer's own calls leave, what files, modules, windows and sockets bring, and COM results of the same.
    const DWORD codes[] = {0,   2,   3,    5,    6,    8,    18,         19,         32,         33,        38,
                           50,  53,  87,   109,  112,  120,  122,        126,        127,        145,       183,
                           193, 206, 1018, 1113, 1155, 1812, 0x80004005, 0x80070002, 0x8007000E, 0x80070057};
    for (const DWORD code : codes) {
        CAPTURE(code);
        const std::string text = SystemMessage(code);
        CHECK((text.size() > 5 && text.substr(text.size() - 2) == "\r\n"));
        CHECK(text == SystemMessage(code, 0x0409));
    }
    CHECK(SystemMessage(0x80070005) == SystemMessage(5));
    CHECK(SystemMessage(2) != SystemMessage(3));
    for (const DWORD code : {999999u, 0x80071234u, 0xC0000005u, 0x20000005u})
        CHECK(SystemMessage(code) == "<317>");
    for (const DWORD language : {0x7Fu, 0xFFFFFu})
        CHECK(SystemMessage(5, language) == "<1815>");
}
