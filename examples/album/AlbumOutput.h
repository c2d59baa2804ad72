#pragma once

#include "Album.h"
#include "BlockFile.h"

#include <memory>

namespace kelalbum {

/// Writes an album beside its place, entry by entry, and puts it there when it is whole. Everything throws a Failure
/// when the file cannot be written; nothing is left behind then, and an older album stays.
class AlbumOutput {
public:
    /// @throws Failure also if something is there that is no album.
    explicit AlbumOutput(const WideString& path);

    /// Writes @p entry, with its picture if that is met for the first time, and lets the picture's bytes go.
    void Add(const Entry& entry);
    /// Ends the album and puts it into its place.
    void Commit();

    /// How many entries and pictures were written.
    unsigned Entries() const { return m_entries; }
    unsigned Pictures() const { return static_cast<unsigned>(m_pictures.size()); }

private:
    WideString m_path;
    BlockFileOutput m_file;
    /// The stream knows objects by their addresses, so they are kept as long as it.
    std::vector<Owned<Picture>> m_pictures;
    std::unique_ptr<SerializingOutputStream> m_objects;
    unsigned m_entries = 0;
};

} // namespace kelalbum
