#pragma once

#include <QString>

class UserPrompts;

/** Questions that come up around file operations and are asked on the main thread. */
namespace MiscOperationThread {
/** What becomes of a file whose name is taken. */
enum NameChoice { CancelChoice = 0, ReplaceChoice = 1, UseNewNameChoice = 2 };
/** What the file is about to undergo. */
enum NameQuestion { ExtractionQuestion = 0, TemporaryExtractionQuestion = 1, RenameQuestion = 2 };

/** Asks whether a file may take the place of another one, or goes by a name that is free. A NameChoice. */
int askUserIfUserNewName(const QString &folder, const QString &name, const QString &newName, int kind,
                         UserPrompts &prompts);
} // namespace MiscOperationThread
