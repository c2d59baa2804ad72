#pragma once

#include "platform/crt/Utf8.h"

#include <memory>

/// Single- and double-byte code pages, as tables.
namespace kel::platform {

/// A byte sequence of a page: its first byte in the low half, its second byte, if it has two, in the high half. No page
/// has a second byte of 0.
using Code = unsigned short;

/// The units of the bytes from 0x80 on in a single-byte page over ASCII, low and high bytes apart, in rows of 16.
struct HighHalf {
    alignas(16) unsigned char low[8][16];
    alignas(16) unsigned char high[8][16];
};

/// The tables of one page.
struct TablePage {
    static constexpr WCHAR kNone = 0xFFFF; ///< stands where bytes have no meaning; no page means this unit

    unsigned number;
    bool ascii;        ///< bytes below 0x80 are ASCII
    bool doubleByte;   ///< some bytes are lead bytes
    Code defaultCode;  ///< for units without a counterpart
    WCHAR defaultUnit; ///< for bytes without a meaning
    WCHAR firstGap;    ///< units from here to endOfGaps are mere stand-ins, which no strict conversion takes
    WCHAR endOfGaps;
    WCHAR single[256];                  ///< the unit of each byte that stands alone
    std::unique_ptr<WCHAR[]> rows[256]; ///< for each lead byte, the unit of each second byte; null for all others
    HighHalf highHalf;                  ///< filled with the default unit where bytes have no meaning
    Code codes[65536];                  ///< the bytes of each unit; 0 for those without a counterpart, and for unit 0

    [[nodiscard]] bool IsLead(unsigned char byte) const { return rows[byte] != nullptr; }
};

/// Decodes single bytes by vectors, as far as whole blocks of source and room go; null for processors that cannot. A
/// strict conversion must not use it.
void (*BestSinglesKernel())(const HighHalf& table, DecodeJob& job);

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
