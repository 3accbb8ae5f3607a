# Writes changes into a source, each behind its switch, and keeps the line numbers.
package Apply;
use strict;
use warnings;
use Tables;

# Fits(taken, change): whether the change touches nothing that an earlier one touches; if so, notes what it touches in the hash
# `taken`.
sub Fits
{
    my ($taken, $change) = @_;
    my @ranges = map { [@$_{qw(first last)}] } $change->{twins} ? map { $_->[0] } @{$change->{twins}} : $change;
    if ($change->{twins}) { push @ranges, [$_, $_] for map { UsesInFile($change, $_->[0]) } @{$change->{twins}}; }
    my $of = $taken->{$change->{file}} //= [];
    for my $range (@ranges) {
        return 0 if grep { $_->[0] <= $range->[1] && $range->[0] <= $_->[1] } @$of;
    }
    push @$of, @ranges;
    return 1;
}

# Text(source, change...): the text of the source with the changes, whose numbers are in `number`.
sub Text
{
    my ($source, @changes) = @_;
    my @edits = sort { $b->[0] <=> $a->[0] || $b->[1] <=> $a->[1] } map { $_->{twins} ? Twins($_) : Replacement($_) } @changes;
    my $text = $source->{text};
    substr($text, $_->[0], $_->[1] - $_->[0]) = $_->[2] for @edits;
    return qq(#include "change.h"\n#line 1\n$text);
}

# An edit is [start, end, text].
sub Replacement
{
    my ($change) = @_;
    my $source = $change->{source};
    my ($start, $end) = ($source->{tokens}[$change->{first}]{start}, $source->{tokens}[$change->{last}]{end});
    my $switch = Switch($change, $change->{first});
    (my $text = $change->{text}) =~ s/\x01/$switch/g;
    return [$start, $end, $text . "\n" x (substr($source->{text}, $start, $end - $start) =~ tr/\n//)];
}

# The expression that reads the switch at a token.
sub Switch
{
    my ($change, $token) = @_;
    return ($change->{source}{tokens}[$token]{either} ? 'ZELT_CONSTANT_CHANGE' : 'ZELT_CHANGE') . "($change->{number})";
}

sub UsesInFile { my ($change, $constant) = @_; return $change->{file} =~ /\.h$/ ? () : Tables::Uses($change->{source}, $constant); }

sub Twins
{
    my ($change) = @_;
    my $source = $change->{source};
    my $tokens = $source->{tokens};
    my @edits;
    for my $twin (@{$change->{twins}}) {
        my ($constant, $text) = @$twin;
        my ($name, $other) = ($constant->{name}, "$constant->{name}_changed$change->{number}");
        my $last = $tokens->[$constant->{last}]{end};
        $text =~ s/\x02/$change->{number}/g;
        my $macro = $change->{file} =~ /\.h$/ ? "\n#define $name (ZELT_CONSTANT_CHANGE($change->{number}) ? $other : $name)\n" .
            LineHere($source, $last) : '';
        push @edits, [$last, $last, " $text$macro"];
        for my $use (UsesInFile($change, $constant)) {
            push @edits, [@{$tokens->[$use]}{qw(start end)}, '(' . Switch($change, $use) . " ? $other : $name)"];
        }
    }
    return @edits;
}

sub LineHere
{
    my ($source, $place) = @_;
    return '#line ' . (1 + (substr($source->{text}, 0, $place) =~ tr/\n//)) . "\n";
}

1;
