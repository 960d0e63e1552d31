#include "ui/views/letterStyle.h"

#include "ui/views/icons.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QImage>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>
#include <QWidget>

#include <cmath>

namespace veltrona {

namespace {

constexpr double usualResolution = 96;

/// From the sizes that styles fix for the screen's resolution to those that go with the letters.
double growthOf(const QWidget &widget) {
    const double resolution =
        usualResolution * smallIconPixels(widget.fontMetrics()) / usualIconPixels;
    return resolution / widget.logicalDpiY();
}

/// Some styles draw everything large, and don't expect it larger.
bool drawsSmall(const QWidget &widget) {
    const int indicator =
        QApplication::style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &widget);
    return indicator < usualIconPixels * widget.logicalDpiY() / usualResolution;
}

/// Styles take the screen's resolution, to which they fit what they draw, from an option's font
/// metrics: here it is one at which their sizes go with the letters.
class LetterStyle : public QProxyStyle {
public:
    explicit LetterStyle(const QWidget &control)
        : QProxyStyle(QStyleFactory::create(QApplication::style()->name())),
          m_growth(growthOf(control)), m_metrics(control.fontMetrics()) {
        constexpr double inchesPerMeter = 1000 / 25.4;
        const double perInch = control.logicalDpiY() * m_growth;
        QImage finer(1, 1, QImage::Format_RGB32);
        finer.setDotsPerMeterX(static_cast<int>(std::lround(perInch * inchesPerMeter)));
        finer.setDotsPerMeterY(finer.dotsPerMeterX());
        QFont font = control.font();
        font.setPixelSize(QFontInfo(font).pixelSize());
        m_metrics = QFontMetrics(font, &finer);
    }

    bool serves(const QWidget &control) const {
        return growthOf(control) == m_growth &&
               baseStyle()->name() == QApplication::style()->name();
    }

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override {
        const int pixels = QProxyStyle::pixelMetric(metric, option, widget);
        const bool grows = metric == PM_IndicatorWidth || metric == PM_IndicatorHeight ||
                           metric == PM_MenuButtonIndicator || metric == PM_TreeViewIndentation;
        return grows ? static_cast<int>(std::lround(pixels * m_growth)) : pixels;
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override {
        const auto *item = qstyleoption_cast<const QStyleOptionViewItem *>(option);
        if (element != PE_IndicatorBranch || !item)
            return QProxyStyle::drawPrimitive(element, option, painter, widget);
        const QStyleOptionViewItem finer = withMetrics(*item);
        QProxyStyle::drawPrimitive(element, &finer, painter, widget);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override {
        const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        if (!combo)
            return QProxyStyle::drawComplexControl(control, option, painter, widget);
        const QStyleOptionComboBox finer = withMetrics(*combo);
        QProxyStyle::drawComplexControl(control, &finer, painter, widget);
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override {
        const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        if (!combo)
            return QProxyStyle::subControlRect(control, option, part, widget);
        const QStyleOptionComboBox finer = withMetrics(*combo);
        return QProxyStyle::subControlRect(control, &finer, part, widget);
    }

private:
    template<class Option>
    Option withMetrics(Option option) const {
        option.fontMetrics = m_metrics;
        return option;
    }

    double m_growth;
    QFontMetrics m_metrics;
};

} // namespace

void fitStyleToLetters(QWidget &control) {
    auto *before = dynamic_cast<LetterStyle *>(control.style());
    const bool isNeeded = growthOf(control) > 1 && drawsSmall(control);
    if (before ? isNeeded && before->serves(control) : !isNeeded)
        return;
    LetterStyle *style = isNeeded ? new LetterStyle(control) : nullptr;
    if (style)
        style->setParent(&control);
    control.setStyle(style);
    delete before;
}

} // namespace veltrona
