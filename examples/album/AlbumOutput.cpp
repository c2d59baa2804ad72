#include "AlbumOutput.h"

#include <algorithm>
#include <typeinfo>

namespace kelalbum {
namespace {

// Does a piece of writing; what the streams throw becomes a line for the user.
template <class Work>
void Writing(const WideString& path, const Work& work) {
    try {
        work();
    } catch (const StreamBase::Exception& error) {
        throw Failure{"cannot write " + Shown(path) + ": " + FirstLine(error.message)};
    }
}

} // namespace

AlbumOutput::AlbumOutput(const WideString& path)
    : m_path(path), m_file(path, /*scramble*/ false, "album", Classes().GetClassID(typeid(Album))) {
    Writing(path, [this] {
        m_objects = std::make_unique<SerializingOutputStream>(Classes(), m_file.Stream());
        m_objects->Write(Album());
    });
}

void AlbumOutput::Add(const Entry& entry) {
    Picture* const picture = entry.picture;
    Writing(m_path, [&] {
        *m_objects << true;
        m_objects->Write(entry);
    });
    ++m_entries;
    if (std::none_of(m_pictures.begin(), m_pictures.end(), [&](const auto& known) { return known.get() == picture; })) {
        picture->AddRef();
        m_pictures.emplace_back(picture);
    }
    picture->thumbnail.Drop();
    picture->whole.Drop();
}

void AlbumOutput::Commit() {
    Writing(m_path, [this] {
        *m_objects << false;
        m_file.Commit();
    });
}

} // namespace kelalbum
