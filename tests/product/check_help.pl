#!/usr/bin/perl
# Checks the compiled help: check_help.pl <BRIX.chm> <source root> <work folder>. The help must contain the topic that the
# program opens and every page of the list, and every reference to a file of the help must work: links, anchors, style sheets,
# pictures, contents and index.
use strict;
use warnings;
use File::Path qw(make_path remove_tree);

my ($chm, $root, $work) = @ARGV;
defined $work or die "check_help.pl <BRIX.chm> <source root> <work folder>\n";
my @faults;

sub Read {
    my ($path) = @_;
    open my $file, '<:raw', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

remove_tree($work);
make_path($work);
system("chmls extractall '$chm' '$work' >'$work.log' 2>&1") == 0 or die "chmls failed: " . Read("$work.log");
-s "$work/utils/zelt.htm" or die "The topic utils/zelt.htm is not in $chm.\n";

for my $line (split /\n/, Read("$root/packaging/help/pages.txt")) {
    next if $line =~ /^\s*(#|$)/;
    my ($name) = split ' ', $line;
    push @faults, "utils/$name.htm is missing" if !-s "$work/utils/$name.htm";
}

# The help may lack pictures only if the tree has none; otherwise it must contain each picture that a page shows.
my @pictures = glob "$root/docs/user-guide/images/*.png";

my $links = 0;
sub Follow {
    my ($from, $folder, $target) = @_;
    return if $target =~ /^https?:/;
    ++$links;
    my ($path, $anchor) = $target =~ /^([^#]*)(?:#(.*))?$/;
    return if $path =~ m{^images/} && !@pictures;
    my $file = $path eq '' ? $from : "$folder$path";
    if (!-s "$work/$file") {
        push @faults, "$from: $target leads nowhere";
    } elsif (defined $anchor && Read("$work/$file") !~ /\sid="\Q$anchor\E"/) {
        push @faults, "$from: $target leads to no heading";
    }
}

for my $page (glob "$work/utils/*.htm") {
    my $name = substr $page, length($work) + 1;
    my $html = Read($page);
    push @faults, "$name has no title" if $html !~ m{<title>[^<]+</title>};
    push @faults, "$name contains an unfilled placeholder" if $html =~ /\@[A-Z]+\@/;
    Follow($name, 'utils/', $2) while $html =~ /\s(href|src)="([^"]*)"/g;
}
for my $map ('brix.hhc', 'brix.hhk') {
    my $before = $links;
    my $text = Read("$work/$map");
    Follow($map, '', $1) while $text =~ /name="Local" value="([^"]*)"/g;
    push @faults, "$map is empty" if $links == $before;
}
die join("\n", @faults) . "\n" if @faults;
die "Only $links links were found.\n" if $links < 100;
print "$links links lead to something.\n";
