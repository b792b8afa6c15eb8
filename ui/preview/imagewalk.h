#pragma once

#include <QObject>

#include <vector>

class Sorter;

/**
 * The way of the previewer through the pictures of the main view, in the order of its rows and round its
 * ends. The rows with pictures are found by one pass over all rows, at the first step after they have
 * changed. Borrows the model. GUI thread.
 */
class ImageWalk : public QObject
{
    Q_OBJECT

public:
    explicit ImageWalk(const Sorter *sorter, QObject *parent = nullptr);

    void setCurrent(qint64 fileId);
    /**
     * The picture after or before the current one, or from where that stood when it is not in the view any
     * more. 0 when there is no other.
     */
    qint64 next();
    qint64 previous();

    /** Of the current one among the pictures, from 1; 0 when it is not in the view. */
    int position();
    /** How many pictures the view has. */
    int count();

signals:
    /** Rows have come, gone or moved, or their values differ. */
    void changed();

private:
    void connectModel();
    void forgetRows();
    void findRows();
    int currentRow() const;
    bool isPicture(int row) const;
    qint64 idAt(std::vector<int>::const_iterator place) const;

    const Sorter *m_sorter;
    std::vector<int> m_rows; // of pictures, ascending
    bool m_isKnown = false;
    qint64 m_currentId = 0;
    int m_lastRow = 0;
};
