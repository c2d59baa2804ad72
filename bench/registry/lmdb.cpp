#include "bench/registry/Stores.h"

#include <lmdb.h>

#include <stdexcept>

namespace {

using namespace kel::bench;

// A memory-mapped tree whose commits are not forced to the disk.
class LmdbStore : public ByteTexts {
public:
    LmdbStore() {
        Check(mdb_env_create(&m_environment));
        Check(mdb_env_set_mapsize(m_environment, std::size_t{64} << 20));
        Check(mdb_env_open(m_environment, NewFolder("lmdb").c_str(), MDB_NOSYNC, 0600));
        MDB_txn* const opening = Begin(/*flags*/ 0);
        Check(mdb_dbi_open(opening, nullptr, /*flags*/ 0, &m_table));
        Check(mdb_txn_commit(opening));
        m_reading = Begin(MDB_RDONLY);
        mdb_txn_reset(m_reading);
    }
    LmdbStore(const LmdbStore&) = delete;
    LmdbStore& operator=(const LmdbStore&) = delete;
    ~LmdbStore() {
        mdb_txn_abort(m_reading);
        mdb_env_close(m_environment);
    }

    void Fill(const Pairs<ByteTexts>& pairs) {
        MDB_txn* const writing = Begin(/*flags*/ 0);
        for (const auto& [name, text] : pairs)
            Put(writing, name, text);
        Check(mdb_txn_commit(writing));
    }

    void Set(const Text& name, const Text& text) {
        MDB_txn* const writing = Begin(/*flags*/ 0);
        Put(writing, name, text);
        Check(mdb_txn_commit(writing));
    }

    Text Get(const Text& name) {
        Check(mdb_txn_renew(m_reading));
        MDB_val key = Value(name);
        MDB_val found;
        Check(mdb_get(m_reading, m_table, &key, &found));
        Text text = Copy(found);
        mdb_txn_reset(m_reading);
        return text;
    }

    Pairs<ByteTexts> All() {
        Check(mdb_txn_renew(m_reading));
        MDB_cursor* cursor = nullptr;
        Check(mdb_cursor_open(m_reading, m_table, &cursor));
        Pairs<ByteTexts> pairs;
        MDB_val name;
        MDB_val text;
        while (mdb_cursor_get(cursor, &name, &text, MDB_NEXT) == 0)
            pairs.emplace_back(Copy(name), Copy(text));
        mdb_cursor_close(cursor);
        mdb_txn_reset(m_reading);
        return pairs;
    }

private:
    static void Check(int code) {
        if (code != 0)
            throw std::runtime_error(mdb_strerror(code));
    }

    static MDB_val Value(const Text& text) { return {text.size(), const_cast<char*>(text.data())}; }

    static Text Copy(const MDB_val& value) { return {static_cast<const char*>(value.mv_data), value.mv_size}; }

    MDB_txn* Begin(unsigned flags) {
        MDB_txn* begun = nullptr;
        Check(mdb_txn_begin(m_environment, nullptr, flags, &begun));
        return begun;
    }

    void Put(MDB_txn* writing, const Text& name, const Text& text) {
        MDB_val key = Value(name);
        MDB_val data = Value(text);
        Check(mdb_put(writing, m_table, &key, &data, /*flags*/ 0));
    }

    MDB_env* m_environment = nullptr;
    MDB_dbi m_table = 0;
    MDB_txn* m_reading = nullptr;
};

const Enter<StoreJobs> entered(JobsOf<LmdbStore>("lmdb"));

} // namespace
