// SPDX-License-Identifier: Apache-2.0
#include "controls/ReportIcons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>

// In the global namespace, as Qt's macro wants it: a static library's resources have to be asked for.
static void loadIconFiles()
{
    Q_INIT_RESOURCE(icons);
}

namespace clivara {

namespace {

const char *nameOf(ReportIcon icon)
{
    switch (icon) {
    case ReportIcon::OpenProblem:
        return "open-problem";
    case ReportIcon::ClosedProblem:
        return "closed-problem";
    case ReportIcon::ChronicProblem:
        return "chronic-problem";
    case ReportIcon::UnspecifiedProblem:
        return "unspecified-problem";
    case ReportIcon::NoProblem:
        return "no-problem";
    case ReportIcon::Visit:
        return "visit";
    case ReportIcon::Drug:
        return "drug";
    case ReportIcon::Test:
        return "test";
    case ReportIcon::InHospital:
        return "in-hospital";
    case ReportIcon::Discharged:
        return "discharged";
    case ReportIcon::HomeCare:
        return "home-care";
    case ReportIcon::Doubtful:
        break;
    }
    return "doubtful";
}

// The picture of a file, and white on the highlight colour.
class ReportIconEngine final : public QIconEngine {
public:
    explicit ReportIconEngine(const QString &file)
        : m_file(file)
    {
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        const bool isSelected = mode == QIcon::Selected;
        const QString key =
            QStringLiteral("%1 %2x%3 %4").arg(m_file).arg(size.width()).arg(size.height()).arg(isSelected);
        QPixmap picture;
        if (QPixmapCache::find(key, &picture))
            return picture;
        picture = QIcon(m_file).pixmap(size, 1.0);
        if (isSelected && !picture.isNull()) {
            QPainter painter(&picture);
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(picture.rect(), Qt::white);
        }
        QPixmapCache::insert(key, picture);
        return picture;
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal scale = painter->device()->devicePixelRatio();
        QPixmap picture = pixmap(rect.size() * scale, mode, state);
        picture.setDevicePixelRatio(scale);
        painter->drawPixmap(rect.topLeft(), picture);
    }

    QIconEngine *clone() const override { return new ReportIconEngine(m_file); }

private:
    const QString m_file;
};

} // namespace

QIcon reportIcon(ReportIcon icon)
{
    loadIconFiles();
    return QIcon(new ReportIconEngine(
        QStringLiteral(":/clivara/icons/lists/%1.svg").arg(QLatin1String(nameOf(icon)))));
}

} // namespace clivara
