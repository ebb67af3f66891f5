// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QList>
#include <QWidget>

namespace clivara {

// The course of a patient's evaluations over the years. The arrow keys, Home and End go from point to point, Enter or
// the mouse chooses one. What a point says stands in the accessible description, and for the form in the signals.
class HistoryPlot : public QWidget {
    Q_OBJECT

public:
    struct Point {
        QDate day;
        double value = 0; // a fraction, or 0 and 1
        QString text; // what is read for it: "12/03/2024: 7.4%"
    };
    enum class Scale { Percent, YesNo };

    explicit HistoryPlot(QWidget *parent = nullptr);

    void setScale(Scale scale);
    // Oldest first. No point is current. Without points there is `none` to read.
    void setPoints(const QList<Point> &points, const QString &none);
    const QList<Point> &points() const { return m_points; }
    // Makes a point current, -1 none.
    void setCurrent(int index);
    int current() const { return m_current; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void currentChanged(int index);
    void chosen(int index);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool event(QEvent *event) override;

private:
    struct Axis;
    Axis axis() const;
    QRectF plotArea() const;
    QPointF placeOf(const Point &point) const;
    // The point nearest to a place, -1 when none is near.
    int pointAt(const QPointF &place) const;
    void paintAxis(QPainter &painter) const;
    void paintCourse(QPainter &painter) const;

    Scale m_scale = Scale::Percent;
    QList<Point> m_points;
    QString m_none;
    int m_current = -1;
};

} // namespace clivara
