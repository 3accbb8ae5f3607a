# The tests of the build, as ctest lists them, and how one is run.
package TestList;
use strict;
use warnings;
use JSON::PP 'decode_json';
use POSIX ':sys_wait_h';
use Time::HiRes qw(sleep time);

# The limit that ./dev test sets for tests without their own.
my $usualLimit = 300;

# Only a change that writes without end makes a larger file.
my $mostKilobytes = 1 << 20;

# List(build): the tests that run programs of the build under Wine, as {name, command, limit, environment, folder, program,
# filter, loader, needs, role}. `program`, `filter` and `loader` are set for tests that can share a process with others; `needs` is
# true if the test needs what the test with the role "setup" makes and the one with the role "cleanup" removes.
sub List
{
    my ($build) = @_;
    my $text = qx(ctest --test-dir $build --show-only=json-v1);
    $? == 0 or die "ctest could not list the tests.\n$text";
    my @tests;
    for my $test (@{decode_json($text)->{tests}}) {
        my @command = @{$test->{command} // []};
        next unless grep { /run-under-wine\.sh$/ } @command;
        my %property = map { $_->{name} => $_->{value} } @{$test->{properties}};
        my %row = (name => $test->{name}, command => \@command, limit => $property{TIMEOUT} || $usualLimit,
                   environment => $property{ENVIRONMENT} // [], folder => $property{WORKING_DIRECTORY} // $build,
                   needs => $property{FIXTURES_REQUIRED} ? 1 : 0,
                   role => $property{FIXTURES_SETUP} ? 'setup' : $property{FIXTURES_CLEANUP} ? 'cleanup' : '');
        my ($filter) = map { /^--gtest_filter=(.*)/ ? $1 : () } @command;
        if (defined $filter && $command[0] =~ /run-under-wine\.sh$/ && grep { $_ eq 'together' } @{$property{LABELS} // []}) {
            @row{qw(program filter)} = ($command[2], $filter);
            $row{loader} = $command[1];
        }
        push @tests, \%row;
    }
    @tests or die "The build in $build has no tests.\n";
    return @tests;
}

# Run(command, output, limit, folder, environment, isStuck): runs with a time limit and returns the result: "passed", "failed"
# or "timeout". `isStuck`, if given, is asked now and then whether to end the program.
sub Run
{
    my ($command, $output, $limit, $folder, $environment, $isStuck) = @_;
    my $process = fork() // die "fork: $!\n";
    if (!$process) {
        setpgrp;
        # One failure is enough, also in programs that are a single ctest test.
        $ENV{GTEST_FAIL_FAST} = 1;
        for (@{$environment // []}) { $ENV{$1} = $2 if /^(\w+)=(.*)$/s; }
        open STDIN, '<', '/dev/null';
        open STDOUT, '>', $output or POSIX::_exit(120);
        open STDERR, '>&', \*STDOUT;
        chdir $folder if defined $folder;
        exec 'bash', '-c', "ulimit -f $mostKilobytes; exec \"\$@\"", 'bash', @$command or POSIX::_exit(121);
    }
    my $end = time + $limit;
    my $pause = 0.01;
    while (waitpid($process, WNOHANG) == 0) {
        if (time > $end || $isStuck && $isStuck->()) {
            kill 'KILL', -$process;
            waitpid $process, 0;
            return 'timeout';
        }
        sleep $pause;
        $pause = 0.1 if ($pause *= 1.5) > 0.1;
    }
    return $? == 0 ? 'passed' : 'failed';
}

1;
