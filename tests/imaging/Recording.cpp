#include "tests/imaging/Recording.h"

#include "tests/support/Blocks.h"
#include "tests/support/Threads.h"

namespace kel::test {
namespace {

const std::string kKey = std::string("Software\\Classes\\CLSID\\") + toolkit::kControlClassText;

// Loaded once and for all: controls do not keep it.
recorder::Recorder& TheRecorder() {
    static const HMODULE module = LoadLibraryA(KELCORE_TEST_RECORDER);
    REQUIRE(module != nullptr);
    const auto procedure = reinterpret_cast<void (*)()>(GetProcAddress(module, recorder::kRecorderName));
    REQUIRE((procedure != nullptr));
    return *reinterpret_cast<recorder::RecorderFunction>(procedure)();
}

// The library's loader is made by the first deferred load and stays; its last run lets go of its handles as it ends.
std::size_t HandlesAtRest() {
    XPDib picture;
    picture.LoadBitmapDeferred(u"C:\\none.pic"_w, /*notifier*/ nullptr, Rect(), /*user value*/ 0);
    while (picture.IsLoadBitmapPending())
        Sleep(0);
    picture = XPDib();
    CHECK(ExtraThreadsEnd());
    return OpenHandles();
}

} // namespace

Recording::Recording() : m_recorder(TheRecorder()) {
    Register(KELCORE_TEST_RECORDER);
    m_recorder.Reset();
    m_handles = HandlesAtRest();
    m_recorder.Reset();
}

Recording::~Recording() {
    CHECK(m_recorder.Controls() == 0);
    CHECK(m_recorder.Sinks() == 0);
    CHECK(ExtraThreadsEnd());
    CHECK(OpenHandles() == m_handles);
}

std::string Recording::Calls() const {
    std::string lines = m_recorder.TakeLines();
    std::string calls;
    for (std::size_t from = 0, end; from < lines.size(); from = end + 1) {
        end = lines.find('\n', from);
        if (lines.compare(from, 3, "1: ") == 0)
            from += 3;
        calls += (calls.empty() ? "" : ", ") + lines.substr(from, end - from);
    }
    return calls;
}

void Recording::Register(const char* path) {
    RegDeleteKeyA(HKEY_LOCAL_MACHINE, (kKey + "\\InprocServer32").c_str());
    RegDeleteKeyA(HKEY_LOCAL_MACHINE, kKey.c_str());
    if (path)
        REQUIRE(RegSetValueA(HKEY_LOCAL_MACHINE, (kKey + "\\InprocServer32").c_str(), REG_SZ, path, /*unused*/ 0) ==
                ERROR_SUCCESS);
}

void LoadText(XPDib& picture, const std::string& file) {
    picture.LoadBitmapA(file.data(), static_cast<int>(file.size()));
}

std::string StoredOf(const XPDib& picture) {
    const ObjectFactory factory;
    MemoryOutputStream memory;
    SerializingOutputStream stream(factory, memory);
    picture.Write(stream);
    return memory.GetContent();
}

void ReadStored(XPDib& picture, const std::string& bytes) {
    const ObjectFactory factory;
    MemoryInputStream memory(bytes);
    SerializingInputStream stream(factory, memory);
    picture.Read(stream, /*version*/ 1);
}

std::string DibOf(const XPDib& picture) {
    const HGLOBAL block = picture.GetDibClone();
    const std::string bytes = BytesOf<std::string>(block);
    if (block)
        GlobalFree(block);
    return bytes;
}

} // namespace kel::test
