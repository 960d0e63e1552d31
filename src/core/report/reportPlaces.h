// Where the values lie in a report's file, as the writer handed it over: a name may look like
// markup, so nobody could find that out from the file afterwards. Places are counted in bytes.
#pragma once

#include <cstddef>
#include <vector>

namespace veltrona {

struct BytePlace {
    std::size_t begin = 0;
    std::size_t end = 0;
};

struct ReportRow {
    BytePlace place;            // from the row's start tag to behind its end tag
    std::size_t firstValue = 0; // an index of `values`
};

struct ReportPlaces {
    std::vector<BytePlace> values; // in the order of the file, as `references` and `rows` are
    /// Within values: characters that the code page lacks.
    std::vector<BytePlace> references;
    std::vector<ReportRow> rows; // of the statistics, without their headings
    std::size_t columns = 0;     // the values of each row
    /// Tells the file that was written from any other.
    std::size_t digest = 0;
};

} // namespace veltrona
