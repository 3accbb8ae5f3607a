#!/usr/bin/perl
# fixed_time.pl <type library>: writes a fixed time where the IDL compiler records the time of its run, as text and as a number,
# so that equal sources give an equal library and an equal program.
use strict;
use warnings;
use POSIX 'mktime';

my ($path) = @ARGV;
open my $in, '<:raw', $path or die "$path: $!\n";
my $bytes = do { local $/; <$in> };
close $in;

my %months = (Jan => 0, Feb => 1, Mar => 2, Apr => 3, May => 4, Jun => 5, Jul => 6, Aug => 7, Sep => 8, Oct => 9, Nov => 10, Dec => 11);
my ($text, $month, $day, $hour, $minute, $second, $year) =
    $bytes =~ /Created by WIDL version [\d.]+ at (\w{3} (\w{3}) +(\d+) (\d+):(\d+):(\d+) (\d{4}))/
    or die "$path: the compiler's note is not there\n";
# The text is in local time. In the hour that is repeated when clocks go back, it is ambiguous; the number decides.
my $number;
for my $summer (0, 1, -1) {
    my $time = mktime($second, $minute, $hour, $day, $months{$month}, $year - 1900, 0, 0, $summer);
    # A value of type VT_UI4.
    $number //= $time if index($bytes, pack 'vV', 0x13, $time) >= 0;
}
defined $number or die "$path: the number that belongs to \"$text\" is not there\n";
$bytes =~ s/\Q$text\E/Thu Jan  1 00:00:00 1970/;
my $value = pack 'vV', 0x13, $number;
$bytes =~ s/\Q$value\E/pack 'vV', 0x13, 0/e;

open my $out, '>:raw', $path or die "$path: $!\n";
print $out $bytes;
close $out or die "$path: $!\n";
