#pragma once

#include <QToolBar>

class QLabel;
class QLineEdit;
class Validator;

/** The bar under a picture: its description, which can be edited, and the scale at which it is shown. */
class DescriptionBar : public QToolBar
{
    Q_OBJECT

public:
    explicit DescriptionBar(QWidget *parent);

    QString text() const;
    /** Whether somebody has edited the text since it was shown. */
    bool isModified() const;
    void setModified(bool isModified);
    /** Shows the stored text, unless somebody is editing it. */
    void showStored(const QString &text);
    void setReadOnly(bool isReadOnly);

public slots:
    void showScale(double scale);

signals:
    void returnPressed();

private:
    Validator *m_validator;
    QLineEdit *m_edit;
    QLabel *m_scale;
};
