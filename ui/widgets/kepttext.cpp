#include "ui/widgets/kepttext.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QTimer>

KeptText::KeptText(QObject *parent) : QObject(parent)
{
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget * /*old*/, const QWidget *now) { followFocus(now); });
}

void KeptText::note(const QLineEdit &editor, const QModelIndex &index, const QVariant &before)
{
    const QString text = editor.text();
    forget();
    // What is blank, or nothing new, was not refused: there was nothing to write.
    if (text.trimmed().isEmpty() || text.simplified() == before.toString().simplified() ||
        index.data(Qt::EditRole) != before)
        return;
    m_id = index.data(m_idRole);
    m_column = index.column();
    m_before = before;
    m_text = text;
    const QWidget *viewport = editor.parentWidget();
    m_view = viewport ? qobject_cast<QAbstractItemView *>(viewport->parentWidget()) : nullptr;
    QTimer::singleShot(0, this, &KeptText::reopen);
}

void KeptText::forget()
{
    m_id.clear();
    m_text.clear();
    m_view.clear();
}

bool KeptText::isOf(const QModelIndex &index) const
{
    return m_id.isValid() && index.column() == m_column && index.data(m_idRole) == m_id &&
           index.data(Qt::EditRole) == m_before;
}

void KeptText::followFocus(const QWidget *now)
{
    if (!m_view || !now)
        return;
    if (now == m_view)
        // What a box has led to comes first.
        QTimer::singleShot(0, this, &KeptText::reopen);
    else if (now->window() == m_view->window() && !m_view->isAncestorOf(now))
        m_view.clear(); // the user has gone on to something else
}

void KeptText::reopen()
{
    const QWidget *modal = QApplication::activeModalWidget();
    if (!m_view || !m_view->hasFocus() || !m_view->window()->isActiveWindow() ||
        (modal && modal != m_view->window()) || QApplication::activePopupWidget())
        return;
    const QModelIndex current = m_view->currentIndex();
    const QModelIndex index = current.sibling(current.row(), m_column);
    if (!isOf(index)) {
        m_view.clear();
        return;
    }
    if (index.flags().testFlag(Qt::ItemIsEditable))
        m_view->edit(index);
}
