#include <kelcore/runtime/calendar.h>

#include <cstddef>

struct kel::TimeLayout {
    static_assert(sizeof(KelTime) == 24 && alignof(KelTime) == 4);
    static_assert(offsetof(KelTime, m_time) == 0 && offsetof(KelTime, m_fileTime) == 16);
};

KelTime::KelTime() : m_time(), m_fileTime() {}

KelTime::KelTime(const SYSTEMTIME& time) : m_time(time), m_fileTime() {}

KelTime::KelTime(const FILETIME& time) : KelTime() {
    FileTimeToSystemTime(&time, &m_time);
}

KelTime& KelTime::operator=(const KelTime& other) = default;

KelTime& KelTime::operator=(const SYSTEMTIME& time) {
    m_time = time;
    return *this;
}

KelTime& KelTime::operator=(const FILETIME& time) {
    FileTimeToSystemTime(&time, &m_time);
    return *this;
}

KelTime::operator SYSTEMTIME*() {
    return &m_time;
}

KelTime::operator const SYSTEMTIME*() const {
    return &m_time;
}

KelTime::operator const FILETIME*() const {
    SystemTimeToFileTime(&m_time, &m_fileTime);
    return &m_fileTime;
}

void KelTime::GetAsFileTime(FILETIME& time) {
    SystemTimeToFileTime(&m_time, &time);
}
