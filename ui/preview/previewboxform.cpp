// The form of PreviewBox and what its texts say; what it does stands in previewbox.cpp.

#include "ui/preview/previewbox.h"

#include "app/settings/previewsettings.h"
#include "app/settings/showntext.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/mainviewcontroller.h"
#include "ui/preview/imagewalk.h"
#include "ui/preview/loadingnotice.h"
#include "ui/preview/picturearea.h"
#include "ui/preview/validator.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QToolBar>

namespace {

constexpr int followingMilliseconds = 100;
constexpr QSize firstSize(920, 720);

void setUpBar(QToolBar *bar, const char *objectName)
{
    bar->setObjectName(QLatin1String(objectName));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
}

QWidget *makeSpacer(QWidget *parent)
{
    auto *spacer = new QWidget(parent);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return spacer;
}

} // namespace

void PreviewBox::makeToolBar()
{
    m_toolBar = addToolBar(tr("Navigation"));
    setUpBar(m_toolBar, "Navigation");
    const auto add = [this](const QString &text, const char *icon, void (PreviewBox::*slot)()) {
        QAction *action = m_toolBar->addAction(QIcon(QLatin1String(icon)), text);
        connect(action, &QAction::triggered, this, slot);
    };
    add(tr("Previous image"), ":icons/last.png", &PreviewBox::prevImage);
    add(tr("Next image"), ":icons/next.png", &PreviewBox::nextImage);
    add(tr("Rotate anti-clockwise"), ":icons/rotate-anti.png", &PreviewBox::rotateAnticlockwise);
    add(tr("Rotate clockwise"), ":icons/rotate.png", &PreviewBox::rotateClockwise);
    add(tr("Fullscreen"), ":icons/fullscreen.png", &PreviewBox::goFullScreen);
    add(tr("Start slideshow"), ":icons/slideshow.png", &PreviewBox::startSlideshow);

    m_toolBar->addWidget(makeSpacer(m_toolBar));
    m_editButtons = new QDialogButtonBox(m_toolBar);
    m_editButtons->setObjectName(QStringLiteral("editButtons"));
    m_editButtons->addButton(tr("Save changes"), QDialogButtonBox::AcceptRole);
    m_editButtons->addButton(QDialogButtonBox::Cancel);
    // A button that goes once it is pressed would leave its focus to the description, and the arrows with it.
    const QList<QAbstractButton *> buttons = m_editButtons->buttons();
    for (QAbstractButton *button : buttons)
        button->setFocusPolicy(Qt::TabFocus);
    m_editButtonsAction = m_toolBar->addWidget(m_editButtons);
}

void PreviewBox::makeDescriptionBar()
{
    m_descriptionBar = new QToolBar(tr("Description"), this);
    setUpBar(m_descriptionBar, "descriptionBar");
    addToolBar(Qt::BottomToolBarArea, m_descriptionBar);
    m_validator = new Validator(this);
    m_description = new QLineEdit(m_descriptionBar);
    m_description->setObjectName(QStringLiteral("descriptionEdit"));
    m_description->setAccessibleName(tr("Description"));
    m_description->setPlaceholderText(tr("Description"));
    m_description->setValidator(m_validator);
    m_scaleLabel = new QLabel(m_descriptionBar);
    m_scaleLabel->setObjectName(QStringLiteral("scaleLabel"));
    m_scaleLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_scaleLabel->setMargin(4);
    m_scaleLabel->setMinimumWidth(m_scaleLabel->fontMetrics().horizontalAdvance(QStringLiteral(" 0000 % ")));
    m_descriptionBar->addWidget(m_description);
    m_descriptionBar->addWidget(m_scaleLabel);
}

void PreviewBox::makeShortcuts()
{
    const auto add = [this](const QString &text, const QList<QKeySequence> &keys) {
        auto *action = new QAction(text, this);
        action->setShortcuts(keys);
        addAction(action);
        return action;
    };
    QList<QKeySequence> zoomInKeys = QKeySequence::keyBindings(QKeySequence::ZoomIn);
    // The plus of most keyboards needs Shift otherwise.
    zoomInKeys.append(QKeySequence(Qt::CTRL + Qt::Key_Equal));
    connect(add(tr("Zoom in"), zoomInKeys), &QAction::triggered, m_area, &PictureArea::zoomIn);
    connect(add(tr("Zoom out"), QKeySequence::keyBindings(QKeySequence::ZoomOut)), &QAction::triggered,
            m_area, &PictureArea::zoomOut);
    connect(add(tr("Original size"), {QKeySequence(Qt::CTRL + Qt::Key_0)}), &QAction::triggered, this,
            &PreviewBox::zoom100);
    connect(add(tr("Fit to the window"), {QKeySequence(Qt::CTRL + Qt::Key_9)}), &QAction::triggered, m_area,
            &PictureArea::fit);
    // Not on every desktop the platform's key, but the one that everybody knows.
    QList<QKeySequence> fullScreenKeys = QKeySequence::keyBindings(QKeySequence::FullScreen);
    if (!fullScreenKeys.contains(QKeySequence(Qt::Key_F11)))
        fullScreenKeys.append(QKeySequence(Qt::Key_F11));
    connect(add(tr("Fullscreen"), fullScreenKeys), &QAction::triggered, this,
            [this] { m_isFullScreen ? finishSlideshow() : goFullScreen(); });
}

void PreviewBox::connectAll()
{
    connect(m_editButtons, &QDialogButtonBox::accepted, this, [this] {
        applyEdit();
        hideApplyEditButtons();
    });
    connect(m_editButtons, &QDialogButtonBox::rejected, this, [this] {
        cancelEdit();
        hideApplyEditButtons();
    });
    connect(m_description, &QLineEdit::returnPressed, this, [this] {
        commitDescription();
        setFocus();
    });
    // What was shown before goes only when the next one lets wait for itself.
    connect(m_notice, &LoadingNotice::appeared, this, [this] { m_area->showMessage(QString()); });
    connect(m_notice, &LoadingNotice::canceled, this, &PreviewBox::cancelLoading);
    connect(m_area, &PictureArea::scaleChanged, this, &PreviewBox::showScale);
    // Many news at once are one look.
    m_following.setSingleShot(true);
    m_following.setInterval(followingMilliseconds);
    connect(m_walk, &ImageWalk::changed, &m_following, qOverload<>(&QTimer::start));
    connect(&m_following, &QTimer::timeout, this, &PreviewBox::followRecord);
}

void PreviewBox::placeWindow()
{
    // First, as another flag makes another window of it.
    setWindowFlag(Qt::WindowStaysOnTopHint, PreviewSettings::keepPreviewOnTop());
    resize(firstSize.boundedTo(screen()->availableSize() * 9 / 10));
    restoreGeometry(WindowSettings::layout(WindowSettings::previewGeometry));
}

void PreviewBox::followRecord()
{
    if (!m_controller)
        return;
    // A file that is gone takes its text with it: the next one to be added may get its id.
    if (!m_controller->fileData(m_fileId, DataType::Name).isValid())
        m_description->setModified(false);
    const QString stored = m_controller->fileData(m_fileId, DataType::Description).toString();
    if (!m_description->isModified() && m_description->text() != stored) {
        m_validator->setGivenText(stored);
        m_description->setText(stored);
        m_description->setCursorPosition(0);
    }
    m_description->setReadOnly(!isWritable());
    // Nothing can be saved to a file that is gone.
    if (!isWritable())
        hideApplyEditButtons();
    updateTitle();
}

void PreviewBox::updateTitle()
{
    QString name = ShownText::cut(m_controller->fileData(m_fileId, DataType::Name).toString());
    // A title takes this for a mark of its own unless it is doubled.
    name.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    const int position = m_walk->position();
    if (position > 0)
        setWindowTitle(
            tr("%1 - %2 of %3").arg(name, QString::number(position), QString::number(m_walk->count())));
    else if (!name.isEmpty())
        setWindowTitle(name);
}

void PreviewBox::showScale(double scale)
{
    const double percent = scale * 100;
    m_scaleLabel->setText(
        tr("%1 %").arg(scale < 1 ? QString::number(percent, 'g', 3) : QString::number(qRound(percent))));
}
