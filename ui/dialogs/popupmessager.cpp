#include "ui/dialogs/popupmessager.h"

#include "app/messages/messages.h"

#include <QApplication>
#include <QMainWindow>
#include <QMessageBox>
#include <QTimer>

namespace {
constexpr int temporaryBoxMilliseconds = 2000;
}

PopupMessager::PopupMessager(QWidget *parent)
    : QObject(parent), m_window(parent), m_hideTimer(new QTimer(this))
{
    // One timer, so that the end of a box that was closed by hand does not cut the next one short.
    m_hideTimer->setSingleShot(true);
}

void PopupMessager::showTempWarning(const QString &title, const QString &text)
{
    if (m_temporaryBox && m_temporaryBox->isVisible())
        return;
    // A previewer, which stays on top, would hide a box of the window behind it.
    QWidget *active = qobject_cast<QMainWindow *>(QApplication::activeWindow());
    QWidget *parent = active ? active : topWindow();
    if (!m_temporaryBox) {
        m_temporaryBox =
            new QMessageBox(QMessageBox::Warning, QString(), QString(), QMessageBox::NoButton, parent);
        m_temporaryBox->setObjectName(QStringLiteral("temporaryWarning"));
        m_temporaryBox->setTextFormat(Qt::PlainText);
        m_temporaryBox->setModal(false);
        connect(m_hideTimer, &QTimer::timeout, m_temporaryBox, &QWidget::hide);
    } else if (m_temporaryBox->parentWidget() != parent) {
        m_temporaryBox->setParent(parent, m_temporaryBox->windowFlags());
    }
    m_temporaryBox->setWindowTitle(title);
    m_temporaryBox->setText(text);
    m_temporaryBox->show();
    m_temporaryBox->raise();
    m_hideTimer->start(temporaryBoxMilliseconds);
}

void PopupMessager::moveTempWarning(QWidget *window)
{
    if (!m_temporaryBox || !m_temporaryBox->isVisible() || m_temporaryBox->parentWidget() == window)
        return;
    m_temporaryBox->setParent(window, m_temporaryBox->windowFlags());
    m_temporaryBox->show();
    m_temporaryBox->raise();
}

void PopupMessager::showWarning(const QString &title, const QString &text)
{
    Messages::warning(topWindow(), title, text);
}

void PopupMessager::showInformation(const QString &title, const QString &text)
{
    Messages::information(topWindow(), title, text);
}

QWidget *PopupMessager::topWindow() const
{
    // Below a modal dialog nobody would see a box.
    QWidget *modal = QApplication::activeModalWidget();
    return modal ? modal : m_window;
}

void PopupMessager::showBrowsingTreeDuplicated()
{
    showWarning(tr("Tag already exists"), tr("There is already a tag with this name."));
}
