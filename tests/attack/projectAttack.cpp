// A project's bytes and those of the journal beside it: it is refused with a failure that names the
// file, or read, written and emptied, and nothing else in its folder is touched.
#include "attack/finding.h"
#include "attack/projectInput.h"

#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/database/dayTable.h"
#include "core/database/projectFile.h"
#include "support/testFolder.h"

using namespace veltrona;

namespace {

/// In memory where the system has such a folder: each input is written, and synced a few times.
QString newFolder() {
    const QString shared = "/dev/shm";
    const QString place = QFileInfo(shared).isWritable() ? shared : QDir::tempPath();
    static const QTemporaryDir folder(place + "/projectAttack");
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
    const auto input = attack::ProjectInput::read(data, size);
    if (!input)
        return 0;
    const QString path = newFolder() + "/p.vlt";
    const QString letter = newFolder() + "/letter";
    test::write(letter, "Dear Anna");
    test::write(path, input->project);
    if (!input->side.isEmpty())
        test::write(path + (input->isLog() ? "-wal" : "-journal"), input->side);
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
