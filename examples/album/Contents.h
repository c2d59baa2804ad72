#pragma once

#include "Album.h"

namespace kelalbum {

/// What an entry tells without its pictures.
struct Listed {
    WideString name;
    WideString origin;
    Size size;
    int depth;
    unsigned long long bytes; ///< of the whole picture, in the album
    int number;               ///< of the picture
    bool repeated;            ///< whether an entry before it has the same picture
};

/// The entries of an album, in their order.
/// @throws Failure as ReadAlbum.
std::vector<Listed> ContentsOf(const WideString& album, const char* verb);

/// The entry of a name, capitals not regarded.
/// @throws Failure if there is none.
const Listed& Find(const std::vector<Listed>& contents, const WideString& name);

} // namespace kelalbum
