#include "bench/registry/Stores.h"

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>
#include <unordered_map>

namespace {

using namespace kel::bench;

// What reading cannot do without: a look into a hash table in memory.
class TableStore : public ByteTexts {
public:
    void Fill(const Pairs<ByteTexts>& pairs) { m_table.insert(pairs.begin(), pairs.end()); }
    Text Get(const Text& name) { return m_table.find(name)->second; }
    Pairs<ByteTexts> All() { return {m_table.begin(), m_table.end()}; }

private:
    std::unordered_map<Text, Text> m_table;
};

// What writing cannot do without: handing the bytes to the system.
Call WriteBytes() {
    const auto entries = std::make_shared<const std::vector<Entry>>(Entries(kWritten));
    const int file = open((NewFolder("pwrite") / "file").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return {[=] {
        off_t offset = 0;
        for (const Entry& entry : *entries) {
            if (pwrite(file, entry.text.data(), entry.text.size(), offset) < 0)
                throw std::runtime_error("pwrite fails");
            offset += static_cast<off_t>(entry.text.size());
        }
    }};
}

const Enter<StoreJobs> entered[] = {
    Enter<StoreJobs>({"limit-unordered_map", {}, ReadJob<TableStore>, ListJob<TableStore>}),
    Enter<StoreJobs>({"limit-pwrite", WriteBytes, {}, {}}),
};

} // namespace
