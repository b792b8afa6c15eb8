#include "ui/views/filesearch.h"

#include "core/controllers/mainviewcontroller.h"
#include "models/contents/sorter.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolBar>

void FileSearch::takeField(MainUi &ui)
{
    m_field = ui.searchEdit;
    m_field->installEventFilter(this);
    connect(m_field, &QLineEdit::returnPressed, this, &FileSearch::search);
    // Else the last search would go on where nobody sees it.
    connect(m_field, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (text.isEmpty() && isSearched())
            search();
    });
    connect(ui.searchFilesBar->toggleViewAction(), &QAction::toggled, this, &FileSearch::setFieldShown);
}

void FileSearch::setController(MainViewController *controller)
{
    m_controller = controller;
    if (m_field)
        m_field->clear();
}

bool FileSearch::isSearched() const
{
    return m_controller && !m_controller->sorter()->filterText().isEmpty();
}

void FileSearch::search()
{
    if (!m_controller || !m_field)
        return;
    m_isSearching = true;
    m_controller->setFileFilterString(m_field->text());
    m_isSearching = false;
    emit searched();
}

void FileSearch::giveWay()
{
    if (!m_isSearching && m_field)
        m_field->clear();
}

void FileSearch::setFieldShown(bool isShown)
{
    if (!isShown && m_field && isSearched())
        m_field->clear();
}

bool FileSearch::eventFilter(QObject *watched, QEvent *event)
{
    const bool isEscape =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (!isEscape || watched != m_field || m_field->text().isEmpty())
        return QObject::eventFilter(watched, event);
    m_field->clear();
    return true;
}
