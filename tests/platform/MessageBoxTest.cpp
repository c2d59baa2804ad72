#include "Workplace.h"

#include "tests/support/MessageBoxes.h"

using kel::test::MessageBoxes;

TEST_CASE("a style decides about the buttons, the icon and the default answer") {
    struct Row {
        UINT style;
        std::vector<int> buttons; // the numbers of the answers, sorted
        int answer;
        bool hasIcon;
    };
    const Row rows[] = {
        {MB_OK, {IDOK}, IDOK, false},
        {MB_OK | MB_ICONEXCLAMATION, {IDOK}, IDOK, true},
        {MB_OKCANCEL | MB_ICONQUESTION, {IDOK, IDCANCEL}, IDOK, true},
        {MB_OKCANCEL | MB_DEFBUTTON2, {IDOK, IDCANCEL}, IDCANCEL, false},
        {MB_OKCANCEL | MB_DEFBUTTON4, {IDOK, IDCANCEL}, IDOK, false},
        {MB_ABORTRETRYIGNORE | MB_DEFBUTTON3, {IDABORT, IDRETRY, IDIGNORE}, IDIGNORE, false},
        {MB_YESNOCANCEL | MB_DEFBUTTON2, {IDCANCEL, IDYES, IDNO}, IDNO, false},
        {MB_YESNO | MB_ICONERROR, {IDYES, IDNO}, IDYES, true},
        {MB_RETRYCANCEL | MB_DEFBUTTON2, {IDCANCEL, IDRETRY}, IDCANCEL, false},
        {MB_CANCELTRYCONTINUE | MB_DEFBUTTON3, {IDCANCEL, IDTRYAGAIN, IDCONTINUE}, IDCONTINUE, false},
        {MB_YESNO | MB_HELP, {IDYES, IDNO, IDHELP}, IDYES, false},
    };
    for (const Row& row : rows) {
        CAPTURE(row.style);
        const MessageBoxes boxes;
        CHECK(MessageBoxA(nullptr, "two\nlines", "caption", row.style) == row.answer);
        REQUIRE(boxes.Seen().size() == 1);
        CHECK(boxes.Seen()[0].text == "two\nlines");
        CHECK(boxes.Seen()[0].caption == "caption");
        CHECK(boxes.Seen()[0].buttons == row.buttons);
        CHECK(boxes.Seen()[0].defaultButton == row.answer);
        CHECK(boxes.Seen()[0].hasIcon == row.hasIcon);
    }
}

TEST_CASE("the texts of a box may be strings of a module, and the answer another than the default") {
    const HMODULE module = LoadLibraryA(KELCORE_TEST_MODULES "/texts.dll");
    REQUIRE(module != nullptr);
    const MessageBoxes boxes(IDNO);
    MSGBOXPARAMSA box = {};
    box.cbSize = sizeof box;
    box.hInstance = module;
    box.dwStyle = MB_YESNO;
    for (const WORD id : {17, 5}) { // there is no string 5
        box.lpszText = MAKEINTRESOURCEA(id);
        box.lpszCaption = id == 5 ? nullptr : MAKEINTRESOURCEA(1);
        CHECK(MessageBoxIndirectA(&box) == IDNO);
    }
    REQUIRE(boxes.Seen().size() == 2);
    CHECK(boxes.Seen()[0].text == "seventeen");
    CHECK(boxes.Seen()[0].caption == "one");
    CHECK(boxes.Seen()[1].text.empty());
    CHECK(boxes.Seen()[1].caption == "Error");
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
