#include "tests/support/Text.h"

#include <doctest/doctest.h>
#include <kelcore/platform.h>
#include <kelcore/text.h>

#include <cstdarg>
#include <string>

namespace {

// Opens the protected workers, as a module's own string class would use them.
struct Worker : String {
    unsigned int Expand(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        const unsigned int count = FormatMessageString(format, reinterpret_cast<char**>(&arguments));
        va_end(arguments);
        return count;
    }
    void FormatTwice(const unsigned short* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        FormatString(format, reinterpret_cast<char**>(&arguments));
        const String once = *this;
        FormatString(format, reinterpret_cast<char**>(&arguments));
        CHECK(*this == once);
        va_end(arguments);
    }
    static unsigned long Raw(char* buffer, unsigned long size) {
        ULONG_PTR values[] = {7};
        return Worker().String::FormatMessageA(0x2400, "<%1!d!>", 0, 0, buffer, size,
                                               reinterpret_cast<char**>(&values));
    }
};

template <class... Arguments>
String Formatted(const String& format, Arguments... arguments) {
    String text(u"what was there before"_w);
    text.Format(format, arguments...);
    return text;
}

template <class... Arguments>
String Message(const char* format, Arguments... arguments) {
    String text(u"before"_w);
    text.FormatMessageA(format, arguments...);
    return text;
}

} // namespace

TEST_CASE("Format prints wide text, integers and doubles") {
    const String name(u"na\u00EFve \u4E2D"_w);
    CHECK(Formatted(u""_w) == String());
    CHECK(Formatted(u"%i %s %S %c %x %5.1lf %lf|"_w, -7, name.c_str(), "narrow", 'A', 255, 2.0, 1.5) ==
          u"-7 na\u00EFve \u4E2D narrow A ff   2.0 1.500000|"_w);
    CHECK(Formatted(u"%c|%s"_w, 0, name.Left(2).c_str()) == u"\0|na"_w);
}

TEST_CASE("a formatted text of any length is whole") {
    for (const unsigned length : {1u, 1023u, 1024u, 1025u, 4095u, 4096u, 4097u, 16384u, 16385u, 300000u}) {
        CAPTURE(length);
        const WideString units(length, 'x');
        CHECK(Formatted(u"%s"_w, units.c_str()) == units);
        CHECK(Formatted(u"%*i"_w, static_cast<int>(length), 7) == WideString(length - 1, ' ') + u"7"_w);
    }
    Worker worker;
    worker.FormatTwice(u"%s|%lf|%i|%lf|%I64d|%5000i"_w, u"text"_w.c_str(), 1.5, 2, 3.5, 4LL, 5);
    CHECK(worker.size() == 4 + 1 + 8 + 1 + 1 + 1 + 8 + 1 + 1 + 1 + 5000);
}

TEST_CASE("FormatMessageA expands numbered inserts and keeps the text when it cannot") {
    CHECK(Message("%2!5d!|%1%n", "a", 42) == u"   42|a\r\n"_w);
    for (const char* format : {"", "%1!d", "100%"})
        CHECK_MESSAGE(Message(format, "a") == u"before"_w, std::string(format));
    const String accented(u"\u00E9"_w);
    CHECK(Message("%1", static_cast<NarrowString>(accented).c_str()) == accented);
    Worker worker;
    CHECK((worker.Expand("%1!03d!", 7) == 3 && worker.Expand("%1!", 7) == 0 && worker == u"007"_w));
    char buffer[4] = "";
    CHECK((Worker::Raw(buffer, sizeof buffer) == 3 && buffer == std::string("<7>")));
    CHECK(Worker::Raw(buffer, 3) == 0);
}

TEST_CASE("error messages are the system's, empty for a code without one") {
    const String message = String::CreateErrorMessage(ERROR_ACCESS_DENIED);
    CHECK((message.Right(2) == u"\r\n"_w && message.size() > 5));
    CHECK(String::CreateErrorMessage(0x80070005UL) == message);
    CHECK(String::CreateErrorMessage(999999) == String());
    SetLastError(ERROR_ACCESS_DENIED);
    CHECK(String::CreateLastErrorMessage() == message);
}
