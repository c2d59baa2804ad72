#include "platform/gdi/text/FontFace.h"

#include FT_SIZES_H

#include <map>
#include <new>
#include <utility>

namespace kel::platform {
namespace {

/// Null if FreeType cannot start. Never ended: fonts are used by destructors of static objects. The caller holds the
/// lock.
FT_Library Library() {
    static const FT_Library library = [] {
        FT_Library made = nullptr;
        return FT_Init_FreeType(&made) == 0 ? made : nullptr;
    }();
    return library;
}

FT_Face OpenFace(const std::string& file, int index) {
    FT_Face face = nullptr;
    return Library() && FT_New_Face(Library(), file.c_str(), index, &face) == 0 ? face : nullptr;
}

using FaceKey = std::pair<std::string, int>;

std::map<FaceKey, std::weak_ptr<FontFace>>& OpenFaces() {
    static auto& faces = *new std::map<FaceKey, std::weak_ptr<FontFace>>;
    return faces;
}

} // namespace

std::mutex& FreeTypeLock() {
    static std::mutex& mutex = *new std::mutex;
    return mutex;
}

int FacesInFile(const std::string& file) {
    std::lock_guard guard(FreeTypeLock());
    const FT_Face face = OpenFace(file, 0);
    if (!face)
        return 0;
    const int count = FT_IS_SCALABLE(face) ? static_cast<int>(face->num_faces) : 0;
    FT_Done_Face(face);
    return count;
}

std::shared_ptr<FontFace> FontFace::Open(const std::string& file, int index) {
    std::lock_guard guard(FreeTypeLock());
    std::weak_ptr<FontFace>& place = OpenFaces()[{file, index}];
    if (auto open = place.lock())
        return open;
    const FT_Face face = OpenFace(file, index);
    if (!face)
        return nullptr;
    auto made = std::make_shared<FontFace>(face);
    place = made;
    return made;
}

FontFace::~FontFace() {
    std::lock_guard guard(FreeTypeLock());
    FT_Done_Face(m_face);
}

FaceSize::FaceSize(std::shared_ptr<FontFace> face, int width, int height) : m_face(std::move(face)) {
    std::lock_guard guard(FreeTypeLock());
    if (FT_New_Size(m_face->Get(), &m_size) != 0)
        throw std::bad_alloc();
    FT_Activate_Size(m_size);
    FT_Set_Pixel_Sizes(m_face->Get(), static_cast<FT_UInt>(width), static_cast<FT_UInt>(height));
}

FaceSize::~FaceSize() {
    if (!m_size)
        return;
    std::lock_guard guard(FreeTypeLock());
    FT_Done_Size(m_size);
}

FT_Face FaceSize::Activate() const {
    FT_Activate_Size(m_size);
    return m_face->Get();
}

} // namespace kel::platform
