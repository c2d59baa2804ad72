#pragma once

#include <sqlite3.h>

#include <array>
#include <cstdint>

namespace kel::platform {

/// The state that a database is in. Two equal marks mean that nothing was committed in between.
using ChangeMark = std::array<std::uint64_t, 6>;

/// Tells without a system call whether anybody has changed a database.
///
/// In WAL mode every commit, of whatever process, ends in writing the header of the WAL index, which lies in memory
/// that all connections share ("WAL-mode File Format" of the SQLite documentation): its 48 bytes hold a count of the
/// transactions, the number of frames, their running checksum and the salts of the log. A commit has not returned
/// before the first of the header's two copies is written, so a reader who finds that copy unchanged reads the state
/// that was there when it looked. A copy that is being written differs from every mark that was taken of a finished
/// one.
///
/// A database in memory has no other connection; it counts its own commits.
class WalIndex {
public:
    WalIndex() = default;
    WalIndex(const WalIndex&) = delete;
    WalIndex& operator=(const WalIndex&) = delete;

    /// Finds the header of an open connection in WAL mode, which has to have read something, so that the index is
    /// there. @throws SqliteFailure
    void Attach(sqlite3* database);

    ChangeMark Now() const;
    bool IsAt(const ChangeMark& mark) const;

    /// Counts a commit of a database in memory.
    void CountOwnCommit();

    /// Whether exactly one commit lies between two marks.
    static bool IsNext(const ChangeMark& before, const ChangeMark& after);

private:
    // Pages of the index are this large; the header is at the beginning of the first.
    static constexpr int kRegionSize = 32768;

    alignas(8) mutable ChangeMark m_own{};
    std::uint64_t* m_header = m_own.data();
};

} // namespace kel::platform
