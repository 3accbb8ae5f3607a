#!/usr/bin/perl
# failed-tests.pl <report>...: prints the failed tests, each with the end of its output, from reports in ctest's JUnit form.
use strict;
use warnings;

my $lines = 40;  # of each test
for my $report (@ARGV) {
    open my $file, '<', $report or die "$report: $!\n";
    my $text = do { local $/; <$file> };
    (my $run = $report) =~ s{.*/|\.xml$}{}g;
    while ($text =~ m{<testcase name="([^"]*)"[^>]* status="fail"[^>]*>(.*?)</testcase>}sg) {
        my ($name, $case) = ($1, $2);
        my ($printed) = $case =~ m{<system-out>(.*?)</system-out>}s;
        my @printed = split /\n/, Plain($printed // '');
        splice @printed, 0, @printed - $lines, '...' if @printed > $lines;
        print join("\n", "--- failed: " . Plain($name) . " ($run)", @printed), "\n";
    }
}

sub Plain
{
    my ($text) = @_;
    my %characters = (lt => '<', gt => '>', quot => '"', apos => "'", amp => '&');
    $text =~ s/&(\w+);/$characters{$1} \/\/ "&$1;"/ge;
    return $text;
}
