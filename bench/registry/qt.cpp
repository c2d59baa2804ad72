#include "bench/registry/Stores.h"

#include <QSettings>

namespace {

using namespace kel::bench;

// All in memory; the whole file is written again for each value that must be kept.
class QtStore {
public:
    using Text = QString;
    static Text FromBytes(const std::string& bytes) { return QString::fromStdString(bytes); }
    static std::string Bytes(const Text& text) { return text.toStdString(); }

    void Fill(const std::vector<std::pair<Text, Text>>& pairs) {
        for (const auto& [name, text] : pairs)
            m_settings.setValue(name, text);
        m_settings.sync();
    }

    void Set(const Text& name, const Text& text) {
        m_settings.setValue(name, text);
        m_settings.sync();
    }

    Text Get(const Text& name) { return m_settings.value(name).toString(); }

    std::vector<std::pair<Text, Text>> All() {
        std::vector<std::pair<Text, Text>> pairs;
        for (const QString& name : m_settings.allKeys())
            pairs.emplace_back(name, Get(name));
        return pairs;
    }

private:
    QSettings m_settings{QString::fromStdString((NewFolder("qt") / "store.ini").string()), QSettings::IniFormat};
};

const Enter<StoreJobs> entered(JobsOf<QtStore>("qt"));

} // namespace
