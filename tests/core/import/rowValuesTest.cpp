#include "core/import/rowValues.h"
#include "core/base/blanks.h"
#include "support/dataTable.h"

#include <QtTest>

#include <limits>

using namespace veltrona;

class RowValuesTest : public QObject {
    Q_OBJECT

private slots:
    void readsDates_data() {
        const test::DataTable<QString, QString> table("text", "date");
        const auto row = [&](const QByteArray &text, const char *date) { table(text, text, date); };
        for (const char *text : {"2007-05-14", "2007/05/14", "5/14/2007", "05/14/2007",
                                 "14.05.2007", "May 14, 2007", "14 May 2007", "14 MAY 2007"})
            row(text, "2007-05-14");
        row("Sep 5, 2007", "2007-09-05");
        row("2007-05-14 00:00", "2007-05-14");
        row("2007-05-14T13:05", "2007-05-14 13:05:00");
        row("5/14/2007 1:05:09 PM", "2007-05-14 13:05:09");
        row("14.05.2007 12:30am", "2007-05-14 00:30:00");
        row("May 14, 2007 23:59:59", "2007-05-14 23:59:59");
        row("2008-02-29", "2008-02-29");
        const QByteArrayList refused =
            QByteArray("|x|2007-02-29|1900-02-29|1752-09-13|0000-01-01|2007-13-01|14/5/2007|"
                       "2007-05|07-05-14|5/14/07|14-05-2007|2007.05.14|2007-05/14|20070514|"
                       "12007-05-14|May 2007|Mai 14, 2007|May 14 2007|14 M 2007|"
                       "2007-05-14 24:00|2007-05-14 12:60|2007-05-14 12:00:60|"
                       "2007-05-14 13:00 PM|2007-05-14 0:30 AM|2007-05-14 12:00:00.5|"
                       "2007-05-14T12:00Z|2007-05-14 12:00+01|2007-05-14 12|2007-05-14 12:00 x|"
                       "2007-05-14x|2007-05-14 |99999999999999999999-01-01|"
                       "2007-05-14'; DROP TABLE tblGoogleDays;--")
                .split('|');
        for (const QByteArray &text : refused)
            row(text, "");
    }
    void readsDates() {
        QFETCH(QString, text);
        const std::optional<RowDate> date = readDate(text.toStdString());
        QTEST(QString::fromStdString(date ? date->text : std::string()), "date");
    }

    void worksOutMonthAndWeek_data() {
        const test::DataTable<QString, QString> row("month", "week");
        row("2007-05-02", "2007 05", "2007 18");
        row("2006-01-01", "2006 01", "2006 01"); // a Sunday
        row("2005-01-01", "2005 01", "2005 01"); // a Saturday
        row("2007-03-01", "2007 03", "2007 09"); // the year begins on a Monday
        row("2005-12-31", "2005 12", "2005 53");
        row("2000-12-31", "2000 12", "2000 54"); // a Sunday in a leap year
    }
    void worksOutMonthAndWeek() {
        const std::optional<RowDate> date = readDate(QTest::currentDataTag());
        QVERIFY(date);
        QTEST(QString::fromStdString(date->month), "month");
        QTEST(QString::fromStdString(date->week), "week");
    }

    void readsNumbers_data() {
        QTest::addColumn<qint64>("whole");
        QTest::addColumn<double>("decimal");
        const auto whole = [](const char *text, qint64 number) {
            QTest::newRow(text) << number << std::numeric_limits<double>::quiet_NaN();
        };
        const auto decimal = [](const char *text, double number) {
            QTest::newRow(text) << qint64(0) << number;
        };
        whole("0", 0);
        whole("+5", 5);
        whole("123456789012345678", 123456789012345678);
        whole("9223372036854775807", std::numeric_limits<qint64>::max());
        whole("-9223372036854775808", std::numeric_limits<qint64>::min());
        decimal(".5", 0.5);
        decimal("-0.25", -0.25);
        decimal("+1.5E-3", 0.0015);
        decimal("0.123456789012345", 0.123456789012345);
        decimal("1e308", 1e308);
        decimal("0.000000000000000000001e-99999999999999999999", 0);
    }
    void readsNumbers() {
        QFETCH(qint64, whole);
        QFETCH(double, decimal);
        const std::optional<RowNumber> number = readNumber(QTest::currentDataTag());
        QVERIFY(number);
        QCOMPARE(std::holds_alternative<qint64>(*number), qIsNaN(decimal));
        if (qIsNaN(decimal))
            QCOMPARE(std::get<qint64>(*number), whole);
        else
            QCOMPARE(std::get<double>(*number), decimal);
    }

    void refusesOtherTexts() {
        const QByteArrayList refused =
            QByteArray("|+|-|.|e5|1e|1e+|--1|+-1|1 000|1,5|1.2.3|5%|0x10|inf|nan|-inf|1e309|"
                       "-1e309|1e99999999999999999999|10.e308|9223372036854775808|1f|5\n|"
                       "\xD9\xA3|0); DELETE FROM tblGoogleDays;--")
                .split('|');
        for (const QByteArray &text : refused)
            QVERIFY2(!readNumber(text.toStdString()), text);
    }

    void cutsBlanksOnly() {
        QCOMPARE(withoutBlanks("  a b  "), std::string_view("a b"));
        QCOMPARE(withoutBlanks("   "), std::string_view());
        QCOMPARE(withoutBlanks(" \ta\n\xC2\xA0 "), std::string_view("\ta\n\xC2\xA0"));
    }
};

QTEST_APPLESS_MAIN(RowValuesTest)
#include "rowValuesTest.moc"
