#include "Workplace.h"

#include "tests/support/MessageBoxes.h"

using kel::test::MessageBoxes;

TEST_CASE("a style decides about the buttons, the icon and the default answer") {
    // The buttons by the numbers of their answers, sorted.
    const auto shows = [](UINT style, const std::vector<int>& buttons, int answer, bool hasIcon = false) {
        CAPTURE(style);
        const MessageBoxes boxes;
        CHECK(MessageBoxA(nullptr, "two\nlines", "caption", style) == answer);
        REQUIRE(boxes.Seen().size() == 1);
        const kel::test::SeenBox& box = boxes.Seen()[0];
        CHECK((box.text == "two\nlines" && box.caption == "caption" && box.hasIcon == hasIcon));
        CHECK((box.buttons == buttons && box.defaultButton == answer));
    };
    shows(MB_OK | MB_ICONEXCLAMATION, {IDOK}, IDOK, true);
    shows(MB_OKCANCEL | MB_DEFBUTTON4, {IDOK, IDCANCEL}, IDOK);
    shows(MB_ABORTRETRYIGNORE | MB_DEFBUTTON3, {IDABORT, IDRETRY, IDIGNORE}, IDIGNORE);
    shows(MB_YESNOCANCEL | MB_DEFBUTTON2, {IDCANCEL, IDYES, IDNO}, IDNO);
    shows(MB_YESNO | MB_ICONERROR, {IDYES, IDNO}, IDYES, true);
    shows(MB_CANCELTRYCONTINUE | MB_DEFBUTTON3, {IDCANCEL, IDTRYAGAIN, IDCONTINUE}, IDCONTINUE);
    shows(MB_YESNO | MB_HELP, {IDYES, IDNO, IDHELP}, IDYES);
}

TEST_CASE("the texts of a box may be strings of a module, and the answer another than the default") {
    const HMODULE module = LoadLibraryA(KELCORE_TEST_MODULES "/texts.dll");
    const auto shows = [&](WORD text, LPCSTR caption, const char* shownText, const char* shownCaption) {
        const MessageBoxes boxes(IDNO);
        const MSGBOXPARAMSA box = {sizeof box, nullptr, module, MAKEINTRESOURCEA(text), caption, MB_YESNO, {},
                                   {},         {},      {}};
        CHECK(MessageBoxIndirectA(&box) == IDNO);
        REQUIRE(boxes.Seen().size() == 1);
        CHECK((boxes.Seen()[0].text == shownText && boxes.Seen()[0].caption == shownCaption));
    };
    shows(17, MAKEINTRESOURCEA(1), "seventeen", "one");
    shows(/*none*/ 5, nullptr, "", "Error");
    CHECK(FreeLibrary(module));
}

TEST_CASE("a box with unknown buttons or of another size is refused") {
    if (!kOnLayer) // Wine shows it
        return;
    CHECK(ErrorOf(MessageBoxA(nullptr, "", "", MB_CANCELTRYCONTINUE + 1)) == ERROR_INVALID_MSGBOX_STYLE);
    MSGBOXPARAMSA box = {};
    CHECK(ErrorOf(MessageBoxIndirectA(&box)) == ERROR_INVALID_PARAMETER);
    CHECK(ErrorOf(MessageBoxIndirectA(nullptr)) == ERROR_INVALID_PARAMETER);
}
