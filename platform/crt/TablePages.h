#pragma once

#include "platform/crt/Utf8.h"

#include <memory>

/// Single- and double-byte code pages, as tables.
namespace kel::platform {

/// A byte sequence of a page: its first byte in the low half, its second byte, if it has two, in the high half. No page
/// has a second byte of 0.
using Code = unsigned short;

/// The tables of one page.
struct TablePage {
    static constexpr WCHAR kNone = 0xFFFF; ///< stands where bytes have no meaning; no page means this unit

    unsigned number;
    bool ascii;            ///< bytes below 0x80 are ASCII
    unsigned identityFrom; ///< bytes from here on mean the unit of the same value; 256 if none does
    Code defaultCode;      ///< for units without a counterpart
    WCHAR defaultUnit;     ///< for bytes without a meaning
    WCHAR firstGap;        ///< units from here to endOfGaps are mere stand-ins, which no strict conversion takes
    WCHAR endOfGaps;
    WCHAR single[256];                  ///< the unit of each byte that stands alone
    std::unique_ptr<WCHAR[]> rows[256]; ///< for each lead byte, the unit of each second byte; null for all others
    Code codes[65536];                  ///< the bytes of each unit; 0 for those without a counterpart, and for unit 0

    [[nodiscard]] bool IsLead(unsigned char byte) const { return rows[byte] != nullptr; }
    [[nodiscard]] bool DoubleByte() const;
};

/// What a caller may ask of the conversion of units without a counterpart.
struct DefaultChar {
    Code code;
    bool used = false; ///< set when it was needed
};

/// The tables of page @p number, built at its first use and kept; null if there is no such page.
const TablePage* FindTablePage(unsigned number);

/// 16-bit units to bytes of @p page; @p missing stands for units without a counterpart.
Stop EncodeTable(const TablePage& page, EncodeJob& job, DefaultChar& missing);

/// Bytes of @p page to 16-bit units.
Stop DecodeTable(const TablePage& page, DecodeJob& job);

} // namespace kel::platform
