#pragma once

/**
 * The process in which pictures are read: whatever a broken or crafted one does to its decoder ends there. It
 * is the program itself, started with an argument of its own, and lives until the program lets go of it.
 */
namespace PictureChild {
/** The argument that makes the program a reader of pictures. */
constexpr char argument[] = "--read-pictures";

/** To be asked before anything else: whether this process is to read pictures. */
bool isAskedFor(int argc, char *argv[]);
/** Reads pictures until the program ends. The exit code. */
int run();
} // namespace PictureChild
