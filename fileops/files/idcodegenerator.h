#pragma once

#include <QString>

/**
 * Draws the seven-character handles of files: four upper-case letters without vowels and Q, then three digits
 * from 2 to 9. Stateless; whether a code is free is the caller's question.
 */
class IdCodeGenerator
{
public:
    QString generate() const;
};
