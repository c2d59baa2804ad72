#pragma once

#include <memory>
#include <string>
#include <vector>

namespace kel::test {

/// A message box as a user sees it.
struct SeenBox {
    std::string text;
    std::string caption;
    std::vector<int> buttons; ///< IDOK …, in the order of their numbers
    int defaultButton;
    bool hasIcon;
};

/// While it lives, the message boxes of this thread answer themselves, and it notes what they showed.
class MessageBoxes {
public:
    /// @param answer the button that is pressed; 0 for each box's default button.
    explicit MessageBoxes(int answer = 0);
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;
    ~MessageBoxes();

    const std::vector<SeenBox>& Seen() const;

    struct Watch;

private:
    std::unique_ptr<Watch> m_watch;
};

} // namespace kel::test
