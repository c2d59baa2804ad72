#include "bench/path/Paths.h"

#include <QDir>
#include <QFileInfo>

namespace {

using namespace kel::bench;

std::string Bytes(const QString& text) {
    return text.toStdString();
}

template <class Handle>
Call Whole(Handle handle) {
    return ForEach(Converted([](const GivenPath& path) { return QString::fromStdString(path.whole); }), handle, Bytes);
}

Call Parent() {
    return Whole([](const QString& path) { return QFileInfo(path).path(); });
}
Call Filename() {
    return Whole([](const QString& path) { return QFileInfo(path).fileName(); });
}
// A suffix comes without its dot.
Call Extension() {
    return ForEach(
        Converted([](const GivenPath& path) { return QString::fromStdString(path.whole); }),
        [](const QString& path) { return QFileInfo(path).suffix(); },
        [](const QString& suffix) { return '.' + suffix.toStdString(); });
}
Call Title() {
    return Whole([](const QString& path) { return QFileInfo(path).completeBaseName(); });
}
Call FullPath() {
    return Whole([](const QString& path) { return QDir::cleanPath(QFileInfo(path).absoluteFilePath()); });
}
Call Join() {
    struct Parts {
        QString folder;
        QString name;
    };
    const auto split = [](const GivenPath& path) {
        return Parts{QString::fromStdString(path.folder), QString::fromStdString(path.name)};
    };
    return ForEach(
        Converted(split), [](const Parts& parts) { return QDir(parts.folder).filePath(parts.name); }, Bytes);
}

const Enter<PathFunction> entered[] = {
    Enter<PathFunction>({"qt", "parent", &Parent}),       Enter<PathFunction>({"qt", "filename", &Filename}),
    Enter<PathFunction>({"qt", "extension", &Extension}), Enter<PathFunction>({"qt", "join", &Join}),
    Enter<PathFunction>({"qt", "title", &Title}),         Enter<PathFunction>({"qt", "full path", &FullPath}),
};

} // namespace
