#include "ui/widgets/emptyhint.h"

#include <QAbstractItemView>
#include <QPainter>

void paintEmptyHint(QAbstractItemView *view, const QString &text)
{
    const QAbstractItemModel *model = view->model();
    if (text.isEmpty() || (model && model->rowCount(view->rootIndex()) > 0))
        return;
    QPainter painter(view->viewport());
    // Paler than an entry, yet legible: the palette's disabled colour is not, and a view without rows is
    // often off.
    QColor colour = view->palette().color(QPalette::Active, QPalette::Text);
    colour.setAlphaF(0.62);
    painter.setPen(colour);
    const QRect rect = view->viewport()->rect().adjusted(16, 16, -16, -16);
    painter.drawText(rect, Qt::AlignCenter | Qt::TextWordWrap, text);
}
