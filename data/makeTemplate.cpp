// Makes data.dat, the empty project, from schema.sql, and proves that the program would open it.
// Runs in the build only: makeTemplate SCHEMA TARGET
#include "core/base/failure.h"
#include "core/database/projectFile.h"

#include <QFile>

#include <cstdio>

using namespace veltrona;

namespace {

QByteArray readSchema(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(1, file.errorString() + QStringLiteral(": ") + path);
    return file.readAll();
}

void makeTemplate(const QString &schemaPath, const QString &target) {
    const QByteArray schema = readSchema(schemaPath);
    // Opening never makes a file, so an empty one has to stand there first.
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw Failure(1, file.errorString() + QStringLiteral(": ") + target);
    file.close();
    sqlite::Connection connection;
    connection.open(target);
    connection.execute({schema.constData(), static_cast<std::size_t>(schema.size())});
    connection.close();
    openProject(target);
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: makeTemplate SCHEMA TARGET\n");
        return 2;
    }
    const QString target = QFile::decodeName(argv[2]);
    try {
        makeTemplate(QFile::decodeName(argv[1]), target);
    } catch (const Failure &failure) {
        QFile::remove(target);
        std::fprintf(stderr, "makeTemplate: %s\n", failure.what());
        return 1;
    }
    return 0;
}
