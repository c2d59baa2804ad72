#pragma once

#include <kelcore/imaging/picture.h>

/// @file
/// The life of the record that the copies of a picture share.
namespace kel {

using PictureRecord = XPDib::XPDibRef;

/// Starts the toolkit's control of a record, if it has none yet, and makes its settings.
/// @return whether it has one.
/// @throws ToolkitError if a setting fails; the control is started then.
bool StartControl(PictureRecord& record);

/// Takes a record that nobody owns any more out of the hands of the loader thread and lets go of its control. The
/// caller deletes it.
void ReleaseRecord(PictureRecord& record);

} // namespace kel
