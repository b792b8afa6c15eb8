#include "app/window/undoactions.h"

#include "core/undo/undohistory.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QMenu>

namespace {
/** For a menu, in which a single ampersand underlines a letter. */
QString inMenu(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}
} // namespace

UndoActions::UndoActions(QObject *parent)
    : QObject(parent), m_undo(new QAction(this)), m_redo(new QAction(this))
{
    m_undo->setObjectName(QStringLiteral("undoAction"));
    m_redo->setObjectName(QStringLiteral("redoAction"));
    m_undo->setShortcuts(QKeySequence::Undo);
    m_redo->setShortcuts(QKeySequence::Redo);
    connect(m_undo, &QAction::triggered, this, [this] {
        if (m_history)
            m_history->undo();
    });
    connect(m_redo, &QAction::triggered, this, [this] {
        if (m_history)
            m_history->redo();
    });
    update();
}

void UndoActions::takePlaces(MainUi &ui)
{
    QAction *first = ui.editMenu->actions().value(0);
    ui.editMenu->insertActions(first, {m_undo, m_redo});
    ui.editMenu->insertSeparator(first);
}

void UndoActions::setHistory(UndoHistory *history)
{
    m_history = history;
    if (history)
        connect(history, &UndoHistory::changed, this, &UndoActions::update);
    update();
}

void UndoActions::update()
{
    const bool canUndo = m_history && m_history->canUndo();
    const bool canRedo = m_history && m_history->canRedo();
    m_undo->setEnabled(canUndo);
    m_redo->setEnabled(canRedo);
    m_undo->setText(canUndo ? tr("Undo %1").arg(inMenu(m_history->undoText())) : tr("Undo"));
    m_redo->setText(canRedo ? tr("Redo %1").arg(inMenu(m_history->redoText())) : tr("Redo"));
}
