# Changes to constants that the compiler evaluates: tables and single values. Such a constant gets a twin that contains the
# change, and the code that uses it at run time chooses between the two. What the compiler computes from it keeps the original,
# except constants of the same file that are made from it, which get a twin too. The users of a header's constant are in other
# files: there a macro with its name chooses.
package Tables;
use strict;
use warnings;
use Expressions;
use Literals;

my $switch = "\x01";
my $number = "\x02";

# Constants(source): the declarations of constants, as {name, nameToken, first, last, value}: tokens of the declaration, and the
# first token of its value.
sub Constants
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my @constants;
    for (my $i = 0; $i < @$tokens; ++$i) {
        my $token = $tokens->[$i];
        next unless $token->{text} =~ /^(?:constexpr|const)$/ && !($i > 0 && $tokens->[$i - 1]{text} =~ /^(?:if|constexpr|,|\()$/);
        next if $token->{inside} >= 0 && $tokens->[$token->{inside}]{text} ne '{';
        next if $token->{text} eq 'const' && $token->{region} ne 'namespace';
        my $first = $i;
        --$first while $first > 0 && $tokens->[$first - 1]{text} =~ /^(?:inline|static)$/;
        next if $first > 0 && $tokens->[$first - 1]{text} !~ /^(?:;|\{|\}|\))$/;
        my ($value, $last);
        for (my $j = $i; $j < @$tokens; ++$j) {
            last if !defined $value && $tokens->[$j]{text} =~ /^(?:\(|\{)$/ || defined $tokens->[$j]{match} && $tokens->[$j]{match} < $j;
            $value //= $j + 1 if $tokens->[$j]{text} eq '=';
            $last = $j, last if $tokens->[$j]{text} eq ';';
            $j = $tokens->[$j]{match} if defined $tokens->[$j]{match} && $tokens->[$j]{match} > $j;
        }
        next unless defined $value && defined $last;
        my $name = $value - 2;
        $name = $tokens->[$name]{match} - 1 while $tokens->[$name]{text} eq ']';
        next unless $tokens->[$name]{type} eq 'name';
        push @constants, {name => $tokens->[$name]{text}, nameToken => $name, first => $first, last => $last, value => $value};
        $i = $last;
    }
    return @constants;
}

# The declaration of the twin: replaces tokens as in the hash {token number => text}.
sub Twin
{
    my ($source, $constant, $replaced) = @_;
    my $tokens = $source->{tokens};
    my $text = '';
    for my $i ($constant->{first} .. $constant->{last}) {
        $text .= ' ' if $i > $constant->{first} && $tokens->[$i]{start} > $tokens->[$i - 1]{end};
        $text .= $i == $constant->{nameToken} ? Name($constant) : $replaced->{$i} // $tokens->[$i]{text};
    }
    return $text;
}

sub Name { my ($constant) = @_; return "$constant->{name}_changed$number"; }

# The twins of the constant and of those that are made from it.
sub Twins
{
    my ($source, $constants, $n, $replaced) = @_;
    my $tokens = $source->{tokens};
    my %changed = ($constants->[$n]{name} => Name($constants->[$n]));
    my @twins = ([$constants->[$n], Twin($source, $constants->[$n], $replaced)]);
    for my $other (@$constants[$n + 1 .. $#$constants]) {
        last if $other->{name} eq $constants->[$n]{name};
        my %uses = map { $_ => $changed{$tokens->[$_]{text}} }
            grep { $tokens->[$_]{type} eq 'name' && $changed{$tokens->[$_]{text}} && $tokens->[$_ - 1]{text} !~ /^(?:\.|->)$/ }
            $other->{value} .. $other->{last};
        next unless %uses;
        push @twins, [$other, Twin($source, $other, \%uses)];
        $changed{$other->{name}} = Name($other);
    }
    return \@twins;
}

# The tokens of this file's code that read the constant at run time.
sub Uses
{
    my ($source, $constant) = @_;
    my $tokens = $source->{tokens};
    my $end = $#$tokens;
    my $around = $tokens->[$constant->{last}]{inside};
    # In a function body the name ends with its block; the end of a namespace hides nothing.
    $end = $tokens->[$around]{match} if $tokens->[$constant->{last}]{region} eq 'code' && defined $tokens->[$around]{match};
    return grep {
        $tokens->[$_]{text} eq $constant->{name} && !$tokens->[$_]{fixed} && IsInCode($source, $_) &&
            $tokens->[$_ - 1]{text} !~ /^(?:\.|->|::)$/
    } $constant->{last} + 1 .. $end;
}

# In a function body, or in a constructor's list of member initialisers.
sub IsInCode
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    return 1 if $tokens->[$i]{region} eq 'code';
    return 0 if $tokens->[$i]{inside} < 0 || $tokens->[$tokens->[$i]{inside}]{text} ne '(';
    $source->{inConstant} //= {map { $_ => 1 } map { $_->{first} .. $_->{last} } Constants($source)};
    return !$source->{inConstant}{$i};
}

# The rows of a table as pairs of tokens, first and last.
sub Rows
{
    my ($source, $constant) = @_;
    my $open = $constant->{value};
    return unless $source->{tokens}[$open]{text} eq '{' && defined $source->{tokens}[$open]{match};
    my @rows = Expressions::Arguments($source, $open);
    # An array in a class has double braces.
    return Expressions::Arguments($source, $rows[0][0]) if @rows == 1 && $source->{tokens}[$rows[0][0]]{text} eq '{';
    return @rows;
}

sub All
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my @constants = Constants($source);
    my @changes;
    for my $n (0 .. $#constants) {
        my $constant = $constants[$n];
        my $add = sub {
            my ($kind, $first, $last, $before, $after, $replaced) = @_;
            return if $before eq $after;
            my $twins = Twins($source, \@constants, $n, $replaced);
            return unless $source->{file} =~ /\.h$/ || grep { Uses($source, $_->[0]) } @$twins;
            push @changes, {kind => $kind, first => $first, last => $last, before => $before, after => $after, twins => $twins};
        };
        for my $i ($constant->{value} .. $constant->{last} - 1) {
            next if $tokens->[$i]{inside} >= 0 && $tokens->[$tokens->[$i]{inside}]{text} eq '<';
            my ($last, $kind, $other) = Literals::Other($source, $i);
            next if !defined $other || $other eq $constant->{name};
            $add->($tokens->[$constant->{value}]{text} eq '{' ? 'cell' : 'value', $i, $last,
                   Expressions::Text($source, $i, $last), $other, {$i => $other, map { $_ => '' } $i + 1 .. $last});
        }
        my @rows = Rows($source, $constant);
        my $isOnlySearched = IsOnlySearched($source, $constant);
        for my $r (1 .. $#rows) {
            # Rows of several fields are looked up by one of them: their order does not matter, but the contents of one row do.
            $add->('row', $rows[$r - 1][0], $rows[$r][1], Both($source, @rows[$r - 1, $r]), Both($source, @rows[$r, $r - 1]),
                   Exchange($source, @rows[$r - 1, $r]))
                unless $isOnlySearched || grep { $tokens->[$_]{text} =~ /^(?:\{|\(|\.)$/ } map { $_->[0] .. $_->[1] } @rows[$r - 1, $r];
            my @above = Fields($source, $rows[$r - 1]);
            my @below = Fields($source, $rows[$r]);
            next unless @above > 1 && @above == @below;
            $add->('field', $above[$_][0], $below[$_][1], Both($source, $above[$_], $below[$_]), Both($source, $below[$_], $above[$_]),
                   Exchange($source, $above[$_], $below[$_])) for 0 .. $#above;
        }
    }
    return @changes;
}

# Whether every use only asks if the table has a value: then the order of its rows does not matter.
sub IsOnlySearched
{
    my ($source, $constant) = @_;
    return 0 if $source->{file} =~ /\.h$/;
    my $name = $constant->{name};
    my $code = substr $source->{code}, $source->{tokens}[$constant->{last}]{end};
    my $whole = qr/std::begin\(\Q$name\E\),\s*std::end\(\Q$name\E\)/;
    my $searches = ($code =~ s/std::find\($whole,[^;]*?\)\s*[!=]=\s*std::end\(\Q$name\E\)//g) || 0;
    $searches += $code =~ s/IsOneOf\([^;]*?,\s*\Q$name\E\)//g;
    my $sets = $code =~ s/std::set<[^;{}()]*>\s*\w*\($whole\)//g;
    return ($searches || $sets) && $code !~ /\b\Q$name\E\b/;
}

sub Fields
{
    my ($source, $row) = @_;
    return $source->{tokens}[$row->[0]]{text} eq '{' ? Expressions::Arguments($source, $row->[0]) : ();
}

sub Both { my ($source, $one, $other) = @_; return join ' / ', map { Expressions::Text($source, @$_) } $one, $other; }

# The text for each token's place when two ranges are swapped.
sub Exchange
{
    my ($source, $one, $other) = @_;
    my %replaced = map { $_ => '' } $one->[0] .. $one->[1], $other->[0] .. $other->[1];
    $replaced{$one->[0]} = Expressions::Text($source, @$other);
    $replaced{$other->[0]} = Expressions::Text($source, @$one);
    return \%replaced;
}

1;
