#pragma once

#include <QPair>
#include <QVector>
#include <QWidget>

/** Shows the names that a line has taken so far, the last ones where there is no room for all. GUI thread. */
class TakenNames : public QWidget
{
    Q_OBJECT

public:
    /** A name, and whether it is one of a tag to be made. */
    using Name = QPair<QString, bool>;

    explicit TakenNames(QWidget *parent);

    void setNames(const QVector<Name> &names);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    static QString textOf(const Name &name);
    int widthOf(const Name &name) const;

    QVector<Name> m_names;
};
