#pragma once

#include <QLineEdit>

/** The edit in which names are typed in place: takes no double quote, and tells of Esc and of lost focus. */
class SpecialLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit SpecialLineEdit(QWidget *parent = nullptr);

signals:
    void escPressed();
    void focusLost();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
};
