// SPDX-License-Identifier: Apache-2.0
#include "evaluations/HistoryPlot.h"

#include "values/JetValues.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <cmath>

namespace clivara {

namespace {

constexpr double pointRadius = 4;
constexpr double currentRadius = 6;
constexpr double reach = 12; // how near the mouse must come to a point
constexpr int gap = 8;
// The vertical axis ends at the first of these that leaves room above the highest risk.
constexpr std::array percentTops{0.05, 0.10, 0.20, 0.30, 0.50, 1.0};
constexpr double headroom = 1.1;

QString percentText(double fraction)
{
    return jet::formatNumber(fraction * 100, u"0") + u'%';
}

} // namespace

// The vertical axis: the values that have a line and their texts.
struct HistoryPlot::Axis {
    double least = 0;
    double most = 1;
    QList<std::pair<double, QString>> marks;
};

HistoryPlot::HistoryPlot(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

void HistoryPlot::setScale(Scale scale)
{
    m_scale = scale;
    update();
}

void HistoryPlot::setPoints(const QList<Point> &points, const QString &none)
{
    m_points = points;
    m_none = none;
    m_current = -1;
    setAccessibleDescription(
        points.isEmpty()
            ? none
            : QStringLiteral("%1 rilevazioni, ultima %2").arg(points.size()).arg(points.last().text));
    update();
    emit currentChanged(-1);
}

void HistoryPlot::setCurrent(int index)
{
    index = index < 0 || index >= m_points.size() ? -1 : index;
    if (index == m_current)
        return;
    m_current = index;
    if (index >= 0)
        setAccessibleDescription(m_points.at(index).text);
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
    update();
    emit currentChanged(index);
}

QSize HistoryPlot::sizeHint() const
{
    return {320, 152};
}

QSize HistoryPlot::minimumSizeHint() const
{
    return {240, 128};
}

HistoryPlot::Axis HistoryPlot::axis() const
{
    if (m_scale == Scale::YesNo)
        return {-0.5, 1.5, {{0, QStringLiteral("NO")}, {1, QStringLiteral("SI")}}};
    double highest = 0;
    for (const Point &point : m_points)
        highest = std::max(highest, point.value);
    const auto top = std::find_if(percentTops.begin(), percentTops.end() - 1,
                                  [highest](double candidate) { return candidate >= highest * headroom; });
    return {0,
            *top,
            {{0, percentText(0)},
             {*top / 2, jet::formatNumber(*top / 2, *top < 0.1 ? u"0.0%" : u"0%")},
             {*top, percentText(*top)}}};
}

QRectF HistoryPlot::plotArea() const
{
    const QFontMetrics metrics = fontMetrics();
    const int left = metrics.horizontalAdvance(QStringLiteral("100%")) + 2 * gap;
    return QRectF(rect()).adjusted(left, gap + metrics.height() / 2.0, -2 * gap,
                                   -1.5 * metrics.height() - gap);
}

QPointF HistoryPlot::placeOf(const Point &point) const
{
    const QRectF area = plotArea();
    const Axis scale = axis();
    const double days = double(m_points.first().day.daysTo(m_points.last().day));
    // A single day stands in the middle.
    const double along = days > 0 ? double(m_points.first().day.daysTo(point.day)) / days : 0.5;
    const double value = std::clamp(point.value, scale.least, scale.most);
    return {area.left() + along * area.width(),
            area.bottom() - (value - scale.least) / (scale.most - scale.least) * area.height()};
}

int HistoryPlot::pointAt(const QPointF &place) const
{
    int nearest = -1;
    double least = reach;
    for (int i = 0; i < m_points.size(); ++i) {
        const QPointF offset = placeOf(m_points.at(i)) - place;
        if (const double distance = std::hypot(offset.x(), offset.y()); distance <= least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

void HistoryPlot::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : palette().color(QPalette::Mid));
    painter.setBrush(palette().base());
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    if (m_points.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect(), Qt::AlignCenter, m_none);
        return;
    }
    paintAxis(painter);
    paintCourse(painter);
}

void HistoryPlot::paintAxis(QPainter &painter) const
{
    const QRectF area = plotArea();
    const QFontMetrics metrics = painter.fontMetrics();
    const Axis scale = axis();
    const QColor quiet = palette().color(QPalette::PlaceholderText);
    const QColor line = palette().color(QPalette::Midlight);
    for (const auto &[value, text] : scale.marks) {
        const double y = area.bottom() - (value - scale.least) / (scale.most - scale.least) * area.height();
        painter.setPen(line);
        painter.drawLine(QPointF(area.left() - gap / 2.0, y), QPointF(area.right() + gap, y));
        painter.setPen(quiet);
        painter.drawText(QRectF(0, y - metrics.height(), area.left() - gap, 2.0 * metrics.height()),
                         Qt::AlignRight | Qt::AlignVCenter, text);
    }

    // The first and the last day, and as many years between them as have room.
    const QDate first = m_points.first().day;
    const QDate last = m_points.last().day;
    const double baseline = area.bottom() + metrics.height() / 2.0 + 2; // below the axis' lowest text
    const auto dayLabel = [&](QDate day, Qt::Alignment side) {
        painter.drawText(QRectF(area.left() - 3 * gap, baseline, area.width() + 4 * gap, metrics.height()),
                         side, jet::slashedDate(day));
    };
    painter.setPen(quiet);
    if (first == last) {
        dayLabel(first, Qt::AlignHCenter);
        return;
    }
    dayLabel(first, Qt::AlignLeft);
    dayLabel(last, Qt::AlignRight);
    const double dayWidth = area.width() / double(first.daysTo(last));
    const double dateWidth = metrics.horizontalAdvance(QStringLiteral("00/00/0000"));
    const double yearWidth = metrics.horizontalAdvance(QStringLiteral("0000"));
    double taken = area.left() - 3 * gap + dateWidth;
    for (int year = first.year() + 1; year <= last.year(); ++year) {
        const double x = area.left() + dayWidth * double(first.daysTo(QDate(year, 1, 1)));
        painter.setPen(line);
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
        if (x - yearWidth / 2 < taken + gap || x + yearWidth / 2 > area.right() + gap - dateWidth - gap)
            continue;
        painter.setPen(quiet);
        painter.drawText(QRectF(x - yearWidth, baseline, 2 * yearWidth, metrics.height()), Qt::AlignHCenter,
                         QString::number(year));
        taken = x + yearWidth / 2;
    }
}

void HistoryPlot::paintCourse(QPainter &painter) const
{
    const QColor accent = palette().color(QPalette::Highlight);
    QPainterPath course;
    for (const Point &point : m_points) {
        const QPointF place = placeOf(point);
        if (course.elementCount() == 0)
            course.moveTo(place);
        else if (m_scale == Scale::YesNo) { // a verdict holds until the next one
            course.lineTo(place.x(), course.currentPosition().y());
            course.lineTo(place);
        } else
            course.lineTo(place);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(accent, 2));
    painter.drawPath(course);
    painter.setBrush(accent);
    for (const Point &point : m_points)
        painter.drawEllipse(placeOf(point), pointRadius, pointRadius);
    if (m_current >= 0) {
        painter.setBrush(palette().base());
        painter.setPen(QPen(accent, 3));
        painter.drawEllipse(placeOf(m_points.at(m_current)), currentRadius, currentRadius);
    }
}

void HistoryPlot::keyPressEvent(QKeyEvent *event)
{
    const int last = int(m_points.size()) - 1;
    switch (event->key()) {
    case Qt::Key_Left:
        // The newest point is where reading begins.
        setCurrent(m_current < 0 ? last : std::max(0, m_current - 1));
        return;
    case Qt::Key_Right:
        setCurrent(m_current < 0 ? last : std::min(last, m_current + 1));
        return;
    case Qt::Key_Home:
        setCurrent(std::min(0, last));
        return;
    case Qt::Key_End:
        setCurrent(last);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_current >= 0) {
            emit chosen(m_current);
            return;
        }
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void HistoryPlot::mousePressEvent(QMouseEvent *event)
{
    if (const int point = pointAt(event->position()); point >= 0) {
        setCurrent(point);
        emit chosen(point);
    }
}

void HistoryPlot::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (m_current < 0 && event->reason() != Qt::MouseFocusReason)
        setCurrent(int(m_points.size()) - 1);
}

bool HistoryPlot::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *const help = static_cast<QHelpEvent *>(event);
    if (const int point = pointAt(help->pos()); point >= 0)
        QToolTip::showText(help->globalPos(), m_points.at(point).text, this);
    else
        QToolTip::hideText();
    return true;
}

} // namespace clivara
