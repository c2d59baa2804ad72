#pragma once

#include <kelcore/picture.h>

#include <deque>
#include <memory>
#include <optional>

namespace kelalbum {

/// A picture that was to be loaded, and why it was not.
struct Loaded {
    XPDib picture;
    std::optional<XPDib::XPException> failure;
};

/// Pictures on their way from their files, loaded one after the other by the library's loader thread.
class Loads : private LoadBitmapDeferredNotifier {
public:
    /// @throws Failure if the system has nothing to wait with.
    Loads();
    Loads(const Loads&) = delete;
    Loads& operator=(const Loads&) = delete;
    /// Waits for the loads that are under way.
    ~Loads();

    /// Begins to load a file.
    /// @throws Failure if the imaging toolkit cannot be started.
    void Begin(const WideString& path);
    /// How many loads have begun and not been taken.
    std::size_t UnderWay() const { return m_loads.size(); }
    /// Takes the load that began first, when it has ended.
    Loaded Take();

private:
    /// The notifier is told the picture, and finds the load by it.
    struct Load : XPDib {
        std::optional<XPException> failure;
    };

    void OnBitmapLoaded(const WideString& path, XPDib* picture, unsigned int) override;
    void OnBitmapLoadFailed(const WideString& path, XPDib* picture, XPDib::XPException code, unsigned int) override;

    HANDLE m_ended; // counts the ends
    std::deque<std::unique_ptr<Load>> m_loads;
};

} // namespace kelalbum
