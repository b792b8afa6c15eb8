#pragma once

#include "fileops/pictures/storedimage.h"

#include <QImage>
#include <QObject>
#include <QPointer>

class MainViewController;

/**
 * The picture on show and how far it was turned since it was loaded or saved. It knows whether that is to be
 * saved without a question or to be offered, and writes it back. Belongs to the previewer; GUI thread.
 */
class PictureEdit : public QObject
{
    Q_OBJECT

public:
    PictureEdit(MainViewController *controller, QObject *parent);

    /** Another file, whose picture is still to come: what was turned before is gone. */
    void reset(qint64 fileId);
    void setPicture(const QImage &picture) { m_picture = picture; }
    /** As it was stored, save for rotations: what a save writes back without a loss. */
    const QImage &picture() const { return m_picture; }
    /** Whether the file is there and may be changed. */
    bool isWritable() const;

    /** By quarters, clockwise; false when nothing changes. */
    bool turn(int quarters);
    /** To be saved before the window goes on. */
    bool isWaiting() const { return m_isWaiting; }
    bool isOffered() const;
    /** Takes over whether that is to be saved without a question. */
    void readSettings();
    /** What cannot be saved is kept; Saved, too, when there is nothing that could be. */
    StoredImage::Saving save();

signals:
    void saved(qlonglong fileId);

private:
    bool isTurned() const;

    const QPointer<MainViewController> m_controller;
    qint64 m_fileId = 0;
    QImage m_picture;
    int m_quarters = 0; // clockwise, since the picture was loaded or saved
    bool m_isWaiting = false;
    bool m_isKeptBack = false; // what could not be saved is offered until it is saved or cancelled
};
