#!/usr/bin/perl
# check_invariants.pl <source root>: checks that the tests named in the table of invariants in docs/architecture.md
# exist, and that each invariant names what protects it.
use strict;
use warnings;
use File::Find;

my ($root) = @ARGV;
defined $root or die "check_invariants.pl <source root>\n";

sub Read
{
    my ($path) = @_;
    open my $file, '<', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

my %tests;
find({no_chdir => 1, wanted => sub {
    return if !/\.cpp$|CMakeLists\.txt$/;
    my $text = Read($_);
    $tests{"$1.$2"} = 1 while $text =~ /^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)/mg;
    $tests{$1} = 1 while $text =~ /add_test\(NAME (\S+)/g;
}}, "$root/tests");

my ($table) = Read("$root/docs/architecture.md") =~ /^\| invariant \|[^\n]*\n\|[-|]+\n((?:\|[^\n]*\n)+)/m
    or die "docs/architecture.md has no table of invariants.\n";
my ($rows, $named, @faults) = (0, 0);
for my $row (split /\n/, $table) {
    ++$rows;
    my (undef, $invariant, $protection) = map { s/^\s+|\s+$//gr } split /\|/, $row;
    my @names = $protection =~ /`([A-Za-z]\w*\.\w+)`/g;
    push @faults, "\"$invariant\" names neither a test nor review" if !@names && $protection ne 'review';
    for (@names) {
        ++$named;
        push @faults, "\"$invariant\": there is no test $_" if !$tests{$_};
    }
}
print map { "$_\n" } @faults;
print "$rows invariants, $named tests named, " . @faults . " faults\n";
exit(@faults ? 1 : 0);
