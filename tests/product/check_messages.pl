#!/usr/bin/perl
# Checks the messages pages of the user guide against the sources: check_messages.pl <source root>.
# Each text that a page quotes in the first columns of its tables must occur in a string of the sources. Each text that the
# sources pass to a message box as a literal must be on one of the pages.
use strict;
use warnings;
use utf8;
use File::Find;
use open ':std', ':encoding(UTF-8)';

my ($root) = @ARGV;
defined $root or die "check_messages.pl <source root>\n";

sub Read {
    my ($path) = @_;
    open my $file, '<:encoding(UTF-8)', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

# The texts of the string literals in C++, with adjacent ones joined; line breaks end a text.
my $literal = qr/(?:L|u8)?"((?:[^"\\\n]|\\.)*)"/;
sub Literals {
    my ($source) = @_;
    my @texts;
    while ($source =~ /($literal(?:\s*$literal)*)/g) {
        my $text = join '', $1 =~ /$literal/g;
        $text =~ s/\\r|\\n/\n/g;
        $text =~ s/\\(.)/$1/g;
        push @texts, split /\n/, $text;
    }
    return @texts;
}

my (@known, %boxes);
find({no_chdir => 1, wanted => sub {
    return if !/\.(cpp|h|rc)$/;
    my $source = Read($_);
    $source =~ s{^\s*#include.*$}{}mg;
    push @known, Literals($source);
    return if !/\.cpp$/;
    while ($source =~ /\b(?:ShowMessage|ShowBox|Box|MessageBoxW|Failed|NotSearched)(\((?:[^()"]|$literal|(?1))*\))/g) {
        my $call = $1;
        $boxes{$_} = $call for grep { /[A-Za-z]{3}/ } Literals($call);
    }
}}, map { "$root/$_" } qw(system log core packages thermo unit shell res));
# The setup program's strings: $\r$\n is a line break there, ${NAME} and $name are values.
find({no_chdir => 1, wanted => sub {
    return if !/\.ns[ih]$/;
    my $source = Read($_);
    push @known, map { split /\$\\r\$\\n|\$\{\w+\}|\$\w+/, $_ } $source =~ /"([^"\n]*)"/g;
}}, "$root/packaging/setup") if -d "$root/packaging/setup";

my @faults;
my ($quoted, $pages) = (0, '');
my $guide = "$root/docs/user-guide";
for my $path (sort(glob "'$guide/messages*.md'"), "$guide/installing.md", "$guide/pravik.md") {
    my $file = substr $path, length($guide) + 1;
    my $columns = 0;
    my $text = Read($path);
    $pages .= $text;
    for my $line (split /\n/, $text) {
        if ($line =~ /^\|/) {
            my @cells = split /\|/, $line;
            # The header row of a table says which of its columns quote messages.
            $columns = $cells[1] =~ /caption/ ? 2 : $cells[1] =~ /^ (text|message) $/ ? 1 : 0 if !$columns && $line !~ /---/;
            next if $columns < 1;
            for my $cell (@cells[1 .. $columns]) {
                for my $message ($cell =~ /`([^`]+)`/g) {
                    next if $cell =~ /for example/;
                    ++$quoted;
                    for my $part (split /…/, $message) {
                        next if $part !~ /\w{2}/;
                        next if grep { index($_, $part =~ s/^\s+|\s+$//gr) >= 0 } @known;
                        push @faults, "$file: no source has \"$part\" (of \"$message\")";
                    }
                }
            }
        } else {
            $columns = 0;
        }
    }
}
for my $text (sort keys %boxes) {
    my $wanted = $text =~ s/^[\s"]+|[\s"]+$//gr;
    push @faults, "no page has \"$wanted\", which a message box shows" if index($pages, $wanted) < 0;
}
die join("\n", @faults) . "\n" if @faults;
die "Only $quoted messages were found.\n" if $quoted < 50;
die "Only " . keys(%boxes) . " texts of message boxes were found.\n" if keys %boxes < 20;
print "$quoted quoted messages occur in the sources, ", scalar(keys %boxes), " texts of boxes on the pages.\n";
