#pragma once

#include "app/settings/constants.h"
#include "models/base/idlistmime.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

#include <memory>

/** What the tree hands over when a node is dropped: its id and whether it fell on the lower half of a row. */
inline void fillNodeDrag(QMimeData &data, qint64 nodeId, bool below = false)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << nodeId << below;
    data.setData(Constants::nodeMimeType, bytes);
}

inline std::unique_ptr<QMimeData> tagDrag(const QVector<qint64> &ids)
{
    return std::unique_ptr<QMimeData>(IdListMime::pack(Constants::tagMimeType, ids));
}

inline std::unique_ptr<QMimeData> fileDrag(const QVector<qint64> &ids)
{
    return std::unique_ptr<QMimeData>(IdListMime::pack(Constants::fileMimeType, ids));
}

/** Drags data over a widget and lets it fall there, as the window system would. The action that was taken. */
inline Qt::DropAction drop(QWidget *target, const QPoint &at, const QMimeData &data,
                           Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                           Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction)
{
    QDragEnterEvent enter(at, actions, &data, Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(target, &enter);
    QDragMoveEvent move(at, actions, &data, Qt::LeftButton, modifiers);
    move.setDropAction(actions.testFlag(Qt::MoveAction) ? Qt::MoveAction : Qt::CopyAction);
    move.ignore();
    if (enter.isAccepted())
        QCoreApplication::sendEvent(target, &move);
    if (!move.isAccepted()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(target, &leave);
        return Qt::IgnoreAction;
    }
    QDropEvent fall(at, actions, &data, Qt::LeftButton, modifiers);
    fall.setDropAction(move.dropAction());
    QCoreApplication::sendEvent(target, &fall);
    return fall.isAccepted() ? fall.dropAction() : Qt::IgnoreAction;
}
