#include "ui/preview/navigationbar.h"

#include <QDialogButtonBox>
#include <QKeySequence>
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
    // Not on every desktop the platform's key, but the one that everybody knows.
    QList<QKeySequence> fullScreenKeys = QKeySequence::keyBindings(QKeySequence::FullScreen);
    if (!fullScreenKeys.contains(QKeySequence(Qt::Key_F11)))
        fullScreenKeys.append(QKeySequence(Qt::Key_F11));
    add(tr("Previous image"), ":icons/last.png", &NavigationBar::previousRequested);
    add(tr("Next image"), ":icons/next.png", &NavigationBar::nextRequested);
    add(tr("Rotate anti-clockwise"), ":icons/rotate-anti.png", &NavigationBar::anticlockwiseRequested);
    add(tr("Rotate clockwise"), ":icons/rotate.png", &NavigationBar::clockwiseRequested);
    add(tr("Fullscreen"), ":icons/fullscreen.png", &NavigationBar::fullScreenRequested, fullScreenKeys);
    add(tr("Start slideshow"), ":icons/slideshow.png", &NavigationBar::slideshowRequested);
    addSeparator();
    addZoom();
    addWidget(makeSpacer(this));
    addSavingOffer();
}

void NavigationBar::add(const QString &text, const char *icon, Request request,
                        const QList<QKeySequence> &keys)
{
    QAction *action = addAction(QIcon(QLatin1String(icon)), text);
    connect(action, &QAction::triggered, this, request);
    if (keys.isEmpty())
        return;
    action->setShortcuts(keys);
    action->setToolTip(tr("%1 (%2)").arg(text, action->shortcut().toString(QKeySequence::NativeText)));
    m_keyActions.append(action);
}

void NavigationBar::addZoom()
{
    QList<QKeySequence> zoomInKeys = QKeySequence::keyBindings(QKeySequence::ZoomIn);
    // The plus of most keyboards needs Shift otherwise.
    zoomInKeys.append(QKeySequence(Qt::CTRL + Qt::Key_Equal));
    add(tr("Zoom in"), ":icons/zoom-in.png", &NavigationBar::zoomInRequested, zoomInKeys);
    add(tr("Zoom out"), ":icons/zoom-out.png", &NavigationBar::zoomOutRequested,
        QKeySequence::keyBindings(QKeySequence::ZoomOut));
    add(tr("Original size"), ":icons/zoom-original.png", &NavigationBar::originalSizeRequested,
        {QKeySequence(Qt::CTRL + Qt::Key_0)});
    add(tr("Fit"), ":icons/zoom-fit.png", &NavigationBar::fitRequested, {QKeySequence(Qt::CTRL + Qt::Key_9)});
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
