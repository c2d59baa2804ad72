#include "platform/gdi/text/SizedFont.h"

#include "platform/gdi/text/OutlineMask.h"

#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <list>
#include <new>

namespace kel::platform {
namespace {

// Larger glyphs would take more memory than anybody wants to give for one.
constexpr int kMostEm = 2048;
constexpr int kDefaultHeight = 16;
constexpr FT_Fixed kSlant = 0x0366A; // tan 12 degrees
constexpr double kTenthsOfHalfTurn = 1800;
constexpr double kPi = 3.14159265358979323846;

int Rounded(FT_Pos value26_6) {
    return static_cast<int>((value26_6 + 32) >> 6);
}

/// Design units of a face and what its tables say in them.
struct Design {
    int unitsPerEm;
    int ascent;
    int descent;
    int externalLeading;
    int averageWidth;
    int boxWidth;
    int underlineMiddle;
    int underlineThickness;
    int strikeTop;
    int strikeThickness;

    int Scaled(int units, int em) const {
        return static_cast<int>(std::floor(static_cast<double>(units) * em / unitsPerEm + 0.5));
    }
};

Design DesignOf(FT_Face face) {
    Design design{face->units_per_EM,       face->ascender,
                  -face->descender,         0,
                  face->max_advance_width,  static_cast<int>(face->bbox.xMax - face->bbox.xMin),
                  face->underline_position, face->underline_thickness,
                  face->ascender / 3,       face->underline_thickness};
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    const auto* horizontal = static_cast<const TT_HoriHeader*>(FT_Get_Sfnt_Table(face, FT_SFNT_HHEA));
    if (!os2 || os2->version == 0xFFFF || os2->usWinAscent + os2->usWinDescent == 0)
        return design;
    design.ascent = os2->usWinAscent;
    design.descent = os2->usWinDescent;
    design.averageWidth = os2->xAvgCharWidth;
    design.strikeTop = os2->yStrikeoutPosition;
    design.strikeThickness = os2->yStrikeoutSize;
    if (horizontal)
        design.externalLeading = std::max(0, horizontal->Line_Gap - (design.ascent + design.descent -
                                                                     (horizontal->Ascender - horizontal->Descender)));
    return design;
}

/// The largest em square whose cell, rounded, is not higher than was asked for.
int EmOf(const Design& design, int height) {
    if (height == 0)
        height = kDefaultHeight;
    const long long cell = std::max(1, design.ascent + design.descent);
    const long long em = height < 0
                             ? -static_cast<long long>(height)
                             : (static_cast<long long>(height) * design.unitsPerEm + design.unitsPerEm / 2 - 1) / cell;
    return static_cast<int>(std::clamp<long long>(em, 1, kMostEm));
}

BYTE FamilyOf(FT_Face face) {
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (FT_IS_FIXED_WIDTH(face))
        return FF_MODERN;
    if (!os2 || os2->version == 0xFFFF)
        return FF_DONTCARE;
    constexpr BYTE kScript = 3;
    constexpr BYTE kFirstSans = 11;
    const BYTE kind = os2->panose[0];
    const BYTE serifs = os2->panose[1];
    if (kind == kScript)
        return FF_SCRIPT;
    return serifs >= kFirstSans ? FF_SWISS : serifs >= 2 ? FF_ROMAN : FF_DONTCARE;
}

FontMetrics MetricsOf(FT_Face face, const Design& design, int em, int emWidth) {
    FontMetrics metrics;
    metrics.em = em;
    metrics.ascent = design.Scaled(design.ascent, em);
    metrics.descent = design.Scaled(design.descent, em);
    metrics.externalLeading = design.Scaled(design.externalLeading, em);
    metrics.averageWidth = std::max(1, design.Scaled(design.averageWidth, emWidth));
    metrics.maximumWidth = std::max(1, design.Scaled(design.boxWidth, emWidth));
    metrics.underlineThickness = std::max(1, design.Scaled(design.underlineThickness, em));
    metrics.underlineTop = std::max(1, -design.Scaled(design.underlineMiddle + design.underlineThickness / 2, em));
    metrics.strikeThickness = std::max(1, design.Scaled(design.strikeThickness, em));
    metrics.strikeTop = -design.Scaled(design.strikeTop, em);
    metrics.pitchAndFamily = static_cast<BYTE>(FamilyOf(face) | TMPF_VECTOR | TMPF_TRUETYPE |
                                               (FT_IS_FIXED_WIDTH(face) ? 0 : TMPF_FIXED_PITCH));
    return metrics;
}

/// The fonts used lately, the last one first.
class RecentFonts {
public:
    std::shared_ptr<SizedFont> Find(const SizeRequest& request) {
        const auto found =
            std::find_if(m_fonts.begin(), m_fonts.end(), [&](const auto& font) { return font->Request() == request; });
        if (found == m_fonts.end())
            return nullptr;
        m_fonts.splice(m_fonts.begin(), m_fonts, found);
        return m_fonts.front();
    }

    void Add(std::shared_ptr<SizedFont> font) {
        m_fonts.push_front(std::move(font));
        if (m_fonts.size() > kMost)
            m_fonts.pop_back();
    }

    std::mutex mutex;

private:
    static constexpr std::size_t kMost = 32;

    std::list<std::shared_ptr<SizedFont>> m_fonts;
};

} // namespace

std::shared_ptr<SizedFont> SizedFont::For(const SizeRequest& request) {
    static RecentFonts& recent = *new RecentFonts;
    std::lock_guard guard(recent.mutex);
    if (auto font = recent.Find(request))
        return font;
    auto choice = ChooseFace(request.face);
    auto face = choice ? FontFace::Open(choice->file, choice->index) : nullptr;
    if (!face)
        return nullptr;
    auto font = std::make_shared<SizedFont>(request, std::move(*choice), std::move(face));
    recent.Add(font);
    return font;
}

SizedFont::SizedFont(SizeRequest request, FaceChoice choice, std::shared_ptr<FontFace> face)
    : m_request(std::move(request)), m_choice(std::move(choice)) {
    {
        std::lock_guard guard(FreeTypeLock());
        const Design design = DesignOf(face->Get());
        const int em = EmOf(design, m_request.height);
        m_emWidth = em;
        if (m_request.width != 0) {
            const int natural = std::max(1, design.Scaled(design.averageWidth, em));
            const long long wanted = std::abs(static_cast<long long>(m_request.width));
            m_emWidth = static_cast<int>(std::clamp<long long>((em * wanted + natural / 2) / natural, 1, kMostEm));
        }
        m_metrics = MetricsOf(face->Get(), design, em, m_emWidth);
    }
    m_metrics.weight = m_choice.bold ? FW_BOLD : m_choice.weight;
    m_size = std::make_unique<FaceSize>(std::move(face), m_emWidth, m_metrics.em);
}

int SizedFont::EmboldenBy() const {
    return std::max(1, (m_metrics.em + 12) / 24);
}

std::unique_lock<std::mutex> SizedFont::LockGlyphs() {
    return std::unique_lock(m_mutex);
}

const SizedFont::Substitute* SizedFont::SubstituteFor(char32_t code) {
    const auto known = m_missing.find(code);
    if (known != m_missing.end())
        return known->second;
    const Substitute* substitute = nullptr;
    if (auto choice = ChooseFaceWith(m_request.face, code)) {
        const auto same = [&](const auto& s) {
            return s->choice.file == choice->file && s->choice.index == choice->index;
        };
        const auto found = std::find_if(m_substitutes.begin(), m_substitutes.end(), same);
        if (found != m_substitutes.end()) {
            substitute = found->get();
        } else if (auto face = FontFace::Open(choice->file, choice->index)) {
            m_substitutes.push_back(std::make_unique<Substitute>(
                Substitute{std::move(*choice), FaceSize(std::move(face), m_emWidth, m_metrics.em)}));
            substitute = m_substitutes.back().get();
        }
    }
    m_missing[code] = substitute;
    return substitute;
}

// Control characters have no glyph anywhere: they are shown as the font's own missing one.
SizedFont::Source SizedFont::SourceOf(char32_t code) {
    {
        std::lock_guard guard(FreeTypeLock());
        const unsigned glyph = FT_Get_Char_Index(m_size->Activate(), code);
        if (glyph != 0 || code < 0x20)
            return {m_size.get(), glyph, &m_choice};
    }
    if (const Substitute* substitute = SubstituteFor(code)) {
        std::lock_guard guard(FreeTypeLock());
        return {&substitute->size, FT_Get_Char_Index(substitute->size.Activate(), code), &substitute->choice};
    }
    return {m_size.get(), 0, &m_choice};
}

// Glyphs that are turned are not fitted to the grid of pixels, which lies askew to them.
void SizedFont::LoadOutline(FT_Face face, const Source& source, bool turned) const {
    const FT_Int32 flags = FT_LOAD_NO_BITMAP | (turned ? FT_LOAD_NO_HINTING : 0);
    FT_GlyphSlot slot = face->glyph;
    if (FT_Load_Glyph(face, source.glyph, flags) != 0 || slot->format != FT_GLYPH_FORMAT_OUTLINE) {
        slot->outline.n_points = 0;
        slot->outline.n_contours = 0;
        return;
    }
    FT_Outline* outline = &slot->outline;
    if (source.choice->bold)
        FT_Outline_Embolden(outline, FT_Pos{EmboldenBy()} * 64);
    if (source.choice->slant) {
        const FT_Matrix shear{0x10000, kSlant, 0, 0x10000};
        FT_Outline_Transform(outline, &shear);
    }
    if (turned) {
        const double angle = m_request.escapement * kPi / kTenthsOfHalfTurn;
        const auto cosine = static_cast<FT_Fixed>(std::lround(std::cos(angle) * 0x10000));
        const auto sine = static_cast<FT_Fixed>(std::lround(std::sin(angle) * 0x10000));
        const FT_Matrix turn{cosine, -sine, sine, cosine};
        FT_Outline_Transform(outline, &turn);
    }
}

GlyphWidths SizedFont::Measure(char32_t code) {
    std::lock_guard own(m_mutex);
    const Source source = SourceOf(code);
    GlyphWidths widths;
    {
        std::lock_guard guard(FreeTypeLock());
        const FT_Face face = source.size->Activate();
        LoadOutline(face, source, /*turned*/ false);
        const int advance = Rounded(face->glyph->metrics.horiAdvance) + (source.choice->bold ? EmboldenBy() : 0);
        FT_BBox box{0, 0, 0, 0};
        if (face->glyph->outline.n_points != 0)
            FT_Outline_Get_CBox(&face->glyph->outline, &box);
        const int left = static_cast<int>(box.xMin >> 6);
        // Blanks have a box of one pixel.
        const int right = std::max(left + 1, static_cast<int>((box.xMax + 63) >> 6));
        widths = {static_cast<std::int16_t>(left), static_cast<std::uint16_t>(right - left),
                  static_cast<std::int16_t>(advance - right), true};
    }
    m_widths.Store(code, widths);
    return widths;
}

const Glyph& SizedFont::Render(char32_t code) {
    const Source source = SourceOf(code);
    Glyph glyph;
    std::vector<std::uint8_t> mask;
    {
        std::lock_guard guard(FreeTypeLock());
        const FT_Face face = source.size->Activate();
        LoadOutline(face, source, m_request.escapement != 0);
        DrawMask(face->glyph, m_request.smooth, glyph, mask);
    }
    return m_glyphs.Store(code, glyph, mask);
}

} // namespace kel::platform
