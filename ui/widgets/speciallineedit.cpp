#include "ui/widgets/speciallineedit.h"

#include <QFocusEvent>
#include <QKeyEvent>

SpecialLineEdit::SpecialLineEdit(QWidget *parent) : QLineEdit(parent)
{
    setObjectName(QStringLiteral("SpecialLineEdit"));
}

void SpecialLineEdit::keyPressEvent(QKeyEvent *event)
{
    // Some layouts reach the sign through other keys, so the text counts too.
    if (event->key() == Qt::Key_QuoteDbl || event->text() == QLatin1String("\"")) {
        event->ignore();
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        emit escPressed();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void SpecialLineEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // The edit's own context menu only borrows the focus.
    if (event->reason() != Qt::PopupFocusReason)
        emit focusLost();
}
