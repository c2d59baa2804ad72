#include "AlbumOutput.h"
#include "Commands.h"
#include "Loads.h"
#include "Names.h"
#include "Progress.h"
#include "SourceFile.h"
#include "Sources.h"

#include <cstdio>

namespace kelalbum {
namespace {

// So many pictures are loaded or waiting to be loaded while another is being stored: enough for neither side to wait
// for the other, and no more in memory than these.
constexpr std::size_t kLoadsAhead = 3;

/// The lines about what does not come into the album.
class LeftOut {
public:
    explicit LeftOut(Progress& progress) : m_progress(progress) {}

    void Add(const WideString& path, const std::string& reason) {
        m_progress.Say("kelalbum: left out " + Shown(path) + ": " + reason);
        ++m_count;
    }
    unsigned Count() const { return m_count; }

private:
    Progress& m_progress;
    unsigned m_count = 0;
};

// The loader knows no more than that it failed: the system may know why.
std::string ReasonOf(const WideString& path, XPDib::XPException failure) {
    if (failure == XPDib::XP_LzwRefused)
        return "GIF files and LZW-compressed ones are refused";
    if (failure == XPDib::XP_StatusMinus2)
        return "the file is damaged";
    try {
        const SourceFile file(path);
        return "no picture of a known kind, or too large a one";
    } catch (const Failure& unreadable) {
        return unreadable.line;
    }
}

/// Takes the pictures of the sources into an album, each as soon as it is loaded.
class Packer {
public:
    Packer(const std::vector<Source>& sources, AlbumOutput& output, Progress& progress, LeftOut& leftOut)
        : m_sources(sources), m_output(output), m_progress(progress), m_leftOut(leftOut), m_results(sources.size()) {}

    void Run() {
        for (std::size_t place = 0; place < m_sources.size(); ++place) {
            if (m_sources[place].same == place) {
                LoadAhead();
                Store(place, m_loads.Take());
            }
            AddEntry(place);
            m_progress.Add(m_sources[place].bytes);
        }
    }

private:
    /// A picture, or the reason why there is none.
    struct Result {
        Owned<Picture> picture;
        std::string reason;
    };

    void LoadAhead();
    void Store(std::size_t place, Loaded&& loaded);
    void AddEntry(std::size_t place);

    const std::vector<Source>& m_sources;
    AlbumOutput& m_output;
    Progress& m_progress;
    LeftOut& m_leftOut;
    std::vector<Result> m_results;
    Loads m_loads;
    std::size_t m_next = 0; // to be loaded
    GivenNames m_names;
};

void Packer::LoadAhead() {
    for (; m_next < m_sources.size() && m_loads.UnderWay() < kLoadsAhead; ++m_next)
        if (m_sources[m_next].same == m_next)
            m_loads.Begin(m_sources[m_next].path);
}

void Packer::Store(std::size_t place, Loaded&& loaded) {
    Result& result = m_results[place];
    if (loaded.failure) {
        result.reason = ReasonOf(m_sources[place].path, *loaded.failure);
        return;
    }
    try {
        result.picture.reset(new Picture(std::move(loaded.picture)));
    } catch (const Failure& failure) {
        result.reason = failure.line;
    } catch (const StreamBase::Exception& error) {
        result.reason = FirstLine(error.message);
    } catch (const _com_error& error) {
        result.reason = SystemText(static_cast<unsigned long>(error.Error()));
    }
}

void Packer::AddEntry(std::size_t place) {
    const Source& source = m_sources[place];
    const Result& result = m_results[source.same];
    if (!result.picture) {
        m_leftOut.Add(source.path, result.reason);
        return;
    }
    Entry entry;
    entry.name = m_names.Give(File::GetBasename(source.path, WideString()));
    entry.origin = source.path;
    entry.picture = result.picture.get();
    m_output.Add(entry);
}

void Summarise(const AlbumOutput& output, const WideString& album) {
    std::printf("packed %s into %s", Counted(output.Entries(), "picture").c_str(), Shown(album).c_str());
    if (output.Pictures() != output.Entries())
        std::printf("; %u of them different", output.Pictures());
    std::printf("; %s\n", Bytes(static_cast<unsigned long long>(File::GetSizeRecursive(album))).c_str());
}

unsigned long long SizeOf(const std::vector<Source>& sources) {
    unsigned long long size = 0;
    for (const Source& source : sources)
        size += source.bytes;
    return size;
}

} // namespace

int Pack(const Arguments& arguments) {
    const WideString& album = arguments.values[0];
    Progress progress("packing");
    LeftOut leftOut(progress);
    const auto sources = FindSources({arguments.values.begin() + 1, arguments.values.end()}, album,
                                     [&](const auto& path, const auto& reason) { leftOut.Add(path, reason); });
    progress.Expect(SizeOf(sources));
    AlbumOutput output(album);
    Packer(sources, output, progress, leftOut).Run();
    if (output.Entries() == 0)
        throw Failure{"there is no picture to be packed: no album was made"};
    output.Commit();
    Summarise(output, album);
    return leftOut.Count() == 0 ? 0 : 1;
}

} // namespace kelalbum
