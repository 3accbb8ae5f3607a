#!/usr/bin/perl
# Makes the help from the Markdown pages that pages.txt lists: build.pl <source root> <output folder>.
# Writes <output>/utils/*.htm with style sheet and pictures, and the help compiler's project to <output>. Links between pages lead
# to the pages of the help; links to files outside the help become plain text; a link to a file or a heading that does not exist
# ends the script with an error.
use strict;
use warnings;
use utf8;
use Cwd 'abs_path';
use File::Basename;
use File::Copy 'copy';
use File::Path 'make_path';
use File::Spec;

my ($root, $out) = @ARGV;
defined $out or die "build.pl <source root> <output folder>\n";
$root = abs_path($root);
my $help = "$root/packaging/help";

sub ReadText {
    my ($path) = @_;
    open my $file, '<:encoding(UTF-8)', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

sub WriteText {
    my ($path, $text) = @_;
    # The help compiler and the help window do not support UTF-8: non-ASCII characters become character references.
    $text =~ s/([^\x00-\x7F])/'&#' . ord($1) . ';'/ge;
    $text =~ s/\n/\r\n/g;
    open my $file, '>:raw', $path or die "$path: $!\n";
    print $file $text;
    close $file or die "$path: $!\n";
}

sub Escaped {
    my ($text) = @_;
    $text =~ s/&/&amp;/g;
    $text =~ s/</&lt;/g;
    $text =~ s/"/&quot;/g;
    return $text;
}

# The anchor of a heading, by the rules of the site that shows the Markdown pages, so that a link works there and in the help.
sub Anchor {
    my ($html) = @_;
    $html =~ s/<[^>]*>//g;
    $html =~ s/&(\w+);/{amp => '&', lt => '<', gt => '>', quot => '"'}->{$1} \/\/ ''/ge;
    $html = lc $html;
    $html =~ s/[^\w\- ]//g;
    $html =~ tr/ /-/;
    return $html;
}

# A page: name, source, title, html, headings, anchors.
my (@pages, %bySource);
for my $line (split /\n/, ReadText("$help/pages.txt")) {
    next if $line =~ /^\s*(#|$)/;
    my ($name, $source) = split ' ', $line;
    my %page = (name => $name, source => abs_path("$root/docs/$source") // die "docs/$source is missing\n");
    open my $converter, '-|:encoding(UTF-8)', 'cmark-gfm', '--unsafe', '-e', 'table', $page{source} or die "cmark-gfm: $!\n";
    { local $/; $page{html} = <$converter>; }
    close $converter or die "cmark-gfm failed for $source\n";
    my %seen;
    $page{html} =~ s{<(h[1-6])>(.*?)</\1>}{
        my ($tag, $text) = ($1, $2);
        my $anchor = Anchor($text);
        my $count = $seen{$anchor}++;
        $anchor .= "-$count" if $count;
        $page{anchors}{$anchor} = 1;
        push @{$page{headings}}, [$tag, $text =~ s/<[^>]*>//gr, $anchor];
        "<$tag id=\"$anchor\">$text</$tag>"
    }gse;
    $page{title} = $page{headings}[0][1] or die "$source has no heading\n";
    push @pages, \%page;
    $bySource{$page{source}} = \%page;
}

my (%pictures, @faults);

# The HTML of a link from a page, or only its text.
sub Link {
    my ($page, $target, $text) = @_;
    return "<a href=\"$target\">$text</a>" if $target =~ /^https?:/;
    my ($path, $anchor) = $target =~ /^([^#]*)(?:#(.*))?$/;
    my $other = $page;
    if ($path ne '') {
        my $source = abs_path(dirname($page->{source}) . "/$path");
        if (!defined $source || !-e $source) {
            push @faults, "$page->{source}: $target does not exist";
            return $text;
        }
        $other = $bySource{$source} or return $text;
    }
    if (defined $anchor && !$other->{anchors}{$anchor}) {
        push @faults, "$page->{source}: $target: no such heading";
    }
    return "<a href=\"$other->{name}.htm" . (defined $anchor ? "#$anchor" : '') . "\">$text</a>";
}

make_path("$out/utils/images");
my $template = ReadText("$help/page.html");
for my $page (@pages) {
    my $html = $page->{html};
    $html =~ s{<a href="([^"]*)">(.*?)</a>}{Link($page, $1, $2)}gse;
    $html =~ s{<img src="([^"]*)"([^>]*?) ?/>}{
        my ($picture, $rest) = ($1, $2);
        $pictures{basename($picture)} = dirname($page->{source}) . "/$picture";
        "<img src=\"images/" . basename($picture) . "\"$rest>"
    }gse;
    $html =~ s{ />}{>}g;
    my $navigation = $page == $pages[0] ? '' :
        "<p class=\"navigation\"><a href=\"zelt.htm\">ZELT</a> &rsaquo; $page->{title}</p>";
    my %parts = (TITLE => $page->{title}, NAVIGATION => $navigation, BODY => $html);
    WriteText("$out/utils/$page->{name}.htm", $template =~ s/\@([A-Z]+)\@/$parts{$1}/gr);
}
die join("\n", @faults) . "\n" if @faults;

copy("$help/style.css", "$out/utils/style.css") or die "style.css: $!\n";
my @files = ((map { "utils\\$_->{name}.htm" } @pages), "utils\\style.css");
for my $picture (sort keys %pictures) {
    # A separate command makes the pictures, so some may be missing.
    next if !-f $pictures{$picture};
    copy($pictures{$picture}, "$out/utils/images/$picture") or die "$picture: $!\n";
    push @files, "utils\\images\\$picture";
}
WriteText("$out/brix.hhp", ReadText("$help/brix.hhp.in") =~ s/\@FILES\@/join "\n", @files/er);

sub Object {
    my ($name, $local) = @_;
    $name =~ s/&(\w+);/{amp => '&', lt => '<', gt => '>', quot => '"'}->{$1} \/\/ ''/ge;
    return '<LI><OBJECT type="text/sitemap"><param name="Name" value="' . Escaped($name) .
           "\"><param name=\"Local\" value=\"$local\"></OBJECT>\n";
}

my ($contents, @index) = ('');
for my $page (@pages) {
    my $local = "utils/$page->{name}.htm";
    $contents .= Object($page->{title}, $local);
    my @inner = grep { $_->[0] eq 'h2' } @{$page->{headings}};
    $contents .= "<UL>\n" . join('', map { Object($_->[1], "$local#$_->[2]") } @inner) . "</UL>\n" if @inner;
    push @index, [$page->{title}, $local], map { [$_->[1], "$local#$_->[2]"] } @inner;
}
my $head = "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\">\n<HTML><BODY>\n";
WriteText("$out/brix.hhc", "$head<UL>\n$contents</UL>\n</BODY></HTML>\n");
my $rows = join '', map { Object(@$_) } sort { lc $a->[0] cmp lc $b->[0] || $a->[1] cmp $b->[1] } @index;
WriteText("$out/brix.hhk", "$head<UL>\n$rows</UL>\n</BODY></HTML>\n");
