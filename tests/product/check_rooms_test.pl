#!/usr/bin/perl
# check_rooms_test.pl <check_rooms.pl>: tests check_rooms.pl with small trees, one for each rule.
use strict;
use warnings;
use File::Path 'make_path';
use File::Temp 'tempdir';

my ($check) = @ARGV;
my $table = "| room | holds | uses |\n|---|---|---|\n| low/ | x | - |\n| low/deep/ | x | - |\n| high/ | x | low/ |\n\nText.\n";

# "yes" or "no" for whether the check accepts a table and sources, and then what it prints.
sub Checked
{
    my ($map, %sources) = @_;
    my $root = tempdir(CLEANUP => 1);
    $sources{'docs/architecture.md'} = $map;
    for my $path (keys %sources) {
        my ($folder) = "$root/$path" =~ m{^(.*)/};
        make_path($folder);
        open my $file, '>', "$root/$path" or die "$path: $!\n";
        print $file $sources{$path};
        close $file;
    }
    my $said = qx("$^X" "$check" "$root" 2>&1);
    return ($? ? 'no' : 'yes') . "\n$said";
}

my %good = ('low/a.h' => "#include <vector>\n", 'low/deep/b.h' => '', 'high/c.cpp' => "#include \"low/a.h\"\n#include \"high/c.h\"\n", 'high/c.h' => '');
my %many = map { ("low/m$_.txt" => '') } 1 .. 45;
my @cases = (
    ['what is allowed',       'yes', qr/^3 rooms, 4 sources, 2 includes, 0 faults$/m, $table, %good],
    ['an edge that points up', 'no', qr{^low/a\.h: low/ does not use high/, but high/c\.h is included$}m, $table, %good, 'low/a.h' => "  # include \"high/c.h\"\n"],
    ['a room within a room',  'no', qr{^high/c\.cpp: high/ does not use low/deep/, but low/deep/b\.h is included$}m, $table, %good, 'high/c.cpp' => "#include \"low/deep/b.h\"\n"],
    ['a source in no room',   'no', qr{^other/d\.cpp: lies in no room of the table$}m, $table, %good, 'other/d.cpp' => ''],
    ['an unknown header',     'no', qr{^high/c\.h: other/d\.h lies in no room$}m, $table, %good, 'high/c.h' => "#include \"other/d.h\"\n"],
    ['a header without its room', 'no', qr{^high/c\.cpp: c\.h is not named with its room$}m, $table, %good, 'high/c.cpp' => "#include \"c.h\"\n"],
    ['a table that points up', 'no', qr{^the table: low/ uses high/, which is not above it$}m, $table =~ s/low\/ \| x \| -/low\/ | x | high\//r, %good],
    ['too many files',        'no', qr{^low/ has 46 files}m, $table, %good, %many],
    ['no table',              'no', qr{has no table of rooms}, "Text.\n", %good],
    ['tests name any room',   'yes', qr/ 0 faults$/m, $table, %good, 'tests/t.cpp' => "#include \"low/deep/b.h\"\n"],
);
my $failed = 0;
for (@cases) {
    my ($what, $passes, $says, @tree) = @$_;
    my $said = Checked(@tree);
    next if $said =~ /^$passes\n/ && $said =~ $says;
    print "$what: expected $passes and $says, got\n$said\n";
    ++$failed;
}
printf "%d cases, %d failed\n", scalar @cases, $failed;
exit($failed ? 1 : 0);
