#include "bench/registry/Stores.h"

#include <glib.h>

#include <stdexcept>

namespace {

using namespace kel::bench;

constexpr char kGroup[] = "store";

// All in memory; the whole file is written again for each value that must be kept.
class GlibStore : public ByteTexts {
public:
    GlibStore() = default;
    GlibStore(const GlibStore&) = delete;
    GlibStore& operator=(const GlibStore&) = delete;
    ~GlibStore() { g_key_file_unref(m_file); }

    void Fill(const Pairs<ByteTexts>& pairs) {
        for (const auto& [name, text] : pairs)
            g_key_file_set_string(m_file, kGroup, name.c_str(), text.c_str());
        Save();
    }

    void Set(const Text& name, const Text& text) {
        g_key_file_set_string(m_file, kGroup, name.c_str(), text.c_str());
        Save();
    }

    Text Get(const Text& name) {
        gchar* const found = g_key_file_get_string(m_file, kGroup, name.c_str(), nullptr);
        Text text = found == nullptr ? "" : found;
        g_free(found);
        return text;
    }

    Pairs<ByteTexts> All() {
        Pairs<ByteTexts> pairs;
        gchar** const names = g_key_file_get_keys(m_file, kGroup, nullptr, nullptr);
        for (gchar** name = names; *name != nullptr; ++name)
            pairs.emplace_back(*name, Get(*name));
        g_strfreev(names);
        return pairs;
    }

private:
    void Save() {
        if (!g_key_file_save_to_file(m_file, m_path.c_str(), nullptr))
            throw std::runtime_error("glib: the file cannot be saved");
    }

    GKeyFile* m_file = g_key_file_new();
    std::string m_path = (NewFolder("glib") / "store.ini").string();
};

const Enter<StoreJobs> entered(JobsOf<GlibStore>("glib"));

} // namespace
