#include "ui/preview/previewbox.h"

#include "app/messages/messages.h"
#include "app/settings/showntext.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "fileops/pictures/imageloading.h"
#include "models/contents/sorter.h"
#include "ui/preview/descriptionbar.h"
#include "ui/preview/imagewalk.h"
#include "ui/preview/loadingnotice.h"
#include "ui/preview/navigationbar.h"
#include "ui/preview/picturearea.h"
#include "ui/preview/pictureedit.h"
#include "ui/preview/slidetimer.h"
#include "ui/preview/stayingontop.h"
#include "ui/tagging/filetagging.h"
#include "ui/tagging/namesline.h"

#include <QDebug>
#include <QKeyEvent>
#include <QLocale>
#include <QScreen>

#include <utility>

namespace {

// What the slide show may spend on pictures that cannot be shown before it waits for its next turn.
constexpr int mostMillisecondsOfTrying = 500;
constexpr int followingMilliseconds = 100;
constexpr int retryMilliseconds = 300;
constexpr int retryShare = 20;
constexpr QSize firstSize(920, 720);

} // namespace

PreviewBox::PreviewBox(qint64 fileId, const Sorter *model, MainViewController *controller, QWidget *parent)
    : QMainWindow(parent),
      m_controller(controller),
      m_walk(new ImageWalk(model, this)),
      m_area(new PictureArea(this)),
      m_notice(new LoadingNotice(m_area->viewport())),
      m_toolBar(new NavigationBar(this)),
      m_description(new DescriptionBar(this)),
      m_tagging(new FileTagging(
          {[this] { return QVector<qint64>{m_fileId}; }, [this] { return [this] { nextImage(); }; }}, this)),
      m_edit(new PictureEdit(controller, this)),
      m_slideTimer(new SlideTimer(this)),
      m_onTop(new StayingOnTop(this)),
      m_fullScreen(this)
{
    setObjectName(QStringLiteral("PreviewBox"));
    // The program ends with its main window, also while a picture is shown.
    setAttribute(Qt::WA_QuitOnClose, false);
    setCentralWidget(m_area);
    addToolBar(m_toolBar);
    addToolBar(Qt::BottomToolBarArea, m_description);
    addActions(m_toolBar->keyActions());
    connectToolBar();
    connectAll();
    takeTagging();
    placeWindow();
    setFocusPolicy(Qt::StrongFocus);
    setFocus();
    loadImage(fileId);
}

PreviewBox::~PreviewBox()
{
    commitDescription();
    WindowSettings::setLayout(WindowSettings::previewGeometry, m_fullScreen.windowGeometry());
    if (m_edit->isWaiting())
        saveEdit(Telling::InTheLog);
}

void PreviewBox::connectToolBar()
{
    connect(m_toolBar, &NavigationBar::previousRequested, this, &PreviewBox::prevImage);
    connect(m_toolBar, &NavigationBar::nextRequested, this, &PreviewBox::nextImage);
    connect(m_toolBar, &NavigationBar::anticlockwiseRequested, this, &PreviewBox::rotateAnticlockwise);
    connect(m_toolBar, &NavigationBar::clockwiseRequested, this, &PreviewBox::rotateClockwise);
    connect(m_toolBar, &NavigationBar::fullScreenRequested, this,
            [this] { m_fullScreen.isOn() ? finishSlideshow() : goFullScreen(); });
    connect(m_toolBar, &NavigationBar::slideshowRequested, this, &PreviewBox::startSlideshow);
    connect(m_toolBar, &NavigationBar::zoomInRequested, m_area, &PictureArea::zoomIn);
    connect(m_toolBar, &NavigationBar::zoomOutRequested, m_area, &PictureArea::zoomOut);
    connect(m_toolBar, &NavigationBar::originalSizeRequested, this, &PreviewBox::zoom100);
    connect(m_toolBar, &NavigationBar::fitRequested, m_area, &PictureArea::fit);
    connect(m_toolBar, &NavigationBar::savingRequested, this, [this] {
        applyEdit();
        hideApplyEditButtons();
    });
    connect(m_toolBar, &NavigationBar::cancelRequested, this, [this] {
        cancelEdit();
        hideApplyEditButtons();
    });
}

void PreviewBox::connectAll()
{
    connect(m_edit, &PictureEdit::saved, this, &PreviewBox::changedThumbnail);
    connect(m_slideTimer, &SlideTimer::due, this, &PreviewBox::nextImage);
    connect(m_description, &DescriptionBar::returnPressed, this, [this] {
        commitDescription();
        setFocus();
    });
    // What was shown before goes only when the next one lets wait for itself.
    connect(m_notice, &LoadingNotice::appeared, this, [this] { m_area->showMessage(QString()); });
    connect(m_notice, &LoadingNotice::canceled, this, &PreviewBox::cancelLoading);
    connect(m_area, &PictureArea::scaleChanged, m_description, &DescriptionBar::showScale);
    // The picture alone: what was typed meanwhile is not to be saved by the way.
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &PreviewBox::beginLoading);
    // Many news at once are one look.
    m_following.setSingleShot(true);
    m_following.setInterval(followingMilliseconds);
    connect(m_walk, &ImageWalk::changed, &m_following, qOverload<>(&QTimer::start));
    connect(&m_following, &QTimer::timeout, this, &PreviewBox::followRecord);
}

void PreviewBox::takeTagging()
{
    setMenuWidget(m_tagging->line());
    m_tagging->takePlaces(*m_toolBar);
    m_tagging->setController(m_controller ? m_controller->collection()->tagsController() : nullptr);
}

void PreviewBox::placeWindow()
{
    resize(firstSize.boundedTo(screen()->availableSize() * 9 / 10));
    restoreGeometry(WindowSettings::layout(WindowSettings::previewGeometry));
}

void PreviewBox::readSettings()
{
    m_slideTimer->restart();
    m_edit->readSettings();
    offerSaving();
    m_onTop->readSettings();
}

void PreviewBox::setOrigin(QWidget *origin)
{
    m_onTop->setOrigin(origin);
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
    m_tagging->setEnabled(isWritable());
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
            tr("%1 - %2 of %3").arg(name, QLocale().toString(position), QLocale().toString(m_walk->count())));
    else if (!name.isEmpty())
        setWindowTitle(name);
}

bool PreviewBox::isWritable() const
{
    return m_edit->isWritable();
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
    m_slideTimer->restart();
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
    m_edit->reset(fileId);
    m_isDescriptionKeptBack = false;
    m_awaitedQuarters = 0;
    m_fileId = fileId;
    m_walk->setCurrent(fileId);
    m_description->setModified(false);
    followRecord();
    beginLoading();
}

void PreviewBox::beginLoading()
{
    if (!m_controller || m_loading)
        return;
    QElapsedTimer asking;
    asking.start();
    m_loading = m_controller->loadImage(m_fileId);
    // The window stands still while a server lets wait for its answer: then it is asked less often.
    m_retry.setInterval(qMax(retryMilliseconds, retryShare * int(asking.elapsed())));
    connect(m_loading.get(), &ImageLoading::finished, this, &PreviewBox::showLoaded);
    m_notice->begin(m_controller->fileData(m_fileId, DataType::Name).toString());
}

void PreviewBox::endLoading()
{
    m_retry.stop();
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
        m_edit->setPicture(stored.image);
        m_area->showPicture(m_edit->picture());
        rotate(std::exchange(m_awaitedQuarters, 0));
        return;
    }
    qDebug("Error loading image, id = %lld", static_cast<long long>(m_fileId));
    const bool isBusy = stored.state == StoredImage::Busy;
    m_area->showMessage(isBusy ? tr("The database is busy. The picture comes as soon as it is free.")
                               : tr("This picture cannot be shown."));
    if (isBusy)
        m_retry.start();
    tellLoadFailure(stored.state);
    if (m_step && m_slideTimer->isActive() && m_fileId != m_stepStart &&
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
    if (m_slideTimer->isActive()) {
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
    if (!m_edit->turn(quarters))
        return;
    m_area->showTurned(m_edit->picture());
    offerSaving();
}

void PreviewBox::offerSaving()
{
    m_toolBar->setSavingOffered(m_edit->isOffered() || (m_isDescriptionKeptBack && isWritable()));
}

void PreviewBox::hideApplyEditButtons()
{
    m_toolBar->setSavingOffered(false);
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
    const StoredImage::Saving outcome = m_edit->save();
    if (outcome == StoredImage::NotSaved && telling == Telling::Aloud)
        Messages::warning(this, tr("Error saving image"), tr("The turned picture could not be saved."));
    return outcome == StoredImage::Saved;
}

bool PreviewBox::saveWaiting()
{
    commitDescription();
    m_isDescriptionKeptBack = m_description->isModified();
    const bool isSaved = (!m_edit->isWaiting() || saveEdit(Telling::Aloud)) && !m_isDescriptionKeptBack;
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
    if (m_fullScreen.isOn())
        return;
    setBare(true);
    setFocus();
    m_fullScreen.enter();
}

void PreviewBox::leaveFullScreen()
{
    if (!m_fullScreen.isOn())
        return;
    setBare(false);
    m_fullScreen.leave();
}

void PreviewBox::setBare(bool isBare)
{
    m_area->setBlack(isBare);
    m_toolBar->setVisible(!isBare);
    m_description->setVisible(!isBare);
}

void PreviewBox::startSlideshow()
{
    goFullScreen();
    m_slideTimer->start();
}

void PreviewBox::finishSlideshow()
{
    m_slideTimer->stop();
    leaveFullScreen();
}

void PreviewBox::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    // The desktop, too, can end the full screen.
    const bool isOfState = event->type() == QEvent::WindowStateChange;
    if (isOfState && m_fullScreen.isOn() && isVisible() && !isFullScreen() && !isMinimized())
        finishSlideshow();
}

void PreviewBox::closeEvent(QCloseEvent *event)
{
    m_slideTimer->stop();
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
        if (m_fullScreen.isOn()) {
            finishSlideshow();
        } else if (close()) {
            deleteLater();
        }
        break;
    default:
        QMainWindow::keyPressEvent(event);
    }
}
