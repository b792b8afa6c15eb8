#pragma once

#include <QAbstractTableModel>
#include <QVector>

class BrowsingTreesHost;

/**
 * The browsing trees of a server database for their dialog, the default one first: the name, which can be
 * edited, and a check box on the tree that is shown. It keeps a copy of the host's list. Messages leave
 * from the event loop, as an editor may be open. GUI thread.
 */
class BrowsingTreeTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int { NameColumn, SelectColumn, ColumnCount };

    explicit BrowsingTreeTableModel(BrowsingTreesHost *host, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /** Renames a tree, or shows it: one cannot be unchecked. False when nothing has changed. */
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /** Reads the list from the server. When the tree that was shown has gone the default one is shown. */
    void load();
    /** Makes a tree. Its index, invalid when the name is taken or the server did not take it. */
    QModelIndex addTree(const QString &name);
    /** False for the default tree and when it could not be removed. */
    bool removeTree(const QModelIndex &index);
    static bool isDefaultTree(const QModelIndex &index) { return index.row() == 0; }
    QModelIndex indexOf(qint64 treeId) const;

public slots:
    /** Takes the host's list over. */
    void refresh();
    /** The host is about to go. */
    void forgetHost() { m_host = nullptr; }

signals:
    /** A new tree was to get the name of this one. */
    void treeDuplicated(const QModelIndex &index);
    /** Title and text of a message box. */
    void showError(const QString &title, const QString &text);

private:
    struct Tree
    {
        qint64 id;
        QString name;
    };
    const Tree *treeAt(const QModelIndex &index) const;
    bool rename(const Tree &tree, const QString &name);
    bool select(const Tree &tree);
    QModelIndex indexOfName(const QString &name) const;
    void reportLater(const QString &text);

    BrowsingTreesHost *m_host;
    QVector<Tree> m_trees;
};
