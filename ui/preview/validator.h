#pragma once

#include <QValidator>

/**
 * Keeps double quotes out of a text line, as the editors of the main view do: those that are typed or pasted
 * are dropped. Those of the text that the line was given stay. GUI thread.
 */
class Validator : public QValidator
{
    Q_OBJECT

public:
    explicit Validator(QObject *parent = nullptr);

    /** Call it before the line gets this text. */
    void setGivenText(const QString &text);
    /** Takes quotes away that stand right before the position. */
    State validate(QString &input, int &position) const override;

private:
    int m_givenQuotes = 0;
};
