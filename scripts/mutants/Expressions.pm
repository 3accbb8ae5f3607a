# Where expressions begin and end among the tokens of a source.
package Expressions;
use strict;
use warnings;

# From the loosest to the tightest: an operand ends at everything in the rows above its operator's; a right operand, and the left
# one of `?`, also ends at everything in the operator's own row.
my @precedence = (
    [';', ',', '=', '+=', '-=', '*=', '/=', '%=', '&=', '|=', '^=', '<<=', 'return', 'throw', 'else', 'case', ':', '?'],
    ['||'], ['&&'], ['|'], ['^'], ['&'], ['==', '!='], ['<', '>', '<=', '>=', '<=>'], ['<<', '>>'], ['+', '-'], ['*', '/', '%'],
);

# The tokens that end an operand of the operator, on its left or right side.
sub Ends
{
    my ($operator, $side) = @_;
    my %ends;
    for my $row (@precedence) {
        my $own = grep { $_ eq $operator } @$row;
        # a - b - c is (a - b) - c.
        last if $own && $side eq 'left' && $operator ne '?';
        $ends{$_} = 1 for @$row;
        last if $own;
    }
    return \%ends;
}

# Operands(source, i): the number of the first token of operator i's left operand, and that of the last token of its right one.
sub Operands
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    my $operator = $tokens->[$i]{text};
    my $left = $i;
    my $ends = Ends($operator, 'left');
    for (my $j = $i - 1; $j > $tokens->[$i]{inside}; --$j) {
        my $token = $tokens->[$j];
        if (defined $token->{match}) {
            last if $token->{match} > $j || ($token->{text} eq '}' && $tokens->[$token->{match}]{opens} ne 'values');
            $left = $j = $token->{match};
            next;
        }
        last if $ends->{$token->{text}};
        $left = $j;
    }
    my $right = $i;
    $ends = Ends($operator, 'right');
    for (my $j = $i + 1; $j < @$tokens; ++$j) {
        my $token = $tokens->[$j];
        if (defined $token->{match}) {
            last if $token->{match} < $j || ($token->{text} eq '{' && $token->{opens} ne 'values');
            $right = $j = $token->{match};
            next;
        }
        last if $ends->{$token->{text}};
        $right = $j;
    }
    return if $left == $i || $right == $i;
    return ($left, $right);
}

# CallStart(source, i): the first token of the call whose function's name is token i, including the objects and namespaces before
# it.
sub CallStart
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    while ($i > 0 && $tokens->[$i - 1]{text} =~ /^(?:::|\.|->)$/) {
        my $j = $i - 2;
        return $i - 1 if $j < 0 || $tokens->[$i - 1]{text} eq '::' && $tokens->[$j]{type} ne 'name' && $tokens->[$j]{text} ne '>';
        while (defined $tokens->[$j]{match} && $tokens->[$j]{match} < $j) {
            $j = $tokens->[$j]{match} - 1;
        }
        return if $tokens->[$j]{type} ne 'name' && $tokens->[$j + 1]{text} ne '(';
        $i = $tokens->[$j]{type} eq 'name' ? $j : $j + 1;
    }
    return $i;
}

# Arguments(source, i): those between the bracket i and its partner, as pairs of token numbers, first and last.
sub Arguments
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    my ($first, @arguments) = ($i + 1);
    my $end = $tokens->[$i]{match};
    return if $first == $end;
    for (my $j = $first; $j <= $end; ++$j) {
        if ($j == $end || $tokens->[$j]{text} eq ',') {
            push @arguments, [$first, $j - 1] if $j > $first;
            $first = $j + 1;
        } elsif (defined $tokens->[$j]{match} && $tokens->[$j]{match} > $j) {
            $j = $tokens->[$j]{match};
        }
    }
    return @arguments;
}

# The text from token $first to token $last on one line, without comments.
sub Text
{
    my ($source, $first, $last) = @_;
    my $tokens = $source->{tokens};
    my ($start, $end) = ($tokens->[$first]{start}, $tokens->[$last]{end});
    my $text = substr $source->{code}, $start, $end - $start;
    $text =~ s/[ \t]*\n\s*/ /g;
    return $text;
}

1;
