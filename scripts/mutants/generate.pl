#!/usr/bin/perl
# generate.pl <file>: prints every change that Changes.pm finds for one source, with the resulting lines; for inspecting the
# changes, and for their test.
use strict;
use warnings;
use FindBin;
use lib $FindBin::Bin;
use Apply;
use Changes;

my ($path) = @ARGV;
defined $path or die "usage: generate.pl <file>\n";
my ($folder, $name) = $path =~ m{^(?:(.*)/)?([^/]+)$};
for my $change (Changes::Collect($folder // '.', $name)) {
    $change->{number} = 1;
    my @before = split /\n/, $change->{source}{text}, -1;
    my @after = split /\n/, Apply::Text($change->{source}, $change), -1;
    splice @after, 0, 2;
    print "$change->{line} $change->{what}\n";
    # Only what differs, without the equal lines before and after.
    while (@before && @after && $before[0] eq $after[0]) { shift @before; shift @after; }
    while (@before && @after && $before[-1] eq $after[-1]) { pop @before; pop @after; }
    print map { s/^\s*/    /r . "\n" } grep { /\S/ } @after;
}
