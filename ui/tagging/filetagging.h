#pragma once

#include <QObject>
#include <QVector>

#include <functional>

class NamesLine;
class QAction;
class QMenu;
class QWidget;
class TagsController;
struct ChosenTags;

/**
 * Tags put on files by the keyboard: "Add Tags...", which opens a line, and the keys of the favourite tags.
 * Each window that shows files has one, gives the line its place, and the commands theirs. GUI thread.
 */
class FileTagging : public QObject
{
    Q_OBJECT

public:
    struct Host
    {
        /** Those that get the tags. */
        std::function<QVector<qint64>()> files;
        /**
         * Finds the file behind them, before an edit may take them out of sight, and gives what goes there.
         */
        std::function<std::function<void()>()> next;
    };

    FileTagging(const Host &host, QWidget *window);

    /** Borrowed; null, before it goes, closes the line. */
    void setController(TagsController *tags);
    /** To be put where it is seen beside the files; hidden until it is used. */
    NamesLine *line() const { return m_line; }
    /** Appends the command and the favourite tags with their keys. */
    void takePlaces(QWidget &menuOrBar);
    /** The command, where it can be used. */
    void fillContextMenu(QMenu &menu);
    void setEnabled(bool isEnabled);

private:
    void makeFavourites(QWidget *window);
    void nameFavourites();
    void putFavourite(int place);
    bool take(const ChosenTags &tags);
    void goOn();

    const Host m_host;
    NamesLine *m_line;
    QAction *m_addTags;
    QMenu *m_favourites;
    TagsController *m_tags = nullptr;
};
