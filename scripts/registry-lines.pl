#!/usr/bin/perl
# Prints a registry file as one line for each key and each value: "key" or "key | name=data".
use strict;
use warnings;

my ($path) = @ARGV;
open my $file, '<:raw:encoding(UTF-16)', $path or die "$path: $!\n";
binmode STDOUT, ':encoding(UTF-8)';
my $text = do { local $/; <$file> };
$text =~ s/\r\n/\n/g;
$text =~ s/\\\n\s*//g;
my $key = '';
for my $line (split /\n/, $text) {
    if ($line =~ /^\[(.*)\]$/) {
        print $key = $1, "\n";
    } elsif ($key ne '' && $line ne '') {
        print "$key | $line\n";
    }
}
