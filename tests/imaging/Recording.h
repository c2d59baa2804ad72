#pragma once

#include "tests/support/Faults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"
#include "tests/support/recorder/Recorder.h"

#include <kelcore/bitmap.h>
#include <kelcore/picture.h>
#include <kelcore/stream.h>

#include <optional>
#include <string>

namespace kel::test {

/// The recording toolkit, registered, as if it had never been asked anything. In the end it checks that pictures have
/// let go of all that they had.
class Recording {
public:
    Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
    ~Recording();

    recorder::Recorder* operator->() const { return &m_recorder; }

    /// The calls since the last time, "connect 1, 1 AddRef, 26 2, …": those of control 1 without its number.
    std::string Calls() const;

    /// Registers the module at @p path, or none.
    static void Register(const char* path);

private:
    recorder::Recorder& m_recorder;
    std::size_t m_handles;
};

/// What starting control 1 looks like, and letting go of it.
inline const std::string kStart = "connect 1, 1 AddRef, 26 2, 200 0, 513 0, 102 0, 260 0";
inline const std::string kStop = "1 Release, disconnect 1, 1 Release, 1 gone";

/// A picture whose protected members are open.
struct OpenPicture : XPDib {
    using XPDib::Detach;
    using XPDib::InitImageXpress;
};

/// Loads one of the recorder's files from memory.
void LoadText(XPDib& picture, const std::string& file);

/// The bytes of the picture's block.
std::string DibOf(const XPDib& picture);

/// What Write stores, and reading it again.
std::string StoredOf(const XPDib& picture);
void ReadStored(XPDib& picture, const std::string& bytes);

/// What a call throws: "E 80004005" for a failed operation of the toolkit, "X 3" for a loader's failure, "S 0: text"
/// for a stream's, "memory"; "" when it returns.
template <class Call>
std::string Thrown(Call call) {
    try {
        call();
        return "";
    } catch (const kel::ToolkitError& failure) {
        char text[] = "E 00000000";
        std::snprintf(text, sizeof text, "E %08X", static_cast<unsigned>(failure.Error()));
        return text;
    } catch (XPDib::XPException code) {
        return "X " + std::to_string(code);
    } catch (const StreamBase::Exception& failure) {
        return "S " + std::to_string(failure.code) + ": " + StdW2A(failure.message);
    } catch (const std::bad_alloc&) {
        return "memory";
    }
}

} // namespace kel::test
