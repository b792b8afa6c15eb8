#pragma once

#include <QString>

/**
 * Natural order of names: runs of digits compare as numbers, digits come before all else, and the case of
 * ASCII letters does not count. Works on the UTF-8 bytes of both texts. Texts that differ only in case are
 * equal, which is false in both directions.
 */
bool naturalLessThan(const QString &left, const QString &right);
