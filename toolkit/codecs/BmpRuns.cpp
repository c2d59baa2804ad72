#include "toolkit/codecs/BmpRuns.h"

#include <algorithm>

namespace kel::toolkit {
namespace {

// What stands behind a count of 0; all else is a number of pixels that follow one by one.
enum Escape : BYTE { kEndOfRow = 0, kEndOfPicture = 1, kStep = 2 };

class RunReader {
public:
    RunReader(Bytes runs, const DibLock& dib) : m_runs(runs), m_dib(dib), m_depth(dib.Layout().depth) {}

    bool Read() {
        BYTE count = 0;
        BYTE value = 0;
        while (Take(count) && Take(value)) {
            if (count == 0 && value == kEndOfPicture)
                return true;
            if (!(count != 0 ? PutRun(count, value) : Follow(value)))
                return false;
        }
        return IsFull(); // some writers leave the end away
    }

private:
    bool Take(BYTE& byte) {
        if (m_at == m_runs.size())
            return false;
        byte = m_runs[m_at++];
        return true;
    }

    bool Follow(BYTE escape) {
        if (escape == kEndOfRow) {
            m_x = 0;
            ++m_y;
            return true;
        }
        return escape == kStep ? Step() : PutPixels(escape);
    }

    bool Step() {
        BYTE right = 0;
        BYTE up = 0;
        if (!Take(right) || !Take(up))
            return false;
        m_x += right;
        m_y += up;
        return true;
    }

    // One value for all pixels; of 4 bits its halves take turns.
    bool PutRun(int count, BYTE value) {
        for (int i = 0; i < count; ++i)
            if (!Put(m_depth == 8 ? value : Half(value, i)))
                return false;
        return true;
    }

    // Single pixels, filled up to an even number of bytes.
    bool PutPixels(int count) {
        const std::size_t bytes = static_cast<std::size_t>(m_depth == 8 ? count : (count + 1) / 2);
        const std::size_t padded = bytes + bytes % 2;
        if (m_runs.size() - m_at < bytes)
            return false;
        for (int i = 0; i < count; ++i) {
            const BYTE value = m_runs[m_at + static_cast<std::size_t>(m_depth == 8 ? i : i / 2)];
            if (!Put(m_depth == 8 ? value : Half(value, i)))
                return false;
        }
        m_at += std::min(padded, m_runs.size() - m_at);
        return true;
    }

    static BYTE Half(BYTE value, int index) { return static_cast<BYTE>(index % 2 == 0 ? value >> 4 : value & 0x0F); }

    // Rows count from the bottom. Runs may reach over a row's end, as writers fill up to whole bytes.
    bool Put(BYTE value) {
        if (m_y >= m_dib.Layout().height)
            return false;
        const std::int64_t x = m_x++;
        if (x >= m_dib.Layout().width)
            return true;
        BYTE* const row = m_dib.Row(m_dib.Layout().height - 1 - static_cast<int>(m_y));
        if (m_depth == 8)
            row[x] = value;
        else
            row[x / 2] = static_cast<BYTE>(x % 2 == 0 ? (row[x / 2] & 0x0F) | value << 4 : (row[x / 2] & 0xF0) | value);
        return true;
    }

    bool IsFull() const {
        const DibLayout& layout = m_dib.Layout();
        return m_y >= layout.height || (m_y == layout.height - 1 && m_x >= layout.width);
    }

    const Bytes m_runs;
    const DibLock& m_dib;
    const int m_depth;
    std::size_t m_at = 0;
    // Wide enough for every number of steps that a file can hold.
    std::int64_t m_x = 0;
    std::int64_t m_y = 0;
};

} // namespace

bool ReadBmpRuns(Bytes runs, const DibLock& dib) {
    return RunReader(runs, dib).Read();
}

} // namespace kel::toolkit
