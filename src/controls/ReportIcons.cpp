// SPDX-License-Identifier: Apache-2.0
#include "controls/ReportIcons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace clivara {

namespace {

constexpr double designSize = 16; // the shapes below are drawn in a square of this side
constexpr QColor blue(0x1f, 0x6f, 0x9c);
constexpr QColor green(0x2d, 0x7a, 0x46);
constexpr QColor amber(0xa8, 0x5b, 0x00);
constexpr QColor violet(0x74, 0x4a, 0xa3);
constexpr QColor grey(0x6b, 0x78, 0x84);

QColor colourOf(ReportIcon icon)
{
    switch (icon) {
    case ReportIcon::OpenProblem:
    case ReportIcon::Visit:
    case ReportIcon::HomeCare:
        return blue;
    case ReportIcon::ChronicProblem:
    case ReportIcon::Test:
    case ReportIcon::InHospital:
    case ReportIcon::Doubtful:
        return amber;
    case ReportIcon::Drug:
        return violet;
    case ReportIcon::ClosedProblem:
        return green;
    case ReportIcon::UnspecifiedProblem:
    case ReportIcon::NoProblem:
    case ReportIcon::Discharged:
        break;
    }
    return grey;
}

void drawCapsule(QPainter &painter, QColor colour)
{
    painter.translate(8, 8);
    painter.rotate(-45);
    painter.drawRoundedRect(QRectF(-6.4, -3.1, 12.8, 6.2), 3.1, 3.1);
    QPainterPath half;
    half.addRoundedRect(QRectF(-6.4, -3.1, 12.8, 6.2), 3.1, 3.1);
    painter.setClipRect(QRectF(-7, -4, 7, 8));
    painter.fillPath(half, colour);
}

void drawFlask(QPainter &painter, QColor colour)
{
    QPainterPath flask;
    flask.moveTo(6.3, 2);
    flask.lineTo(6.3, 6.4);
    flask.lineTo(2.6, 12.6);
    flask.quadTo(2.2, 14, 3.6, 14);
    flask.lineTo(12.4, 14);
    flask.quadTo(13.8, 14, 13.4, 12.6);
    flask.lineTo(9.7, 6.4);
    flask.lineTo(9.7, 2);
    painter.drawPath(flask);
    painter.drawLine(QPointF(5, 2), QPointF(11, 2));
    painter.save();
    painter.setClipRect(QRectF(0, 10, designSize, designSize));
    painter.fillPath(flask, colour);
    painter.restore();
}

void drawSheet(QPainter &painter)
{
    painter.drawRoundedRect(QRectF(3, 2.6, 10, 11.4), 1.4, 1.4);
    painter.drawLine(QPointF(6.2, 2.2), QPointF(9.8, 2.2));
    painter.drawLine(QPointF(8, 5.4), QPointF(8, 9.2));
    painter.drawLine(QPointF(6.1, 7.3), QPointF(9.9, 7.3));
    painter.drawLine(QPointF(5.6, 11.6), QPointF(10.4, 11.6));
}

void drawTray(QPainter &painter)
{
    const QPointF tray[] = {{2, 9.5}, {4, 4}, {12, 4}, {14, 9.5}, {14, 13}, {2, 13}, {2, 9.5}};
    painter.drawPolyline(tray, int(std::size(tray)));
    const QPointF slot[] = {{2, 9.5}, {5.6, 9.5}, {6.6, 11}, {9.4, 11}, {10.4, 9.5}, {14, 9.5}};
    painter.drawPolyline(slot, int(std::size(slot)));
}

// A bed, with somebody in it or not.
void drawBed(QPainter &painter, bool taken, QColor colour)
{
    painter.drawLine(QPointF(2, 3.6), QPointF(2, 13));
    painter.drawLine(QPointF(2, 10.6), QPointF(14, 10.6));
    painter.drawLine(QPointF(14, 13), QPointF(14, 9));
    if (!taken)
        return;
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(4.6, 7.4), 1.1, 1.1);
    painter.drawRoundedRect(QRectF(7.2, 6.8, 6.6, 2.6), 1.2, 1.2);
}

void drawHouse(QPainter &painter)
{
    const QPointF roof[] = {{1.8, 8.2}, {8, 2.6}, {14.2, 8.2}};
    painter.drawPolyline(roof, int(std::size(roof)));
    const QPointF walls[] = {{3.8, 8}, {3.8, 13.6}, {12.2, 13.6}, {12.2, 8}};
    painter.drawPolyline(walls, int(std::size(walls)));
    painter.drawLine(QPointF(8, 8.4), QPointF(8, 12));
    painter.drawLine(QPointF(6.2, 10.2), QPointF(9.8, 10.2));
}

void drawWarning(QPainter &painter, QColor colour)
{
    const QPointF triangle[] = {{8, 2}, {14.2, 13.4}, {1.8, 13.4}, {8, 2}};
    painter.drawPolyline(triangle, int(std::size(triangle)));
    painter.drawLine(QPointF(8, 6.4), QPointF(8, 9));
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(8, 11.3), 0.3, 0.3);
}

void draw(QPainter &painter, ReportIcon icon, QColor colour)
{
    const QRectF ring(2, 2, 12, 12);
    switch (icon) {
    case ReportIcon::OpenProblem:
        painter.drawEllipse(ring);
        painter.setBrush(colour);
        painter.drawEllipse(QPointF(8, 8), 2.6, 2.6);
        break;
    case ReportIcon::ClosedProblem: {
        const QPointF tick[] = {{3, 8.6}, {6.6, 12}, {13, 4.4}};
        painter.drawPolyline(tick, int(std::size(tick)));
        break;
    }
    case ReportIcon::ChronicProblem: // without an end
        painter.drawEllipse(QRectF(1.4, 5, 6.4, 6));
        painter.drawEllipse(QRectF(8.2, 5, 6.4, 6));
        break;
    case ReportIcon::UnspecifiedProblem: {
        QPen dotted = painter.pen();
        dotted.setDashPattern({1.2, 2});
        painter.setPen(dotted);
        painter.drawEllipse(ring);
        break;
    }
    case ReportIcon::NoProblem:
        drawTray(painter);
        break;
    case ReportIcon::Visit:
        drawSheet(painter);
        break;
    case ReportIcon::Drug:
        drawCapsule(painter, colour);
        break;
    case ReportIcon::Test:
        drawFlask(painter, colour);
        break;
    case ReportIcon::InHospital:
    case ReportIcon::Discharged:
        drawBed(painter, icon == ReportIcon::InHospital, colour);
        break;
    case ReportIcon::HomeCare:
        drawHouse(painter);
        break;
    case ReportIcon::Doubtful:
        drawWarning(painter, colour);
        break;
    }
}

class ReportIconEngine final : public QIconEngine {
public:
    explicit ReportIconEngine(ReportIcon icon)
        : m_icon(icon)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const QColor colour = mode == QIcon::Selected ? QColor(Qt::white) : colourOf(m_icon);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / designSize, rect.height() / designSize);
        painter->setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        draw(*painter, m_icon, colour);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect({}, size), mode, state);
        return picture;
    }

    QIconEngine *clone() const override { return new ReportIconEngine(m_icon); }

private:
    ReportIcon m_icon;
};

} // namespace

QIcon reportIcon(ReportIcon icon)
{
    return QIcon(new ReportIconEngine(icon));
}

} // namespace clivara
