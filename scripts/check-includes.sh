#!/bin/sh
# Each folder of the program is one library, and its LINKS say which others it may include: exactly those.
# docs/FOLDERS.md lists the same. Boxes and dialogs come from the user interface alone, and no two headers define a
# class of the same name. Prints what does not hold, each with its place.
cd "$(dirname "$0")/.." || exit 1
exec perl -e '
use strict;
use warnings;
my ($faults, %links, %place, %used, %classes) = (0);
sub complain { print "@_\n"; $faults++ }
sub linesOf { my ($file) = @_; open(my $in, "<", $file) or die "$file: $!"; my @lines = <$in>; return @lines }

for my $list (grep { -e } map { chomp; $_ } `find app core db fileops models net ui resources -name CMakeLists.txt`) {
    my ($folder) = $list =~ m{(.*)/};
    my ($number, $inLinks, $isLayer) = (0, 0, 0);
    for (linesOf($list)) {
        $number++;
        next if /^\s*#/;
        $isLayer = $inLinks = 0 if /^\w+\(/;
        $isLayer = 1 if /^vorna_add_layer\(/;
        $inLinks = 1 if /^vorna_link\(/ || ($isLayer && /\bLINKS\b/);
        for my $word (m{[\w/.]+}g) {
            if ($inLinks && -e "$word/CMakeLists.txt" && $word =~ m{/|^(?:net|resources)$}) {
                next if $word eq $folder;
                $links{$folder}{$word} = 1;
                $place{"$folder $word"} = "$list:$number";
            }
            complain("$list:$number: names $word, which lies in another folder") if $isLayer && $word =~ m{^\w.*/.*\.cpp$};
        }
        $inLinks = 0 if /\)/;
    }
    $links{$folder} //= {} if $isLayer || grep { /^vorna_add_layer\(/ } linesOf($list);
}

for my $file (sort map { chomp; $_ } `find app core db fileops models net ui -name "*.cpp" -o -name "*.h" -o -name "*.ui"`) {
    my ($folder) = $file =~ m{(.*)/};
    complain("$file: stands in a folder without a library") if !$links{$folder};
    my ($number, $space) = (0, "");
    for (linesOf($file)) {
        $number++;
        $space = $1 if /^(?:namespace (?!Ui\b)(\w+) \{|\} \/\/ namespace)/;
        if ($file =~ /\.h$/ && /^(?:class|struct|enum(?: class)?) (\w+)[^;]*$/) {
            my $name = ($space // "") . "::$1";
            complain("$file:$number: $1 is the name of a class of $classes{$name}, too") if $classes{$name};
            $classes{$name} = $file;
        }
        complain("$file:$number: shows a box or a dialog, which only the user interface does")
            if m{^#include <Q(?:MessageBox|\w*Dialog)>} && $folder !~ m{^(?:app|ui)\b};
        next unless m{^\s*(?:#include "|<header>)([\w/]+)/\w+\.h["<]};
        next if $1 eq $folder;
        $used{"$folder $1"} = 1;
        complain("$file:$number: includes $1, which $folder does not link") if !$links{$folder}{$1};
    }
}
for my $pair (sort keys %place) {
    my ($folder, $other) = split / /, $pair;
    complain("$place{$pair}: links $other, which only the user interface does")
        if $other eq "app/messages" && $folder !~ m{^(?:app|ui)\b};
    complain("$place{$pair}: links $other, which no source of $folder includes")
        if !$used{$pair} && $other ne "resources" && $folder ne $other;
}

my ($row, %told) = (0);
for (linesOf("docs/FOLDERS.md")) {
    $row++;
    my ($folder, $cell) = m{^\| `([\w/]+?)/?` \| .* \| (.*) \|$} or next;
    next if !$links{$folder};
    my $listed = join(" ", sort $cell =~ m{`([\w/]+)`}g);
    $told{$folder} = 1;
    complain("docs/FOLDERS.md:$row: $folder links " . join(", ", sort keys %{$links{$folder}}))
        if $listed ne join(" ", sort keys %{$links{$folder}});
}
complain("docs/FOLDERS.md: has no row for $_") for grep { !$told{$_} } sort keys %links;

my %state;
sub visit {
    my ($folder, @way) = @_;
    return if ($state{$folder} // "") eq "done";
    if (grep { $_ eq $folder } @way) { complain("a circle: " . join(" > ", @way, $folder)); return }
    visit($_, @way, $folder) for sort grep { $_ ne $folder } keys %{$links{$folder} // {}};
    $state{$folder} = "done";
}
visit($_) for sort keys %links;
print scalar(keys %links), " folders, each a library that links what it includes\n" if !$faults;
exit($faults ? 1 : 0);
'
