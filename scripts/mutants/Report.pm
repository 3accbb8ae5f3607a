# The result of a run, and the list of changes without effect.
package Report;
use strict;
use warnings;
use State;

our $list = 'tests/mutants/without_effect.txt';

# WithoutEffect(): reasons by file, text of the line and change, read from blocks of four lines: these three and the reason.
sub WithoutEffect
{
    my %reasons;
    open my $file, '<:encoding(UTF-8)', $list or return %reasons;
    my @lines = grep { !/^#/ } <$file>;
    chomp @lines;
    my @block;
    for my $line (@lines, '') {
        if ($line =~ /\S/) {
            push @block, $line =~ s/^\s+//r;
            next;
        }
        next unless @block;
        @block == 4 or die "$list: a block has four lines: file, line, change, reason. This one does not:\n@block\n";
        $reasons{join "\n", @block[0 .. 2]} = $block[3];
        @block = ();
    }
    return %reasons;
}

sub Key { my ($change) = @_; return join "\n", @$change{qw(file lineText what)}; }

# Print(): prints the changes without effect, the survivors, the tests left out and the totals. Returns whether at most 5 % of the
# other changes survived.
sub Print
{
    my %reasons = WithoutEffect();
    my @changes = @{State::Load('changes')};
    my $tests = State::Load('tests') // [];
    my (@survivors, @without, %counts);
    for my $change (@changes) {
        my $result = State::Load("results/$change->{id}") // {status => 'unknown'};
        my $reason = $reasons{Key($change)};
        ++$counts{$result->{status}};
        if ($result->{status} eq 'caught') {
            print "Listed as without effect, but caught by $result->{by}: $change->{id} $change->{file}:$change->{line}\n" if $reason;
        } elsif (defined $reason) {
            push @without, [$change, $reason];
        } else {
            push @survivors, [$change, $result];
        }
    }
    print "No effect:\n" if @without;
    print Where($_->[0]), "    no effect: $_->[1]\n" for @without;
    print "Survivors:\n" if @survivors;
    for (@survivors) {
        my ($change, $result) = @$_;
        print Where($change);
        print "    ", $result->{status} eq 'unreached' ? 'no test reaches it'
            : $result->{status} eq 'unknown' ? 'not run'
            : "$result->{ran} tests ran, among them " . join(', ', @{$result->{examples}}), "\n";
    }
    my @broken = grep { !$_->{passes} } map { State::Load("tests/$_") // () } 0 .. $#$tests;
    print "Left out because they fail without a change: ", join(', ', map { $_->{name} } @broken), "\n" if @broken;
    my $counting = @changes - @without;
    printf "Without effect: %d of %d.\n", scalar @without, scalar @changes if @without;
    printf "%d changes, %d survived\n", $counting, scalar @survivors;
    return @survivors <= 0.05 * $counting;
}

sub Where
{
    my ($change) = @_;
    return "$change->{id} $change->{file}:$change->{line}\n    $change->{lineText}\n    $change->{what}\n";
}

1;
