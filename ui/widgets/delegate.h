#pragma once

#include <QStyledItemDelegate>

#include <functional>

class KeptText;

/**
 * Paints items and edits them in place. Sizes never depend on a picture, so that laying out a million items
 * asks for none. GUI thread.
 */
class Delegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit Delegate(QObject *parent = nullptr);

    /** The column of a table that shows its picture alone and is not edited; -1, the default, is none. */
    void setPictureColumn(int column) { m_pictureColumn = column; }
    /** The column of a table whose numbers are bytes, shown in units for people; -1, the default, is none. */
    void setSizeColumn(int column) { m_sizeColumn = column; }
    /** What of an item's whole text a search has found, to be marked where it is shown; empty for nothing. */
    using HitOf = std::function<QString(const QModelIndex &index)>;
    void setHits(const HitOf &hitOf) { m_hitOf = hitOf; }
    /** The role of the whole name, which a thumbnail shows in two lines. */
    void setNameRole(int role) { m_nameRole = role; }
    /** The role of the model that tells its rows apart; Qt::UserRole + 1 is the default. */
    void setIdRole(int role);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    /** Of a text of any length only what a view can show, as the rest would be measured at each painting. */
    QString displayText(const QVariant &value, const QLocale &locale) const override;
    /** A text that is being typed stays; one that was refused comes again. */
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /** The size of an item of the thumbnail list. */
    static QSize thumbnailItemSize(const QStyleOptionViewItem &option);

signals:
    void finishedEditing();
    void escPressed();
    void focusLost();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    bool showsPictureAlone(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    QString shownText(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    static void enlargePicture(QStyleOptionViewItem *option);
    void abandon(QWidget *editor);

    KeptText *m_kept; // a child
    HitOf m_hitOf;
    int m_pictureColumn = -1;
    int m_nameRole = Qt::DisplayRole;
    int m_sizeColumn = -1;
    bool m_isFocusLost = false;
};
