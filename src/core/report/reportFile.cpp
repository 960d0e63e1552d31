#include "core/report/reportFile.h"

#include "core/base/failure.h"
#include "core/base/failureNumbers.h"
#include "core/report/reportText.h"

#include <QFile>

#include <algorithm>

namespace veltrona {

namespace {

/// The first of the places that doesn't begin before a byte.
auto firstFrom(const std::vector<BytePlace> &places, std::size_t begin) {
    return std::partition_point(places.begin(), places.end(),
                                [begin](const BytePlace &place) { return place.begin < begin; });
}

QByteArray contentOf(const QString &path) {
    QFile file(path);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (file.error() != QFile::NoError)
        throw Failure(
            file.error(),
            QStringLiteral("Can't read the report \"%1\": %2.").arg(path, file.errorString()));
    return bytes;
}

} // namespace

ReportFile::ReportFile(const QString &path, ReportPlaces places)
    : m_bytes(contentOf(path)), m_places(std::move(places)) {
    if (reportDigest({m_bytes.constData(), std::size_t(m_bytes.size())}) != m_places.digest)
        throw Failure(changedReport,
                      QStringLiteral("The report \"%1\" has been changed by another program "
                                     "since it was written. Close this window and print again.")
                          .arg(path));
}

const BytePlace &ReportFile::cellPlace(int row, int col) const {
    return m_places.values[m_places.rows[std::size_t(row)].firstValue + std::size_t(col)];
}

QByteArrayView ReportFile::bytes(BytePlace place) const {
    return QByteArrayView(m_bytes).sliced(qsizetype(place.begin),
                                          qsizetype(place.end - place.begin));
}

QString ReportFile::cell(int row, int col) const {
    return text(cellPlace(row, col));
}

bool ReportFile::isMarked(int row, int col) const {
    return bytes({0, cellPlace(row, col).begin}).endsWith(reportMark);
}

QString ReportFile::text(BytePlace value) const {
    QString text;
    std::size_t at = value.begin;
    for (auto found = firstFrom(m_places.references, value.begin);
         found != m_places.references.end() && found->end <= value.end; ++found) {
        text += textOfAnsi(bytes({at, found->begin}));
        text += QChar::fromUcs4(bytes({found->begin + 2, found->end - 1}).toUInt());
        at = found->end;
    }
    return text += textOfAnsi(bytes({at, value.end}));
}

QString ReportFile::html(const std::vector<int> &rows,
                         const std::function<QString(const QString &)> &shown) const {
    QString html;
    const auto append = [&](BytePlace piece) {
        for (auto value = firstFrom(m_places.values, piece.begin);
             value != m_places.values.end() && value->end <= piece.end; ++value) {
            html += textOfAnsi(bytes({piece.begin, value->begin}));
            html += shown(text(*value)).toHtmlEscaped();
            piece.begin = value->end;
        }
        html += textOfAnsi(bytes(piece));
    };
    const BytePlace whole{0, std::size_t(m_bytes.size())};
    if (m_places.rows.empty()) {
        append(whole);
        return html;
    }
    append({0, m_places.rows.front().place.begin});
    for (const int row : rows)
        append(m_places.rows[std::size_t(row)].place);
    append({m_places.rows.back().place.end, whole.end});
    return html;
}

} // namespace veltrona
