// Widths of texts without laying them out, in pixels.
#pragma once

#include <QFontMetricsF>
#include <QStringView>

#include <algorithm>
#include <array>

namespace veltrona {

struct TextWidths {
    float text = 0;
    float word = 0; // the widest
    bool areExact = true;
};

/// Adds up the widths of a text's characters: exact enough for Latin texts, and many times faster
/// than a layout.
class CharacterWidths {
public:
    explicit CharacterWidths(const QFont &font) : m_metrics(font) {}

    TextWidths of(QStringView text) {
        TextWidths widths;
        float wordBegin = 0;
        for (const QChar c : text) {
            if (c == u' ') {
                widths.word = std::max(widths.word, widths.text - wordBegin);
                wordBegin = widths.text + widthOf(c);
            }
            widths.text += widthOf(c);
            widths.areExact &= c < QChar(0x250);
        }
        widths.word = std::max(widths.word, widths.text - wordBegin);
        return widths;
    }

    /// An estimate of the lines that a text needs if it is wrapped between words.
    int lines(QStringView text, float width) {
        int lines = 1;
        float x = 0, word = 0;
        for (const QChar c : text) {
            x += widthOf(c);
            word = c == u' ' ? 0 : word + widthOf(c);
            if (x > width && c != u' ') {
                ++lines;
                word = x = word < width ? word : widthOf(c);
            }
        }
        return lines;
    }

private:
    float widthOf(QChar c) {
        float &width = m_widths[c.unicode()];
        if (width == 0)
            width = static_cast<float>(m_metrics.horizontalAdvance(c));
        return width;
    }

    QFontMetricsF m_metrics;
    std::array<float, 0x10000> m_widths{}; // 0 if not yet measured
};

} // namespace veltrona
