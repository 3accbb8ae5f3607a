#!/usr/bin/perl
# check_rooms.pl <source root>: checks the includes of the product's sources against the table of rooms in docs/architecture.md.
# A room is a folder; it uses only rooms that are above it in the table and named in its row. A folder contains at most
# 45 files.
use strict;
use warnings;
use File::Find;
use List::Util 'max';

my ($root) = @ARGV;
defined $root or die "check_rooms.pl <source root>\n";
my $mostFiles = 45;
# These folders may use every room.
my %outside = map { $_ => 1 } qw(samples tests bench);

sub Read
{
    my ($path) = @_;
    open my $file, '<', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

my (@faults, %uses, @rooms);
my ($table) = Read("$root/docs/architecture.md") =~ /^\| room \|[^\n]*\n\|[-|]+\n((?:\|[^\n]*\n)+)/m
    or die "docs/architecture.md has no table of rooms.\n";
for my $row (split /\n/, $table) {
    my (undef, $room, undef, $used) = map { s/^\s+|\s+$//gr } split /\|/, $row;
    $room =~ s{/$}{} or die "The room \"$room\" is not a folder: its name does not end in a slash.\n";
    my @used = $used eq '-' ? () : map { s{/$}{}r } split /,\s*/, $used;
    for (@used) { push @faults, "the table: $room/ uses $_/, which is not above it" unless $uses{$_} }
    $uses{$room} = {map { $_ => 1 } @used, $room};
    push @rooms, $room;
}

# The innermost room that contains a path.
sub RoomOf
{
    my ($path) = @_;
    my @holding = grep { index($path, "$_/") == 0 } @rooms;
    my $longest = max map { length } @holding;
    return (grep { length == $longest } @holding)[0] if @holding;
    return;
}

my ($sources, $includes, %files) = (0, 0);
my $hidden = qr{/(?:\.|build$)};
find({no_chdir => 1, preprocess => sub { grep { "$File::Find::dir/$_" !~ $hidden } @_ }, wanted => sub {
    return if !-f;
    my $path = substr $_, 1 + length $root;
    return if $path !~ m{/};
    my ($folder) = $path =~ m{^(.*)/};
    ++$files{$folder};
    return if $path !~ /\.(?:h|cpp)$/;
    my ($top) = $path =~ m{^([^/]+)};
    return if $outside{$top};
    ++$sources;
    my $room = RoomOf($path);
    if (!$room) {
        push @faults, "$path: lies in no room of the table";
        return;
    }
    for my $include (Read($_) =~ /^\s*#\s*include\s*"([^"]*)"/mg) {
        ++$includes;
        my $included = RoomOf($include);
        if ($include =~ m{^[^/]+$} && -f "$root/$folder/$include") {
            push @faults, "$path: $include is not named with its room";
        } elsif ($included && !$uses{$room}{$included}) {
            push @faults, "$path: $room/ does not use $included/, but $include is included";
        } elsif (!$included && $include =~ m{/}) {
            push @faults, "$path: $include lies in no room";
        }
    }
}}, $root);
for (grep { $files{$_} > $mostFiles } sort keys %files) {
    push @faults, "$_/ has $files{$_} files; split it by subject";
}
push @faults, 'no source was found' if !$sources;
print map { "$_\n" } @faults;
printf "%d rooms, %d sources, %d includes, %d faults\n", scalar @rooms, $sources, $includes, scalar @faults;
exit(@faults ? 1 : 0);
