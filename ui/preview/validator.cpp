#include "ui/preview/validator.h"

namespace {

const QLatin1Char quote('"');

} // namespace

Validator::Validator(QObject *parent) : QValidator(parent) {}

void Validator::setGivenText(const QString &text)
{
    m_givenQuotes = text.count(quote);
}

QValidator::State Validator::validate(QString &input, int &position) const
{
    int surplus = input.count(quote) - m_givenQuotes;
    for (int i = qMin(position, input.size()) - 1; i >= 0 && surplus > 0; --i) {
        if (input.at(i) != quote)
            continue;
        input.remove(i, 1);
        --position;
        --surplus;
    }
    return surplus > 0 ? Invalid : Acceptable;
}
