# All changes that can be made to a tree, each with an id that stays the same while its line does, and the order in which a seed
# draws them.
package Changes;
use strict;
use warnings;
use Digest::SHA qw(sha1 sha1_hex);
use Literals;
use Operators;
use Tables;
use Tokens;

# How often a kind is drawn, regardless of how many places it fits. A change to a table row, a condition or a statement reveals
# more than a change to one letter of a text.
my %share = (
    condition => 14, bound => 9, equality => 6, logic => 5, operand => 7, arithmetic => 5, number => 9, flag => 5, text => 5,
    constant => 9, statement => 14, order => 6, argument => 4, swap => 7, cell => 6, value => 4, row => 4, field => 6,
);

# Collect(folder, file...): the changes of the files, paths relative to the folder. Each is {id, file, line, lineText, what, kind,
# source, ...}; `id` is derived from the file, the text of the line and what is changed, not from the line's number.
sub Collect
{
    my ($folder, @files) = @_;
    my @sources = map { my $source = Tokens::Read(ReadFile("$folder/$_")); $source->{file} = $_; $source } @files;
    Literals::Gather($_) for @sources;
    return map { OfSource($_) } @sources;
}

sub OfSource
{
    my ($source) = @_;
    my @lines = split /\n/, $source->{code}, -1;
    my @starts = (0);
    push @starts, pos $source->{text} while $source->{text} =~ /\n/g;
    my %seen;
    my @changes = sort { $a->{first} <=> $b->{first} } Operators::All($source), Tables::All($source);
    for my $change (@changes) {
        $change->{source} = $source;
        $change->{file} = $source->{file};
        $change->{line} = LineOf(\@starts, $source->{tokens}[$change->{first}]{start});
        ($change->{lineText} = Squeeze($lines[$change->{line} - 1])) =~ s/^ //;
        $change->{what} = Squeeze("$change->{kind}: $change->{before} -> " . ($change->{after} eq '' ? 'nothing' : $change->{after}));
        my $count = ++$seen{"$change->{lineText}\n$change->{what}"};
        $change->{what} .= " ($count)" if $count > 1;
        $change->{id} = substr sha1_hex(join "\n", @$change{qw(file lineText what)}), 0, 8;
    }
    return @changes;
}

# The number of the line, from 1, that contains the place.
sub LineOf
{
    my ($starts, $place) = @_;
    my ($low, $high) = (0, $#$starts);
    while ($low < $high) {
        my $middle = int(($low + $high + 1) / 2);
        if ($starts->[$middle] <= $place) { $low = $middle; } else { $high = $middle - 1; }
    }
    return $low + 1;
}

sub Squeeze { my ($text) = @_; $text =~ s/\s+/ /g; $text =~ s/ $//; return $text; }

# Draw(seed, change...): the changes in the order of the seed. A change's place depends on the seed, its id, its kind, and how many
# of its kind there are.
sub Draw
{
    my ($seed, @changes) = @_;
    my %count;
    ++$count{$_->{kind}} for @changes;
    for my $change (@changes) {
        my $random = (unpack('N', sha1("$seed $change->{id}")) + 1) / (2**32 + 1);
        $change->{rank} = -log($random) * $count{$change->{kind}} / $share{$change->{kind}};
    }
    return sort { $a->{rank} <=> $b->{rank} || $a->{id} cmp $b->{id} } @changes;
}

sub ReadFile
{
    my ($path) = @_;
    open my $file, '<:raw', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

1;
