# Runs tests in this worker's prefix, with one change on or none.
package Worker;
use strict;
use warnings;
use Prefix;
use State;
use TestList;
use Time::HiRes 'time';

# A program of many tests that prints nothing for this long hangs in one of them, which then runs by itself with its own limit.
my $quietSeconds = 20;

my $name = 'worker';
my $switchedTo = '';
my $isRegistered = 0;
my %byRole;

sub Begin
{
    my ($ownName, @tests) = @_;
    $name = $ownName;
    for my $test (@tests) { $byRole{$test->{role}} = $test if $test->{role}; }
    Prefix::Keep();
    return;
}

# Before setting the switch, ends programs that would keep the old state.
sub SwitchTo
{
    my ($state) = @_;
    return if $state eq $switchedTo;
    Reset() unless Prefix::StragglersEnded();
    if ($state =~ /^\d+$/) { Prefix::SwitchOn($state); } else { Prefix::RecordTo($state); }
    $switchedTo = $state;
    return;
}

sub Reset
{
    Prefix::Reset();
    ($isRegistered, $switchedTo) = (0, '');
    return;
}

# Sets up what ctest calls a fixture for a test that needs it, and removes it for other tests, with no change on.
sub Arrange
{
    my ($test) = @_;
    my $wanted = $test->{needs} || ($test->{role} // '') eq 'cleanup' ? 1 : 0;
    # Tests that can share a process do not depend on the fixture.
    return if $test->{program} || $wanted == $isRegistered;
    my $action = $byRole{$wanted ? 'setup' : 'cleanup'} // return;
    SwitchTo(0);
    RunOnce($action);
    return;
}

# Alone(test, state): runs the test and returns "passed", "failed" or "timeout". `state` is the number of the change that is on, 0
# for none, or a file for recording the changes that the test reaches.
sub Alone
{
    my ($test, $state) = @_;
    Arrange($test);
    SwitchTo($state);
    return RunOnce($test);
}

sub RunOnce
{
    my ($test) = @_;
    my $result = TestList::Run($test->{command}, "$State::folder/output/$name.txt", @$test{qw(limit folder environment)});
    if (($test->{role} // '') eq 'setup') { $isRegistered = 1; }
    if (($test->{role} // '') eq 'cleanup') { $isRegistered = 0; }
    return $result;
}

# Together(number, test...): runs tests of one program in one process, up to the first failure. Returns the result, the failed
# test, and those that have not run.
sub Together
{
    my ($number, @tests) = @_;
    SwitchTo($number);
    my %test = map { $_->{filter} => $_ } @tests;
    my $flags = "$State::folder/output/$name.flags";
    open my $file, '>', $flags or die "$flags: $!\n";
    print $file '--gtest_filter=' . join(':', sort keys %test) . "\n--gtest_fail_fast\n--gtest_color=no\n";
    close $file;
    my $output = "$State::folder/output/$name.txt";
    my ($size, $since) = (-1, time);
    my $isStuck = sub {
        my $now = -s $output // 0;
        ($size, $since) = ($now, time) if $now != $size;
        return time - $since > $quietSeconds;
    };
    my $result = TestList::Run([$tests[0]{loader}, $tests[0]{program}, "--gtest_flagfile=Z:" . Absolute($flags)], $output, 3600,
                               $tests[0]{folder}, [], $isStuck);
    my $text = ReadOutput($output);
    return ('passed', undef) if $result eq 'passed';
    # Tests after the first failure are shown as skipped.
    my ($failed) = $text =~ /^\[  FAILED  \] ([^\s,]+)/m;
    my (%ended, $running);
    while ($text =~ /^\[\s*(RUN|OK|SKIPPED)\s*\] ([^\s,]+)/mg) {
        if ($1 eq 'RUN') { $running = $2; } else { $ended{$2} = $1; }
    }
    $failed //= $running if defined $running && !$ended{$running};
    # Wine ended before the program began, or the program failed as it ended.
    $failed //= (sort keys %test)[0];
    my @rest = grep { ($ended{$_->{filter}} // '') ne 'OK' && $_->{filter} ne $failed } @tests;
    return ($result, $test{$failed}, @rest);
}

sub Absolute { my ($path) = @_; require Cwd; return Cwd::getcwd() . "/$path"; }

sub ReadOutput
{
    my ($path) = @_;
    open my $file, '<:raw', $path or return '';
    local $/;
    return (scalar <$file>) // '';
}

1;
