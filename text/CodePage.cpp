#include <kelcore/text.h>

#include <kelcore/platform.h>

#include "text/Overwrite.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// Texts up to this length are converted on the stack by one call, and copied out at their exact size.
constexpr std::size_t kShort = 512;
// Longer ones go in pieces that stay in the first cache while their terminator is looked for and they are converted.
constexpr std::size_t kPiece = 1 << 14;
// No code page needs more bytes for one unit.
constexpr std::size_t kMostBytes = 4;

int Size(std::size_t size) {
    return static_cast<int>(std::min<std::size_t>(size, std::numeric_limits<int>::max()));
}

/// Whether the text of @p size elements holds a NUL; @p size then becomes its length up to there.
bool CutAtNul(const char* text, std::size_t& size) {
    const void* nul = std::memchr(text, 0, size);
    if (nul != nullptr)
        size = static_cast<std::size_t>(static_cast<const char*>(nul) - text);
    return nul != nullptr;
}

/// Converts @p size units, which are not none. @return the bytes written.
std::size_t Narrow(const unsigned short* text, std::size_t size, char* to, std::size_t room) {
    const auto* units = reinterpret_cast<const WCHAR*>(text);
    return static_cast<std::size_t>(
        WideCharToMultiByte(CP_ACP, /*flags*/ 0, units, Size(size), to, Size(room), nullptr, nullptr));
}

/// Converts @p size bytes, which are not none. @return the units written.
std::size_t Widen(const char* text, std::size_t size, unsigned short* to, std::size_t room) {
    return static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, /*flags*/ 0, text, Size(size), reinterpret_cast<WCHAR*>(to), Size(room)));
}

/// Wide text on its way to bytes. A NUL unit, and nothing else, becomes a NUL byte, so the terminator is looked for
/// among the bytes, where there are fewer and the library's search is quick.
class Narrowing {
public:
    explicit Narrowing(const WideString& text) : m_units(text.data()), m_left(text.size()) {}

    [[nodiscard]] std::size_t Left() const { return m_left; }

    /// Converts the next piece of at most @p most units. @return the bytes written.
    std::size_t Next(std::size_t most, char* to, std::size_t room) {
        const std::size_t count = PieceLength(most);
        std::size_t size = Narrow(m_units, count, to, room);
        m_units += count;
        m_left -= count;
        if (size == 0 || CutAtNul(to, size))
            m_left = 0;
        return size;
    }

private:
    /// A piece does not end between the halves of a surrogate pair.
    [[nodiscard]] std::size_t PieceLength(std::size_t most) const {
        if (m_left <= most)
            return m_left;
        return (m_units[most - 1] & 0xFC00) == 0xD800 ? most - 1 : most;
    }

    const unsigned short* m_units;
    std::size_t m_left;
};

/// Gives back room that a result kept of an estimate, if that is much.
template <class Text>
void Trim(Text& text) {
    if (text.size() < text.capacity() / 4 * 3)
        text.shrink_to_fit();
}

/// Room for all of a text of which @p taken units became @p written bytes: as many again for each unit that is left, an
/// eighth more unless all was ASCII so far, and a short piece at its longest.
std::size_t EstimatedRoom(std::size_t taken, std::size_t written, std::size_t left) {
    std::size_t room = left / taken * written + left % taken * written / taken;
    if (written != taken)
        room += room / 8;
    return written + room + kMostBytes * std::min(kShort, left);
}

/// Converts pieces to @p to until the text is done or what is left of the room is too small for a short piece.
/// @return the bytes in @p to, of which there are @p written already.
std::size_t NarrowInto(Narrowing& rest, char* to, std::size_t written, std::size_t room) {
    while (rest.Left() > 0) {
        const std::size_t most = std::min(kPiece, (room - written) / kMostBytes);
        if (most < std::min(kShort, rest.Left()))
            break;
        written += rest.Next(most, to + written, room - written);
    }
    return written;
}

/// The length of a first piece of @p size bytes that does not end inside a character: in UTF-8 no character goes on
/// before a byte that continues none, nor over four that do. In a double-byte page only the front of the text tells
/// where characters end, so all of it is one piece.
std::size_t BytePiece(const char* text, std::size_t size) {
    if (size <= kPiece || GetACP() != CP_UTF8)
        return size;
    for (std::size_t cut = kPiece; cut > kPiece - 4; --cut) {
        if ((static_cast<unsigned char>(text[cut]) & 0xC0) != 0x80)
            return cut;
    }
    return kPiece;
}

/// Converts all of @p text up to its terminator. @return the units written.
std::size_t WidenPieces(const NarrowString& text, unsigned short* to, std::size_t room) {
    std::size_t written = 0;
    bool ended = false;
    for (std::size_t taken = 0; taken < text.size() && !ended;) {
        const char* piece = text.data() + taken;
        std::size_t size = BytePiece(piece, text.size() - taken);
        taken += size;
        ended = CutAtNul(piece, size);
        if (size > 0)
            written += Widen(piece, size, to + written, room - written);
    }
    return written;
}

/// A text longer than a short one. Kept apart, so that short ones do not pay for its registers.
[[gnu::noinline]] NarrowString NarrowLong(const WideString& text) {
    Narrowing rest(text);
    char front[kMostBytes * kShort];
    NarrowString result(front, rest.Next(kShort, front, sizeof front));
    while (rest.Left() > 0) {
        NarrowString longer;
        const std::size_t written = result.size();
        kel::Overwrite(longer, EstimatedRoom(text.size() - rest.Left(), written, rest.Left()),
                       [&](char* to, std::size_t room) {
                           std::memcpy(to, result.data(), written);
                           return NarrowInto(rest, to, written, room);
                       });
        result.swap(longer);
    }
    Trim(result);
    return result;
}

/// A text longer than a short one.
[[gnu::noinline]] WideString WidenLong(const NarrowString& text) {
    WideString result;
    // A byte becomes one unit at most.
    kel::Overwrite(result, text.size(),
                   [&](unsigned short* to, std::size_t room) { return WidenPieces(text, to, room); });
    Trim(result);
    return result;
}

} // namespace

NarrowString StdW2A(const WideString& text) {
    if (text.size() > kShort)
        return NarrowLong(text);
    char bytes[kMostBytes * kShort];
    std::size_t size = text.empty() ? 0 : Narrow(text.data(), text.size(), bytes, sizeof bytes);
    CutAtNul(bytes, size);
    return {bytes, size};
}

WideString StdA2W(const NarrowString& text) {
    if (text.size() > kShort)
        return WidenLong(text);
    unsigned short units[kShort];
    std::size_t size = text.size();
    CutAtNul(text.data(), size);
    return {units, size > 0 ? Widen(text.data(), size, units, kShort) : 0};
}
