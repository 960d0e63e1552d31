#include "picture/modJPEG.h"

#include "platform/jpeg/ijl.h"
#include "support/dialogRecorder.h"
#include "support/fileSizeLimit.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

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

class TestSaveJpeg : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    cJPEG m_picture;
    int m_number = 7;
    QString m_text = QStringLiteral("stale");

    QString path(const QString &name) const { return m_folder.filePath(name); }
    bool save(const QString &file, int quality = 85, bool prompt = false) {
        return modJPEG::saveJPEG(m_picture, file, quality, prompt, m_number, m_text);
    }
    static void load(cJPEG &picture, const QImage &image) {
        picture.CreateFromPicture(drawing::Picture(drawing::createBitmap(
            image.width(), image.height(), image.constBits(), image.bytesPerLine())));
    }
    static void write(const QString &file, const QByteArray &bytes) {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    QStringList files() const {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden);
    }

private slots:
    void init() {
        m_folder = QTemporaryDir();
        load(m_picture, colouredBlocks(101, 67));
    }

    void decodesToTheSamePicture_data() {
        QTest::addColumn<QSize>("size");
        for (int width : {64, 65, 66, 67})
            QTest::addRow("%d wide", width) << QSize(width, 35);
        QTest::newRow("one pixel") << QSize(1, 1);
    }
    void decodesToTheSamePicture() {
        QFETCH(QSize, size);
        const QImage original = colouredBlocks(size.width(), size.height());
        load(m_picture, original);
        QVERIFY(save(path(QStringLiteral("g.jpg"))));
        QCOMPARE(m_number, 0);
        QCOMPARE(m_text, QString());
        const QImage back(path(QStringLiteral("g.jpg")));
        QCOMPARE(back.size(), size);
        for (QPoint at : {QPoint(0, 0), QPoint(size.width() - 1, 0), QPoint(0, size.height() - 1),
                          QPoint(size.width() - 1, size.height() - 1)})
            QVERIFY(nearly(back.pixelColor(at), original.pixelColor(at)));
    }

    void qualityIsClamped() {
        QMap<int, qint64> sizes;
        m_picture.RandomiseBits(false);
        for (int quality : {-5, 0, 1, 85, 100, 101}) {
            QVERIFY(save(path(QStringLiteral("g.jpg")), quality));
            sizes[quality] = QFile(path(QStringLiteral("g.jpg"))).size();
        }
        QCOMPARE(sizes[0], sizes[1]);
        QCOMPARE(sizes[-5], sizes[1]);
        QCOMPARE(sizes[101], sizes[100]);
        QVERIFY(sizes[1] < sizes[85] && sizes[85] < sizes[100]);
    }

    void withoutAPictureNothingIsTouched() {
        const QString file = path(QStringLiteral("g.jpg"));
        write(file, "older");
        m_picture.ClearUp();
        QVERIFY(!save(file));
        QCOMPARE(m_number, -1);
        QCOMPARE(m_text, QStringLiteral("No picture loaded to save."));
        QCOMPARE(QFile(file).size(), 5);
    }

    void asksBeforeItReplaces() {
        const QString file = path(QStringLiteral("g.jpg"));
        write(file, "older");
        DialogRecorder recorder;
        recorder.expectAnswer(Answer::No);
        QVERIFY(save(file, 85, true));
        QCOMPARE(m_number, 0);
        QCOMPARE(QFile(file).size(), 5);
        QCOMPARE(recorder.boxes().first().style, 52);
        QCOMPARE(recorder.boxes().first().title, QStringLiteral("  Confirm File Overwrite"));
        QCOMPARE(recorder.boxes().first().text,
                 file + QStringLiteral("\rThis file already exists.\r\rReplace existing file?"));
        recorder.expectAnswer(Answer::Yes);
        QVERIFY(save(file, 85, true));
        QVERIFY(!QImage(file).isNull());
        QVERIFY(save(path(QStringLiteral("new.jpg")), 85, true)); // nothing there: no question
    }

    void hostileNames() {
        for (const char *utf8 : {"Müller \"x\" %41 #?.jpg", "日本.jpg", "'; rm -rf $HOME.jpg"}) {
            const QString name = QString::fromUtf8(utf8);
            QVERIFY2(save(path(name)), qPrintable(m_text));
            QVERIFY(files().contains(name));
        }
        QVERIFY(save(path(QString(251, u'n') + QStringLiteral(".jpg"))));
    }

    void failuresLeaveNoFile() {
        QVERIFY(!save(path(QStringLiteral("missing/g.jpg"))));
        QCOMPARE(m_number, -10);
        QCOMPARE(m_text, QStringLiteral("ijlWrite Error - Invalid file name"));
        QVERIFY(!save(path(QString(256, u'n'))));
        QCOMPARE(m_number, -10);
        QVERIFY(!save(m_folder.path()));
        QCOMPARE(m_number, -10);

        const QString file = path(QStringLiteral("g.jpg"));
        m_picture.RandomiseBits(false);
        for (rlim_t room : {0, 100, 4096, 6000}) {
            write(file, "older");
            const FileSizeLimit limit(room);
            QVERIFY(!save(file));
            QCOMPARE(m_number, -23);
            QCOMPARE(m_text, QStringLiteral("ijlWrite Error - File Error"));
            QVERIFY(files().isEmpty());
        }
        // A device that is always full stays where it is.
        QVERIFY(QFile::link(QStringLiteral("/dev/full"), path(QStringLiteral("full.jpg"))));
        QVERIFY(!save(path(QStringLiteral("full.jpg"))));
        QCOMPARE(m_number, -23);
        QVERIFY(QFile::exists(QStringLiteral("/dev/full")));
    }

    void pictureTooLargeForTheFormat() {
        QVERIFY(m_picture.Create(65600, 1));
        m_picture.setPictureLoaded(true);
        QVERIFY(!save(path(QStringLiteral("g.jpg"))));
        QCOMPARE(m_number, -8);
        QCOMPARE(m_text, QStringLiteral("ijlWrite Error - Invalid JPEG properties specified"));
        QVERIFY(files().isEmpty());
    }

    void codecReadsTopDownRowsToo() {
        const QImage image = colouredBlocks(64, 48);
        const QByteArray name = QFile::encodeName(path(QStringLiteral("g.jpg")));
        ijl::JPEG_CORE_PROPERTIES record;
        QCOMPARE(ijl::ijlInit(&record), 0);
        record.DIBBytes = image.constBits();
        record.DIBWidth = record.JPGWidth = 64;
        record.DIBHeight = record.JPGHeight = 48;
        record.JPGFile = name.constData();
        QCOMPARE(ijl::ijlWrite(&record, 7), -8);
        QCOMPARE(ijl::ijlWrite(&record, ijl::IJL_JFILE_WRITEWHOLEIMAGE), 0);
        QVERIFY(nearly(QImage(path(QStringLiteral("g.jpg"))).pixelColor(0, 0), Qt::red));
        record.JPGHeight = 47; // nothing is scaled here
        QCOMPARE(ijl::ijlWrite(&record, ijl::IJL_JFILE_WRITEWHOLEIMAGE), -8);
        QCOMPARE(ijl::ijlFree(&record), 0);
    }

    void errorTexts() {
        QCOMPARE(modJPEG::ijlErrorText(2), QString());
        QCOMPARE(modJPEG::ijlErrorText(-9),
                 QStringLiteral("An error occored while closing the file"));
        QCOMPARE(modJPEG::ijlErrorText(-27), QStringLiteral("Thumbnail - DIB Wrong Color"));
        QCOMPARE(modJPEG::ijlErrorText(-99), QStringLiteral("Reserved"));
        for (int code : {3, -28, -98, -100})
            QCOMPARE(modJPEG::ijlErrorText(code), QStringLiteral("Unknown Error"));
    }
};

QTEST_GUILESS_MAIN(TestSaveJpeg)
#include "saveJpegTest.moc"
