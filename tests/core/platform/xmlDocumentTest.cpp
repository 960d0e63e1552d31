#include "core/platform/xml/document.h"

#include "support/dataTable.h"
#include "support/testFolder.h"

#include <QtTest>

#include <sys/stat.h>

using namespace veltrona;
using xml::Document;
using xml::NodeReader;

namespace {

/// "<name a=[value]" for each element with its line in front, ")" for each end of a child list.
QString dump(const Document &document) {
    QStringList steps;
    NodeReader walk = document.nodes();
    for (auto step = walk.next(); step != NodeReader::Step::End; step = walk.next()) {
        if (step == NodeReader::Step::ListEnd) {
            steps += QStringLiteral(")");
            continue;
        }
        QString text = QStringLiteral("%1<").arg(walk.line()) +
                       QString::fromUtf8(walk.name().data(), qsizetype(walk.name().size()));
        for (const xml::Attribute &attribute : walk.attributes()) {
            text += QLatin1Char(' ') + QString::fromStdString(std::string(attribute.name)) +
                    QStringLiteral("=[") + QString::fromStdString(std::string(attribute.value)) +
                    QLatin1Char(']');
        }
        steps += text;
    }
    return steps.join(QLatin1Char(' '));
}

QByteArray repeated(const QByteArray &text, int times) {
    return text.repeated(times);
}

QByteArray utf16(const QString &text) {
    return QByteArray("\xFF\xFE") +
           QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

} // namespace

class XmlDocumentTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString write(const QByteArray &content, const QString &name = QStringLiteral("r.xml")) {
        return test::write(m_folder.filePath(name), content);
    }

private slots:
    void walksInDocumentOrder_data() {
        const test::DataTable<QByteArray, QString> row;
        row("children", "<r><a><b/></a><c/></r><!-- after -->", "1<r 1<a 1<b ) 1<c ) )");
        row("other nodes are",
            "<r><a>x</a><a><!-- --></a><a><?p?></a><a><![CDATA[]]></a><a>&#65;</a></r>",
            "1<r 1<a ) 1<a ) 1<a ) 1<a ) 1<a ) ) )");
        row("qualified names", "<g:r xmlns:g='u' g:a='1' a='2'><h:row/></g:r>",
            "1<g:r g:a=[1] a=[2] 1<h:row ) )");
        row("values", "<r><x a='&lt;b&gt; &amp;amp; &#x20AC;&#10;' b='\t\n'/></r>",
            "1<r 1<x a=[<b> &amp; \u20AC\n] b=[  ] ) )");
        row("entities of text",
            "<!DOCTYPE r [<!ENTITY x 'Tom &amp; Jo'>]><r a='[&x;]'><b>&x;</b></r>",
            "1<r a=[[Tom & Jo]] 1<b ) ) )");
        row("a line where a tag begins",
            "<?xml version='1.0'?>\n<r>\n <row\n a='1'\n b='2'/>\n<!-- \n--><row/>x\n<row\n/></r>",
            "2<r 3<row a=[1] b=[2] 7<row 8<row ) )");
        row("lines beyond 16 bits", "<r>" + repeated("\n", 70000) + "<row/></r>",
            "1<r 70001<row ) )");
        row("UTF-8 with a mark", "\xEF\xBB\xBF<r a='\xC3\xA4'/>", "1<r a=[\u00E4] )");
        row("windows-1252", "<?xml version='1.0' encoding='windows-1252'?><r a='\x80\xE4'/>",
            "1<r a=[\u20AC\u00E4] )");
        row("UTF-16", utf16("<r a='\u20AC\U0001F600'/>"), "1<r a=[\u20AC\U0001F600] )");
        row("256 deep", repeated("<a>", 256) + repeated("</a>", 256),
            repeated("1<a ", 256) + repeated(") ", 255) + ')');
    }
    void walksInDocumentOrder() {
        const auto [content, steps] = test::row<QByteArray, QString>();
        Document document;
        QVERIFY2(document.load(write(content)), qPrintable(document.parseError().reason));
        QCOMPARE(dump(document), steps);
        QCOMPARE(document.parseError().errorCode, 0);
        QVERIFY(document.refusal().isEmpty());
    }

    void tellsWhereAFileBreaks_data() {
        const test::DataTable<QByteArray, qint64, qint64, qint64, QString> table;
        const QString text = QStringLiteral("<?xml version='1.0' encoding='%1'?>\n<r>\n"
                                            "<a n='\u00C4 5 \u20AC'></c>\n</r>");
        const QString source = QStringLiteral("<a n='\u00C4 5 \u20AC'></c>");
        const auto row = [&](const char *name, const QByteArray &content, int offset) {
            table(name, content, 3, 18, offset, source);
        };
        const QByteArray ascii =
            QStringLiteral("<?xml version='1.0' encoding='%1'?>\n<r>\n").toLatin1();
        const auto start = [&](const char *encoding) {
            return static_cast<int>(ascii.size() - 2 + qsizetype(qstrlen(encoding)));
        };
        row("UTF-8", text.arg(QStringLiteral("UTF-8")).toUtf8(), start("UTF-8") + 17 + 3);
        row("UTF-16", utf16(text.arg(QStringLiteral("UTF-16"))), 2 + 2 * (start("UTF-16") + 17));
        QByteArray western = text.arg(QStringLiteral("windows-1252")).toUtf8();
        western.replace("\xE2\x82\xAC", "\x80").replace("\xC3\x84", "\xC4");
        row("windows-1252", western, start("windows-1252") + 17);
        table("a long line is cut", "<r>" + repeated("<a b='1'/>", 1000) + "</x>", 1, 10008, 10007,
              "..." + repeated("<a b='1'/>", 16).right(156) + "</x>");
    }
    void tellsWhereAFileBreaks() {
        const auto [content, line, position, offset, source] =
            test::row<QByteArray, qint64, qint64, qint64, QString>();
        Document document;
        const QString path = write(content);
        QVERIFY(!document.load(path));
        const xml::ParseError &error = document.parseError();
        QCOMPARE(error.errorCode, 76); // tags that don't match
        QVERIFY(error.reason.startsWith(QStringLiteral("Opening and ending tag mismatch")));
        QVERIFY(error.reason.endsWith(QStringLiteral("\r\n")));
        QCOMPARE(error.line, line);
        QCOMPARE(error.linepos, position);
        QCOMPARE(error.filepos, offset);
        QCOMPARE(error.srcText, source);
        QCOMPARE(error.url, path);
    }

    // Whether the byte lies in what the parser fetches first, later, or after more than one chunk.
    void findsTheByteThatACodePageLacks_data() {
        const test::DataTable<QByteArray, QByteArray, int> row;
        row("first", "windows-1252", "\x9D", 60);
        row("later", "windows-1252", "\x9D", 1000);
        row("far", "windows-1252", "\x9D", 50000);
        row("of two", "Shift_JIS", "\x81\xFF", 1000);
    }
    void findsTheByteThatACodePageLacks() {
        const auto [encoding, byte, lines] = test::row<QByteArray, QByteArray, int>();
        const QByteArray start = "<?xml version='1.0' encoding='" + encoding + "'?><r>\n";
        Document document;
        QVERIFY(!document.load(
            write(start + repeated("<a/>\n", lines) + "<b c='" + byte + "x'/>\n</r>")));
        const xml::ParseError &error = document.parseError();
        QVERIFY(error.reason.contains("conversion failed"));
        QCOMPARE(error.line, 1 + lines + 1);
        QCOMPARE(error.linepos, 7);
        QCOMPARE(int(error.filepos), int(start.size()) + 5 * lines + 6);
        QVERIFY2(error.srcText.startsWith("<b c='"), qPrintable(error.srcText));
    }

    // Rows of 0 bytes stand for rows of random lengths.
    void takesRowsOfAnyLength_data() {
        const test::DataTable<int> row;
        row("2000", 2000);
        row("8000", 8000);
        row("200,000", 200'000);
        row("any", 0);
    }
    void takesRowsOfAnyLength() {
        const auto [length] = test::row<int>();
        for (const int offset : {0, 333}) {
            QByteArray content = "<r b='" + repeated("x", offset) + "'>";
            QRandomGenerator random(static_cast<quint32>(offset));
            while (content.size() < 11'000'000) {
                const int size = length > 0 ? length : random.bounded(11, 20'000);
                content += "<row a='" + repeated("x", size - 11) + "'/>";
            }
            Document document;
            QVERIFY2(document.load(write(content + "</r>")),
                     qPrintable(document.parseError().reason));
        }
    }

    void takesAsMuchAsAReportCouldNeed_data() {
        const test::DataTable<QByteArray, QByteArray, QByteArray, int, QString>
            row; // # in a piece is its number
        row("attributes", "<r ", "a#='' ", "/>", 256, "more than 256 attributes");
        row("namespaces", "<r ", "xmlns:a#='u' ", "><a/></r>", 256, "256 namespaces");
        row("defaults", "<!DOCTYPE r [<!ATTLIST a ", "a# CDATA '' ", ">]><r/>", 100,
            "100 default attributes");
        row("entities", "<!DOCTYPE r [", "<!ENTITY e# 'x'>", "]><r/>", 1000, "1000 entities");
    }
    void takesAsMuchAsAReportCouldNeed() {
        const auto [start, piece, end, most, reason] =
            test::row<QByteArray, QByteArray, QByteArray, int, QString>();
        QByteArray all = start;
        for (int i = 0; i < most; ++i)
            all += QByteArray(piece).replace('#', QByteArray::number(i));
        Document document;
        QVERIFY(document.load(write(all + end)));
        QVERIFY(!document.load(write(all + QByteArray(piece).replace('#', "x") + end)));
        QVERIFY2(document.parseError().reason.contains(reason),
                 qPrintable(document.parseError().reason));
    }

    void refusesBrokenAndHostileFiles_data() {
        const test::DataTable<QByteArray, QString> row; // a part of it
        row("empty", "", "The file is empty.");
        row("a NUL", QByteArray(1, '\0'), "The file holds no XML document.");
        row("UTF-32", QByteArray("\xFF\xFE\0\0<\0\0\0r\0\0\0/\0\0\0>\0\0\0", 20),
            "The file is in UTF-32, which can't be read. Save it in UTF-8.");
        row("a long name", "<" + repeated("x", 10'100'000) + "/>", "longer than 10,000,000 bytes");
        row("cut off", "<r><row a='1'/><row a='", "AttValue");
        row("NUL after the root", QByteArray("<r/>\0<r/>", 9), "Extra content");
        row("bad UTF-8", "<r a='\xE4'/>", "not proper UTF-8");
        row("half a UTF-16 pair after the root",
            utf16(QStringLiteral("<r/>")) + QByteArray("\0\xD8 \0", 4), "conversion failed");
        row("an undeclared entity", "<r>&x;</r>", "not defined");
        row("an external entity in a value",
            "<!DOCTYPE r [<!ENTITY x SYSTEM 'secret.txt'>]><r a='&x;'/>", "external entity");
        row("257 deep", repeated("<a>", 257) + repeated("</a>", 257), "256 deep");
        row("a large entity many times in content",
            "<!DOCTYPE r [<!ENTITY x '" + repeated("x", 100000) + "'>]><r>" +
                repeated("&x;", 30000) + "</r>",
            "Entities");
        row("a small one many times in values",
            "<!DOCTYPE r [<!ENTITY x '" + repeated("x", 80) + "'>]><r>" +
                repeated("<a b='&x;'/>", 10000) + "</r>",
            "Entities");
        QByteArray names = "<r>";
        QByteArray attributes = "<r ";
        QByteArray namespaces = "<!DOCTYPE r [<!ATTLIST a ";
        for (int i = 0; i < 60000; ++i) {
            names += "<a" + QByteArray::number(i) + "/>";
            attributes += "a" + QByteArray::number(i) + "='' ";
            if (i < 100)
                namespaces += "xmlns:a" + QByteArray::number(i) + " CDATA 'u' ";
        }
        row("a multitude of names", names + "</r>", "too many different names");
        row("a tag without end", attributes, "more than 256 attributes");
        row("default namespaces", namespaces + ">]><r>" + repeated("<a/>", 10000) + "</r>",
            "default attributes make the file too large");
        row("a small entity many times in content",
            "<!DOCTYPE r [<!ENTITY x 'x'>]><r>" + repeated("&x;", 30000) + "</r>", "Entities");
    }
    void refusesBrokenAndHostileFiles() {
        const auto [content, reason] = test::row<QByteArray, QString>();
        Document document;
        QVERIFY(!document.load(write(content)));
        QVERIFY(document.parseError().errorCode != 0);
        QVERIFY2(document.parseError().reason.contains(reason),
                 qPrintable(document.parseError().reason));
    }

    void refusesWhatItCannotWalk_data() {
        const test::DataTable<QByteArray, bool> row;
        const QByteArray start = "<!DOCTYPE r [<!ENTITY y '<row/>'><!ENTITY x '&y;'>"
                                 "<!ENTITY n '<!-- -->'><!ENTITY f SYSTEM 'secret.txt'>]>";
        row("declared alone", start + "<r/>", false);
        row("element inside another", start + "<r><a>&x;</a></r>", true);
        row("comment", start + "<r>&n;</r>", true);
        row("another file", start + "<r>&f;</r>", true);
    }
    void refusesWhatItCannotWalk() {
        const auto [content, refused] = test::row<QByteArray, bool>();
        write("<row secret='1'/>", QStringLiteral("secret.txt"));
        Document document;
        QVERIFY(document.load(write(content)));
        QCOMPARE(!document.refusal().isEmpty(), refused);
        QVERIFY(!dump(document).contains(QStringLiteral("row")));
        // A broken file is told as such, whatever else it holds.
        QVERIFY(!document.load(write(content + "<r/>")));
    }

    void readsPlainFilesOnly() {
        const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const QString missing = m_folder.filePath(QStringLiteral("missing.xml"));
        for (const QString &path :
             {missing, m_folder.path(), pipe, QStringLiteral("/dev/zero"), QString()}) {
            Document document;
            QVERIFY(!document.load(path));
            QVERIFY(document.parseError().errorCode != 0);
            QVERIFY(!document.parseError().reason.contains("Invalid argument"));
            QCOMPARE(document.parseError().line, 0);
            QCOMPARE(document.parseError().url, path);
        }
        const QString odd = QStringLiteral("O'Neil & M\u00FCller %1 <b>.xml");
        Document document;
        QVERIFY(document.load(write("<r/>", odd)));
    }

    void staysAboutAsSmallAsTheFile() {
        Document document;
        for (const char *piece : {"<a/>", "<row a='' b='12345'/>", "<a>x</a>"}) {
            const QByteArray content = "<r>" + repeated(piece, 100000) + "</r>";
            QVERIFY(document.load(write(content)));
            QVERIFY(document.byteCount() < 2 * std::size_t(content.size()));
        }
    }
};

QTEST_APPLESS_MAIN(XmlDocumentTest)
#include "xmlDocumentTest.moc"
