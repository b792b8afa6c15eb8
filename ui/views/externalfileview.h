#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QTreeView>
#include <QVector>

class ExternalFileModel;
class HoverOpener;
class QTimer;

/**
 * The tree of the computer's files, from which files and folders are dragged into the program, and onto whose
 * folders files of the database may fall. It changes nothing on disk itself. Folders are read once it has
 * been painted for the first time. GUI thread.
 */
class ExternalFileView : public QTreeView
{
    Q_OBJECT

public:
    explicit ExternalFileView(QWidget *parent = nullptr);
    ~ExternalFileView() override;

signals:
    /** Files of the database were dropped on a folder. */
    void filesDropped(QString folder, QVector<qint64> fileIds);

protected:
    void paintEvent(QPaintEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void load();
    /** Makes the home folder current and opens it. */
    void openHome();
    /** The user goes where he likes from now on. */
    void leaveHome();
    /** Invalid over a file, and over a folder that cannot be written. */
    QModelIndex folderAt(const QPoint &pos) const;
    void endDrag();

    ExternalFileModel *m_model = nullptr;
    HoverOpener *m_hoverOpener;
    QPersistentModelIndex m_dropFolder;
    QPersistentModelIndex m_home;
    // Keeps the home folder at the top while the folders above it fill with rows; gone once the user acts.
    QPointer<QTimer> m_settling;
};
