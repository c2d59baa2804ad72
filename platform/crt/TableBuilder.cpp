#include "platform/crt/PageFacts.h"
#include "platform/crt/TablePages.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <iconv.h>
#include <mutex>
#include <string>

namespace kel::platform {
namespace {

/// A conversion of the host that starts anew for each character.
class Converter {
public:
    enum class Result { Done, Incomplete, Refused, Silent };

    Converter(const std::string& to, const std::string& from) : m_state(iconv_open(to.c_str(), from.c_str())) {}
    ~Converter() {
        if (*this)
            iconv_close(m_state);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    explicit operator bool() const { return m_state != reinterpret_cast<iconv_t>(-1); }

    /// Converts one character of @p size bytes to one of two bytes at most, in @p out, the missing ones being 0.
    /// Pages with combining marks hold a letter back until they are told that nothing follows, hence the last call.
    Result operator()(const unsigned char* in, std::size_t size, unsigned char (&out)[2]) {
        out[0] = out[1] = 0;
        auto* from = reinterpret_cast<char*>(const_cast<unsigned char*>(in));
        auto* to = reinterpret_cast<char*>(out);
        std::size_t room = sizeof out;
        iconv(m_state, nullptr, nullptr, nullptr, nullptr);
        if (iconv(m_state, &from, &size, &to, &room) != 0)
            return errno == EINVAL ? Result::Incomplete : Result::Refused;
        iconv(m_state, nullptr, nullptr, &to, &room);
        return room < sizeof out ? Result::Done : Result::Silent;
    }

private:
    iconv_t m_state;
};

std::string HostName(unsigned number) {
    switch (number) {
    case 20127:
        return "US-ASCII";
    case 20866:
        return "KOI8-R";
    case 21866:
        return "KOI8-U";
    default:
        break;
    }
    if (number >= 28591 && number <= 28606)
        return "ISO-8859-" + std::to_string(number - 28590);
    const std::string digits = std::to_string(number);
    return "CP" + std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits;
}

/// Fills the tables of one page from the host's two converters.
class Builder {
public:
    explicit Builder(unsigned number)
        : m_page(new TablePage()), m_facts(FactsOf(number)), m_toUnits("UTF-16LE", HostName(number)),
          m_toBytes(HostName(number), "UTF-16LE") {
        m_page->number = number;
    }

    /// @return the page, or null if the host has none that fits into tables.
    std::unique_ptr<TablePage> operator()() {
        if (!m_toUnits || !m_toBytes || !ReadUnits())
            return nullptr;
        FillGaps();
        ReadCodes();
        Describe();
        return std::move(m_page);
    }

private:
    /// @return false for what is not a single- or double-byte page: one with shift states has bytes that say nothing,
    /// one of wider units has hardly any that stand alone.
    bool ReadUnits() {
        int known = 0;
        for (unsigned first = 0; first < 256; ++first) {
            const unsigned char byte[] = {static_cast<unsigned char>(first)};
            unsigned char unit[2];
            const auto result = m_toUnits(byte, 1, unit);
            if (result == Converter::Result::Silent)
                return false;
            m_page->single[first] =
                CorrectedUnit(m_page->number, first, result == Converter::Result::Done ? Unit(unit) : TablePage::kNone);
            if (m_page->single[first] != TablePage::kNone || ReadRow(byte[0]))
                ++known;
        }
        return known >= 128;
    }

    static WCHAR Unit(const unsigned char (&bytes)[2]) { return static_cast<WCHAR>(bytes[0] | bytes[1] << 8); }

    [[nodiscard]] bool ListedLead(unsigned char byte) const {
        for (int i = 0; i < 6; i += 2) {
            if (m_facts.leads[i] != 0 && byte >= m_facts.leads[i] && byte <= m_facts.leads[i + 1])
                return true;
        }
        return false;
    }

    bool ReadRow(unsigned char first) {
        std::unique_ptr<WCHAR[]> row(new WCHAR[256]);
        std::fill_n(row.get(), 256, TablePage::kNone);
        bool any = ListedLead(first);
        for (unsigned second = 1; second < 256; ++second) {
            const unsigned char bytes[] = {first, static_cast<unsigned char>(second)};
            unsigned char unit[2];
            if (m_toUnits(bytes, 2, unit) != Converter::Result::Done)
                continue;
            row[second] = Unit(unit);
            any = true;
        }
        if (any)
            m_page->rows[first] = std::move(row);
        return any;
    }

    /// Windows gives the bytes that a page leaves open a meaning too: ASCII looks at seven bits, elsewhere 0x80 to 0x9F
    /// are the controls of the same number, and the others may be private units, which no strict conversion takes.
    void FillGaps() {
        m_page->firstGap = m_page->endOfGaps = m_facts.firstGap;
        for (unsigned byte = 0x80; byte < 256; ++byte) {
            if (m_page->single[byte] != TablePage::kNone || m_page->rows[byte] != nullptr)
                continue;
            if (m_page->number == 20127)
                m_page->single[byte] = static_cast<WCHAR>(byte & 0x7F);
            else if (byte < 0xA0)
                m_page->single[byte] = static_cast<WCHAR>(byte);
            else if (m_facts.firstGap != 0)
                m_page->single[byte] = m_page->endOfGaps++;
        }
    }

    void ReadCodes() {
        for (unsigned first = 0; first < 256; ++first)
            AddCode(m_page->single[first], static_cast<Code>(first));
        for (unsigned first = 0; first < 256; ++first) {
            for (unsigned second = 1; second < 256 && m_page->rows[first] != nullptr; ++second)
                AddCode(m_page->rows[first][second], static_cast<Code>(first | second << 8));
        }
    }

    /// Where several byte sequences mean one unit, the host knows which of them is written.
    void AddCode(WCHAR unit, Code code) {
        if (unit == TablePage::kNone || unit == 0)
            return;
        Code& entry = m_page->codes[unit];
        entry = entry == 0 ? code : Preferred(unit, entry);
    }

    Code Preferred(WCHAR unit, Code otherwise) {
        const unsigned char text[] = {static_cast<unsigned char>(unit), static_cast<unsigned char>(unit >> 8)};
        unsigned char bytes[2];
        if (m_toBytes(text, 2, bytes) != Converter::Result::Done)
            return otherwise;
        return static_cast<Code>(bytes[0] | bytes[1] << 8);
    }

    void Describe() {
        const WCHAR* single = m_page->single;
        m_page->ascii = true;
        for (unsigned byte = 0; byte < 0x80; ++byte)
            m_page->ascii = m_page->ascii && single[byte] == byte && m_page->codes[byte] == byte;
        m_page->doubleByte = std::any_of(std::begin(m_page->rows), std::end(m_page->rows),
                                         [](const auto& row) { return row != nullptr; });
        m_page->defaultCode = m_page->codes[u'?'];
        m_page->defaultUnit = m_facts.defaultUnit;
        for (unsigned byte = 0x80; byte < 256; ++byte) {
            const WCHAR unit = single[byte] == TablePage::kNone ? m_page->defaultUnit : single[byte];
            m_page->highHalf.low[(byte - 0x80) / 16][byte % 16] = static_cast<unsigned char>(unit);
            m_page->highHalf.high[(byte - 0x80) / 16][byte % 16] = static_cast<unsigned char>(unit >> 8);
        }
    }

    std::unique_ptr<TablePage> m_page;
    PageFacts m_facts;
    Converter m_toUnits;
    Converter m_toBytes;
};

/// Pages built so far. Readers walk the list without a lock; entries are only ever added at the front.
struct Entry {
    std::unique_ptr<const TablePage> page;
    Entry* next;
};
constinit std::atomic<Entry*> g_pages{nullptr};
constinit std::mutex g_building;

const TablePage* Built(unsigned number) {
    for (const Entry* entry = g_pages.load(std::memory_order_acquire); entry != nullptr; entry = entry->next) {
        if (entry->page->number == number)
            return entry->page.get();
    }
    return nullptr;
}

// Runs after the destructors of all static objects, which may still convert text.
__attribute__((destructor)) void FreePages() {
    for (Entry* entry = g_pages.exchange(nullptr); entry != nullptr;) {
        Entry* next = entry->next;
        delete entry;
        entry = next;
    }
}

} // namespace

const TablePage* FindTablePage(unsigned number) {
    if (const TablePage* page = Built(number))
        return page;
    const std::lock_guard guard(g_building);
    if (const TablePage* page = Built(number))
        return page;
    std::unique_ptr<const TablePage> page = Builder(number)();
    if (page == nullptr)
        return nullptr;
    auto* entry = new Entry{std::move(page), g_pages.load(std::memory_order_relaxed)};
    g_pages.store(entry, std::memory_order_release);
    return entry->page.get();
}

} // namespace kel::platform
