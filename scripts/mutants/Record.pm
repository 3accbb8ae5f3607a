# Finds the changes that each test reaches: runs every test alone, with no change on.
package Record;
use strict;
use warnings;
use State;
use Time::HiRes qw(sleep time);
use Worker;

sub All
{
    my (@tests) = @_;
    for my $n (0 .. $#tests) {
        next if State::Has("tests/$n") || !State::Claim("test-$n");
        One($n, $tests[$n]);
        my $done = () = glob "$State::folder/tests/*.json";
        print "$done of " . @tests . " tests run without a change\n" if $done % 100 == 0;
    }
    # Other workers may still be running the tests that they claimed. If one of them died, this waits until it is interrupted.
    for my $n (0 .. $#tests) { sleep 0.2 until State::Has("tests/$n"); }
    return map { Recorded($_, $tests[$_]) } 0 .. $#tests;
}

sub One
{
    my ($n, $test) = @_;
    my $reach = "$State::folder/reach/$n";
    my ($result, $seconds);
    for my $attempt (1, 2) {
        unlink $reach;
        my $start = time;
        $result = Worker::Alone($test, $reach);
        $seconds = time - $start;
        last if $result eq 'passed';
        Worker::Reset();
    }
    State::Save("tests/$n", {name => $test->{name}, passes => $result eq 'passed' ? 1 : 0, seconds => $seconds});
    return;
}

sub Recorded
{
    my ($n, $test) = @_;
    my %reaches;
    if (open my $file, '<', "$State::folder/reach/$n") {
        while (<$file>) { $reaches{$1} = 1 if /^(\d+)$/; }
    }
    return {%$test, %{State::Load("tests/$n")}, reaches => \%reaches, reach => scalar keys %reaches};
}

1;
