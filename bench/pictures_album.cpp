#include "bench/pictures/PictureFile.h"
#include "bench/support/Areas.h"
#include "bench/support/TempFolder.h"

#include <kelcore/picture.h>
#include <kelcore/stream.h>

#include <array>
#include <condition_variable>
#include <deque>
#include <fstream>
#include <memory>
#include <mutex>
#include <stdexcept>

namespace kel::bench {
namespace {

constexpr std::size_t kPhotographs = 100;
constexpr std::size_t kDifferent = 4;
constexpr std::size_t kAhead = 3; // loads that are pending at a time
constexpr int kWidth = 2000;
constexpr int kHeight = 1500;
constexpr int kThumbnail = 256;

// Photographs in a folder, given out in turn.
struct Photographs {
    const PictureFile& kind;
    std::array<FileBytes, kDifferent> bytes;
    std::array<WideString, kDifferent> paths;
    TempFolder folder;

    explicit Photographs(const PictureFile& of) : kind(of) {
        for (std::size_t i = 0; i < kDifferent; ++i) {
            const std::filesystem::path path = folder.Path() / ("photograph" + std::to_string(i));
            bytes[i] = kind.encode(TakePhotograph(kWidth, kHeight, static_cast<unsigned>(i)));
            paths[i] = OnDrive(path);
            std::ofstream file(path, std::ios::binary);
            if (!file.write(reinterpret_cast<const char*>(bytes[i].data()),
                            static_cast<std::streamsize>(bytes[i].size())))
                throw std::runtime_error("no file can be made in the temporary folder");
        }
    }

    WideString Album() const { return OnDrive(folder.Path() / "album"); }
};

// Has photographs loaded a few ahead and hands them out in their order.
class Loading final : public LoadBitmapDeferredNotifier {
public:
    explicit Loading(const Photographs& photographs) : m_photographs(photographs) {
        while (m_asked < kAhead)
            AskForNext();
    }

    XPDib Next() {
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_loaded != 0; });
            --m_loaded;
        }
        XPDib picture = m_pictures.front();
        m_pictures.pop_front();
        if (picture.IsEmpty())
            throw std::runtime_error("a photograph cannot be loaded");
        if (m_asked < kPhotographs)
            AskForNext();
        return picture;
    }

    void OnBitmapLoaded(const WideString&, XPDib*, unsigned int) override { Count(); }
    void OnBitmapLoadFailed(const WideString&, XPDib*, XPDib::XPException, unsigned int) override { Count(); }

private:
    void AskForNext() {
        m_pictures.emplace_back().LoadBitmapDeferred(m_photographs.paths[m_asked++ % kDifferent], this,
                                                     Rect(0, 0, 0, 0),
                                                     /*user*/ 0);
    }

    void Count() {
        const std::lock_guard lock(m_mutex);
        ++m_loaded;
        m_changed.notify_one();
    }

    const Photographs& m_photographs;
    std::deque<XPDib> m_pictures; // asked for, in order
    std::size_t m_asked = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::size_t m_loaded = 0; // and not handed out
};

// A thumbnail of each photograph and the photograph, in checksummed blocks in a file.
void Pack(const Photographs& photographs) {
    const ObjectFactory classes;
    FileOutputStream file(photographs.Album());
    CRCOutputStream blocks(file);
    SerializingOutputStream stream(classes, blocks);
    Loading loading(photographs);
    for (std::size_t i = 0; i < kPhotographs; ++i) {
        const XPDib whole = loading.Next();
        XPDib thumbnail = whole;
        thumbnail.Prescale(Rect(0, 0, kThumbnail, kThumbnail), IBitmap::BM_Fit, XSize<double>(1, 1), 0.9);
        thumbnail.Write(stream);
        whole.Write(stream);
    }
    stream.Flush();
}

// What one core takes to decode them all, into memory that is there.
void Decode(const Photographs& photographs) {
    Rows rows{kWidth, kHeight, nullptr};
    static const auto memory = std::make_unique<unsigned char[]>(rows.Bytes());
    rows.memory = memory.get();
    for (std::size_t i = 0; i < kPhotographs; ++i)
        photographs.kind.decode(photographs.bytes[i % kDifferent], rows);
}

template <void (*Work)(const Photographs& photographs)>
Call CallOf(const PictureFile& kind) {
    static std::weak_ptr<const Photographs> shared;
    std::shared_ptr<const Photographs> photographs = shared.lock();
    if (!photographs)
        shared = photographs = std::make_shared<const Photographs>(kind);
    return {[=] { Work(*photographs); }};
}

} // namespace

void AddAlbumJobs() {
    for (const PictureFile& kind : Contenders<PictureFile>()) {
        if (std::string_view(kind.kind) != "JPEG 12 MP")
            continue;
        const char* const work = "album of 100 photographs, 3 MP";
        AddJob(
            "pictures", "kelcore", work, [&kind] { return CallOf<&Pack>(kind); }, Clock::Wall);
        AddJob(
            "pictures", "limit-decode on one core", work, [&kind] { return CallOf<&Decode>(kind); }, Clock::Wall);
    }
}

} // namespace kel::bench
