#!/usr/bin/perl
# check_without_effect.pl <source root>: checks that each change listed as having no effect still refers to a line of
# its file.
use strict;
use warnings;

my ($root) = @ARGV;
defined $root or die "check_without_effect.pl <source root>\n";
my ($blocks, @block, @faults) = (0);
open my $list, '<:encoding(UTF-8)', "$root/tests/mutants/without_effect.txt" or die "without_effect.txt: $!\n";
my @lines = grep { !/^#/ } <$list>;
chomp @lines;
for (@lines, '') {
    if (/\S/) {
        push @block, s/^\s+//r;
        next;
    }
    next unless @block;
    ++$blocks;
    my ($file, $line) = @block;
    push @faults, "$file: the block has " . @block . ' lines' if @block != 4;
    if (open my $source, '<:encoding(UTF-8)', "$root/$file") {
        push @faults, "$file has no line: $line" unless grep { s/^\s+//r eq "$line\n" } <$source>;
    } else {
        push @faults, "$file: $!";
    }
    @block = ();
}
print map { "$_\n" } @faults;
print "$blocks changes, " . @faults . " faults\n";
exit(@faults ? 1 : 0);
