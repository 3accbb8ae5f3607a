# C++ text as tokens, as far as small changes need it: comments and preprocessor lines are left out, brackets know their partners,
# and each token knows which kind of brace contains it. It relies on the formatter: a binary operator has blanks on both sides,
# the bracket of template arguments has none before it.
package Tokens;
use strict;
use warnings;

# Read(text): a reference to {text, code, tokens}. `code` is the text with blanks in place of comments and preprocessor lines. A
# token is {text, start, end, type, match, inside, scope, region, opens}: `match` is the number of the other bracket, `inside` that
# of the opening bracket around the token, `scope` the kind of the innermost brace, `region` the kind of the innermost brace that is
# not an initialiser, and `opens` the kind of the brace that the token opens.
sub Read
{
    my ($text) = @_;
    my $code = $text;
    my @tokens;
    my $blank = sub { my ($start, $length) = @_; substr($code, $start, $length) =~ s/[^\n]/ /g; };
    pos($text) = 0;
    while (pos($text) < length $text) {
        my $start = pos $text;
        if ($text =~ /\G\s+/gc) { next; }
        if ($text =~ m{\G//[^\n]*}gc || $text =~ m{\G/\*.*?\*/}gcs) {
            $blank->($start, pos($text) - $start);
            next;
        }
        if (substr($text, $start, 1) eq '#' && BeginsLine(\$text, $start) && $text =~ /\G#(?:[^\n\\]|\\\n|\\.)*/gc) {
            $blank->($start, pos($text) - $start);
            next;
        }
        my $type;
        if ($text =~ /\G(?:u8|[uUL])?R"(\w*)\(.*?\)\1"/gcs) { $type = 'raw'; }
        elsif ($text =~ /\G(?:u8|[uUL])?"(?:[^"\\\n]|\\.)*"/gc) { $type = 'string'; }
        elsif ($text =~ /\G(?:u8|[uUL])?'(?:[^'\\\n]|\\.)+'/gc) { $type = 'character'; }
        elsif ($text =~ /\G(?:0[xX][0-9a-fA-F']+|\d[\d']*(?:\.\d*)?(?:[eE][-+]?\d+)?|\.\d+(?:[eE][-+]?\d+)?)[uUlLfFzZ]*/gc) { $type = 'number'; }
        elsif ($text =~ /\G[A-Za-z_]\w*/gc) { $type = 'name'; }
        elsif ($text =~ /\G(?:<<=|->\*|\.\.\.|<=>|::|->|\+\+|--|<<|<=|>=|==|!=|&&|\|\||[-+*\/%&|^]=|.)/gcs) { $type = 'sign'; }
        push @tokens, {text => substr($text, $start, pos($text) - $start), start => $start, end => pos $text, type => $type};
    }
    my $source = {text => $text, code => $code, tokens => \@tokens};
    MatchBrackets($source);
    return $source;
}

sub BeginsLine
{
    my ($text, $place) = @_;
    my $line = rindex($$text, "\n", $place) + 1;
    return substr($$text, $line, $place - $line) !~ /\S/;
}

my %closing = ('(' => ')', '[' => ']', '{' => '}', '<' => '>');

sub MatchBrackets
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my (@open, @scopes);
    for my $i (0 .. $#$tokens) {
        my $token = $tokens->[$i];
        my $text = $token->{type} eq 'sign' ? $token->{text} : '';
        if ($text eq '<' && !OpensTemplate($source, $i)) { $text = ''; }
        if ($text eq '>' && !(@open && $tokens->[$open[-1]]{text} eq '<')) { $text = ''; }
        if ($text =~ /^[)\]}>]$/) {
            # What looked like a template's bracket was not one if another bracket ends first.
            pop @open while @open && $tokens->[$open[-1]]{text} eq '<' && $text ne '>';
            if (@open && $closing{$tokens->[$open[-1]]{text}} eq $text) {
                my $start = pop @open;
                ($token->{match}, $tokens->[$start]{match}) = ($start, $i);
                pop @scopes if $text eq '}';
            }
        }
        $token->{inside} = @open ? $open[-1] : -1;
        $token->{scope} = @scopes ? $scopes[-1] : 'namespace';
        $token->{region} = (grep { $_ ne 'values' } @scopes)[-1] // 'namespace';
        if ($text =~ /^[(\[{<]$/) {
            push @scopes, $token->{opens} = KindOfBrace($source, $i) if $text eq '{';
            push @open, $i;
        }
    }
    return;
}

sub OpensTemplate
{
    my ($source, $i) = @_;
    my $before = $i ? $source->{tokens}[$i - 1] : return 0;
    return 1 if $before->{text} eq 'template';
    return $before->{type} eq 'name' && $before->{end} == $source->{tokens}[$i]{start} && $before->{text} ne 'operator';
}

# The kind of the brace that token $i opens: namespace, class, enum, values (an initialiser), or code.
sub KindOfBrace
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    my $inside = $tokens->[$i]{inside};
    my @head;
    for (my $j = $i - 1; $j > $inside; --$j) {
        my $token = $tokens->[$j];
        if (defined $token->{match} && $token->{match} < $j) {
            last if $token->{text} eq '}' && $tokens->[$token->{match}]{opens} ne 'values';
            unshift @head, $token->{text};
            $j = $token->{match};
            next;
        }
        last if $token->{text} eq ';';
        unshift @head, $token->{text};
    }
    my %has = map { $_ => 1 } @head;
    my $before = @head ? $head[-1] : '';
    return 'namespace' if $has{namespace} || ($head[0] // '') eq 'extern';
    return 'enum' if $has{enum} && !$has{')'};
    return 'class' if ($has{class} || $has{struct} || $has{union}) && !$has{')'} && !$has{'='};
    return 'code' if $before =~ /^(?:|\)|\]|else|do|try|const|noexcept|override|final|mutable|:)$/;
    return 'code' if $has{'->'} && $has{')'} && !$has{'='} && !$has{return};
    return 'values';
}

1;
