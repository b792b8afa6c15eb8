#pragma once

#include <QString>

/** What the program is started with. A single argument counts; any other number of them is passed over. */
namespace CommandLine {

struct Given
{
    /** There is a single argument. */
    bool isFile = false;
    /** The database to open, or the shell to import: one of them. Paths that Qt takes as they are meant. */
    QString database;
    QString shell;
};

/** With what Qt takes for itself gone from the arguments. */
Given read(int argc, char *argv[]);

/**
 * Prints what --help or --version asks for. True when one of them was asked. Makes an
 * application object of its own.
 */
bool answer(int argc, char *argv[]);

} // namespace CommandLine
