#pragma once

/// @file
/// Message boxes. Where there is no one to ask, a box is one block of text on standard error, and its answer is that of
/// its default button. A program takes boxes over with boxhook.h.

#include <kelcore/platform/resources.h>

typedef struct HWND__* HWND;

/// @name Buttons
/// @{
#define MB_OK 0x00000000
#define MB_OKCANCEL 0x00000001
#define MB_ABORTRETRYIGNORE 0x00000002
#define MB_YESNOCANCEL 0x00000003
#define MB_YESNO 0x00000004
#define MB_RETRYCANCEL 0x00000005
#define MB_CANCELTRYCONTINUE 0x00000006
#define MB_HELP 0x00004000
#define MB_DEFBUTTON1 0x00000000
#define MB_DEFBUTTON2 0x00000100
#define MB_DEFBUTTON3 0x00000200
#define MB_DEFBUTTON4 0x00000300
/// @}

/// @name Icons and behaviour
/// @{
#define MB_ICONHAND 0x00000010
#define MB_ICONQUESTION 0x00000020
#define MB_ICONEXCLAMATION 0x00000030
#define MB_ICONASTERISK 0x00000040
#define MB_ICONWARNING MB_ICONEXCLAMATION
#define MB_ICONERROR MB_ICONHAND
#define MB_ICONINFORMATION MB_ICONASTERISK
#define MB_APPLMODAL 0x00000000
#define MB_SYSTEMMODAL 0x00001000
#define MB_TASKMODAL 0x00002000
#define MB_SETFOREGROUND 0x00010000
#define MB_TOPMOST 0x00040000
#define MB_TYPEMASK 0x0000000F
#define MB_ICONMASK 0x000000F0
#define MB_DEFMASK 0x00000F00
/// @}

/// @name Answers
/// @{
#define IDOK 1
#define IDCANCEL 2
#define IDABORT 3
#define IDRETRY 4
#define IDIGNORE 5
#define IDYES 6
#define IDNO 7
#define IDHELP 9
#define IDTRYAGAIN 10
#define IDCONTINUE 11
/// @}

/// Called for the Help button, which is never pressed here.
typedef void(CALLBACK* MSGBOXCALLBACK)(struct tagHELPINFO* help);

/// A box: 40 bytes on 32 bits.
typedef struct tagMSGBOXPARAMSA {
    UINT cbSize;         ///< the size of this record
    HWND hwndOwner;      ///< may be null
    HINSTANCE hInstance; ///< the module of texts that are given by number
    LPCSTR lpszText;     ///< the text, or MAKEINTRESOURCEA of a string of hInstance
    LPCSTR lpszCaption;  ///< likewise; null means "Error"
    DWORD dwStyle;       ///< MB_ values
    LPCSTR lpszIcon;     ///< not looked at
    DWORD_PTR dwContextHelpId;
    MSGBOXCALLBACK lpfnMsgBoxCallback;
    DWORD dwLanguageId;
} MSGBOXPARAMSA, *PMSGBOXPARAMSA, *LPMSGBOXPARAMSA;

extern "C" {

/// Shows a box and waits for the answer.
/// @return the button that was pressed, or 0 with ERROR_INVALID_PARAMETER for another size than the record's and
///         ERROR_INVALID_MSGBOX_STYLE for unknown buttons. A string that is not there counts as an empty text.
KELPLATFORM_API int WINAPI MessageBoxIndirectA(const MSGBOXPARAMSA* box);

/// MessageBoxIndirectA with these values.
KELPLATFORM_API int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style);

} // extern "C"
