#include "ui/dialogs/helpwindow.h"

#include "app/settings/windowsettings.h"

#include <QApplication>
#include <QFile>
#include <QScreen>
#include <QTextBrowser>

HelpWindow::HelpWindow(int mode, QWidget *parent) : QMainWindow(parent), m_browser(new QTextBrowser(this))
{
    setObjectName(QStringLiteral("HelpWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    // The program ends with its main window, also while a help text is open.
    setAttribute(Qt::WA_QuitOnClose, false);
    resize(QSize(660, 635).boundedTo(screen()->availableSize() * 9 / 10));
    // The widest picture of a page, its margins and the scroll bar.
    setMinimumWidth(qMin(660, width()));

    m_browser->setObjectName(QStringLiteral("helpBrowser"));
    m_browser->setOpenExternalLinks(true);
    m_browser->setSearchPaths({QStringLiteral(":/help")});
    setCentralWidget(m_browser);

    if (mode == QuickStartGuide) {
        setWindowTitle(tr("Quick Start Guide"));
        m_geometryKey = WindowSettings::quickStartGeometry;
        showDocument(QStringLiteral(":help/QuickStartGuide.htm"));
    } else {
        setWindowTitle(tr("Manual"));
        m_geometryKey = WindowSettings::manualGeometry;
        showDocument(QStringLiteral(":help/HelpFile.html"));
    }
    m_browser->setAccessibleName(windowTitle());
    restoreGeometry(WindowSettings::layout(m_geometryKey));
    // Nobody owns the window: without this its place would be forgotten when the program ends.
    connect(qApp, &QCoreApplication::aboutToQuit, this, &QWidget::close);
}

HelpWindow::~HelpWindow()
{
    WindowSettings::setLayout(m_geometryKey, saveGeometry());
}

void HelpWindow::showDocument(const QString &resource)
{
    QFile file(resource);
    if (file.open(QIODevice::ReadOnly))
        m_browser->setHtml(QString::fromUtf8(file.readAll()));
}
