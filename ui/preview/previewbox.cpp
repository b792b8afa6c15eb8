#include "ui/preview/previewbox.h"

#include "app/messages/messages.h"
#include "app/messages/waitcursor.h"
#include "app/settings/previewsettings.h"
#include "app/settings/showntext.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/mainviewcontroller.h"
#include "fileops/pictures/imageloading.h"
#include "models/contents/sorter.h"
#include "ui/preview/descriptionbar.h"
#include "ui/preview/imagewalk.h"
#include "ui/preview/loadingnotice.h"
#include "ui/preview/picturearea.h"

#include <QAction>
#include <QApplication>
#include <QDebug>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QToolBar>
#include <QTransform>

#include <utility>

namespace {

// What the slide show may spend on pictures that cannot be shown before it waits for its next turn.
constexpr int mostMillisecondsOfTrying = 500;
constexpr int followingMilliseconds = 100;
constexpr QSize firstSize(920, 720);

QWidget *makeSpacer(QWidget *parent)
{
    auto *spacer = new QWidget(parent);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return spacer;
}

} // namespace

PreviewBox::PreviewBox(qint64 fileId, const Sorter *model, MainViewController *controller, QWidget *parent)
    : QMainWindow(parent),
      m_controller(controller),
      m_walk(new ImageWalk(model, this)),
      m_area(new PictureArea(this)),
      m_notice(new LoadingNotice(m_area->viewport()))
{
    setObjectName(QStringLiteral("PreviewBox"));
    // The program ends with its main window, also while a picture is shown.
    setAttribute(Qt::WA_QuitOnClose, false);
    setCentralWidget(m_area);
    makeToolBar();
    m_description = new DescriptionBar(this);
    addToolBar(Qt::BottomToolBarArea, m_description);
    makeShortcuts();
    connectAll();
    placeWindow();
    setFocusPolicy(Qt::StrongFocus);
    setFocus();
    loadImage(fileId);
}

PreviewBox::~PreviewBox()
{
    commitDescription();
    WindowSettings::setLayout(WindowSettings::previewGeometry,
                              m_isFullScreen ? m_windowGeometry : saveGeometry());
    if (m_hasUnsavedEdit)
        saveEdit(Telling::InTheLog);
}

void PreviewBox::makeToolBar()
{
    m_toolBar = addToolBar(tr("Navigation"));
    m_toolBar->setObjectName(QStringLiteral("Navigation"));
    m_toolBar->setMovable(false);
    m_toolBar->setContextMenuPolicy(Qt::PreventContextMenu);
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
    connect(m_description, &DescriptionBar::returnPressed, this, [this] {
        commitDescription();
        setFocus();
    });
    // What was shown before goes only when the next one lets wait for itself.
    connect(m_notice, &LoadingNotice::appeared, this, [this] { m_area->showMessage(QString()); });
    connect(m_notice, &LoadingNotice::canceled, this, &PreviewBox::cancelLoading);
    connect(m_area, &PictureArea::scaleChanged, m_description, &DescriptionBar::showScale);
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
    m_description->showStored(stored);
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

bool PreviewBox::isWritable() const
{
    return m_controller && !m_controller->isReadOnly() &&
           m_controller->fileData(m_fileId, DataType::Name).isValid();
}

void PreviewBox::prevImage()
{
    walk(&ImageWalk::previous);
}

void PreviewBox::nextImage()
{
    walk(&ImageWalk::next);
}

void PreviewBox::walk(Step step)
{
    restartSlideTimer();
    m_step = step;
    m_stepStart = m_fileId;
    m_stepTime.start();
    stepOn();
}

void PreviewBox::stepOn()
{
    const qint64 start = m_fileId;
    const qint64 fileId = (m_walk->*m_step)();
    if (fileId == 0 || !saveWaiting())
        return;
    loadImage(fileId);
    if (m_fileId != start)
        emit showingFile(m_fileId);
}

void PreviewBox::refresh()
{
    loadImage(m_fileId);
}

void PreviewBox::loadImage(qint64 fileId)
{
    commitDescription();
    hideApplyEditButtons();
    endLoading();
    m_hasUnsavedEdit = false;
    m_isEditKeptBack = false;
    m_isDescriptionKeptBack = false;
    m_quarters = 0;
    m_awaitedQuarters = 0;
    m_fileId = fileId;
    m_walk->setCurrent(fileId);
    m_description->setModified(false);
    // One picture in memory at a time.
    m_original = QImage();
    followRecord();
    if (!m_controller)
        return;
    m_loading = m_controller->loadImage(fileId);
    connect(m_loading.get(), &ImageLoading::finished, this, &PreviewBox::showLoaded);
    m_notice->begin(m_controller->fileData(fileId, DataType::Name).toString());
}

void PreviewBox::endLoading()
{
    m_notice->end();
    if (!m_loading)
        return;
    // It may be telling of its end just now.
    ImageLoading *loading = m_loading.release();
    loading->disconnect(this);
    loading->cancel();
    loading->deleteLater();
}

void PreviewBox::cancelLoading()
{
    endLoading();
    m_area->showMessage(tr("The loading of this picture was canceled."));
}

void PreviewBox::showLoaded()
{
    StoredImage stored = m_loading->result();
    endLoading();
    if (stored.state == StoredImage::Loaded) {
        m_original = std::move(stored.image);
        m_area->showPicture(m_original);
        rotate(std::exchange(m_awaitedQuarters, 0));
        return;
    }
    qDebug("Error loading image, id = %lld", static_cast<long long>(m_fileId));
    const bool isBusy = stored.state == StoredImage::Busy;
    m_area->showMessage(isBusy ? tr("The database is busy. Please try again.")
                               : tr("This picture cannot be shown."));
    tellLoadFailure(stored.state);
    if (m_step && m_slideTimer.isActive() && m_fileId != m_stepStart &&
        !m_stepTime.hasExpired(mostMillisecondsOfTrying))
        stepOn();
}

void PreviewBox::tellLoadFailure(int state)
{
    if (state == StoredImage::FileGone)
        tellFailure(tr("File No Longer Present"),
                    tr("This image could not be opened because the file no longer exists in its original "
                       "path. It may have been moved, renamed or deleted."));
    else if (state == StoredImage::ExternalUnreadable)
        tellFailure(tr("Error previewing image"),
                    tr("An error has occurred while retrieving this externally stored image."));
    else if (state != StoredImage::Unreachable && state != StoredImage::Busy)
        tellFailure(tr("Error previewing image"), tr("An error has occurred while retrieving this image."));
}

// Only once the event loop is back: the window may be on its way to the screen, or in the middle of a step.
void PreviewBox::tellFailure(const QString &title, const QString &text)
{
    if (m_slideTimer.isActive()) {
        qDebug().noquote() << title << m_fileId << text;
        return;
    }
    QTimer::singleShot(0, this, [this, title, text] { Messages::warning(this, title, text); });
}

void PreviewBox::rotateClockwise()
{
    rotate(1);
}

void PreviewBox::rotateAnticlockwise()
{
    rotate(-1);
}

void PreviewBox::rotate(int quarters)
{
    // What is on its way is turned when it comes.
    if (m_loading) {
        m_awaitedQuarters += quarters;
        return;
    }
    constexpr int fullTurn = 4;
    quarters = (quarters % fullTurn + fullTurn) % fullTurn;
    if (quarters == 0)
        return;
    const QImage turned = m_original.transformed(QTransform().rotate(90 * quarters));
    // Null without a picture, or without the memory for one.
    if (turned.isNull())
        return;
    m_original = turned;
    m_quarters = (m_quarters + quarters) % fullTurn;
    m_area->showTurned(m_original);
    m_hasUnsavedEdit = isTurned() && (m_isEditKeptBack || PreviewSettings::autoSaveRotated());
    offerSaving();
}

// A picture that stands as it is stored leaves nothing to save.
bool PreviewBox::isTurned() const
{
    return m_quarters != 0 && isWritable();
}

void PreviewBox::offerSaving()
{
    const bool isOffered = isTurned() && (m_isEditKeptBack || !PreviewSettings::autoSaveRotated());
    m_editButtonsAction->setVisible(isOffered || (m_isDescriptionKeptBack && isWritable()));
}

void PreviewBox::hideApplyEditButtons()
{
    m_editButtonsAction->setVisible(false);
}

void PreviewBox::zoom100()
{
    m_area->zoom100();
}

void PreviewBox::applyEdit()
{
    if (m_isDescriptionKeptBack)
        commitDescription();
    saveEdit(Telling::Aloud);
    // What is still to be saved is offered anew, unless the window has gone on to another picture.
    QTimer::singleShot(0, this, &PreviewBox::offerSaving);
}

void PreviewBox::cancelEdit()
{
    if (m_isDescriptionKeptBack)
        m_description->setModified(false);
    refresh();
}

bool PreviewBox::saveEdit(Telling telling)
{
    qDebug() << "Applying edit to the image in the database.";
    m_hasUnsavedEdit = false;
    if (m_original.isNull() || !isWritable())
        return true;
    StoredImage::Saving outcome = StoredImage::Refused;
    {
        const WaitCursor cursor;
        m_controller->pauseChecking();
        outcome = m_controller->saveImage(m_fileId, m_original);
        m_controller->resumeChecking();
    }
    m_isEditKeptBack = outcome != StoredImage::Saved;
    // What may be had later waits; what may never be had is told once and left to the user.
    m_hasUnsavedEdit = outcome == StoredImage::Refused;
    if (outcome == StoredImage::Saved) {
        m_quarters = 0;
        emit changedThumbnail(m_fileId);
        return true;
    }
    qDebug() << "Rotated image could not be saved, id =" << m_fileId;
    if (outcome == StoredImage::NotSaved && telling == Telling::Aloud)
        Messages::warning(this, tr("Error saving image"), tr("The turned picture could not be saved."));
    return false;
}

bool PreviewBox::saveWaiting()
{
    commitDescription();
    m_isDescriptionKeptBack = m_description->isModified();
    const bool isSaved = (!m_hasUnsavedEdit || saveEdit(Telling::Aloud)) && !m_isDescriptionKeptBack;
    offerSaving();
    // The offer stands in the tool bar, which a show has hidden.
    if (!isSaved)
        finishSlideshow();
    return isSaved;
}

void PreviewBox::commitDescription()
{
    // A text that nobody touched is older than what others may have written meanwhile.
    if (!m_controller || !m_description->isModified())
        return;
    const QString text = m_description->text();
    const QVariant stored = m_controller->fileData(m_fileId, DataType::Description);
    const bool isKept = text == stored.toString() || m_controller->updateFileDescription(m_fileId, text);
    m_description->setModified(!isKept);
}

void PreviewBox::goFullScreen()
{
    if (m_isFullScreen)
        return;
    m_windowGeometry = saveGeometry();
    m_wasMaximized = isMaximized();
    m_isFullScreen = true;
    QPalette colours = palette();
    colours.setColor(QPalette::Window, Qt::black);
    setPalette(colours);
    m_area->setBlack(true);
    m_toolBar->hide();
    m_description->hide();
    setFocus();
    showFullScreen();
}

void PreviewBox::leaveFullScreen()
{
    if (!m_isFullScreen)
        return;
    m_isFullScreen = false;
    setPalette(QPalette());
    m_area->setBlack(false);
    m_toolBar->show();
    m_description->show();
    m_wasMaximized ? showMaximized() : showNormal();
}

void PreviewBox::startSlideshow()
{
    goFullScreen();
    m_slideTimer.start(PreviewSettings::slideshowIncrementTime() * 1000, Qt::CoarseTimer, this);
}

void PreviewBox::finishSlideshow()
{
    m_slideTimer.stop();
    leaveFullScreen();
}

// A picture that was stepped to by hand is looked at as long as any other.
void PreviewBox::restartSlideTimer()
{
    if (m_slideTimer.isActive())
        m_slideTimer.start(PreviewSettings::slideshowIncrementTime() * 1000, Qt::CoarseTimer, this);
}

void PreviewBox::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_slideTimer.timerId()) {
        QMainWindow::timerEvent(event);
        return;
    }
    // Pictures stand still under a box or a menu, whose loop may be in the middle of a change.
    if (!QApplication::activeModalWidget() && !QApplication::activePopupWidget())
        nextImage();
}

void PreviewBox::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    // The desktop, too, can end the full screen.
    const bool isOfState = event->type() == QEvent::WindowStateChange;
    if (isOfState && m_isFullScreen && isVisible() && !isFullScreen() && !isMinimized())
        finishSlideshow();
}

void PreviewBox::closeEvent(QCloseEvent *event)
{
    m_slideTimer.stop();
    if (saveWaiting())
        QMainWindow::closeEvent(event);
    else
        event->ignore();
}

void PreviewBox::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        prevImage();
        break;
    case Qt::Key_Right:
        nextImage();
        break;
    case Qt::Key_Escape:
        if (m_isFullScreen) {
            finishSlideshow();
        } else if (close()) {
            deleteLater();
        }
        break;
    default:
        QMainWindow::keyPressEvent(event);
    }
}
