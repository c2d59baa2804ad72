#pragma once

/// @file
/// Which font file stands for a description (Fontconfig). All calls may be made from any thread.

#include <kelcore/platform/fonts.h>

#include <atomic>
#include <optional>
#include <string>

namespace kel::platform {

/// What decides about the face.
struct FaceRequest {
    std::string name; ///< UTF-8; "" is any
    int weight = 0;   ///< 0: any
    bool italic = false;
    BYTE pitchAndFamily = 0;

    bool operator==(const FaceRequest&) const = default;
};

struct FaceChoice {
    std::string file;
    int index = 0;      ///< of the face in the file
    std::string name;   ///< what the face counts as: the name asked for if it stands for that, else its own
    int weight = 0;     ///< of the face itself, 100 to 900
    bool bold = false;  ///< is to be emboldened
    bool slant = false; ///< is to be slanted
};

/// The face for a request; none if there are no fonts.
std::optional<FaceChoice> ChooseFace(const FaceRequest& request);

/// A face as near to the request that has the character @p code; none if nobody has it.
std::optional<FaceChoice> ChooseFaceWith(const FaceRequest& request, char32_t code);

/// Adds the faces of a file on the host. @return how many; 0 if it is no font.
int AddFontFile(const std::string& file);

/// @return whether the file had been added.
bool RemoveFontFile(const std::string& file);

extern std::atomic<unsigned> fontFilesVersion;

/// Another number after every change of the files added.
inline unsigned FontFilesVersion() {
    return fontFilesVersion.load(std::memory_order_acquire);
}

} // namespace kel::platform
