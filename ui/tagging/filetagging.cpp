#include "ui/tagging/filetagging.h"

#include "app/settings/showntext.h"
#include "core/controllers/favouritetags.h"
#include "core/controllers/tagscontroller.h"
#include "ui/tagging/namesline.h"

#include <QAction>
#include <QMenu>

FileTagging::FileTagging(const Host &host, QWidget *window)
    : QObject(window),
      m_host(host),
      m_line(new NamesLine(
          tr("Add Tags:"), [this](const ChosenTags &tags) { return take(tags); }, window)),
      m_addTags(new QAction(tr("Add Tags..."), this)),
      m_favourites(new QMenu(tr("Favourite Tags"), window))
{
    m_line->offerPin(tr("&Pin"), tr("Return tags and goes on to the next file (Alt+P)"));
    m_addTags->setObjectName(QStringLiteral("addTagsAction"));
    m_addTags->setIcon(QIcon(QStringLiteral(":/icons/tag.png")));
    m_addTags->setShortcut(QKeySequence(QStringLiteral("Ctrl+T")));
    m_addTags->setToolTip(tr("Add Tags (%1)").arg(m_addTags->shortcut().toString(QKeySequence::NativeText)));
    // A key that is held would tag file after file where the line is pinned.
    m_addTags->setAutoRepeat(false);
    connect(m_addTags, &QAction::triggered, m_line, &NamesLine::open);
    connect(m_line, &NamesLine::skipped, this, &FileTagging::goOn);
    window->addAction(m_addTags);
    makeFavourites(window);
}

void FileTagging::makeFavourites(QWidget *window)
{
    m_favourites->setObjectName(QStringLiteral("favouriteTagsMenu"));
    for (int place = 0; place < FavouriteTags::most; ++place) {
        QAction *action = m_favourites->addAction(QString());
        action->setShortcut(FavouriteTags::keyOf(place));
        action->setAutoRepeat(false);
        connect(action, &QAction::triggered, this, [this, place] { putFavourite(place); });
        // The keys reach further than the menu, which need not have been open.
        window->addAction(action);
    }
    connect(m_favourites, &QMenu::aboutToShow, this, &FileTagging::nameFavourites);
    nameFavourites();
}

void FileTagging::takePlaces(QWidget &menuOrBar)
{
    menuOrBar.addActions({m_addTags, m_favourites->menuAction()});
}

void FileTagging::fillContextMenu(QMenu &menu)
{
    // A context menu holds what can be done; a menu of the bar shows the rest in grey.
    if (m_addTags->isEnabled())
        menu.addAction(m_addTags);
}

void FileTagging::nameFavourites()
{
    const QList<QAction *> actions = m_favourites->actions();
    for (int place = 0; place < actions.size(); ++place) {
        const qint64 tagId = m_tags ? m_tags->favourites()->tagAt(place) : 0;
        QString name = tagId > 0 ? ShownText::cut(m_tags->tagName(tagId), 100) : tr("No tag");
        name.replace(QLatin1Char('&'), QLatin1String("&&"));
        actions.at(place)->setText(name);
    }
}

void FileTagging::setController(TagsController *tags)
{
    m_tags = tags;
    m_line->setController(tags);
    nameFavourites();
}

void FileTagging::setEnabled(bool isEnabled)
{
    m_addTags->setEnabled(isEnabled);
    for (QAction *action : m_favourites->actions())
        action->setEnabled(isEnabled);
}

void FileTagging::putFavourite(int place)
{
    const qint64 tagId = m_tags ? m_tags->favourites()->tagAt(place) : 0;
    const QVector<qint64> fileIds = m_host.files();
    if (tagId > 0 && !fileIds.isEmpty())
        m_tags->tagFiles(fileIds, {{tagId}, {}});
}

bool FileTagging::take(const ChosenTags &tags)
{
    const QVector<qint64> fileIds = m_host.files();
    if (!m_tags || fileIds.isEmpty())
        return false;
    // Before the tags are put: a file that got one may leave the selection that is shown.
    const std::function<void()> goOn = m_host.next();
    if (!m_tags->tagFiles(fileIds, tags))
        return false;
    if (m_line->isPinned())
        goOn();
    return true;
}

void FileTagging::goOn()
{
    m_host.next()();
}
