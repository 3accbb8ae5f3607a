# What replaces a literal or a named constant.
package Literals;
use strict;
use warnings;
use Digest::SHA 'sha1';

# Chosen only by the text, so that a change keeps its id when other lines change.
sub Pick { my ($count, @key) = @_; return unpack('N', sha1(join "\0", @key)) % $count; }

# Other(source, i): the last token of what is replaced, the kind of change and the new text; nothing when there is none.
sub Other
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    my $token = $tokens->[$i];
    my $text = $token->{text};
    return ($i, 'number', Number($text)) if $token->{type} eq 'number';
    if ($token->{type} eq 'string') {
        return if $tokens->[$i - 1]{type} eq 'string' || $tokens->[$i - 1]{text} =~ /^(?:extern|operator|#)$/;
        my $last = $i;
        ++$last while $tokens->[$last + 1]{type} eq 'string';
        my $run = join ' ', map { $_->{text} } @$tokens[$i .. $last];
        return ($last, 'text', Text($run));
    }
    return unless $token->{type} eq 'name';
    return ($i, 'flag', 'false') if $text eq 'true';
    return ($i, 'flag', 'true') if $text eq 'false';
    return if $tokens->[$i + 1]{text} =~ /^(?:\(|::|\{)$/;
    my $before = $tokens->[$i - 1]{text};
    return if $before =~ /^(?:\.|->)$/;
    my $family = Family($source, $i);
    return unless defined $family;
    my $other = OtherMember($source, $family, $text);
    return defined $other ? ($i, 'constant', $other) : ();
}

sub Number
{
    my ($text) = @_;
    return if $text =~ /'/;
    my ($digits, $suffix) = $text =~ /^(0[xX][0-9a-fA-F]+|[\d.]+(?:[eE][-+]?\d+)?)([uUlLfFzZ]*)$/ or return;
    my $isHexadecimal = $digits =~ /^0[xX]/;
    return if $isHexadecimal && length $digits > 10;
    if ($digits =~ /[.eE]/ && !$isHexadecimal) {
        return $digits == 0 ? "1.0$suffix" : "(10 * $digits$suffix)";
    }
    my $value = $isHexadecimal ? hex $digits : $digits + 0;
    my $new = $value == 0 ? 1 : $value + (Pick(2, $text) ? 1 : -1);
    return ($isHexadecimal ? sprintf('0x%X', $new) : $new) . $suffix;
}

# Changes one letter, but none that belongs to an escape sequence or to a format such as %s.
sub Text
{
    my ($text) = @_;
    my @places;
    while ($text =~ /(\\(?:x[0-9a-fA-F]+|.))|(%[-+ #0-9.*]*[a-zA-Z]*)|("\s*(?:u8|[uUL])?")|^((?:u8|[uUL])")|([A-Za-z])/g) {
        push @places, pos($text) - 1 if defined $5;
    }
    return unless @places;
    my $place = $places[Pick(scalar @places, $text)];
    substr($text, $place, 1) =~ tr/A-Za-z/B-ZAb-za/;
    return $text;
}

# The constants that may replace one another: those of one prefix (E_FAIL, E_POINTER), members of one enumeration (Kind::First,
# Kind::Second), and this project's own constants.
sub Family
{
    my ($source, $i) = @_;
    my $tokens = $source->{tokens};
    my $text = $tokens->[$i]{text};
    if ($tokens->[$i - 1]{text} eq '::') {
        return if $i > 1 && $tokens->[$i - 2]{text} eq 'std';
        return unless $i > 1 && $tokens->[$i - 2]{type} eq 'name' && $text =~ /^[A-Zk]\w*[a-z]/;
        return $tokens->[$i - 2]{text} . '::';
    }
    return $1 if $text =~ /^([A-Z][A-Z0-9]*_)[A-Z0-9_]+$/;
    return 'k' if $text =~ /^k[A-Z]/;
    return;
}

my %everywhere;

# Gather(source): remembers the constants of a file; other files may use them too, except this project's own (k...).
sub Gather
{
    my ($source) = @_;
    my $tokens = $source->{tokens};
    my %own;
    for my $i (1 .. $#$tokens - 1) {
        next unless $tokens->[$i]{type} eq 'name' && $tokens->[$i + 1]{text} !~ /^(?:\(|::)$/;
        my $family = Family($source, $i) // next;
        $own{$family}{$tokens->[$i]{text}} = 1;
        $everywhere{$family}{$tokens->[$i]{text}} = 1 unless $family eq 'k';
    }
    $source->{families} = \%own;
    return;
}

sub OtherMember
{
    my ($source, $family, $text) = @_;
    for my $members ($source->{families}{$family}, $everywhere{$family}) {
        my @others = grep { $_ ne $text } sort keys %{$members // {}};
        return $others[Pick(scalar @others, $text)] if @others;
    }
    return;
}

1;
