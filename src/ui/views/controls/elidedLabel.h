// A plain-text label of one line, elided in the middle. The full text stays in its tooltip and its
// accessible name.
#pragma once

#include <QLabel>

namespace veltrona {

class ElidedLabel : public QLabel {
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    void setFullText(const QString &text);
    const QString &fullText() const { return m_fullText; }

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void elide();

    QString m_fullText;
};

} // namespace veltrona
