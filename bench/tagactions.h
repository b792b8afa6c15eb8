#pragma once

#include <QtGlobal>

#include <functional>

class ActionTable;
class FlatLibrary;
class OpenWindow;

/** The benchmark's actions on tags: renamed, chosen, filtered, changed by the thousand. */
class TagActions
{
public:
    TagActions(ActionTable &table, OpenWindow &window, const FlatLibrary &flat);

    /** All that leave files and tags as they are, names apart. */
    void run();
    /** Assigns, chooses and removes tags by the thousand, and such that stand deep in the trees. */
    void runMany();

private:
    void renameTags();
    void renameBoth(const char *suffix, const std::function<void()> &prepare);
    void countFiles();
    void selectTags();
    void filterTags();
    void turnTabs();
    void expandNodes();
    void assignGroups();
    void removeTags();
    void selectManyTags();
    void removeDeepTag(const char *name, int step);
    void makeRows(qint64 from, int count, const char *insert);

    ActionTable &m_table;
    OpenWindow &m_window;
    const FlatLibrary &m_flat;
};
