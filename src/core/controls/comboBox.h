// Data of a drop-down list with fixed entries. Setting `ListIndex` always runs `onClick`, also from
// code and when the index stays the same.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <utility>

namespace veltrona {

class ComboBox {
public:
    explicit ComboBox(QStringList items) : m_items(std::move(items)) {}

    const QStringList &items() const { return m_items; }
    /// -1 without a choice.
    int ListIndex() const { return m_index; }
    void setListIndex(int index) {
        m_index = index;
        if (onChange)
            onChange();
        if (onClick)
            onClick();
    }
    /// The chosen entry, or an empty text.
    QString Text() const { return m_items.value(m_index); }

    QString Tag;

    std::function<void()> onClick;  // set by the window
    std::function<void()> onChange; // set by the view; runs before onClick

private:
    QStringList m_items;
    int m_index = -1;
};

/// The entries of a combo that offers the rows of a table, but for those without a caption.
template<class Rows>
QStringList captionsOf(const Rows &rows) {
    QStringList captions;
    for (const auto &row : rows) {
        if (row.caption)
            captions += QLatin1String(row.caption);
    }
    return captions;
}

} // namespace veltrona
