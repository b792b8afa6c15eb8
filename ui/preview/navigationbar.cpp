#include "ui/preview/navigationbar.h"

#include <QDialogButtonBox>
#include <QPushButton>

namespace {
QWidget *makeSpacer(QWidget *parent)
{
    auto *spacer = new QWidget(parent);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return spacer;
}
} // namespace

NavigationBar::NavigationBar(QWidget *parent) : QToolBar(tr("Navigation"), parent)
{
    setObjectName(QStringLiteral("Navigation"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    const auto add = [this](const QString &text, const char *icon, void (NavigationBar::*request)()) {
        QAction *action = addAction(QIcon(QLatin1String(icon)), text);
        connect(action, &QAction::triggered, this, request);
    };
    add(tr("Previous image"), ":icons/last.png", &NavigationBar::previousRequested);
    add(tr("Next image"), ":icons/next.png", &NavigationBar::nextRequested);
    add(tr("Rotate anti-clockwise"), ":icons/rotate-anti.png", &NavigationBar::anticlockwiseRequested);
    add(tr("Rotate clockwise"), ":icons/rotate.png", &NavigationBar::clockwiseRequested);
    add(tr("Fullscreen"), ":icons/fullscreen.png", &NavigationBar::fullScreenRequested);
    add(tr("Start slideshow"), ":icons/slideshow.png", &NavigationBar::slideshowRequested);
    addWidget(makeSpacer(this));
    addSavingOffer();
}

void NavigationBar::addSavingOffer()
{
    auto *offer = new QDialogButtonBox(this);
    offer->setObjectName(QStringLiteral("editButtons"));
    offer->addButton(tr("Save changes"), QDialogButtonBox::AcceptRole);
    offer->addButton(QDialogButtonBox::Cancel);
    // A button that goes once it is pressed would leave its focus to the description, and the arrows with it.
    const QList<QAbstractButton *> buttons = offer->buttons();
    for (QAbstractButton *button : buttons)
        button->setFocusPolicy(Qt::TabFocus);
    connect(offer, &QDialogButtonBox::accepted, this, &NavigationBar::savingRequested);
    connect(offer, &QDialogButtonBox::rejected, this, &NavigationBar::cancelRequested);
    m_savingAction = addWidget(offer);
}
