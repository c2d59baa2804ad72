#pragma once

/// @file
/// The one door to Win32 names. On Windows it opens onto the system's own headers; elsewhere onto the platform layer,
/// whose headers under platform/ are the written contract of what may be called. Nothing else includes either of them.

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef WINVER
#define WINVER 0x0602
#endif
#ifndef _WIN32_WINNT
#define _WIN32_WINNT 0x0602
#endif
// Keeps comdef.h from declaring a class Font and a class Picture of its own.
#ifndef _COM_NO_STANDARD_GUIDS_
#define _COM_NO_STANDARD_GUIDS_
#endif
#include <windows.h>
// The order below matters: these headers build on windows.h.
#include <comdef.h>
#include <commctrl.h>
#include <mbstring.h>
#include <mmsystem.h>
#include <objidl.h>
#include <process.h>
#include <shlwapi.h>
#include <unknwn.h>
#include <wchar.h>
#include <wctype.h>

#else

#include <kelcore/platform/accelerators.h>
#include <kelcore/platform/base.h>
#include <kelcore/platform/bitmaps.h>
#include <kelcore/platform/blits.h>
#include <kelcore/platform/brushes.h>
#include <kelcore/platform/codepages.h>
#include <kelcore/platform/com.h>
#include <kelcore/platform/crt.h>
#include <kelcore/platform/devicecontexts.h>
#include <kelcore/platform/directories.h>
#include <kelcore/platform/drawingpaths.h>
#include <kelcore/platform/errors.h>
#include <kelcore/platform/files.h>
#include <kelcore/platform/fonts.h>
#include <kelcore/platform/gdiobjects.h>
#include <kelcore/platform/globalmemory.h>
#include <kelcore/platform/handles.h>
#include <kelcore/platform/imagelists.h>
#include <kelcore/platform/languages.h>
#include <kelcore/platform/mappingmodes.h>
#include <kelcore/platform/mappings.h>
#include <kelcore/platform/messageboxes.h>
#include <kelcore/platform/messages.h>
#include <kelcore/platform/modules.h>
#include <kelcore/platform/paths.h>
#include <kelcore/platform/pens.h>
#include <kelcore/platform/rectangles.h>
#include <kelcore/platform/regions.h>
#include <kelcore/platform/registry.h>
#include <kelcore/platform/resources.h>
#include <kelcore/platform/shapes.h>
#include <kelcore/platform/stdio.h>
#include <kelcore/platform/system.h>
#include <kelcore/platform/systemcolours.h>
#include <kelcore/platform/textdrawing.h>
#include <kelcore/platform/threads.h>
#include <kelcore/platform/timers.h>
#include <kelcore/platform/times.h>
#include <kelcore/platform/versions.h>
#include <kelcore/platform/windowsurfaces.h>

#endif
