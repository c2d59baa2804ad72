#pragma once

/// @file
/// Fonts as callers hold them: a description.

#include "platform/gdi/GdiObject.h"

#include <kelcore/platform/fonts.h>

namespace kel::platform {

class FontObject final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Font;

    /// The face name may fill all of its field; it is ended then.
    explicit FontObject(const LOGFONTA& description);

    DWORD PublicType() const override { return OBJ_FONT; }
    int Describe(int size, void* buffer) const override;
    std::string Details() const override;
    const LOGFONTA& Description() const { return m_description; }

private:
    LOGFONTA m_description;
};

/// Makes a stock font.
std::shared_ptr<FontObject> MakeStockFont(int index);

} // namespace kel::platform
