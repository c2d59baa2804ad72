#include "tests/support/MessageBoxes.h"

#include <kelcore/platform/boxhook.h>

#include <algorithm>

namespace kel::test {
namespace {

/// The buttons of a style in the order of the box, as MessageBox of Windows is documented.
std::vector<int> ButtonsOf(UINT style) {
    switch (style & MB_TYPEMASK) {
    case MB_OKCANCEL:
        return {IDOK, IDCANCEL};
    case MB_ABORTRETRYIGNORE:
        return {IDABORT, IDRETRY, IDIGNORE};
    case MB_YESNOCANCEL:
        return {IDYES, IDNO, IDCANCEL};
    case MB_YESNO:
        return {IDYES, IDNO};
    case MB_RETRYCANCEL:
        return {IDRETRY, IDCANCEL};
    case MB_CANCELTRYCONTINUE:
        return {IDCANCEL, IDTRYAGAIN, IDCONTINUE};
    default:
        return {IDOK};
    }
}

SeenBox Describe(const platform::BoxQuestion& question) {
    std::vector<int> buttons = ButtonsOf(question.style);
    const std::size_t index = (question.style & MB_DEFMASK) >> 8;
    const int first = index < buttons.size() ? buttons[index] : buttons[0];
    if (question.style & MB_HELP)
        buttons.push_back(IDHELP);
    std::sort(buttons.begin(), buttons.end());
    return {question.text, question.caption, buttons, first, (question.style & MB_ICONMASK) != 0};
}

} // namespace

struct MessageBoxes::Watch {
    std::vector<SeenBox> seen;
    platform::BoxHook before;
};

MessageBoxes::MessageBoxes(int answer) : m_watch(std::make_unique<Watch>()) {
    m_watch->before = platform::SetBoxHook([this, answer](const platform::BoxQuestion& question) {
        m_watch->seen.push_back(Describe(question));
        return answer; // 0 leaves the box to the layer, which presses the default button
    });
}

MessageBoxes::~MessageBoxes() {
    platform::SetBoxHook(std::move(m_watch->before));
}

const std::vector<SeenBox>& MessageBoxes::Seen() const {
    return m_watch->seen;
}

} // namespace kel::test
