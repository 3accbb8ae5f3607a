# check_trace_view.pl TRACE PAGE: compares the table of functions that a viewer of trace events shows with the trace. PAGE is the
# viewer's page after a browser has loaded it. It must show each member's total and self time, as rounded by the viewer.
use strict;
use warnings;
use utf8;
use JSON::PP;

my ($tracePath, $pagePath) = @ARGV;
my $events = decode_json(Contents($tracePath));

# A call's self time leaves out the calls inside it.
my (%total, %self, @open);
for my $event (sort { $a->{ts} <=> $b->{ts} || $b->{dur} <=> $a->{dur} } @$events) {
    pop @open while @open && $open[-1]{ts} + $open[-1]{dur} <= $event->{ts};
    my $name = Symbol($event);
    $total{$name} += $event->{dur} unless grep { Symbol($_) eq $name } @open;
    $self{$name} += $event->{dur};
    $self{Symbol($open[-1])} -= $event->{dur} if @open;
    push @open, $event;
}

my $page = Contents($pagePath);
utf8::decode($page);
my %shown;
while ($page =~ m{<tr[^>]*><td[^>]*>([^<]*)<div.*?<td[^>]*>([^<]*)<div.*?<span[^>]*></span>([^<]*)</td></tr>}g) {
    $shown{$3} = [Microseconds($1), Microseconds($2)];
}

my $failures = 0;
for my $name (sort keys %total) {
    my $row = delete $shown{$name};
    if (!$row) {
        print "not shown: $name\n";
        ++$failures;
        next;
    }
    for ([total => $total{$name}, $row->[0]], [self => $self{$name}, $row->[1]]) {
        my ($what, $expected, $found) = @$_;
        next if abs($expected - $found) <= 0.006 * ($expected < 1 ? 1 : $expected);
        print "$name: $what is shown as $found us, and is $expected us\n";
        ++$failures;
    }
}
for my $name (sort keys %shown) {
    print "shown, but not in the trace: $name\n";
    ++$failures;
}
$failures += !%total;
print $failures ? "$failures differences\n" : scalar(keys %total) . " members are shown correctly.\n";
exit($failures ? 1 : 0);

# The viewer's name for an event, which includes the arguments.
sub Symbol
{
    my ($event) = @_;
    return "$event->{name} {\"object\":\"$event->{args}{object}\"}";
}

sub Microseconds
{
    my ($text) = @_;
    my ($number, $unit) = $text =~ /^([0-9.]+)(ns|µs|ms|s)/ or die "no time: $text\n";
    return $number * { ns => 0.001, 'µs' => 1, ms => 1000, s => 1_000_000 }->{$unit};
}

sub Contents
{
    my ($path) = @_;
    open my $file, '<', $path or die "$path: $!\n";
    local $/;
    return <$file>;
}
