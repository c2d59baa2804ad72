#include "Contents.h"

#include "Names.h"

#include <algorithm>

namespace kelalbum {

std::vector<Listed> ContentsOf(const WideString& album, const char* verb) {
    std::vector<Listed> contents;
    ReadAlbum(album, verb, [&](const Entry& entry) {
        const Picture& picture = *entry.picture;
        contents.push_back({entry.name, entry.origin, picture.size, picture.depth, picture.whole.Bytes(),
                            picture.number, entry.repeated});
    });
    return contents;
}

const Listed& Find(const std::vector<Listed>& contents, const WideString& name) {
    const auto found = std::find_if(contents.begin(), contents.end(),
                                    [&](const Listed& entry) { return AreSameNames(entry.name, name); });
    if (found == contents.end())
        throw Failure{"the album has no picture " + Shown(name)};
    return *found;
}

} // namespace kelalbum
