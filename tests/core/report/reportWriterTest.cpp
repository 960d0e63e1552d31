#include "core/report/reportWriter.h"

#include "core/picture/drawing.h"
#include "core/platform/services.h"
#include "support/dialogRecorder.h"
#include "support/faults.h"
#include "support/testFolder.h"

#include <QTest>

#include <vector>

using namespace veltrona;
using test::contents;
using test::DialogRecorder;

namespace {

drawing::Picture whitePicture(int width, int height) {
    const std::vector<std::uint8_t> white(std::size_t(width * height * 3), 255);
    return drawing::Picture(drawing::createBitmap(width, height, white.data(), width * 3));
}

} // namespace

class ReportWriterTest : public QObject, test::TestFolder {
    Q_OBJECT

    Grid m_grid{15};
    drawing::Picture m_chart;
    QString m_page;
    QString m_picture;

    ReportSource source() {
        ReportSource source;
        source.range = {dateValue(CalendarDay{2006, 3, 1}), dateValue(CalendarDay{2006, 3, 7})};
        source.grid = &m_grid;
        source.metric = "Clicks";
        source.copyChart = [this] { return &m_chart; };
        source.locale = QLocale::c();
        return source;
    }
    void write(const QString &file) { writeReport(file, true, source()); }
    /// The text of the failure, if any.
    QString failureText(const QString &file) {
        const auto failure = failureOf([&] { write(file); });
        return failure ? failure->text() : QString();
    }

private slots:
    void init() {
        renewFolder();
        m_page = path("report.html");
        m_picture = path("graph.jpg");
        m_grid.setRow(0);
        m_grid.setCol(0);
        m_chart = whitePicture(40, 30);
        services().now = [] { return QDateTime(QDate(2006, 3, 7), QTime(13, 5, 9)); };
    }
    void cleanup() { services().now = Services().now; }

    void writesPageAndPicture() {
        write("  " + m_page + " ");
        QCOMPARE(files(), (QStringList{"graph.jpg", "report.html"}));
        const QByteArray page = contents(m_page);
        QVERIFY(page.endsWith("</body></html>\r\n"));
        QVERIFY(page.contains("Created on: 7 Mar 2006 13:05:09</p>\r\n"));
        QVERIFY(page.contains("<td>03/07/2006</td>\r\n"));
        QVERIFY(contents(m_picture).startsWith("\xff\xd8"));
        QCOMPARE(QFile::permissions(m_page) & QFile::WriteOther, QFile::Permissions());
        QCOMPARE(m_grid.Row(), 2);
        QCOMPARE(m_grid.Col(), 12);
        ReportSource bare = source();
        bare.options.graph = false;
        writeReport(path("bare.html"), true, bare);
        QVERIFY(QFile::exists(m_picture)); // the other report's
    }

    void blankNamesAndFullDevicesAreReported() {
        QVERIFY(!failureText("  ").isEmpty());
        // A device is written, not replaced.
        QVERIFY(QFile::link("/dev/full", m_page));
        QVERIFY(failureText(m_page).contains("No space left on device"));
        QVERIFY(QFileInfo::exists("/dev/full"));
        QCOMPARE(files(), QStringList{"report.html"});
    }

    void aPageWithoutRightsKeepsItsPicture() {
        test::write(m_page, "older page");
        test::write(m_picture, "older picture");
        test::allow(m_page, 0404);
        // The folder is open to all, so that only the page's own permissions prevent it.
        test::allow(folder(), 0777);
        QString text;
        {
            const AnotherUser user;
            QVERIFY(user.works());
            text = failureText(m_page);
        }
        QVERIFY2(text.contains("Permission denied"), qPrintable(text));
        QCOMPARE(contents(m_page), "older page");
        QCOMPARE(contents(m_picture), "older picture");
        QCOMPARE(files().size(), 2);
    }

    void aFailedPictureIsReportedAndThePageWritten() {
        DialogRecorder recorder;
        recorder.expectAnswer(Answer::Ok);
        m_chart = drawing::Picture();
        test::write(m_picture, "older picture");
        write(m_page);
        QCOMPARE(recorder.boxes().size(), 1);
        QCOMPARE(recorder.boxes().first().title, "  Error Saving JPEG");
        QCOMPARE(recorder.boxes().first().text,
                 "The following error occured while trying to save the JPEG file:\r\r"
                 "Error Number = -1\rError Description = No picture loaded to save.");
        QCOMPARE(recorder.boxes().first().details,
                 "The picture \"" + m_picture + "\" wasn't written: No picture loaded to save.");
        QVERIFY(contents(m_page).contains("<img src=\"graph.jpg\">"));
        QCOMPARE(files(), QStringList{"report.html"}); // no picture of an older report
    }
};

QTEST_GUILESS_MAIN(ReportWriterTest)
#include "reportWriterTest.moc"
