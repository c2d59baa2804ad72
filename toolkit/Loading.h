#pragma once

#include "toolkit/Budget.h"
#include "toolkit/PackedDib.h"
#include "toolkit/codecs/Codec.h"

#include <kelcore/imaging/toolkit.h>

#include <cstdint>
#include <memory>

namespace kel::toolkit {

/// The bytes of a file, owned.
struct FileBytes {
    std::unique_ptr<BYTE[]> data;
    std::size_t size = 0;

    Bytes View() const { return {data.get(), size}; }
};

/// The file that a picture was decoded from, kept so that an unchanged picture can be saved as that file: smaller than
/// anything made of its pixels, and in no time. Nothing is kept of files that are hardly smaller than their pictures.
struct Source {
    FileBytes file;
    bool keepOrientation = false;  ///< how it was decoded
    std::uint64_t fingerprint = 0; ///< of the whole packed bitmap as it was decoded
};

/// A picture with what it came from.
struct Picture {
    PackedDib dib;
    Source source;

    /// Whether the picture is what decoding its source gives; pixels may have been written to at any time.
    bool IsAsDecoded() const;
};

struct LoadSettings {
    Budget budget;
    bool keepOrientation = false;
};

/// What became of a load; the picture is empty unless the status is kLoaded. Want of memory is kOverBudget.
struct Loaded {
    SHORT status = kUnknown;
    Picture picture;
};

/// Loads a file at a path, which is given as units of text and spelled in the ANSI code page for the system.
Loaded LoadPath(BSTR path, const LoadSettings& settings);

/// Loads a file from memory, which stays the caller's.
Loaded LoadBytes(Bytes file, const LoadSettings& settings);

} // namespace kel::toolkit
