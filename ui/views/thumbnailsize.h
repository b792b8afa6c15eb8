#pragma once

#include <QObject>
#include <QPointer>

class FileViews;
class MainUi;
class QSlider;

/** The slider in the status bar for the size of the thumbnails, which it keeps. Borrows the views. */
class ThumbnailSize : public QObject
{
    Q_OBJECT

public:
    ThumbnailSize(FileViews *views, QObject *parent);

    void takePlace(MainUi &ui);
    /** A table has none. */
    void setOffered(bool isOffered);

private:
    FileViews *m_views;
    QPointer<QSlider> m_slider; // belongs to the window
};
