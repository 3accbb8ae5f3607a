# The small changes to expressions and statements. Each function finds the places of one kind of change in a source and returns
# changes: {kind, first, last, before, after, text}. `text` replaces the tokens first to last; the character \x01 in it stands for
# the switch, true while the change is on.
package Operators;
use strict;
use warnings;
use Expressions;
use Literals;
use Statements;

my $switch = "\x01";

# A change that evaluates either the old or the new form of an expression.
sub Choice
{
    my ($source, $kind, $first, $last, $after, $type) = @_;
    my $before = Expressions::Text($source, $first, $last);
    return if $before eq $after || length $before > 600;
    my $form = $type ? "static_cast<$type>($after)" : "($after)";
    return {kind => $kind, first => $first, last => $last, before => $before, after => $after,
            text => "($switch ? $form : ($before))"};
}

# Whether all these tokens are in function bodies or member initialisers, where the switch can be read.
sub IsSwitchable
{
    my ($source, $first, $last) = @_;
    for my $i ($first .. $last) {
        my $token = $source->{tokens}[$i];
        return 0 if $token->{fixed} || $token->{region} !~ /^(?:code|class)$/;
    }
    return 1;
}

# Conditions of if and while, and of the conditional operator, negated.
sub Conditions
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my @changes;
    my $add = sub {
        my ($first, $last) = @_;
        my $text = Expressions::Text($source, $first, $last);
        push @changes, {kind => 'condition', first => $first, last => $last, before => $text, after => "!($text)",
                        text => "(static_cast<bool>($text) != $switch)"} if length $text < 600;
    };
    for my $i (0 .. $#$tokens - 1) {
        if ($tokens->[$i]{text} =~ /^(?:if|while)$/ && $tokens->[$i + 1]{text} eq '(') {
            my ($first, $last) = ($i + 2, $tokens->[$i + 1]{match} - 1);
            my @inside = grep { $tokens->[$_]{inside} == $i + 1 } $first .. $last;
            $add->($first, $last) unless grep { $tokens->[$_]{text} =~ /^(?:;|=)$/ } @inside;
        } elsif ($tokens->[$i]{text} eq '?' && IsSwitchable($source, $i, $i)) {
            my ($first) = Expressions::Operands($source, $i);
            $add->($first, $i - 1) if defined $first && IsSwitchable($source, $first, $i);
        }
    }
    return @changes;
}

# operator => [kind of change => what replaces it]
my %replaced = (
    '<'  => [bound => '<='], '<=' => [bound => '<'], '>' => [bound => '>='], '>=' => [bound => '>'],
    '==' => [equality => '!='], '!=' => [equality => '=='],
    '&&' => [logic => '||'], '||' => [logic => '&&'],
    '+' => [arithmetic => '-'], '-' => [arithmetic => '+'], '*' => [arithmetic => '/'], '/' => [arithmetic => '*'],
    '&' => [arithmetic => '|'], '|' => [arithmetic => '&'], '<<' => [arithmetic => '>>'], '>>' => [arithmetic => '<<'],
    '%' => [arithmetic => '/'],
);

sub BinaryOperators
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my @changes;
    for my $i (1 .. $#$tokens - 1) {
        my $token = $tokens->[$i];
        next unless $token->{type} eq 'sign' && $replaced{$token->{text}} && !defined $token->{match};
        # Without a blank on each side it is unary, or belongs to a type.
        next if $tokens->[$i - 1]{end} == $token->{start} || $token->{end} == $tokens->[$i + 1]{start};
        my ($first, $last) = Expressions::Operands($source, $i);
        next unless defined $first && IsSwitchable($source, $first, $last);
        my ($kind, $other) = @{$replaced{$token->{text}}};
        my ($left, $right) = (Expressions::Text($source, $first, $i - 1), Expressions::Text($source, $i + 1, $last));
        # Texts are joined, never subtracted.
        next if $kind eq 'arithmetic' && "$left$right" =~ /["']/;
        # Without a number it is a stream's operator, not a shift.
        next if $token->{text} =~ /^(?:<<|>>)$/ && "$left $right" !~ /\b\d/;
        push @changes, Choice($source, $kind, $first, $last, "($left) $other ($right)");
        next unless $kind eq 'logic';
        push @changes, map { Choice($source, 'operand', $first, $last, $_, 'bool') } $left, $right;
    }
    return @changes;
}

sub LiteralsExchanged
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my @changes;
    for my $i (1 .. $#$tokens) {
        next unless IsSwitchable($source, $i, $i);
        my ($last, $kind, $other) = Literals::Other($source, $i);
        next unless defined $other;
        my $first = $kind eq 'constant' ? Expressions::CallStart($source, $i) : $i;
        next unless defined $first;
        $other = Expressions::Text($source, $first, $i - 1) . $other if $first < $i;
        push @changes, Choice($source, $kind, $first, $last, $other);
    }
    return @changes;
}

# Leaves statements out: expressions, break and continue, and a return or throw that an if guards.
sub Dropped
{
    my ($source) = @_;
    my @changes;
    for my $statement (Statements::All($source)) {
        my ($first, $last, $kind) = @$statement{qw(first last kind)};
        next unless $kind =~ /^(?:expression|jump)$/;
        my $text = Expressions::Text($source, $first, $last);
        next if length $text > 600;
        push @changes, {kind => 'statement', first => $first, last => $last, before => $text, after => '',
                        text => "{ if (!$switch) { $text } }"};
    }
    return @changes;
}

# Swaps two neighbouring expression statements of a block.
sub Reordered
{
    my ($source) = @_;
    my @changes;
    my @statements = grep { $_->{kind} eq 'expression' } Statements::All($source);
    for my $one (@statements) {
        next unless $source->{tokens}[$one->{first} - 1]{text} =~ /^[;{}:]$/;
        my ($other) = grep { $_->{first} == $one->{last} + 1 } @statements or next;
        my ($first, $second) = map { Expressions::Text($source, @$_{qw(first last)}) } $one, $other;
        next if $first eq $second || length "$first$second" > 600;
        push @changes, {kind => 'order', first => $one->{first}, last => $other->{last}, before => "$first $second",
                        after => "$second $first", text => "if ($switch) { $second $first } else { $first $second }"};
    }
    return @changes;
}

my %noCall = map { $_ => 1 } qw(if for while switch return sizeof catch decltype noexcept alignof defined typeid operator
                                static_assert alignas constexpr __uuidof static_cast reinterpret_cast const_cast dynamic_cast STDMETHOD STDMETHOD_ STDMETHODIMP_ requires);

# Arguments of calls: leaves one out, or swaps two neighbours.
sub Calls
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my @changes;
    for my $i (1 .. $#$tokens - 1) {
        my $open = $i + 1;
        next unless $tokens->[$i]{type} eq 'name' && !$noCall{$tokens->[$i]{text}};
        $open = $tokens->[$open]{match} + 1 if $tokens->[$open]{text} eq '<' && defined $tokens->[$open]{match};
        next unless $open < @$tokens && $tokens->[$open]{text} eq '(' && defined $tokens->[$open]{match};
        next unless $tokens->[$i]{region} eq 'code' && $tokens->[$i]{scope} ne 'class';
        my $first = Expressions::CallStart($source, $i);
        next unless defined $first && $first > 0 && IsOperand($source, $first);
        my $last = $tokens->[$open]{match};
        # Template arguments are always fixed; they do not prevent the change, so check only these three tokens.
        next if grep { $tokens->[$_]{fixed} } $first, $open, $last;
        my @texts = map { Expressions::Text($source, @$_) } Expressions::Arguments($source, $open);
        my $head = Expressions::Text($source, $first, $open);
        # Replaces min(a, b) or max(a, b) with a, and with b.
        if ($tokens->[$i]{text} =~ /^(?:min|max)$/ && @texts == 2) {
            push @changes, map { Choice($source, 'argument', $first, $last, $_) } @texts;
            next;
        }
        for my $n (0 .. $#texts) {
            my @rest = @texts;
            splice @rest, $n, 1;
            push @changes, Choice($source, 'argument', $first, $last, $head . join(', ', @rest) . ')');
            next if $n == 0 || $texts[$n] eq $texts[$n - 1];
            # A literal and a variable hardly ever have the same type.
            next if 1 == grep { /^(?:"|nullptr$)/ } @texts[$n - 1, $n];
            my @swapped = @texts;
            @swapped[$n - 1, $n] = @swapped[$n, $n - 1];
            push @changes, Choice($source, 'swap', $first, $last, $head . join(', ', @swapped) . ')');
        }
    }
    return @changes;
}

# Whether an expression begins at token $i, judged by what precedes it. If none does, a name there is part of a type or declaration.
sub IsOperand
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    my $before = $tokens->[$i - 1];
    return 0 if $before->{text} =~ /^(?:new|~|operator)$/;
    return 1 if $before->{text} =~ /^(?:return|throw|else|do|case)$/;
    return 0 if $before->{type} ne 'sign' || $before->{text} eq ']';
    return 0 if $before->{text} =~ /^[*&>]$/ && $before->{end} == $tokens->[$i]{start} && $i > 1 && $tokens->[$i - 2]{type} eq 'name';
    return 0 if $before->{text} =~ /^[*&>]$/ && $i > 1 && $tokens->[$i - 2]{end} == $before->{start};
    # A member that a constructor initialises.
    return 0 if $before->{text} eq ':' && $i > 1 && $tokens->[$i - 2]{text} eq ')' && $tokens->[$i]{scope} ne 'code';
    return 1;
}

sub All
{
    my ($source) = @_;
    Statements::MarkConstants($source);
    return (Conditions($source), BinaryOperators($source), LiteralsExchanged($source), Dropped($source), Reordered($source), Calls($source));
}

1;
