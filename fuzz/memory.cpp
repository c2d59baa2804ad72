// A file of any kind in memory. A picture that is loaded is whole and within the budget, and saving and loading it
// again brings it back. Saved pictures are tried with the check that they ought to have, too: foreign bytes hardly ever
// come with it.

#include "toolkit/Fingerprint.h"
#include "toolkit/Loading.h"
#include "toolkit/SavedPicture.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

using namespace kel::toolkit;

namespace {

constexpr LoadSettings kSettings = {{4 * Budget::kMegabyte, 0}, false};

void Require(bool holds) {
    if (!holds)
        std::abort();
}

Loaded Load(Bytes file) {
    Loaded loaded = LoadBytes(file, kSettings);
    Require(loaded.status == kLoaded || loaded.status == kDamaged || loaded.status == kUnknown ||
            loaded.status == kOverBudget);
    Require((loaded.status == kLoaded) == static_cast<bool>(loaded.picture.dib));
    return loaded;
}

HGLOBAL Save(const Picture& picture, const DibLock& dib) {
    const Source& source = picture.source;
    return picture.IsAsDecoded() ? SaveFile(source.file.View(), source.keepOrientation) : SaveBitmap(dib);
}

void Try(Bytes file) {
    const Loaded first = Load(file);
    if (first.status != kLoaded)
        return;
    const DibLock dib(first.picture.dib);
    Require(dib && kSettings.budget.Allows(dib.Layout()) && ExamineDib(dib.Memory()) == dib.Layout());
    const HGLOBAL saved = Save(first.picture, dib);
    const Loaded again = Load({static_cast<const BYTE*>(GlobalLock(saved)), GlobalSize(saved)});
    GlobalUnlock(saved);
    GlobalFree(saved);
    const DibLock other(again.picture.dib);
    Require(other && std::ranges::equal(dib.Memory(), other.Memory()));
}

/// Puts right the length and the check of a saved picture, see docs/formats/saved-picture.md.
void Seal(std::vector<BYTE>& file) {
    constexpr std::size_t kLengthAt = 12, kCheckAt = 16, kHeaderBytes = 24;
    if (file.size() < kHeaderBytes)
        return;
    const Bytes whole(file);
    const auto length = static_cast<std::uint32_t>(file.size() - kHeaderBytes);
    std::memcpy(&file[kLengthAt], &length, sizeof length);
    const std::uint64_t check = Fingerprint(whole.subspan(kHeaderBytes), Fingerprint(whole.first(kCheckAt)));
    std::memcpy(&file[kCheckAt], &check, sizeof check);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<BYTE> file(data, data + size);
    Try(file);
    if (!IsSavedPicture(file))
        return 0;
    Seal(file);
    Try(file);
    return 0;
}
