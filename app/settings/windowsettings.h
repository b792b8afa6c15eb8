#pragma once

#include "app/settings/dbdetails.h"

#include <QByteArray>
#include <QQueue>
#include <QString>

/** What the windows keep between two runs. GUI thread; each call reads or writes the store by itself. */
namespace WindowSettings {
/** The keys under which windows and headers keep their geometry or state. */
const QString mainWindowGeometry = QStringLiteral("MainWindow/geometry");
const QString mainWindowState = QStringLiteral("MainWindow/state");
const QString manualGeometry = QStringLiteral("ManualWindow/geometry");
const QString quickStartGeometry = QStringLiteral("QSGuideWindow/geometry");
const QString previewGeometry = QStringLiteral("PreviewBox/geometry");
const QString tagTableHeader = QStringLiteral("TagView/horizontalHeader");
const QString fileTableHeader = QStringLiteral("ListView/headers");

/** Empty when there is none, and for one that is not as this version of the program and of Qt stored it. */
QByteArray layout(const QString &key);
void setLayout(const QString &key, const QByteArray &state);

/** The version that ran last; empty on the very first run. */
QString lastVersionUsed();
/** Stores the version of this run and whether it differs from the last one. Answers the latter. */
bool noteVersion(const QString &version);

QString lastDatabaseDir(const QString &defaultDir);
void setLastDatabaseDir(const QString &dir);
/** The folder that files were last extracted to, with a "/" on its end. */
QString lastExtractDir(const QString &defaultDir);
void setLastExtractDir(const QString &dir);

/** The recent databases, newest first, without passwords. */
QQueue<DBDetails> recentDatabases();
void setRecentDatabases(const QQueue<DBDetails> &databases);

bool showIconView();
void setShowIconView(bool show);
/** The side of a thumbnail's square in the list, in pixels. */
constexpr int smallestThumbnail = 64;
constexpr int largestThumbnail = 256;
int thumbnailSide();
void setThumbnailSide(int side);
bool isFileSearchLineVisible();
void setFileSearchLineVisible(bool visible);
/** Whether the numbers of files stand beside the names of tags and nodes. */
bool areFileCountsShown();
void setFileCountsShown(bool shown);
bool isEditModeActivated();
void setEditModeActivated(bool activated);
} // namespace WindowSettings
