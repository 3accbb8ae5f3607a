#!/usr/bin/perl
# check_without_effect.pl <source root>: checks that each change listed as having no effect is one that the generator makes.
use strict;
use warnings;
use FindBin;
use lib "$FindBin::Bin/../../scripts/mutants";
use Changes;

my ($root) = @ARGV;
defined $root or die "check_without_effect.pl <source root>\n";
my (@blocks, @block, @faults, %made);
open my $list, '<:encoding(UTF-8)', "$root/tests/mutants/without_effect.txt" or die "without_effect.txt: $!\n";
my @lines = grep { !/^#/ } <$list>;
chomp @lines;
for (@lines, '') {
    if (/\S/) {
        push @block, s/^\s+//r;
        next;
    }
    push @blocks, [@block] if @block;
    @block = ();
}
my %files = map { $_->[0] => 1 } @blocks;
for my $file (sort keys %files) {
    if (-f "$root/$file") {
        $made{join "\n", @$_{qw(file lineText what)}} = 1 for Changes::Collect($root, $file);
    } else {
        push @faults, "$file: there is no such file";
        delete $files{$file};
    }
}
for (@blocks) {
    my ($file, $line, $change) = @$_;
    push @faults, "$file: the block has " . @$_ . ' lines' if @$_ != 4;
    next unless $files{$file};
    push @faults, "$file has no such change: $line: $change" unless $made{join "\n", $file, $line, $change};
}
print map { "$_\n" } @faults;
print @blocks . ' changes, ' . @faults . " faults\n";
exit(@faults ? 1 : 0);
