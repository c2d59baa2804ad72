#pragma once

#include <kelcore/platform/base.h>

/// Where code pages on Windows are not what the host's converter makes of them.
namespace kel::platform {

/// Facts about one page.
struct PageFacts {
    unsigned number;
    BYTE leads[6];     ///< ranges of lead bytes, first and last in turn, whether or not each begins a known character
    WCHAR defaultUnit; ///< for bytes without a meaning
    WCHAR firstGap;    ///< bytes from 0xA0 on that stand for nothing mean private units, in turn from this one; 0: none
};

/// The facts about page @p number; usual ones if it is not listed.
PageFacts FactsOf(unsigned number);

/// The unit that @p byte means on page @p number, against the host's converter; @p otherwise if that one is right.
WCHAR CorrectedUnit(unsigned number, unsigned byte, WCHAR otherwise);

} // namespace kel::platform
