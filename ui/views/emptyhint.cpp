#include "ui/views/emptyhint.h"

#include <QAbstractItemView>
#include <QPainter>

void paintEmptyHint(QAbstractItemView *view, const QString &text)
{
    const QAbstractItemModel *model = view->model();
    if (text.isEmpty() || (model && model->rowCount(view->rootIndex()) > 0))
        return;
    QPainter painter(view->viewport());
    painter.setPen(view->palette().color(QPalette::Disabled, QPalette::Text));
    const QRect rect = view->viewport()->rect().adjusted(16, 16, -16, -16);
    painter.drawText(rect, Qt::AlignCenter | Qt::TextWordWrap, text);
}
