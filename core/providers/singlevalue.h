#pragma once

#include <QVariant>

class BaseDBProvider;

/** Answers of one value, read by position: the name of such a column differs between the back-ends. */
namespace SingleValue {
/** Runs a statement on the default connection and gives its first value; invalid when there is none. */
QVariant read(BaseDBProvider &provider, const QString &statement);
} // namespace SingleValue
