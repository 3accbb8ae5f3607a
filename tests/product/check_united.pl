#!/usr/bin/perl
# Checks the sources that are compiled together: check_united.pl <build>. The names of functions in their unnamed namespaces must
# differ within a target: a second function with other parameters would compile, and could take calls meant for the first.
use strict;
use warnings;
use File::Find;

my ($build) = @ARGV;
defined $build or die "check_united.pl <build>\n";

my (%sources, $faults);
find(sub {
    return unless /^unity_\d+_cxx\.cxx$/ && $File::Find::name =~ m{CMakeFiles/([^/]+)\.dir/};
    my $target = $1;
    open my $file, '<', $_ or die "$File::Find::name: $!\n";
    while (<$file>) { push @{$sources{$target}}, $1 if /^#include "(.*\.cpp)"/; }
}, $build);
%sources or die "Nothing in $build is compiled together.\n";

my $count = 0;
for my $target (sort keys %sources) {
    my %owner;
    for my $source (@{$sources{$target}}) {
        ++$count;
        open my $file, '<', $source or die "$source: $!\n";
        my ($inside, %own);
        while (<$file>) {
            $inside = 1 if /^namespace \{/;
            $inside = 0 if /^\}  \/\/ namespace$/;
            next unless $inside && /^(?!return|static_assert|using|TEST|INSTANTIATE)[a-zA-Z][\w:<>,&* ]*[ &*](\w+)\(/;
            $own{$1} = 1;
        }
        for my $name (sort keys %own) {
            next if $name eq 'PrintTo';  # found by the type of its argument
            if ($owner{$name} && $owner{$name} ne $source) {
                print "$target: $name is in $owner{$name} and in $source.\n";
                ++$faults;
            }
            $owner{$name} = $source;
        }
    }
}
printf "%d sources, %d faults\n", $count, $faults // 0;
exit($faults ? 1 : 0);
