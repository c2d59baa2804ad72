#pragma once

#include "Drawing.h"

#include <deque>

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kYellow = RGB(255, 255, 0);
constexpr COLORREF kMagenta = RGB(255, 0, 255);

/// A picture of 32 bits a pixel to draw on with a red pen and a blue brush on a green background.
class Sheet {
public:
    Sheet(int width, int height, COLORREF paper = kBlack)
        : m_section(DibInfo(width, -height, 32)), m_memory(m_section.handle), m_width(width), m_height(height),
          m_paper(paper) {
        Use(CreatePen(PS_SOLID, 0, kRed)).Use(CreateSolidBrush(kBlue));
        SetBkColor(m_memory, kGreen);
        Clear();
    }

    operator HDC() const { return m_memory; }

    /// Selects an object and deletes it at the end.
    Sheet& Use(HGDIOBJ object) {
        SelectObject(m_memory, m_objects.emplace_back(object));
        return *this;
    }
    Sheet& Back(int mode) {
        SetBkMode(m_memory, mode);
        return *this;
    }
    Sheet& Rop(int mode) {
        SetROP2(m_memory, mode);
        return *this;
    }

    void Clear() const {
        GdiFlush();
        for (int i = 0; i < m_width * m_height; ++i)
            Pixels()[i] = Swapped(m_paper);
    }

    /// Its rows: a letter a pixel, a dot for one that is as it was; trailing dots are left out.
    std::string Picture() const {
        GdiFlush();
        std::string picture;
        for (int y = 0; y < m_height; ++y) {
            std::string row;
            for (int x = 0; x < m_width; ++x)
                row += Letter(Swapped(Pixels()[y * m_width + x]));
            picture += row.erase(row.find_last_not_of('.') + 1) + "/";
        }
        return picture.erase(picture.find_last_not_of('/') + 1);
    }

    /// The smallest rectangle around the pixels that are not as they were, as text.
    std::string Box() const {
        GdiFlush();
        RECT box{0, 0, 0, 0};
        for (int i = 0; i < m_width * m_height; ++i) {
            const LONG x = i % m_width;
            const LONG y = i / m_width;
            const RECT pixel{x, y, x + 1, y + 1};
            if (Swapped(Pixels()[i]) != m_paper)
                UnionRect(&box, &box, &pixel);
        }
        return box.right == 0 ? "none" : Text(box);
    }

private:
    DWORD* Pixels() const { return reinterpret_cast<DWORD*>(m_section.bytes); }

    // A COLORREF of a pixel without its fourth byte, and the other way round.
    static DWORD Swapped(DWORD colour) { return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF); }

    char Letter(COLORREF colour) const {
        const std::pair<COLORREF, char> letters[] = {{m_paper, '.'}, {kRed, 'R'},   {kGreen, 'G'},  {kBlue, 'B'},
                                                     {kBlack, 'K'},  {kWhite, 'W'}, {kYellow, 'Y'}, {kMagenta, 'M'}};
        for (const auto& [named, letter] : letters)
            if (colour == named)
                return letter;
        return '?';
    }

    std::deque<Owned<HGDIOBJ>> m_objects; // outlive the context
    const Section m_section;
    const MemoryContext m_memory;
    const int m_width;
    const int m_height;
    const COLORREF m_paper;
};
