#!/bin/bash
# Asks how sharp the tests are: makes random single mutations, one at a time, builds, runs the tests and prints
# those that no test noticed. Works on a copy of the last commit below build/, never on the checkout.
#
#   scripts/mutate.sh [-n COUNT] [-s SEED] [-t SECONDS] (-b REVISION | FOLDER-OR-FILE ...)
#
# -b takes the lines that were added since a revision, otherwise all lines of the folders count. The seed, which
# is printed, repeats a run. The tests of a file's own layer run first, the others only when those notice nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

count=20 seed=$RANDOM limit=60 base=
while getopts n:s:t:b: option; do
    case $option in
    n) count=$OPTARG ;;
    s) seed=$OPTARG ;;
    t) limit=$OPTARG ;;
    b) base=$OPTARG ;;
    *) exit 2 ;;
    esac
done
shift $((OPTIND - 1))
[ -n "$base" ] || [ $# -gt 0 ] || { sed -n '2,9s/^# \{0,1\}//p' "$0"; exit 2; }

scripts/install-packages.sh
copy=$PWD/build/mutants
log=$PWD/build/mutants.log
if [ ! -e "$copy/.git" ]; then
    git worktree prune
    git worktree add --quiet --force --detach "$copy" HEAD
fi
git -C "$copy" checkout --quiet --force --detach "$(git rev-parse HEAD)"

# file:line of all that may be mutated, in an order that the seed decides.
candidates() {
    if [ -n "$base" ]; then
        git diff -U0 "$base" HEAD -- "$@" | perl -ne '
            $file = $1 if m{^\+\+\+ b/(.*)};
            if (/^@@ \S+ \+(\d+)(?:,(\d+))?/) { $line = $1; next }
            if (/^\+(?!\+\+ )/) { print "$file:$line\n"; $line++ }'
    else
        git ls-files -- "$@" | while read -r file; do seq -f "$file:%.0f" "$(wc -l <"$file")"; done
    fi | grep -E '\.cpp:' | grep -vE '^(tests|bench|tools)/' |
        perl -e 'srand shift; my @lines = <STDIN>;
            for (my $i = @lines; --$i > 0;) { my $j = int rand($i + 1); @lines[$i, $j] = @lines[$j, $i] }
            print @lines' "$seed"
}

# mutated FILE LINE SEED: changes one line in place and prints what it did; fails where nothing can be changed.
mutated() {
    perl -e '
        my ($file, $at, $seed) = splice @ARGV, 0, 3;
        srand $seed + $at; open my $in, "<", $file or die; my @lines = <$in>; my $old = $lines[$at - 1] // ""; my @new;
        my $code = $old; $code =~ s{//.*}{};
        my $try = sub { my ($from, $to) = @_; my $line = $code; push @new, $line if $line =~ s/$from/$to/ee };
        if ($code =~ /\S/ && $code !~ /^\s*(#|\*|\/\*|case |default:|using |namespace )/) {
            my %turned = ("==" => "!=", "!=" => "==", "<" => "<=", "<=" => "<", ">" => ">=", ">=" => ">",
                          "&&" => "||", "||" => "&&");
            $try->(qr/ \Q$_\E /, "\x27 $turned{$_} \x27") for sort keys %turned;
            $try->(qr/\bif \((?!false)(.*)\)(\s*\{?\s*)$/, q("if (!($1))$2"));
            $try->(qr/\bif \((.*)\)(\s*\{?\s*)$/, q("if (($1) && false)$2"));
            $try->(qr/ \+ 1\b/, q("")); $try->(qr/ - 1\b/, q("")); $try->(qr/\b0\b(?!\.)/, q("1"));
            $try->(qr/\btrue\b/, q("false")); $try->(qr/\bfalse\b/, q("true"));
            $try->(qr/(?<=[\s(])!(?=[\w(])/, q(""));
            $try->(qr/^(\s+)(?:emit )?[\w:.>-]+\([^{}]*\);\s*$/, q("$1static_cast<void>(0);\n"))
                if $code !~ /^\s+(return|delete|else|connect|disconnect)\b/
                && ($lines[$at - 2] // "") =~ /[;{})]\s*(\/\/.*)?$/;
        }
        @new = grep { $_ ne $code } @new;
        exit 1 if !@new;
        my $line = $new[int rand @new]; $line .= "\n" if $line !~ /\n$/;
        $lines[$at - 1] = $line;
        open my $out, ">", $file or die; print $out @lines; close $out;
        s/^\s+|\s+$//g for ($code, $line);
        print "$code  ->  $line\n";' "$1" "$2" "$3"
}

# The label of the tests that stand nearest to a file.
label_of() {
    case $1 in
    app/settings/*) echo settings ;;
    app/*) echo window ;;
    db/manager/* | db/caches/*) echo manager ;;
    db/*) echo sql ;;
    core/providers/*) echo providers ;;
    core/records/*) echo records ;;
    models/contents/*) echo contents ;;
    core/* | models/*) echo core ;;
    fileops/*) echo fileops ;;
    *) echo ui ;;
    esac
}

# Libraries are shared here: a mutation then links one library anew and not sixty tests.
build() { cmake --build "$copy/build" >"$log" 2>&1; }
run_tests() {
    scripts/with-postgres.sh ctest --test-dir "$copy/build" -j2 --timeout "$limit" --stop-on-failure \
        -E '^e2e_' "$@" >"$log" 2>&1
}
cmake -S "$copy" -B "$copy/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 \
    -DBUILD_SHARED_LIBS=ON >/dev/null
build || { tail -n 40 "$log" >&2; exit 1; }
run_tests || { echo "The tests fail without any mutation:" >&2; tail -n 30 "$log" >&2; exit 1; }

echo "Seed $seed, $count mutations"
made=0 caught=0
while read -r place <&4 && [ "$made" -lt "$count" ]; do
    file=${place%:*} line=${place##*:}
    git -C "$copy" checkout --quiet --force -- .
    what=$(cd "$copy" && mutated "$file" "$line" "$seed") || continue
    build || continue # what does not compile says nothing of the tests
    made=$((made + 1))
    label=$(label_of "$file")
    if run_tests -L "^$label\$" && run_tests -LE "^$label\$"; then
        echo "survived  $file:$line  $what"
    else
        caught=$((caught + 1))
    fi
done 4< <(candidates "$@")
git -C "$copy" checkout --quiet --force -- .
echo "$caught of $made caught"
