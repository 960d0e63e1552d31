#include "picture/cJPEG.h"

#include <QTest>

#include <set>
#include <vector>

using namespace veltrona;
using drawing::Picture;

namespace {

/// A bitmap whose pixels tell where they are: blue is x, green is y from the top, red is 200.
Picture markedBitmap(int width, int height) {
    std::vector<std::uint8_t> rows;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            rows.insert(rows.end(), {std::uint8_t(x), std::uint8_t(y), 200});
    }
    return Picture(drawing::createBitmap(width, height, rows.data(), width * 3));
}

/// Blue of a pixel, with `row` counted as it lies in memory.
int blue(const cJPEG &picture, int x, int row) {
    return picture.DIBSectionBitsPtr()[row * picture.BytesPerScanLine() + x * 3];
}

/// A picture of gray values, row by row as they lie in memory.
std::unique_ptr<cJPEG> grayPicture(int width, const QList<int> &values) {
    auto picture = std::make_unique<cJPEG>();
    picture->Create(width, int(values.size()) / width);
    for (int i = 0; i < values.size(); ++i) {
        std::uint8_t *pixel = picture->DIBSectionBitsPtr() +
                              (i / width) * picture->BytesPerScanLine() + (i % width) * 3;
        pixel[0] = pixel[1] = pixel[2] = std::uint8_t(values[i]);
    }
    return picture;
}

} // namespace

class TestCjpeg : public QObject {
    Q_OBJECT

private slots:
    void rowsArePaddedToFourBytes() {
        const int expected[] = {4, 8, 12, 12, 16};
        for (int width = 1; width <= 5; ++width) {
            cJPEG picture;
            QVERIFY(picture.Create(width, 1));
            QCOMPARE(picture.BytesPerScanLine(), expected[width - 1]);
        }
    }

    void takesACopyBottomUp() {
        cJPEG picture;
        Picture source = markedBitmap(3, 2);
        picture.CreateFromPicture(source);
        QVERIFY(picture.PictureLoaded());
        source = Picture();
        const std::vector<std::uint8_t> expected{0, 1, 200, 1, 1, 200, 2, 1, 200, 0, 0, 0,
                                                 0, 0, 200, 1, 0, 200, 2, 0, 200, 0, 0, 0};
        QCOMPARE(std::vector(picture.DIBSectionBitsPtr(), picture.DIBSectionBitsPtr() + 24),
                 expected);
    }

    void aSecondPictureFreesTheFirst() {
        cJPEG picture;
        picture.CreateFromPicture(markedBitmap(3, 2));
        const drawing::Handle dib = picture.hDib(), dc = picture.hDC();
        picture.CreateFromPicture(markedBitmap(5, 4));
        QVERIFY(!drawing::describeBitmap(dib));
        QVERIFY(!drawing::deleteDC(dc));
        QCOMPARE(picture.Width(), 5);
        QCOMPARE(picture.Height(), 4);
    }

    void clearsUp() {
        cJPEG picture;
        picture.ClearUp();
        picture.CreateFromPicture(markedBitmap(3, 2));
        const drawing::Handle dib = picture.hDib();
        picture.ClearUp();
        QVERIFY(!picture.PictureLoaded());
        QVERIFY(!drawing::describeBitmap(dib));
        QCOMPARE(picture.DIBSectionBitsPtr(), nullptr);
        QCOMPARE(picture.hDC(), 0U);
        QCOMPARE(picture.Width(), 3);
        QCOMPARE(picture.Height(), 2);
    }

    void refusesWhatIsNoBitmap() {
        cJPEG picture;
        picture.CreateFromPicture(markedBitmap(3, 2));
        picture.CreateFromPicture(Picture());
        QVERIFY(!picture.PictureLoaded());
        QVERIFY(!picture.Create(0, 5));
        QVERIFY(!picture.Create(5, -1));
        QVERIFY(!picture.Create(2000000000, 2000000000));
        QCOMPARE(picture.hDC(), 0U);
        // Nothing that works on the pixels may fall over a picture without any.
        picture.RandomiseBits(true);
        picture.PaintPicture(0);
        QVERIFY(!picture.CopyToClipboard());
        QVERIFY(picture.Resample(3, 3));
    }

    void transfersAreCutToBothBitmaps() {
        cJPEG source, target;
        source.CreateFromPicture(markedBitmap(4, 4));
        QVERIFY(target.Create(4, 4));
        source.PaintPicture(target.hDC(), 2, 1, 100, 2, 1, 0);
        // Memory row 2 is the second from the top.
        QCOMPARE(blue(target, 1, 2), 0);
        QCOMPARE(blue(target, 2, 2), 1);
        QCOMPARE(blue(target, 3, 2), 2);
        QCOMPARE(blue(target, 3, 0), 0);
        target.LoadPictureBlt(source.hDC(), -2, 3);
        QCOMPARE(blue(target, 2, 3), 0);
        QCOMPARE(blue(target, 3, 3), 1);
        // Overlapping: the whole picture one pixel down and right, onto itself.
        source.PaintPicture(source.hDC(), 1, 1);
        QCOMPARE(blue(source, 3, 0), 2);
        QCOMPARE(source.DIBSectionBitsPtr()[3 * 3 + 1], 2); // green: came from row 2
    }

    void rasterOperations_data() {
        QTest::addColumn<quint32>("operation");
        QTest::addColumn<int>("result");
        QTest::newRow("copy") << quint32(drawing::SRCCOPY) << 0b1100;
        QTest::newRow("or") << quint32(drawing::SRCPAINT) << 0b1110;
        QTest::newRow("and") << quint32(drawing::SRCAND) << 0b1000;
        QTest::newRow("xor") << quint32(drawing::SRCINVERT) << 0b0110;
        QTest::newRow("not") << quint32(drawing::DSTINVERT) << 0b11110101;
        QTest::newRow("black") << quint32(drawing::BLACKNESS) << 0;
        QTest::newRow("white pattern") << quint32(0x00F00021) << 0xFF;
        QTest::newRow("source and not target") << quint32(0x00440328) << 0b0100;
    }
    void rasterOperations() {
        QFETCH(quint32, operation);
        const auto source = grayPicture(1, {0b1100});
        const auto target = grayPicture(1, {0b1010});
        target->LoadPictureBlt(source->hDC(), 0, 0, -1, -1, operation);
        QTEST(blue(*target, 0, 0), "result");
    }

    void clipboardOwnsWhatItTakes() {
        cJPEG picture;
        picture.CreateFromPicture(markedBitmap(3, 2));
        drawing::Handle handed = 0;
        bool takes = true;
        drawing::setClipboard([&](drawing::Handle bitmap) {
            handed = bitmap;
            return takes;
        });
        QVERIFY(picture.CopyToClipboard());
        const Picture taken(handed);
        const auto view = drawing::describeBitmap(handed);
        QVERIFY(view);
        QCOMPARE(view->width, 3);
        QCOMPARE(view->bits[view->bytesPerRow + 6], 2); // top right
        takes = false;
        QVERIFY(!picture.CopyToClipboard());
        QVERIFY(handed != taken.Handle() && !drawing::describeBitmap(handed));
        drawing::setClipboard({});
        QVERIFY(!picture.CopyToClipboard());
    }

    void randomBits() {
        cJPEG picture;
        QVERIFY(picture.Create(50, 40));
        picture.RandomiseBits(true);
        std::set<int> values;
        for (int y = 0; y < 40; ++y) {
            const std::uint8_t *row = picture.DIBSectionBitsPtr() + y * 152;
            for (int x = 0; x < 50; ++x) {
                QVERIFY(row[x * 3] == row[x * 3 + 1] && row[x * 3] == row[x * 3 + 2]);
                values.insert(row[x * 3]);
            }
        }
        QVERIFY(values.size() > 200);
        picture.RandomiseBits(false);
        int equal = 0;
        for (int i = 0; i < 50; ++i) {
            const std::uint8_t *pixel = picture.DIBSectionBitsPtr() + 39 * 152 + i * 3;
            QCOMPARE(pixel[0], 0);
            equal += pixel[1] == pixel[2];
        }
        QVERIFY(equal < 25);
    }

    void resample_data() {
        QTest::addColumn<int>("sourceWidth");
        QTest::addColumn<QList<int>>("source");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QList<int>>("expected");
        // Scale 0.25 in both directions: the last column samples at 0.75, not at 1.
        QTest::newRow("2x2 to 4x4")
            << 2 << QList{0, 100, 200, 40} << 4 << 4
            << QList{0, 25, 50, 75, 50, 59, 68, 76, 100, 92, 85, 78, 150, 126, 102, 79};
        QTest::newRow("ties in x") << 2 << QList{0, 1, 1, 2} << 2 << 1 << QList{0, 0};
        QTest::newRow("ties in y") << 2 << QList{0, 1, 1, 2} << 1 << 2 << QList{0, 0};
        // At x 0.5, y 0.25: 2.25 becomes 2 before it meets 3.
        QTest::newRow("rounded between the steps")
            << 2 << QList{2, 3, 3, 3} << 2 << 4 << QList{2, 2, 2, 2, 2, 2, 3, 3};
        QTest::newRow("one pixel wide")
            << 1 << QList{10, 30} << 2 << 4 << QList{10, 10, 15, 15, 20, 20, 25, 25};
        QTest::newRow("one pixel high") << 2 << QList{10, 30} << 4 << 1 << QList{10, 15, 20, 25};
        QTest::newRow("one pixel") << 1 << QList{77} << 3 << 2 << QList{77, 77, 77, 77, 77, 77};
        QTest::newRow("same size") << 2 << QList{1, 2, 3, 4} << 2 << 2 << QList{1, 2, 3, 4};
        QTest::newRow("smaller") << 4 << QList{0, 10, 20, 255} << 2 << 1 << QList{0, 15};
    }
    void resample() {
        QFETCH(int, sourceWidth);
        QFETCH(QList<int>, source);
        QFETCH(int, width);
        QFETCH(int, height);
        const auto picture = grayPicture(sourceWidth, source);
        const auto scaled = picture->Resample(height, width);
        QVERIFY(scaled && !scaled->PictureLoaded());
        QList<int> values;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                values.append(blue(*scaled, x, y));
        }
        QTEST(values, "expected");
        QVERIFY(!picture->Resample(0, width));
    }
};

QTEST_APPLESS_MAIN(TestCjpeg)
#include "cJpegTest.moc"
