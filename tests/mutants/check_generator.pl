#!/usr/bin/perl
# check_generator.pl <generate.pl> <sample> <expected>: compares the generator's complete output for the sample with the
# expected text. To update that text on purpose: generate.pl <sample> > <expected>.
use strict;
use warnings;

my ($generator, $sample, $expected) = @ARGV;
my $made = qx("$^X" "$generator" "$sample");
$? == 0 or die "The generator failed.\n";
open my $file, '<:raw', $expected or die "$expected: $!\n";
my $wanted = do { local $/; <$file> };
exit 0 if $made eq $wanted;
my @made = split /\n/, $made;
my @wanted = split /\n/, $wanted;
for my $n (0 .. (@made > @wanted ? $#made : $#wanted)) {
    my ($one, $other) = map { $_ // '(nothing)' } $made[$n], $wanted[$n];
    die "Line " . ($n + 1) . " of what the generator makes:\n$one\nexpected:\n$other\n" if $one ne $other;
}
die "What the generator makes differs from what is expected only in the line ends at the end.\n";
