// The settings store: what goes in comes out, and a store that can't be used stops nothing.
#include "core/shell/settings.h"
#include "core/platform/desktop/paths.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"
#include "support/dataTable.h"
#include "support/testFolder.h"

#include <QSettings>
#include <QTest>

using namespace veltrona;

namespace {
const QString key = settingsKey;

QString loaded(const QString &name, const QString &before = "before") {
    QString value = before;
    loadSetting(key, name, value);
    return value;
}

void save(const QString &name, const QString &text) {
    saveSetting(key, name, text, textValue);
}
} // namespace

class SettingsTest : public QObject, test::TestFolder {
    Q_OBJECT

private slots:
    void initTestCase() { services().lockWait = 10; }
    void init() {
        renewFolder();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(path("not/yet/made")));
    }

    void textsComeBackExactly_data() {
        const test::DataTable<QString> row;
        row("empty", "");
        row("variant-like", "@ByteArray(x)");
        row("control characters", "a\tb\r\nc\x01");
        row("unicode", "Müller 日本 😀");
    }
    void textsComeBackExactly() {
        const auto [text] = test::row<QString>();
        save("dbfname", text);
        QCOMPARE(loaded("dbfname"), text);
        // And from the file itself, not from a cache of the process.
        const QString copy = path("copy.ini");
        QVERIFY(QFile::copy(settingsFile(), copy));
        QSettings fresh(copy, QSettings::IniFormat);
        QCOMPARE(fresh.value("Software/Morvane/dbfname").toString(), text);
        QCOMPARE(fresh.allKeys().size(), 1);
    }

    void junkInTheStoreIsNoValueAndCanBeReplaced() {
        test::write(settingsFile(), QByteArray("\0\xff[[\n=\n]junk\n", 13));
        QCOMPARE(loaded("dbfname"), "before");
        save("dbfname", "/a.vlt");
        QCOMPARE(loaded("dbfname"), "/a.vlt");
    }

    void aLeftOverLockIsGivenUp_data() {
        const test::DataTable<QByteArray> row;
        row("empty", "");
        row("another computer's", "1\nveltrona\nelsewhere\n\n");
    }
    void aLeftOverLockIsGivenUp() {
        const auto [lock] = test::row<QByteArray>();
        save("dbfname", "/a.vlt");
        test::write(settingsFile() + ".lock", lock);
        save("dbfname", "/b.vlt");
        QCOMPARE(loaded("dbfname"), "/a.vlt");
        QVERIFY(QFile::remove(settingsFile() + ".lock"));
        save("dbfname", "/b.vlt");
        QCOMPARE(loaded("dbfname"), "/b.vlt");
    }

    void dataFolderFallsBack() {
        qputenv("XDG_DATA_HOME", QFile::encodeName(test::write(path("file"), {})));
        modMain::initDataFolder();
        QCOMPARE(modMain::DataFolder, desktop::programFolder());

        qputenv("XDG_DATA_HOME", "relative/folder");
        modMain::initDataFolder();
        QVERIFY(QDir(modMain::DataFolder).isAbsolute());
    }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "settingsTest.moc"
