#include "report/reportWriter.h"

#include "platform/desktop/clock.h"
#include "platform/failure.h"
#include "support/anotherUser.h"
#include "support/dialogRecorder.h"
#include "support/fileSizeLimit.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

#include <sys/stat.h>

using namespace veltrona;
using test::DialogRecorder;
using test::FileSizeLimit;

namespace {

drawing::Picture whitePicture(int width, int height) {
    const std::vector<std::uint8_t> white(std::size_t(width) * height * 3, 255);
    return drawing::Picture(drawing::createBitmap(width, height, white.data(), width * 3));
}

QByteArray contentOf(const QString &file) {
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("no such file");
}

void writeFile(const QString &file, const QByteArray &content) {
    QFile out(file);
    QVERIFY(out.open(QIODevice::WriteOnly));
    QCOMPARE(out.write(content), content.size());
}

} // namespace

class TestReportWriter : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    TreeNode m_node;
    Grid m_grid{15};
    drawing::Picture m_chart;
    int m_charts = 0;
    QString m_page;
    QString m_picture;

    ReportSource source() {
        ReportSource source;
        source.selected = &m_node;
        source.range = {dateValue(CalendarDay{2006, 3, 1}), dateValue(CalendarDay{2006, 3, 7})};
        source.grid = &m_grid;
        source.metric = QStringLiteral("Clicks");
        source.copyChart = [this] {
            ++m_charts;
            return &m_chart;
        };
        source.locale = QLocale::c();
        return source;
    }
    void write(const QString &file) { writeReport(file, true, source()); }
    QStringList files() const {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    /// The text of the failure that writing ends in.
    QString failureOf(const QString &file) {
        try {
            write(file);
        } catch (const Failure &failure) {
            return failure.text();
        }
        return {};
    }

private slots:
    void init() {
        m_folder = QTemporaryDir();
        m_page = m_folder.filePath(QStringLiteral("report.html"));
        m_picture = m_folder.filePath(QStringLiteral("graph.jpg"));
        m_node.Key = QStringLiteral("0-Campaign Summary");
        m_grid.setRow(0);
        m_grid.setCol(0);
        m_chart = whitePicture(40, 30);
        m_charts = 0;
        desktop::setClock([] { return QDateTime(QDate(2006, 3, 7), QTime(13, 5, 9)); });
    }
    void cleanup() { desktop::setClock({}); }

    void writesPageAndPicture() {
        write(QStringLiteral("  %1 ").arg(m_page));
        QCOMPARE(files(), (QStringList{"graph.jpg", "report.html"}));
        const QByteArray page = contentOf(m_page);
        QVERIFY(page.startsWith("<html>"));
        QVERIFY(page.endsWith("</body></html>\r\n"));
        QVERIFY(page.contains("Created on: 7 Mar 2006 13:05:09</p>\r\n"));
        QVERIFY(page.contains("<td>03/07/2006</td>\r\n"));
        QVERIFY(contentOf(m_picture).startsWith("\xff\xd8"));
        QCOMPARE(QFile::permissions(m_page) & QFile::WriteOther, QFile::Permissions());
        QVERIFY(QFile::permissions(m_page) & QFile::ReadOwner);
        QCOMPARE(m_grid.Row(), 2);
        QCOMPARE(m_grid.Col(), 12);
    }

    void optionsThatAreOffTouchNothing() {
        ReportSource plain = source();
        plain.options = {false, false, false, false};
        writeReport(m_page, true, plain);
        QCOMPARE(files(), QStringList{"report.html"});
        QCOMPARE(m_charts, 0);
        QCOMPARE(m_grid.Row(), 0);
        QCOMPARE(m_grid.Col(), 0);
    }

    void replacesOlderOnes() {
        writeFile(m_page, QByteArray(100000, 'x'));
        writeFile(m_picture, "older");
        QFile::setPermissions(m_page, QFile::ReadOwner | QFile::WriteOwner);
        write(m_page);
        QVERIFY(contentOf(m_page).endsWith("</body></html>\r\n"));
        QVERIFY(contentOf(m_picture).startsWith("\xff\xd8"));
        QVERIFY(!(QFile::permissions(m_page) & QFile::ReadOther));
        QCOMPARE(files().size(), 2);
    }

    void relativeNamesStartFromTheCurrentFolder() {
        const QString before = QDir::currentPath();
        QDir::setCurrent(m_folder.path());
        write(QStringLiteral("report.html"));
        QDir::setCurrent(before);
        QCOMPARE(files(), (QStringList{"graph.jpg", "report.html"}));
    }

    void hostileNames() {
        for (const char *utf8 : {"Müller %41 #?.html", "日本 \"x\".html", "'$HOME'.html"}) {
            write(m_folder.filePath(QString::fromUtf8(utf8)));
            QVERIFY(files().contains(QString::fromUtf8(utf8)));
        }
        const QString longest = QString(250, u'n') + QStringLiteral(".html");
        write(m_folder.filePath(longest));
        QVERIFY(files().contains(longest));
        QVERIFY(failureOf(m_folder.filePath(u'n' + longest)).contains("File name too long"));
        QCOMPARE(files().size(), 5);
    }

    void followsALink() {
        const QString target = m_folder.filePath(QStringLiteral("target.html"));
        writeFile(target, "older");
        QVERIFY(QFile::link(target, m_page));
        write(m_page);
        QVERIFY(QFileInfo(m_page).isSymLink());
        QVERIFY(contentOf(target).startsWith("<html>"));
    }

    void aFailureLeavesTheOlderOnes_data() {
        QTest::addColumn<int>("room");
        for (int room : {0, 1000, 5000})
            QTest::addRow("room for %d", room) << room;
    }
    void aFailureLeavesTheOlderOnes() {
        QFETCH(int, room);
        writeFile(m_page, "older page");
        writeFile(m_picture, "older picture");
        m_grid.setTextMatrix(0, 0, QString(10000, u'x'));
        QString text;
        {
            const FileSizeLimit limit(room);
            text = failureOf(m_page);
        }
        m_grid.setTextMatrix(0, 0, QString());
        QVERIFY2(text.contains(m_page) && text.contains(QStringLiteral("File too large")),
                 qPrintable(text));
        QCOMPARE(contentOf(m_page), "older page");
        QCOMPARE(contentOf(m_picture), "older picture");
        QCOMPARE(files().size(), 2);
        QCOMPARE(m_charts, 0);
    }

    void failuresNameFileAndReason() {
        const QString inMissing = m_folder.filePath(QStringLiteral("missing/report.html"));
        QVERIFY(failureOf(inMissing).contains(inMissing));
        QVERIFY(failureOf(inMissing).contains(QStringLiteral("No such file or directory")));
        QVERIFY(failureOf(m_folder.path()).contains(QStringLiteral("Is a directory")));
        QVERIFY(!failureOf(QStringLiteral("  ")).isEmpty());
        // A device is written, not replaced.
        QVERIFY(QFile::link(QStringLiteral("/dev/full"), m_page));
        QVERIFY(failureOf(m_page).contains(QStringLiteral("No space left on device")));
        QVERIFY(QFileInfo::exists(QStringLiteral("/dev/full")));
        QCOMPARE(files(), QStringList{"report.html"});
    }

    void aPageWithoutRightsKeepsItsPicture() {
        writeFile(m_page, "older page");
        writeFile(m_picture, "older picture");
        QFile::setPermissions(m_page, QFile::ReadOwner | QFile::ReadOther);
        // The folder lets everybody in, so that the page's own rights alone stand in the way.
        QCOMPARE(::chmod(QFile::encodeName(m_folder.path()).constData(), 0777), 0);
        QString text;
        {
            const AnotherUser user;
            QVERIFY(user.works());
            text = failureOf(m_page);
        }
        QVERIFY2(text.contains(QStringLiteral("Permission denied")), qPrintable(text));
        QCOMPARE(contentOf(m_page), "older page");
        QCOMPARE(contentOf(m_picture), "older picture");
        QCOMPARE(files().size(), 2);
    }

    void aFailedPictureIsToldAndThePageWritten() {
        DialogRecorder recorder;
        recorder.expectAnswer(Answer::Ok);
        m_chart = drawing::Picture();
        writeFile(m_picture, "older picture");
        write(m_page);
        QCOMPARE(recorder.boxes().size(), 1);
        QCOMPARE(recorder.boxes().first().style, 48);
        QCOMPARE(recorder.boxes().first().title, QStringLiteral("  Error Saving JPEG"));
        QCOMPARE(recorder.boxes().first().text,
                 QStringLiteral("The following error occured while trying to save the JPEG "
                                "file:\r\rError Number = -1\rError Description = No picture "
                                "loaded to save."));
        QVERIFY(contentOf(m_page).contains("<img src=\"graph.jpg\">"));
        QCOMPARE(contentOf(m_picture), "older picture");
    }

    void aPictureThatCannotTakeItsPlaceIsTold() {
        DialogRecorder recorder;
        recorder.expectAnswer(Answer::Ok);
        QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("graph.jpg")));
        write(m_page);
        QVERIFY(recorder.allUsed());
        QVERIFY(recorder.boxes().first().text.contains(QStringLiteral("Is a directory")));
        QCOMPARE(files(), QStringList{"report.html"});
    }
};

QTEST_GUILESS_MAIN(TestReportWriter)
#include "reportWriterTest.moc"
