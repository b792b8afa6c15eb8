#include "ui/docks/externalfilesdock.h"

#include "ui/views/externalfileview.h"

ExternalFilesDock::ExternalFilesDock(QWidget *parent)
    : AbstractDock(tr("External Files"), parent), m_view(new ExternalFileView(this))
{
    setObjectName(QStringLiteral("ExternalFilesDock"));
    setWidget(m_view);
    connect(m_view, &ExternalFileView::filesDropped, this, &ExternalFilesDock::filesDropped);
    setController(nullptr);
}

void ExternalFilesDock::setController(MainViewController *controller)
{
    // It shows the computer's folders, but files dropped out of it have no place to go to.
    m_view->setEnabled(controller);
}
