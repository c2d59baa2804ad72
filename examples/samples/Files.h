#pragma once

#include "Scenes.h"

#include <string>

/// Picture files of the usual kinds. Each throws std::runtime_error with the file's name if it cannot be written.

/// How a JPEG file keeps a picture.
enum class JpegKind {
    Colours,  ///< three channels
    Greys,    ///< one channel
    Inks,     ///< cyan, magenta, yellow, black
    Sideways, ///< three channels, the picture turned left; a mark (EXIF) tells viewers to turn it back
};

void WriteJpeg(const std::string& path, const Canvas& canvas, JpegKind kind);
/// WebP with losses.
void WriteWebP(const std::string& path, const Canvas& canvas);

/// 8 bits a channel, with alpha if the picture has some.
void WritePng(const std::string& path, const Canvas& canvas);
/// 8 bits a pixel.
void WritePng(const std::string& path, const Indexed& picture);
/// @p bits a channel, 8 or 16, deflated.
void WriteTiff(const std::string& path, const Canvas& canvas, int bits);
/// 1 bit a pixel, as faxes are encoded.
void WriteTiff(const std::string& path, const Indexed& picture);
/// 24 bits a pixel.
void WriteBmp(const std::string& path, const Canvas& canvas);
/// 4 bits a pixel.
void WriteBmp(const std::string& path, const Indexed& picture);
void WriteGif(const std::string& path, const Indexed& picture);

/// Writes bytes as they are.
void WriteBytes(const std::string& path, const std::string& bytes);
