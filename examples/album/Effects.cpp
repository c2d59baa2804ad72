#include "AlbumOutput.h"
#include "Commands.h"
#include "Contents.h"
#include "EffectTable.h"

#include <kelcore/text.h>

#include <cstdio>

namespace kelalbum {
namespace {

/// What is to be done to which picture.
struct Change {
    Listed entry;
    std::string effect;
    EffectOnPicture apply;
};

[[noreturn]] void FailOnEffect(const Change& change, const std::string& reason) {
    throw Failure{Shown(change.entry.name) + ": " + change.effect + ": " + reason};
}

std::string ReasonOf(HRESULT result) {
    if (result == E_NOTIMPL)
        return "the imaging toolkit of this system cannot do that";
    if (result == E_INVALIDARG)
        return "the value has no meaning";
    return SystemText(static_cast<unsigned long>(result));
}

Owned<Picture> Changed(const Change& change, XPDib whole) {
    try {
        if (!change.apply(whole))
            FailOnEffect(change, "nothing was done");
        return Owned<Picture>(new Picture(std::move(whole)));
    } catch (const _com_error& error) {
        FailOnEffect(change, ReasonOf(error.Error()));
    } catch (const StreamBase::Exception& error) {
        FailOnEffect(change, FirstLine(error.message));
    }
}

// All other entries go over as they are stored. An entry that shared the picture with the changed one keeps it as it
// was: its bytes are there, since what is read stays until it is written.
void Copy(const WideString& from, AlbumOutput& to, const Change& change) {
    XPDib whole;
    ReadAlbum(
        from, change.effect.c_str(),
        [&](const Entry& entry) {
            if (entry.picture->number == change.entry.number && !entry.repeated)
                whole = entry.Whole();
            if (entry.name != change.entry.name) {
                to.Add(entry);
                return;
            }
            const Owned<Picture> picture = Changed(change, whole);
            Entry changed = entry;
            changed.picture = picture.get();
            to.Add(changed);
        },
        Keep::Everything);
}

} // namespace

int Effect(const Arguments& arguments) {
    const WideString& album = arguments.values[0];
    const std::string effect = StdW2A(arguments.values[2]);
    const std::string value = arguments.values.size() > 3 ? StdW2A(arguments.values[3]) : "";
    const EffectOnPicture apply = FindEffect(effect, value);
    const Change change = {Find(ContentsOf(album, "reading"), arguments.values[1]), effect, apply};
    AlbumOutput output(arguments.Option("--out", album));
    Copy(album, output, change);
    output.Commit();
    std::printf("%s: %s\n", Shown(change.entry.name).c_str(), effect.c_str());
    return 0;
}

} // namespace kelalbum
