#pragma once

/// @file
/// Byte streams and the storage of object graphs: typed values, memory and file end points, checksummed blocks,
/// scrambling, the registry of classes and the object streams.
///
/// A stack of streams is built innermost first, usually on the caller's stack, and torn down outermost first:
/// @code
///     FileOutputStream file(path);
///     CRCOutputStream blocks(file);
///     SerializingOutputStream objects(*factory, blocks);
///     objects.Write(album);
///     objects.Flush(); // the last block reaches the file, or the failure reaches the caller
/// @endcode
/// Every failure is a StreamBase::Exception, thrown by value. A stream is used by one thread at a time.

#include <kelcore/stream/core.h>
#include <kelcore/stream/endpoints.h>
#include <kelcore/stream/factory.h>
#include <kelcore/stream/layers.h>
#include <kelcore/stream/serializing.h>
