#include "ui/preview/pictureedit.h"

#include "app/messages/waitcursor.h"
#include "app/settings/previewsettings.h"
#include "core/controllers/mainviewcontroller.h"

#include <QDebug>
#include <QTransform>

PictureEdit::PictureEdit(MainViewController *controller, QObject *parent)
    : QObject(parent), m_controller(controller)
{
}

void PictureEdit::reset(qint64 fileId)
{
    m_fileId = fileId;
    m_isWaiting = false;
    m_isKeptBack = false;
    m_quarters = 0;
    // One picture in memory at a time.
    m_picture = QImage();
}

bool PictureEdit::isWritable() const
{
    return m_controller && !m_controller->isReadOnly() &&
           m_controller->fileData(m_fileId, DataType::Name).isValid();
}

bool PictureEdit::turn(int quarters)
{
    constexpr int fullTurn = 4;
    quarters = (quarters % fullTurn + fullTurn) % fullTurn;
    if (quarters == 0)
        return false;
    const QImage turned = m_picture.transformed(QTransform().rotate(90 * quarters));
    // Null without a picture, or without the memory for one.
    if (turned.isNull())
        return false;
    m_picture = turned;
    m_quarters = (m_quarters + quarters) % fullTurn;
    readSettings();
    return true;
}

void PictureEdit::readSettings()
{
    m_isWaiting = isTurned() && (m_isKeptBack || PreviewSettings::autoSaveRotated());
}

// A picture that stands as it is stored leaves nothing to save.
bool PictureEdit::isTurned() const
{
    return m_quarters != 0 && isWritable();
}

bool PictureEdit::isOffered() const
{
    return isTurned() && (m_isKeptBack || !PreviewSettings::autoSaveRotated());
}

StoredImage::Saving PictureEdit::save()
{
    qDebug() << "Applying edit to the image in the database.";
    m_isWaiting = false;
    if (m_picture.isNull() || !isWritable())
        return StoredImage::Saved;
    StoredImage::Saving outcome = StoredImage::Refused;
    {
        const WaitCursor cursor;
        m_controller->pauseChecking();
        outcome = m_controller->saveImage(m_fileId, m_picture);
        m_controller->resumeChecking();
    }
    m_isKeptBack = outcome != StoredImage::Saved;
    // What may be had later waits; what may never be had is told once and left to the user.
    m_isWaiting = outcome == StoredImage::Refused;
    if (outcome == StoredImage::Saved) {
        m_quarters = 0;
        emit saved(m_fileId);
    } else {
        qDebug() << "Rotated image could not be saved, id =" << m_fileId;
    }
    return outcome;
}
