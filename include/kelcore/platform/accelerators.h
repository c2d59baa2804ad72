#pragma once

/// @file
/// Accelerator tables: keys that stand for commands.

#include <kelcore/platform/resources.h>

typedef struct HACCEL__* HACCEL;

/// @name Flags of ACCEL::fVirt
/// @{
#define FVIRTKEY 0x01
#define FNOINVERT 0x02
#define FSHIFT 0x04
#define FCONTROL 0x08
#define FALT 0x10
/// @}

/// One key of a table.
typedef struct tagACCEL {
    BYTE fVirt; ///< FVIRTKEY and the keys held with it
    WORD key;   ///< a virtual key, or a character without FVIRTKEY
    WORD cmd;
} ACCEL, *LPACCEL;

extern "C" {

/// Loads table @p name of a module's resources of type RT_ACCELERATOR. Every load makes a table of its own, which
/// DestroyAcceleratorTable frees.
/// @return null with the code of FindResourceA, or ERROR_INVALID_DATA for a table without its last row.
KELPLATFORM_API HACCEL WINAPI LoadAcceleratorsA(HINSTANCE module, LPCSTR name);

/// Makes a table of @p count rows. @return null with ERROR_INVALID_PARAMETER if there is no row or more than 32,767.
KELPLATFORM_API HACCEL WINAPI CreateAcceleratorTableA(LPACCEL rows, int count);

/// Copies up to @p count rows of a table. @param rows may be null, to ask for the number of rows.
/// @return the rows copied, or in the table if @p rows is null; 0 with ERROR_INVALID_ACCEL_HANDLE.
KELPLATFORM_API int WINAPI CopyAcceleratorTableA(HACCEL table, LPACCEL rows, int count);

/// Frees a table. @return FALSE with ERROR_INVALID_ACCEL_HANDLE for what is none.
KELPLATFORM_API BOOL WINAPI DestroyAcceleratorTable(HACCEL table);

} // extern "C"
