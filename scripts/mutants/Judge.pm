# Whether the tests catch a change. Runs only tests that reach it, the quick ones first, up to the first that fails because of it:
# that test has to fail by itself too, and to pass without the change.
package Judge;
use strict;
use warnings;
use State;
use Time::HiRes 'time';
use Worker;

# A test that takes longer than this runs by itself, after the others.
my $longSeconds = 5;
# A test that takes longer than this is not run a second time to see it fail.
my $slowSeconds = 20;
# This many tests of a program run first: those that reach the fewest changes.
my $closest = 40;

# Change(number, tests): {status, by, how, ran, seconds, examples}; status is "caught", "survived" or "unreached".
sub Change
{
    my ($number, $tests) = @_;
    my $start = time;
    my @reaching = sort { $a->{reach} <=> $b->{reach} || $a->{seconds} <=> $b->{seconds} }
        grep { $_->{passes} && $_->{reaches}{$number} } @$tests;
    my ($by, $how);
    for my $group (Groups(@reaching)) {
        ($by, $how) = $group->[0]{program} && @$group > 1 ? ByGroup($number, @$group) : ByOne($number, $group->[0]);
        last if $by;
    }
    return {status => $by ? 'caught' : @reaching ? 'survived' : 'unreached', by => $by, how => $how, ran => scalar @reaching,
            seconds => sprintf('%.1f', time - $start), examples => [map { $_->{name} } @reaching[0 .. ($#reaching < 4 ? $#reaching : 4)]]};
}

# Tests that run together: the quick ones of one program, the closest first. Then each of the others alone.
sub Groups
{
    my (@tests) = @_;
    my (%programs, @single);
    for my $test (@tests) {
        if ($test->{program} && $test->{seconds} <= $longSeconds) { push @{$programs{$test->{program}}}, $test; }
        else { push @single, $test; }
    }
    my (@first, @second);
    for my $program (sort keys %programs) {
        my @all = @{$programs{$program}};
        push @first, [splice @all, 0, $closest];
        push @second, \@all if @all;
    }
    return (@first, @second, map { [$_] } sort { $a->{seconds} <=> $b->{seconds} } @single);
}

sub ByGroup
{
    my ($number, @tests) = @_;
    while (@tests) {
        my ($result, $failed, @rest) = Worker::Together($number, @tests);
        return if $result eq 'passed';
        my ($by, $how) = ByOne($number, $failed, 1);
        return ($by, $how) if $by;
        @tests = @rest;
    }
    return;
}

# `seen`: the test has already failed once, when it ran together with others.
sub ByOne
{
    my ($number, $test, $seen) = @_;
    my $result = Worker::Alone($test, $number);
    $result = Patiently($test, $number) if $result eq 'timeout';
    return if $result eq 'passed';
    if (!$seen && $result ne 'timeout' && $test->{seconds} < $slowSeconds) {
        $result = Worker::Alone($test, $number);
        return if $result eq 'passed';
    }
    for my $attempt (1, 2) {
        # If the test now fails without the change, too, the change may have left something behind: reset, and compare again.
        return ($test->{name}, $result eq 'timeout' ? "its limit of $test->{limit} s" : 'failed')
            if Worker::Alone($test, 0) eq 'passed' && ($attempt == 1 || Worker::Alone($test, $number) ne 'passed');
        Worker::Reset();
    }
    return;
}

# On a busy machine a test can reach its limit without hanging: a test that needs a good part of its limit without the change gets
# more time with it.
sub Patiently
{
    my ($test, $number) = @_;
    my $start = time;
    Worker::Alone($test, 0);
    my $seconds = time - $start;
    return 'timeout' if 4 * $seconds < $test->{limit};
    return Worker::Alone({%$test, limit => $test->{limit} + 4 * $seconds}, $number);
}

1;
