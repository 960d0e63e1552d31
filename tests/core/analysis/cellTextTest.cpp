// The conversions of cell texts, and the proof that rounding to 15 digits without a text gives
// exactly what the text gives.
#include "core/analysis/cellText.h"

#include "support/dataTable.h"

#include <QTest>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

using namespace veltrona;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The C library's text, less the zero in front of the point.
QByteArray plainText(double number) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15G", number == 0 ? 0.0 : number);
    QByteArray text(buffer);
    if (text.startsWith("0."))
        text.remove(0, 1);
    if (text.startsWith("-0."))
        text.remove(1, 1);
    return text;
}

/// How often the fast way and the plain texts differ around `number`, told once.
int differences(double number) {
    int count = 0;
    for (const double sign : {1.0, -1.0}) {
        for (const double towards : {number, 0.0, infinity}) {
            const double tried = sign * std::nextafter(number, towards);
            const QByteArray text = plainText(tried);
            const double expected = std::strtod(text.constData(), nullptr);
            if (toFifteenDigits(tried) == expected && numberText(tried) == QLatin1String(text))
                continue;
            if (count++ == 0)
                qWarning("%.17g: %.17g instead of %.17g, text %s instead of %s", tried,
                         toFifteenDigits(tried), expected, qPrintable(numberText(tried)),
                         text.constData());
        }
    }
    return count;
}

} // namespace

class CellTextTest : public QObject {
    Q_OBJECT
private slots:
    void numbers_data() {
        const test::DataTable<QString, double, double> table("text", "number", "percent");
        const auto row = [&](const char *text, double number, double percent) {
            table(text, text, number, percent);
        };
        row("", 0, 0);
        row(".5", .5, .5);
        row("1%2", 1, 12);
        row("%%-1%.%5%", 0, -1.5);
        row("1E-05", 1E-05, 1E-05);
        row("1E%2", 1, 100);
        row("1.2.3", 1.2, 1.2);
        row("--50%", 0, 0);
        row(" 5", 0, 0);
        row("1E999", 0, 0);
        row("-1E99999999999999999999", 0, 0);
        row("123456789012345678", 123456789012345678.0, 123456789012345678.0);
    }
    void numbers() {
        QFETCH(QString, text);
        const QByteArray utf8 = text.toUtf8();
        const std::string_view view(utf8.constData(), static_cast<std::size_t>(utf8.size()));
        QTEST(numberOfText(text), "number");
        QTEST(numberOfText(view), "number");
        QTEST(percentNumberOfText(text), "percent");
        QTEST(percentNumberOfText(view), "percent");
    }

    void rounding_data() {
        const test::DataTable<double, int, QString> table("number", "decimals", "text");
        const auto row = [&](double number, int decimals, const char *text) {
            table(QByteArray::number(number, 'g', 17), number, decimals, text);
        };
        row(1.115, 2, "1.12"); // as floats 111.5 and 101.49999999999999
        row(1.015, 2, "1.01");
        row(.125, 2, ".12");
        row(-.004, 2, "0");
        row(2.35, 1, "2.4");
        row(1E300, 22, "1E+300");
        row(1.7E308, 2, "1.7E+308");
    }
    void rounding() {
        QFETCH(double, number);
        QFETCH(int, decimals);
        QTEST(numberText(roundHalfToEven(number, decimals)), "text");
    }

    void fifteenDigits_data() {
        using Random = std::mt19937_64;
        const test::DataTable<std::function<double(Random &)>> row("make");
        const auto between = [](Random &random, double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(random);
        };
        row("any magnitude", [=](Random &random) {
            return std::ldexp(between(random, 1, 2), static_cast<int>(random() % 2098) - 1074);
        });
        row("around the fast way's ends", [=](Random &random) {
            return between(random, .5, 2) * (random() % 2 ? 0x1p-26 : 1E15);
        });
        row("sums of money", [=](Random &random) {
            return static_cast<double>(random() % 100'000'000'000) / 1'000'000 +
                   between(random, 0, 1E-9);
        });
        // n / 2^(k + 1) with n odd is m + 0.5, m of 15 digits, once it is scaled by 10^k.
        row("ties", [=](Random &random) {
            const int k = static_cast<int>(random() % 20);
            const double low = 2E14 / std::pow(5, k);
            const double odd = 2 * std::floor(between(random, low, 10 * low) / 2) + 1;
            return std::ldexp(odd, -k - 1);
        });
        row("decimals that end in a tie", [](Random &random) {
            const auto digits = 100'000'000'000'000 + random() % 900'000'000'000'000;
            return QByteArray(QByteArray::number(digits) + "5E" +
                              QByteArray::number(static_cast<int>(random() % 25) - 24))
                .toDouble();
        });
        row("carries", [](Random &random) {
            return (1 - std::ldexp(static_cast<double>(random() % 64), -54)) *
                   std::pow(10, static_cast<int>(random() % 40) - 20);
        });
    }
    void fifteenDigits() {
        QFETCH(std::function<double(std::mt19937_64 &)>, make);
        std::mt19937_64 random(20070514);
        int wrong = 0;
        for (int i = 0; i < 20'000; ++i)
            wrong += differences(make(random));
        QCOMPARE(wrong, 0);
    }
};

QTEST_APPLESS_MAIN(CellTextTest)
#include "cellTextTest.moc"
