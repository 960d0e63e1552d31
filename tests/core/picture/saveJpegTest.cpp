#include "core/picture/modJPEG.h"

#include "core/picture/ijl.h"
#include "support/dialogRecorder.h"
#include "support/faults.h"
#include "support/testFolder.h"

#include <QImage>
#include <QTest>

#include <sys/stat.h>

using namespace veltrona;
using test::DialogRecorder;
using test::FileSizeLimit;

namespace {

/// White, with a red block at the top left, a green one top right, a blue one bottom left.
QImage colouredBlocks(int width, int height) {
    QImage image(width, height, QImage::Format_BGR888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool left = x < width / 2, top = y < height / 2;
            image.setPixelColor(x, y,
                                top ? (left ? Qt::red : Qt::green) : (left ? Qt::blue : Qt::white));
        }
    }
    return image;
}

bool nearly(QColor one, QColor other) {
    return qAbs(one.red() - other.red()) < 12 && qAbs(one.green() - other.green()) < 12 &&
           qAbs(one.blue() - other.blue()) < 12;
}

} // namespace

class SaveJpegTest : public QObject, test::TestFolder {
    Q_OBJECT

    cJPEG m_picture;
    int m_number = 7;
    QString m_text = "stale";
    QString m_reason;

    bool save(const QString &file, int quality = 85, bool prompt = false) {
        return modJPEG::saveJPEG(m_picture, file, quality, prompt, m_number, m_text, &m_reason);
    }
    static void load(cJPEG &picture, const QImage &image) {
        picture.CreateFromPicture(drawing::Picture(drawing::createBitmap(
            image.width(), image.height(), image.constBits(), image.bytesPerLine())));
    }

private slots:
    void init() {
        renewFolder();
        load(m_picture, colouredBlocks(101, 67));
    }

    void decodesToTheSamePicture() {
        for (const QSize size : {QSize(64, 35), QSize(65, 35), QSize(66, 35), QSize(1, 1)}) {
            const QImage original = colouredBlocks(size.width(), size.height());
            load(m_picture, original);
            QVERIFY(save(path("g.jpg")));
            QCOMPARE(m_number, 0);
            QCOMPARE(m_text, QString());
            const QImage back(path("g.jpg"));
            QCOMPARE(back.size(), size);
            const QRect corners = back.rect();
            for (const QPoint at : {corners.topLeft(), corners.topRight(), corners.bottomLeft(),
                                    corners.bottomRight()})
                QVERIFY(nearly(back.pixelColor(at), original.pixelColor(at)));
        }
    }

    void asksBeforeItReplaces() {
        const QString file = path("g.jpg");
        test::write(file, "older");
        DialogRecorder recorder;
        recorder.expectAnswer(Answer::No);
        QVERIFY(save(file, 85, true));
        QCOMPARE(m_number, 0);
        QCOMPARE(QFile(file).size(), 5);
        QCOMPARE(recorder.boxes().first().title, "  Confirm File Overwrite");
        QCOMPARE(recorder.boxes().first().text,
                 file + "\rThis file already exists.\r\rReplace existing file?");
        recorder.expectAnswer(Answer::Yes);
        QVERIFY(save(file, 85, true));
        QVERIFY(!QImage(file).isNull());
        QVERIFY(save(path("new.jpg"), 85, true)); // nothing there: no question
    }

    void wordsOfTheCodec() {
        QCOMPARE(modJPEG::ijlErrorText(-9), "An error occored while closing the file");
        QCOMPARE(modJPEG::ijlErrorText(-98), "Unknown Error");
    }

    void failuresLeaveNoFile() {
        QVERIFY(!save(path("missing/g.jpg")));
        QCOMPARE(m_number, -10);
        QCOMPARE(m_text, "ijlWrite Error - Invalid file name");
        QCOMPARE(m_reason, "No such file or directory");
        QVERIFY(!save(folder()));
        QCOMPARE(m_number, -10);

        const QString file = path("g.jpg");
        m_picture.RandomiseBits(false);
        for (const rlim_t room : {rlim_t(0), rlim_t(6000)}) {
            test::write(file, "older");
            const FileSizeLimit limit(room);
            QVERIFY(!save(file));
            QCOMPARE(m_number, -23);
            QCOMPARE(m_text, "ijlWrite Error - File Error");
            QVERIFY(files().isEmpty());
        }
        QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
        QVERIFY(!save(path("pipe"))); // nobody reads it
        QCOMPARE(m_number, -23);
        // A device that is always full stays where it is.
        QVERIFY(QFile::link("/dev/full", path("full.jpg")));
        QVERIFY(!save(path("full.jpg")));
        QCOMPARE(m_number, -23);
        QVERIFY(QFile::exists("/dev/full"));
    }
};

QTEST_GUILESS_MAIN(SaveJpegTest)
#include "saveJpegTest.moc"
