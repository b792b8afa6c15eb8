#pragma once

#include "core/records/file.h"
#include "core/records/groupitem.h"
#include "core/records/tbnode.h"
#include "core/records/trnode.h"
#include "db/manager/databasemanger.h"
#include "tests/support/text.h"

#include <random>

/** A person who edits without end, the same way for the same seed. */
class RandomEditor
{
public:
    RandomEditor(DatabaseManger &manager, unsigned seed) : m_manager(manager), m_random(seed) {}

    void edit()
    {
        const QString name = "name '%1' 100% ü"_s.arg(below(1000000));
        switch (below(19)) {
        case 0:
            m_manager.addTag(name, below(2) ? files() : QVector<qint64>());
            break;
        case 1:
            m_manager.renameTag(tag(), name);
            break;
        case 2:
            m_manager.changeTagDescription(tag(), name);
            break;
        case 3:
            m_manager.addGroup(name, true);
            break;
        case 4:
            m_manager.renameGroup(group(), name);
            break;
        case 5:
            m_manager.setGroupTags({{group(), tags()}, {group(), tags()}});
            break;
        case 6:
            m_manager.addNodesBelow(tags(), below(4) ? node() : 0);
            break;
        case 7:
            m_manager.addNodesAbove(tags(), node());
            break;
        case 8:
            m_manager.updateNode(node(), below(2) ? "inverted"_s : "tr_options"_s, QString::number(below(2)));
            break;
        case 9:
            removeSome(name);
            break;
        case 10:
            m_manager.addRelations(below(3) ? relation() : QString(), tags());
            break;
        case 11:
            m_manager.updateFile(files().first(), below(2) ? "file_name"_s : "file_description"_s, name);
            break;
        case 12:
            m_manager.tagFiles(files(), {tags(), {name, name + "2"_s}});
            break;
        case 13:
            m_manager.addNodesOf({tags(), {name}}, below(2) ? node() : 0);
            break;
        case 14:
            m_manager.addRelationsOf(below(3) ? relation() : QString(), {tags(), {name}});
            break;
        case 15:
            m_manager.mergeTags(tag(), tags());
            break;
        default:
            m_manager.changeTags(Tagging::of(files(), tags(), tags()));
        }
    }

    int below(int bound) { return int(m_random() % unsigned(bound)); }
    qint64 oneOf(const QList<qint64> &ids) { return ids.isEmpty() ? 0 : ids.at(below(ids.size())); }
    qint64 node() { return oneOf(m_manager.nodes().keys()); }
    QVector<qint64> tags() { return several(&RandomEditor::tag, 3); }

private:
    using Ids = QVector<qint64>;

    void removeSome(const QString &name)
    {
        switch (below(7)) {
        case 0:
            m_manager.removeTags(unusedTags());
            break;
        case 6:
            m_manager.removeNodes({node()});
            break;
        case 1:
        case 2:
            m_manager.removeNodesKeepingChildren({node(), node()});
            break;
        case 3:
            m_manager.removeGroups({group()});
            break;
        case 4:
            m_manager.removeRelations({relation()});
            break;
        default:
            m_manager.addTagToGroup(name, group());
        }
    }
    qint64 group() { return oneOf(m_manager.groups()->keys()); }
    qint64 tag()
    {
        const TableData &rows = m_manager.tags();
        return rows.isEmpty() ? 0 : rows.at(below(rows.size()))->value("tag_id"_s).toLongLong();
    }
    /** One at most: what is in use is asked about, and is not taken back. */
    Ids unusedTags()
    {
        QSet<qint64> used{1}; // there is always one to choose
        for (const TBnode *node : qAsConst(m_manager.nodes()))
            used.insert(node->tagId());
        for (const auto &place : qAsConst(m_manager.relationNodes()))
            used.insert(place.second->id());
        for (const File *file : qAsConst(m_manager.files())) {
            for (const qint64 tagId : file->tags())
                used.insert(tagId);
        }
        for (const TableRowData *row : m_manager.tags()) {
            if (!used.contains(row->value("tag_id"_s).toLongLong()))
                return {row->value("tag_id"_s).toLongLong()};
        }
        return {};
    }
    QString relation()
    {
        const auto &places = m_manager.relationNodes();
        return places.isEmpty() ? QString() : places.at(below(places.size())).first;
    }
    Ids several(qint64 (RandomEditor::*one)(), int most)
    {
        QSet<qint64> ids;
        for (int i = below(most); i >= 0; --i)
            ids.insert((this->*one)());
        return ids.values().toVector();
    }
    qint64 file() { return oneOf(m_manager.files().keys()); }
    Ids files() { return several(&RandomEditor::file, 12); }

    DatabaseManger &m_manager;
    std::mt19937 m_random;
};
