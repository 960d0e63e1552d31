// A project's bytes and those of the journal beside it: it is refused with a failure that names the
// file, or read, written and emptied, and nothing else in its folder is touched. The input is the
// project and then the journal, whose length stands in the last four bytes, the highest first.
#include "attack/finding.h"

#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/database/dayTable.h"
#include "core/database/projectFile.h"
#include "support/testFolder.h"

#include <QtEndian>

#include <cstdio>

using namespace veltrona;

namespace {

/// In memory where the system has such a folder: each input is written, and synced a few times.
QString newFolder() {
    const QString shared = "/dev/shm";
    const QString place = QFileInfo(shared).isWritable() ? shared : QDir::tempPath();
    static const QTemporaryDir folder(place + "/projectAttack-XXXXXX");
    return folder.path();
}

void storeRecord(sqlite::Connection &connection) {
    sqlite::Transaction transaction(connection);
    auto insert = connection.prepare(dayInsertStatement());
    for (std::size_t i = 0; i < dayColumns.size(); ++i)
        insert.bind(static_cast<int>(i) + 1, QString("2007-05-07"));
    insert.step();
    insert.reset();
    transaction.commit();
}

void useProject(const QString &path) {
    const auto connection = openProject(path);
    Tree tree;
    buildNavigationTree(*connection, "p", tree);
    ProjectRecords records(*connection);
    queryNodeStatistics(records, NodePath(), {-1e6, 1e6});
    storeRecord(*connection);
    cleanProject(*connection);
    auto count = connection->prepare("SELECT count(*) FROM tblGoogleDays");
    FINDING_UNLESS(count.step() && count.int64(0) == 0, "a clean leaves records");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    constexpr std::size_t lengthSize = 4;
    if (size < lengthSize)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data),
                           static_cast<qsizetype>(size - lengthSize));
    const auto journal = static_cast<qsizetype>(qFromBigEndian<quint32>(data + size - lengthSize));
    const QString path = newFolder() + "/p.vlt";
    const QString letter = newFolder() + "/letter";
    test::write(letter, "Dear Anna");
    test::write(path, journal > 0 && journal <= bytes.size() ? bytes.chopped(journal) : bytes);
    if (journal > 0 && journal <= bytes.size())
        test::write(path + "-journal", bytes.last(journal));
    else
        QFile::remove(path + "-journal");
    try {
        useProject(path);
    } catch (const Failure &failure) {
        FINDING_UNLESS(failure.text().contains(path), "the failure doesn't name the file");
    }
    FINDING_UNLESS(test::contents(letter) == "Dear Anna", "another file was touched");
    for (const QString &name : QDir(newFolder()).entryList(QDir::Files)) {
        const bool isOwn =
            name.startsWith(QLatin1String("p.vlt")) || name == QLatin1String("letter");
        FINDING_UNLESS(isOwn, "another file was made: %s", qPrintable(name));
        if (name.startsWith(QLatin1String("p.vlt-")))
            QFile::remove(newFolder() + u'/' + name);
    }
    return 0;
}
