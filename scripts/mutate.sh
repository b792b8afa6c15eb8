#!/bin/bash
# Asks how sharp the tests are: makes random single mutations and prints those that no test notices.
#
#   scripts/mutate.sh [-n COUNT] [-s SEED] [-t SECONDS] (-b REVISION | FOLDER-OR-FILE ...)
#
# -b takes the lines that were added since a revision, otherwise all lines of the sources count. The seed, which
# is printed, repeats a run. What tests of so many seconds (60) did not notice counts as a survivor. Works on a
# copy of the last commit below build/, never on the checkout; all verdicts are in its build/verdicts.txt.
#
# All mutations are built at once as "mutant schemata" (R. H. Untch, A. J. Offutt, M. J. Harrold, 1993): each
# stands beside the original behind a switch that an environment variable chooses, and those that do not compile
# are drawn anew. One run of all tests takes down which test functions reach which mutant; then each mutant is
# run with those alone, its own layer's and the quickest first, to the first failure. A hang counts as one.
set -euo pipefail
cd "$(dirname "$0")/.."

[ $# -gt 0 ] || { sed -n '2,8s/^# \{0,1\}//p' "$0"; exit 2; }
scripts/install-packages.sh
copy=$PWD/build/mutants
if [ ! -e "$copy/.git" ]; then
    git worktree prune
    git worktree add --quiet --force --detach "$copy" HEAD
fi
git -C "$copy" checkout --quiet --force --detach "$(git rev-parse HEAD)"
cd "$copy"
cmake --preset dev >/dev/null
exec nice -n 19 scripts/with-small-disk.sh scripts/with-postgres.sh scripts/with-postgres.sh \
    /usr/bin/python3 -B scripts/mutate.py -s "$RANDOM" "$@"
