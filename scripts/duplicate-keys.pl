#!/usr/bin/perl
# duplicate-keys.pl <file...>: finds duplicate keys in the mappings of a YAML file. Reads only simple
# YAML, such as .clang-format: one key per line, nested by indentation. Each list item starts a new mapping.
use strict;
use warnings;

my $found = 0;
for my $file (@ARGV) {
    open(my $in, '<', $file) or die "$file: $!\n";
    my @open;  # the mappings around the line: [column, keys]
    while (my $line = <$in>) {
        next unless $line =~ /^( *)(- )?([\w.-]+):(\s|$)/;
        my ($item, $key) = (defined $2, $3);
        my $column = length($1) + ($item ? 2 : 0);
        pop @open while @open && ($open[-1][0] > $column || ($item && $open[-1][0] == $column));
        push @open, [$column, {}] unless @open && $open[-1][0] == $column;
        next unless $open[-1][1]{$key}++;
        print "$file:$.: $key is given twice\n";
        $found = 1;
    }
}
exit $found;
