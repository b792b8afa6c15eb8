#include "ui/views/filesearch.h"

#include "core/controllers/mainviewcontroller.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/sorter.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QToolBar>

namespace {
constexpr int restMilliseconds = 150;
}

FileSearch::FileSearch(QObject *parent) : QObject(parent)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(restMilliseconds);
    connect(&m_rest, &QTimer::timeout, this, &FileSearch::search);
}

void FileSearch::takeField(MainUi &ui, QAction *fieldSwitch)
{
    m_field = ui.searchEdit;
    m_bar = ui.searchFilesBar;
    m_fieldSwitch = fieldSwitch;
    connect(m_fieldSwitch, &QAction::toggled, this, &FileSearch::setFieldShown);
    ui.editMenu->addSeparator();
    QAction *finding = ui.editMenu->addAction(tr("Find Files"), this, &FileSearch::find);
    finding->setShortcuts(QKeySequence::Find);
    connect(m_field, &QLineEdit::textEdited, &m_rest, qOverload<>(&QTimer::start));
    m_field->installEventFilter(this);
    connect(m_field, &QLineEdit::returnPressed, this, &FileSearch::search);
    // Else the last search would go on where nobody sees it.
    connect(m_field, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (!text.isEmpty()) {
            prepare();
            return;
        }
        m_rest.stop();
        if (isSearched())
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
    m_rest.stop();
    if (!m_controller || !m_field)
        return;
    m_isSearching = true;
    m_controller->setFileFilterString(m_field->text());
    m_isSearching = false;
    emit searched();
}

void FileSearch::prepare()
{
    if (m_controller)
        m_controller->contentsModel()->prepareSearch();
}

void FileSearch::find()
{
    if (!m_field)
        return;
    m_bar->show();
    m_fieldSwitch->setChecked(true);
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

void FileSearch::giveWay()
{
    if (!m_isSearching && m_field)
        m_field->clear();
}

void FileSearch::setFieldShown(bool isShown)
{
    if (isShown)
        return;
    m_rest.stop();
    if (m_field && isSearched())
        m_field->clear();
}

bool FileSearch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        prepare();
    const bool isEscape =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (!isEscape || watched != m_field || m_field->text().isEmpty())
        return QObject::eventFilter(watched, event);
    m_field->clear();
    return true;
}
