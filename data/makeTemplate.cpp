// Makes data.dat, the empty project, from schema.sql, and verifies that the program opens it. Runs
// in the build only: makeTemplate SCHEMA TARGET
#include "core/base/failure.h"
#include "core/database/projectFile.h"

#include <QFile>

#include <cstdio>
#include <string>

using namespace veltrona;

namespace {

QByteArray open(QFile &file, QIODevice::OpenMode mode) {
    if (!file.open(mode))
        throw Failure(1, file.errorString() + QStringLiteral(": ") + file.fileName());
    return mode == QIODevice::ReadOnly ? file.readAll() : QByteArray();
}

void makeTemplate(const QString &schemaPath, const QString &target) {
    QFile schemaFile(schemaPath);
    const std::string schema = open(schemaFile, QIODevice::ReadOnly).toStdString();
    QFile file(target); // a connection opens existing files only
    open(file, QIODevice::WriteOnly);
    file.close();
    sqlite::Connection connection;
    connection.open(target);
    connection.execute(schema);
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
