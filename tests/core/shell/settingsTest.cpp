// The settings store: what goes in comes out, and a store that can't be used stops nothing.
#include "platform/desktop/folders.h"
#include "shell/modMain.h"
#include "shell/settings.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace veltrona;

namespace {
const QString key = settingsKey;

QString loaded(const QString &name, const QString &before = QStringLiteral("before")) {
    QString value = before;
    loadSetting(key, name, value);
    return value;
}

void save(const QString &name, const QString &text) {
    saveSetting(key, name, text, textValue);
}
} // namespace

class SettingsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7555));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder->filePath("not/yet/made")));
    }

    void textsComeBackExactly_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString(QLatin1String(""));
        QTest::newRow("blanks") << QStringLiteral("  a b  ");
        QTest::newRow("only blanks") << QStringLiteral("   ");
        QTest::newRow("list-like") << QStringLiteral("/home/a, b;c.vlt");
        QTest::newRow("quotes") << QStringLiteral("\"it's\" \\n =x");
        QTest::newRow("variant-like") << QStringLiteral("@ByteArray(x)");
        QTest::newRow("percent") << QStringLiteral("100%20 %1");
        QTest::newRow("control characters") << QStringLiteral("a\tb\r\nc\x01");
        QTest::newRow("windows path") << QStringLiteral("C:\\x\\new.vlt");
        QTest::newRow("unicode") << QStringLiteral(u"M\u00FCller \u65E5\u672C \U0001F600");
    }

    void textsComeBackExactly() {
        QFETCH(QString, text);
        save("dbfname", text);
        QCOMPARE(loaded("dbfname"), text);
        // And from the file itself, not from a cache of the process.
        const QString copy = m_folder->filePath("copy.ini");
        QVERIFY(QFile::copy(settingsFile(), copy));
        QSettings fresh(copy, QSettings::IniFormat);
        QCOMPARE(fresh.value("Software/Morvane/dbfname").toString(), text);
        QCOMPARE(fresh.allKeys().size(), 1);
    }

    void unknownNamesKeepWhatTheCallerHeld() {
        QCOMPARE(loaded("dbfname"), QString("before"));
        QVERIFY2(!QFile::exists(settingsFile()), "reading alone must not make the store");
        save("grdcolor", "1");
        QCOMPARE(loaded("expcolor"), QString("before"));
        QString other = "before";
        loadSetting("Software\\Other\\", "grdcolor", other);
        QCOMPARE(other, QString("before"));
    }

    void typesOfValues() {
        saveSetting(key, "number", 4000000, numberValue);
        QCOMPARE(loaded("number"), QString("4000000"));
        saveSetting(key, "number", "lost", 3);
        QCOMPARE(loaded("number"), QString("4000000"));
        QSettings store(settingsFile(), QSettings::IniFormat);
        store.setValue("list", QStringList{"a", "b"});
        QString value = "before";
        QCOMPARE(readValue(store, "list", value), -1);
        QVERIFY(readValue(store, "missing", value) > 0);
        QCOMPARE(value, QString("before"));
    }

    void aStoreThatCannotBeMadeStopsNothing() {
        QFile file(m_folder->filePath("file"));
        QVERIFY(file.open(QFile::WriteOnly));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(file.fileName()));
        save("grdcolor", "1");
        QCOMPARE(loaded("grdcolor"), QString("before"));
    }

    void aStoreThatCannotBeWrittenKeepsItsValues() {
#ifdef Q_OS_UNIX
        save("grdcolor", "0");
        const bool root = geteuid() == 0;
        constexpr uid_t nobody = 65534;
        if (root)
            QCOMPARE(seteuid(nobody), 0);
        else
            QFile::setPermissions(settingsFile(), QFile::ReadOwner);
        save("grdcolor", "1");
        const QString after = loaded("grdcolor");
        if (root)
            QCOMPARE(seteuid(0), 0);
        QCOMPARE(after, QString("0"));
        QCOMPARE(loaded("grdcolor"), QString("0"));
#else
        QSKIP("needs another user id");
#endif
    }

    void junkInTheStoreIsNoValueAndCanBeReplaced() {
        QVERIFY(QDir().mkpath(QFileInfo(settingsFile()).path()));
        QFile file(settingsFile());
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(QByteArray("\0\xff[[\n=\n]junk\n", 13));
        file.close();
        QCOMPARE(loaded("dbfname"), QString("before"));
        save("dbfname", "/a.vlt");
        QCOMPARE(loaded("dbfname"), QString("/a.vlt"));
    }

    void dataFolderIsMadeOrFallsBack() {
        const QString wanted = m_folder->filePath("x/data");
        qputenv("XDG_DATA_HOME", QFile::encodeName(wanted));
        modMain::initDataFolder();
        QCOMPARE(modMain::DataFolder, QDir::toNativeSeparators(wanted));
        QVERIFY(QDir(wanted).exists());

        QFile file(m_folder->filePath("file"));
        QVERIFY(file.open(QFile::WriteOnly));
        qputenv("XDG_DATA_HOME", QFile::encodeName(file.fileName()));
        modMain::initDataFolder();
        QCOMPARE(modMain::DataFolder, desktop::programFolder());

        qputenv("XDG_DATA_HOME", "relative/folder");
        modMain::initDataFolder();
        QVERIFY(QDir(modMain::DataFolder).isAbsolute());
    }

    void onlyTheDocumentsFolderIsKnown() {
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(m_folder->path()));
        QCOMPARE(modMain::getSpecialFolder(5), QString());
        QVERIFY(QDir(m_folder->path()).mkdir("Documents"));
        QCOMPARE(modMain::getSpecialFolder(5),
                 QDir::toNativeSeparators(m_folder->filePath("Documents")));
        QCOMPARE(modMain::getSpecialFolder(7), QString());
        qputenv("HOME", home);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "settingsTest.moc"
