# Statements in function bodies, and what the compiler evaluates itself.
package Statements;
use strict;
use warnings;

# All(source): statements that end in a semicolon, as {first, last, kind} with kind "expression", "jump" (break, continue, and a
# return or throw that an if guards), "end" (any other return or throw), or "declaration".
sub All
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my @statements;
    for (my $i = 0; $i < @$tokens; ++$i) {
        next unless $tokens->[$i]{scope} eq 'code' && Begins($source, $i);
        my $last = End($source, $i);
        next unless defined $last;
        push @statements, {first => $i, last => $last, kind => Kind($source, $i, $last)};
    }
    return @statements;
}

sub Begins
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    my $token = $tokens->[$i];
    return 0 if $i == 0 || $token->{inside} < 0 || $tokens->[$token->{inside}]{text} ne '{';
    my $before = $tokens->[$i - 1];
    return 1 if $before->{text} eq ';' || $before->{text} eq 'else' || $before->{text} eq 'do';
    return 1 if $before->{text} eq '{' && $before->{opens} eq 'code';
    return 1 if $before->{text} eq '}' && defined $before->{match} && $tokens->[$before->{match}]{opens} eq 'code';
    if ($before->{text} eq ')' && defined $before->{match} && $before->{match} > 0) {
        my $head = $tokens->[$before->{match} - 1]{text};
        return $head =~ /^(?:if|for|while|constexpr)$/ ? 1 : 0;
    }
    # After a label of a switch.
    if ($before->{text} eq ':') {
        for (my $j = $i - 2; $j > $token->{inside}; --$j) {
            return 1 if $tokens->[$j]{text} =~ /^(?:case|default)$/;
            return 0 if $tokens->[$j]{text} =~ /^[;{}?]$/;
        }
    }
    return 0;
}

# The semicolon of the statement that begins at token $i; none for one with a body.
sub End
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    return if $tokens->[$i]{text} =~ /^(?:if|for|while|do|switch|try|catch|else|case|default|public|private|protected|\{)$/;
    for (my $j = $i; $j < @$tokens; ++$j) {
        my $token = $tokens->[$j];
        return $j if $token->{text} eq ';';
        next unless defined $token->{match};
        return if $token->{match} < $j;
        $j = $token->{match};
    }
    return;
}

sub Kind
{
    my ($source, $first, $last) = @_;
    my $tokens = $source->{tokens};
    my $text = $tokens->[$first]{text};
    my $before = $tokens->[$first - 1];
    return 'jump' if $text =~ /^(?:break|continue)$/;
    if ($text =~ /^(?:return|throw)$/) {
        # Elsewhere it may be the last statement, and a function must not end without one.
        return $before->{text} eq ')' ? 'jump' : 'end';
    }
    return 'declaration' if $text =~ /^(?:const|constexpr|static|auto|using|typedef|struct|class|static_assert|friend|unsigned|goto|co_return|asm)$/;
    return 'expression' if $text =~ /^(?:delete|\+\+|--|\*|\()$/;
    for (my $j = $first; $j < $last; ++$j) {
        my $token = $tokens->[$j];
        return 'expression' if $token->{text} =~ /^(?:[-+*\/%&|^]?=|<<=|\.|->|\(|\[|\+\+|--|<<)$/;
        $j = $token->{match} if defined $token->{match} && $token->{match} > $j;
        my $next = $tokens->[$j + 1];
        return 'declaration' if $next->{type} eq 'name' && $token->{text} ne '::';
        return 'declaration' if $token->{text} =~ /^[*&]$/;
    }
    return 'declaration';
}

# MarkConstants(source): sets `fixed` in tokens that the compiler evaluates itself, where nothing can be switched at run time, and
# `either` in function bodies that it may evaluate.
sub MarkConstants
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my $mark = sub { my ($from, $to) = @_; $tokens->[$_]{fixed} = 1 for $from .. $to; };
    for (my $i = 0; $i < @$tokens; ++$i) {
        my $token = $tokens->[$i];
        my $text = $token->{text};
        $token->{fixed} = 1 if $token->{scope} eq 'enum';
        if ($text eq '<' && defined $token->{match}) {
            $mark->($i, $token->{match});
        } elsif ($text =~ /^(?:constexpr|static_assert|using|typedef|extern|constinit|asm|alignas|noexcept|decltype|case|goto|operator)$/) {
            my $end = $text eq 'case' ? ':' : ';';
            my $j = $i;
            my $isVariable = 0;
            for (; $j < @$tokens && $tokens->[$j]{text} ne $end; ++$j) {
                $isVariable = 1 if $tokens->[$j]{text} eq '=';
                # A body: the function is called at run time too.
                last if $tokens->[$j]{text} eq '{' && $tokens->[$j]{opens} ne 'values';
                last if $text =~ /^(?:noexcept|decltype|alignas|operator)$/ && $tokens->[$j]{text} eq ')';
                last if defined $tokens->[$j]{match} && $tokens->[$j]{match} < $i;
                $j = $tokens->[$j]{match} if defined $tokens->[$j]{match} && $tokens->[$j]{match} > $j;
            }
            $mark->($i, $j < @$tokens ? $j : $#$tokens);
            next if $text ne 'constexpr' || $tokens->[$i - 1]{text} eq 'if';
            next unless $j < @$tokens && $tokens->[$j]{text} eq '{' && defined $tokens->[$j]{match};
            $tokens->[$_]{either} = 1 for $j .. $tokens->[$j]{match};
        } elsif ($text eq '[' && $i > 0 && $tokens->[$i - 1]{type} eq 'name' && defined $token->{match}) {
            # The size of an array.
            my ($type, $behind) = ($tokens->[$i - 2], $tokens->[$token->{match} + 1]);
            $mark->($i, $token->{match})
                if ($type->{type} eq 'name' || $type->{text} =~ /^[*&>]$/) && $type->{text} ne 'return' && $behind && $behind->{text} =~ /^(?:;|=|\{|\[|,)$/;
        } elsif ($text eq '0' && $i > 0 && $tokens->[$i - 1]{text} eq '=' && $token->{scope} eq 'class') {
            $token->{fixed} = 1;
        }
    }
    return;
}

1;
