#pragma once

#include <kelcore/platform.h>

#include <cstddef>

/// @file
/// Predicts pixels from their neighbours, so that a compressor sees small numbers: what is left of a byte is the byte
/// less the one before it less the one of the row before plus the one before that, modulo 256. "Before" is one pixel of
/// @p step bytes; outside the picture all bytes are 0.
namespace kel::toolkit {

/// Writes what is left of a row. @param previous the row before, null for the first.
void PredictRow(BYTE* left, const BYTE* row, const BYTE* previous, std::size_t count, std::size_t step);

/// Turns what is left of a row into the row, in place.
void RestoreRow(BYTE* row, const BYTE* previous, std::size_t count, std::size_t step);

} // namespace kel::toolkit
