#pragma once

/// @file
/// A font in one size, as it is measured and drawn: faces chosen, widths and glyphs kept. All in pixels.

#include "platform/gdi/text/FontFace.h"
#include "platform/gdi/text/FontMatching.h"
#include "platform/gdi/text/GlyphCache.h"
#include "platform/gdi/text/WidthTable.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace kel::platform {

/// What a font is made from, in pixels.
struct SizeRequest {
    FaceRequest face;
    int height = 0;     ///< of a cell, or, negative, of the em square; 0 is 16 of a cell
    int width = 0;      ///< average; 0 as the face was drawn
    int escapement = 0; ///< tenths of a degree
    bool smooth = true; ///< drawn with grey levels
    unsigned files = 0; ///< FontFilesVersion

    bool operator==(const SizeRequest&) const = default;
};

struct FontMetrics {
    int em = 0; ///< height of the em square
    int ascent = 0;
    int descent = 0;
    int externalLeading = 0;
    int averageWidth = 0;
    int maximumWidth = 0;
    int underlineTop = 0; ///< below the baseline
    int strikeTop = 0;    ///< below the baseline, so negative
    int underlineThickness = 1;
    int strikeThickness = 1;
    int weight = FW_NORMAL;
    BYTE pitchAndFamily = 0;

    int Height() const { return ascent + descent; }
};

class SizedFont {
public:
    /// The font for a request, made or found among those used lately. @return null if there are no fonts.
    static std::shared_ptr<SizedFont> For(const SizeRequest& request);

    SizedFont(SizeRequest request, FaceChoice choice, std::shared_ptr<FontFace> face);

    const FontMetrics& Metrics() const { return m_metrics; }
    const FaceChoice& Choice() const { return m_choice; }
    const SizeRequest& Request() const { return m_request; }

    /// The widths of a character, from any thread; cheap once they are known.
    GlyphWidths WidthsOf(char32_t code) {
        const GlyphWidths widths = m_widths.Find(code);
        return widths.known ? widths : Measure(code);
    }

    /// Who draws holds this.
    std::unique_lock<std::mutex> LockGlyphs();

    /// The picture of a character, valid until the next one is asked for or the lock is let go.
    const Glyph& GlyphOf(char32_t code) {
        const Glyph* glyph = m_glyphs.Find(code);
        return glyph ? *glyph : Render(code);
    }

private:
    struct Source {
        const FaceSize* size;
        unsigned glyph; ///< 0: missing
        const FaceChoice* choice;
    };

    struct Substitute {
        FaceChoice choice;
        FaceSize size;
    };

    GlyphWidths Measure(char32_t code);
    const Glyph& Render(char32_t code);
    Source SourceOf(char32_t code);
    const Substitute* SubstituteFor(char32_t code);
    void LoadOutline(FT_Face face, const Source& source, bool turned) const;
    int EmboldenBy() const;

    const SizeRequest m_request;
    const FaceChoice m_choice;
    FontMetrics m_metrics;
    int m_emWidth = 0;
    std::unique_ptr<FaceSize> m_size;
    WidthTable m_widths;
    std::mutex m_mutex; // of what follows
    GlyphCache m_glyphs;
    std::vector<std::unique_ptr<Substitute>> m_substitutes;
    std::unordered_map<char32_t, const Substitute*> m_missing; // null: nobody has it
};

} // namespace kel::platform
