#pragma once

class ServerDatabase;

/**
 * What work costs over a network that takes its time: opening, each kind of edit, adding, tagging and
 * deleting many files, with the round trips of each, as one table.
 */
namespace NetworkCosts {
struct Amounts
{
    int addedFiles = 2000;
    int taggedFiles = 10000;
    int rounds = 5; ///< of each edit, of which the fastest counts
};
void print(ServerDatabase &server, double delayMilliseconds, const Amounts &amounts);
} // namespace NetworkCosts
