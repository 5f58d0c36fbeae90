#include "subjectviewdelegate.h"

#include <dbparams.h>
#include <objecttreemodel.h>
#include <objecttypes.h>

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

// Drawn rather than shipped: four small shapes that stay sharp at any
// scale and follow no theme the host may lack.
QPixmap drawIcon(const QString &typeName, bool fired, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = size;
    if (typeName == nivaro::OT_WORKER) {
        const QColor body = fired ? QColor(150, 150, 150) : QColor(46, 117, 182);
        p.setPen(Qt::NoPen);
        p.setBrush(body);
        p.drawEllipse(QRectF(s * 0.32, s * 0.06, s * 0.36, s * 0.36));
        QPainterPath torso;
        torso.moveTo(s * 0.12, s * 0.96);
        torso.cubicTo(s * 0.12, s * 0.5, s * 0.88, s * 0.5, s * 0.88, s * 0.96);
        torso.closeSubpath();
        p.drawPath(torso);
        if (fired) {
            p.setPen(QPen(QColor(200, 40, 40), s * 0.12, Qt::SolidLine, Qt::RoundCap));
            p.drawLine(QPointF(s * 0.58, s * 0.58), QPointF(s * 0.92, s * 0.92));
            p.drawLine(QPointF(s * 0.92, s * 0.58), QPointF(s * 0.58, s * 0.92));
        }
    } else if (typeName == nivaro::OT_DEPARTMENT) {
        p.setPen(QPen(QColor(150, 110, 20), s * 0.06));
        p.setBrush(QColor(240, 196, 80));
        QPainterPath folder;
        folder.moveTo(s * 0.06, s * 0.22);
        folder.lineTo(s * 0.4, s * 0.22);
        folder.lineTo(s * 0.5, s * 0.32);
        folder.lineTo(s * 0.94, s * 0.32);
        folder.lineTo(s * 0.94, s * 0.86);
        folder.lineTo(s * 0.06, s * 0.86);
        folder.closeSubpath();
        p.drawPath(folder);
    } else if (typeName == nivaro::OT_FIRM) {
        p.setPen(QPen(QColor(60, 60, 70), s * 0.06));
        p.setBrush(QColor(120, 130, 150));
        p.drawRect(QRectF(s * 0.18, s * 0.1, s * 0.64, s * 0.84));
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(230, 235, 245));
        for (int row = 0; row < 3; ++row) {
            for (int col = 0; col < 2; ++col)
                p.drawRect(QRectF(s * (0.3 + col * 0.24), s * (0.2 + row * 0.22), s * 0.14, s * 0.12));
        }
    } else {
        p.setPen(QPen(QColor(40, 100, 60), s * 0.06));
        p.setBrush(QColor(90, 170, 110));
        p.drawEllipse(QRectF(s * 0.1, s * 0.1, s * 0.8, s * 0.8));
    }
    return pixmap;
}

} // namespace

SubjectViewDelegate::SubjectViewDelegate(QObject *parent)
    : StyledItemDelegate(parent)
{
}

QIcon SubjectViewDelegate::iconFor(const QString &typeName, bool fired)
{
    static QHash<QString, QIcon> cache;
    const QString key = typeName + (fired ? QLatin1String("/fired") : QLatin1String(""));
    auto it = cache.find(key);
    if (it == cache.end()) {
        QIcon icon;
        for (int size : {16, 24, 32, 48})
            icon.addPixmap(drawIcon(typeName, fired, size));
        it = cache.insert(key, icon);
    }
    return *it;
}

void SubjectViewDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    StyledItemDelegate::initStyleOption(option, index);
    const QString type = index.data(nivaro::ObjectTreeModel::TypeRole).toString();
    const bool fired = type == nivaro::OT_WORKER
                       && index.data(nivaro::ObjectTreeModel::StateRole)
                                  .toString()
                                  .compare(db::common::STATE_FIRED, Qt::CaseInsensitive)
                              == 0;
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = iconFor(type, fired);
    const int extent = option->decorationSize.height() > 0 ? option->decorationSize.height() : 16;
    option->decorationSize = QSize(extent, extent);
    if (fired) {
        option->font.setItalic(true);
        option->palette.setColor(QPalette::Text, QColor(128, 128, 128));
        option->palette.setColor(QPalette::HighlightedText, QColor(220, 220, 220));
    }
}
