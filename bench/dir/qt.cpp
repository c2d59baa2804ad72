#include "bench/dir/TreeSize.h"

#include <QDirIterator>
#include <QFileInfo>

namespace {

std::int64_t Add(const std::string& folder) {
    std::int64_t total = 0;
    QDirIterator walk(QString::fromStdString(folder), QDir::Files | QDir::Hidden | QDir::System,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        walk.next();
        total += walk.fileInfo().size();
    }
    return total;
}

const kel::bench::Enter<kel::bench::TreeSize> entered{{"qt", &Add}};

} // namespace
