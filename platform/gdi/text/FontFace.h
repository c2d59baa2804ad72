#pragma once

/// @file
/// Faces of font files (FreeType). There is one library, and a face is opened once for all its sizes. FreeType is not
/// for several threads: whoever calls it, or uses what a face or size points to, holds FreeTypeLock().

#include <ft2build.h>
#include FT_FREETYPE_H

#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace kel::platform {

std::mutex& FreeTypeLock();

/// @return 0 if it is no font of outlines. Takes the lock.
int FacesInFile(const std::string& file);

class FontFace {
public:
    /// Opens a face, or finds it open. Takes the lock. @return null if it cannot be read.
    static std::shared_ptr<FontFace> Open(const std::string& file, int index);

    explicit FontFace(FT_Face face) : m_face(face) {}
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;
    ~FontFace();

    FT_Face Get() const { return m_face; }

private:
    FT_Face m_face;
};

/// A size of a face. Making and destroying it takes the lock.
class FaceSize {
public:
    /// @param width of the em square in pixels. @throws std::bad_alloc if the size cannot be made.
    FaceSize(std::shared_ptr<FontFace> face, int width, int height);
    FaceSize(FaceSize&& other) noexcept
        : m_face(std::move(other.m_face)), m_size(std::exchange(other.m_size, nullptr)) {}
    FaceSize& operator=(FaceSize&&) = delete;
    ~FaceSize();

    /// The face in this size, until another one is asked for. The caller holds the lock.
    FT_Face Activate() const;

private:
    std::shared_ptr<FontFace> m_face;
    FT_Size m_size = nullptr;
};

} // namespace kel::platform
