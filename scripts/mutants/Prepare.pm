# Draws the changes and builds the copy with all of them in it.
package Prepare;
use strict;
use warnings;
use Apply;
use Changes;
use State;
use Tree;

# All(options, id...): draws `number` changes by `seed`, or takes the named ones or, with `continue`, those of the last run.
sub All
{
    my ($options, @ids) = @_;
    if ($options->{continue}) {
        State::Has('changes') or die "There is no run to continue.\n";
        State::Continue();
    }
    my @all = Changes::Collect('.', Tree::Sources(Tree::Files()));
    my @order = $options->{continue} ? AsBefore(@all)
        : @ids ? Named(\@ids, @all) : Changes::Draw($options->{seed}, @all);
    State::Begin() unless $options->{continue};
    my $number = $options->{continue} || @ids ? @order : $options->{number};
    my @chosen = Build($number, @order);
    State::Save('changes', [map { my %row = %$_; +{map { $_ => $row{$_} } qw(number id file line lineText what)} } @chosen])
        unless $options->{continue};
    return;
}

# The changes with their old numbers, by which the tests' records refer to them.
sub AsBefore
{
    my (@all) = @_;
    my @before = @{State::Load('changes')};
    my @changes = Named([map { $_->{id} } @before], @all);
    $changes[$_]{number} = $before[$_]{number} for 0 .. $#before;
    return @changes;
}

sub Named
{
    my ($ids, @all) = @_;
    my %byId = map { $_->{id} => $_ } @all;
    return map { $byId{$_} // die "There is no change $_: its line has changed.\n" } @$ids;
}

# Build(number, change...): the first `number` changes that fit together and compile.
sub Build
{
    my ($number, @order) = @_;
    my (@chosen, %taken, $next);
    my %refused = map { $_ => 1 } @{State::Load('refused') // []};
    # CheckHeaders need not check again what has compiled once.
    my %accepted = map { $_ => 1 } @{State::Load('accepted') // []};
    my $round = 0;
    while (1) {
        while (@chosen < $number && @order) {
            my $change = shift @order;
            next if $refused{$change->{id}} || !Apply::Fits(\%taken, $change);
            $change->{number} //= ++$next;
            push @chosen, $change;
        }
        Tree::Write(@chosen);
        Tree::Configure();
        my @bad = Tree::CheckHeaders(grep { !$accepted{$_->{id}} } @chosen);
        @bad = Tree::Compile(@chosen) unless @bad;
        printf "Round %d: %d changes, %d do not compile.\n", ++$round, scalar @chosen, scalar @bad;
        last unless @bad;
        $refused{$_->{id}} = 1 for @bad;
        @chosen = grep { !$refused{$_->{id}} } @chosen;
        State::Save('refused', [sort keys %refused]);
    }
    State::Save('accepted', [sort keys %{{%accepted, map { $_->{id} => 1 } @chosen}}]);
    return @chosen;
}

1;
