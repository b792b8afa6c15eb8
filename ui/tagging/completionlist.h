#pragma once

#include <QListView>

/**
 * The names that are offered below a line, over whatever lies there in the same window. The keys stay with
 * the line, which moves the current row. GUI thread.
 */
class CompletionList : public QListView
{
    Q_OBJECT

public:
    /** Lies over the window of the line. */
    explicit CompletionList(QWidget *line);

    /** Shows itself at the line, from the left edge of the edit on; hides without rows. */
    void showAt(const QWidget *edit);
    /** By so many rows, from the last one on to the first one and the other way round. */
    void move(int rows);
    void moveTo(int row);

private:
    QWidget *m_line;
};
