#pragma once

#include <QObject>
#include <QPointer>
#include <QVector>

class MainViewController;
class PreviewBox;

/**
 * The open previewers of the main view. They are windows without a parent that delete themselves. GUI thread.
 */
class Previews : public QObject
{
    Q_OBJECT

public:
    /** They are opened from this widget's window; from none where it is null. */
    explicit Previews(QWidget *origin);
    ~Previews() override;

    /** Shows the picture in a new window, or raises the one that shows it. */
    void open(qint64 fileId, MainViewController *controller);
    /** The one that keeps what it could not save: it stands in front, and its database stays. Null for none.
     */
    QWidget *saveWaiting();
    /** Deletes all of them; what they have to save is saved. Before their controller goes. */
    void closeAll();
    /** Lets each of them take over what the user has just set. */
    void readSettings();

signals:
    /** One of them has walked to this file. */
    void showingFile(qlonglong fileId);

private:
    /** As all of them begin with the same remembered place. */
    void placeBesideOthers(PreviewBox *box) const;

    QWidget *m_origin;
    QVector<QPointer<PreviewBox>> m_boxes;
};
