#!/usr/bin/perl
# run.pl <step>: the steps of ./dev mutants, in the order prepare, worker (several at once, each in its own Wine prefix), report.
use strict;
use warnings;
use FindBin;
use lib $FindBin::Bin;
use Getopt::Long;
use Time::HiRes 'sleep';
use Changes;
use Judge;
use Prepare;
use Prefix;
use Record;
use Report;
use State;
use TestList;
use Tree;
use Worker;

$| = 1;
my $step = shift // '';
if ($step eq 'prepare') {
    my %options = (number => 220, seed => 1);
    GetOptions(\%options, 'number=i', 'seed=i', 'continue') or die "See ./dev help.\n";
    Prepare::All(\%options, @ARGV);
} elsif ($step eq 'worker') {
    Work(shift);
} elsif ($step eq 'report') {
    exit(Report::Print() ? 0 : 1);
} else {
    die "usage: run.pl prepare|worker|report\n";
}

sub Work
{
    my ($name) = @_;
    if (State::Claim('tests')) {
        State::Save('tests', [TestList::List($Tree::build)]) unless State::Has('tests');
    }
    sleep 0.2 until State::Has('tests');
    my @tests = @{State::Load('tests')};
    Worker::Begin($name, @tests);
    @tests = Record::All(@tests);
    my @changes = @{State::Load('changes')};
    for my $change (@changes) {
        my $key = "results/$change->{id}";
        next if State::Has($key) || !State::Claim("change-$change->{id}");
        my $result = Judge::Change($change->{number}, \@tests);
        State::Save($key, $result);
        my $done = () = glob "$State::folder/results/*.json";
        printf "%d of %d: %s %s:%d: %s%s (%s s)\n", $done, scalar @changes, @$change{qw(id file line)}, $result->{status},
            $result->{by} ? " by $result->{by}" . ($result->{how} eq 'failed' ? '' : ", $result->{how}") : '', $result->{seconds};
    }
    Prefix::Stop();
    return;
}
