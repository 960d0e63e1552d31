#include "core/picture/cJPEG.h"

#include "support/dataTable.h"

#include <QTest>

#include <vector>

using namespace veltrona;
using drawing::Picture;

namespace {

/// A bitmap whose pixels hold their position: blue is x, green is y from the top, red is 200.
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

QList<int> blues(const cJPEG &picture) {
    QList<int> values;
    for (int row = 0; row < picture.Height(); ++row)
        for (int x = 0; x < picture.Width(); ++x)
            values.append(blue(picture, x, row));
    return values;
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

class CJpegTest : public QObject {
    Q_OBJECT

private slots:
    void refusesWhatIsNoBitmap() {
        cJPEG picture;
        picture.CreateFromPicture(markedBitmap(5, 2));
        const drawing::Handle dib = picture.hDib();
        picture.ClearUp();
        QVERIFY(!drawing::describeBitmap(dib));
        QCOMPARE(picture.Width(), 5); // the last size
        picture.CreateFromPicture(Picture());
        QVERIFY(!picture.PictureLoaded());
        QVERIFY(!picture.Create(0, 5));
        QVERIFY(!picture.Create(5, -1));
        QVERIFY(!picture.Create(2000000000, 2000000000));
        QCOMPARE(picture.hDC(), 0U);
    }

    // Bit for bit, of a source of 0011 over a target of 0101; the pattern is white.
    void rasterOperations_data() {
        const test::DataTable<unsigned, int, bool> row;
        row("SRCCOPY", drawing::SRCCOPY, 0x33, true);
        row("SRCPAINT", drawing::SRCPAINT, 0x77, true);
        row("SRCAND", drawing::SRCAND, 0x11, true);
        row("SRCINVERT", drawing::SRCINVERT, 0x66, true);
        row("source erased by the target", 0x440328u, 0x22, true);
        row("DSTINVERT", drawing::DSTINVERT, 0xAA, false);
        row("BLACKNESS", drawing::BLACKNESS, 0x00, false);
        row("WHITENESS", drawing::WHITENESS, 0xFF, false);
        row("pattern against the target", 0x5A0049u, 0xAA, false);
    }
    void rasterOperations() {
        const auto [operation, expected, usesSource] = test::row<unsigned, int, bool>();
        const auto source = grayPicture(1, {0x33});
        const auto target = grayPicture(1, {0x55});
        target->LoadPictureBlt(source->hDC(), 0, 0, -1, -1, operation);
        QCOMPARE(blue(*target, 0, 0), expected);
        const auto alone = grayPicture(1, {0x55});
        alone->LoadPictureBlt(0, 0, 0, -1, -1, operation);
        QCOMPARE(blue(*alone, 0, 0), usesSource ? 0x55 : expected);
    }

    void transfersSoFarAsBothReach() {
        cJPEG picture;
        picture.CreateFromPicture(markedBitmap(3, 2));
        const auto target = grayPicture(3, {9, 9, 9, 9, 9, 9});
        picture.PaintPicture(target->hDC(), -1, 1);
        QCOMPARE(blues(*target), QList<int>({1, 2, 9, 9, 9, 9}));
        // A picture may be copied over itself in any direction.
        const auto column = grayPicture(1, {1, 2, 3});
        column->PaintPicture(column->hDC(), 0, 1);
        QCOMPARE(blues(*column), QList<int>({2, 3, 3}));
        column->PaintPicture(column->hDC(), 0, -2);
        QCOMPARE(blues(*column), QList<int>({2, 3, 2}));
    }

    void resample_data() {
        using List = QList<int>;
        const test::DataTable<int, List, int, int, List> row;
        // Scale 0.25 in both directions: the last column samples at 0.75, not at 1.
        row("2x2 to 4x4", 2, {0, 100, 200, 40}, 4, 4,
            {0, 25, 50, 75, 50, 59, 68, 76, 100, 92, 85, 78, 150, 126, 102, 79});
        row("ties in x", 2, {0, 1, 1, 2}, 2, 1, {0, 0});
        row("ties in y", 2, {0, 1, 1, 2}, 1, 2, {0, 0});
        // At x 0.5, y 0.25: 2.25 becomes 2 before it meets 3.
        row("rounded between the steps", 2, {2, 3, 3, 3}, 2, 4, {2, 2, 2, 2, 2, 2, 3, 3});
        row("one pixel", 1, {77}, 3, 2, {77, 77, 77, 77, 77, 77});
    }
    void resample() {
        const auto [sourceWidth, source, width, height, expected] =
            test::row<int, QList<int>, int, int, QList<int>>();
        const auto picture = grayPicture(sourceWidth, source);
        const auto scaled = picture->Resample(height, width);
        QVERIFY(scaled && !scaled->PictureLoaded());
        QCOMPARE(blues(*scaled), expected);
        QVERIFY(!picture->Resample(0, width));
    }
};

QTEST_APPLESS_MAIN(CJpegTest)
#include "cJpegTest.moc"
