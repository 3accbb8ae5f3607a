# Makes the program's pictures from their sources:
#   perl convert.pl strip small_images.txt images.bmp            the strip of small images, 4 bits a pixel
#   perl convert.pl icon application_icon.txt zelt.ico           the icon in every size that the screen asks for
use strict;
use warnings;

my ($what, $source, $target) = @ARGV;
die "usage: convert.pl strip|icon <source> <target>\n" unless defined $target;
open(my $in, '<', $source) or die "$source: $!\n";
my @lines = grep { !/^\s*(#|$)/ } map { s/\s+$//r } <$in>;
my $bytes = $what eq 'strip' ? strip(@lines) : $what eq 'icon' ? icon(@lines) : die "unknown picture $what\n";
open(my $out, '>:raw', $target) or die "$target: $!\n";
print $out $bytes;
close($out) or die "$target: $!\n";

# A bitmap of one row of squares; lines are stored from the last to the first.
sub strip
{
    my $side = 16;
    # The system's sixteen colours, in the order of its palette; red, green, blue.
    my @palette = (
        [0, 0, 0], [128, 0, 0], [0, 128, 0], [128, 128, 0], [0, 0, 128], [128, 0, 128], [0, 128, 128], [128, 128, 128],
        [192, 192, 192], [255, 0, 0], [0, 255, 0], [255, 255, 0], [0, 0, 255], [255, 0, 255], [0, 255, 255],
        [255, 255, 255]);
    my %index;
    @index{split //, 'krgybmcdlRGYBMC.'} = 0 .. 15;
    my @images;
    for my $line (@_) {
        if ($line =~ /^image (\d+) /) {
            die "$source: image $1 is out of order\n" if $1 != @images;
            push @images, [];
            next;
        }
        die "$source: \"$line\" is no line of $side pixels\n" if length $line != $side;
        /[^krgybmcdlRGYBMC.]/ and die "$source: unknown colour in \"$line\"\n" for $line;
        push @{$images[-1]}, $line;
    }
    @$_ == $side or die "$source: an image has " . @$_ . " lines\n" for @images;
    my $bits = '';
    for my $y (reverse 0 .. $side - 1) {
        my @pixels = map { $index{$_} } split //, join '', map { $_->[$y] } @images;
        $bits .= pack 'C*', map { $pixels[2 * $_] * 16 + $pixels[2 * $_ + 1] } 0 .. $#pixels / 2;
    }
    my $colours = join '', map { pack 'C4', @$_[2, 1, 0], 0 } @palette;
    my $header = pack 'V l< l< v v V V l< l< V V', 40, $side * @images, $side, 1, 4, 0, length $bits, 0, 0, 16, 16;
    my $offset = 14 + length($header) + length $colours;
    return 'BM' . pack('V v v V', $offset + length $bits, 0, 0, $offset) . $header . $colours . $bits;
}

sub icon
{
    my @shapes;
    for my $line (@_) {
        my ($colour, @corners) = split ' ', $line;
        push @shapes, {colour => [map { hex } unpack 'A2A2A2', $colour], corners => [map { [split /,/] } @corners]};
    }
    my @sizes = (16, 20, 24, 32, 40, 48, 64, 96);
    my ($entries, $pictures) = ('', '');
    for my $size (@sizes) {
        my $picture = picture($size, @shapes);
        $entries .= pack 'C C C C v v V V', $size, $size, 0, 0, 1, 32, length $picture,
                         6 + 16 * @sizes + length $pictures;
        $pictures .= $picture;
    }
    return pack('v v v', 0, 1, scalar @sizes) . $entries . $pictures;
}

# One size of the icon: blue, green, red and opacity of each pixel, then a mask of one bit a pixel for older programs.
sub picture
{
    my ($size, @shapes) = @_;
    my @pixels = map { [0, 0, 0, 0] } 1 .. $size * $size;
    for my $shape (@shapes) {
        my @share = coverage($size, $shape->{corners});
        for my $at (0 .. $#pixels) {
            my $over = $share[$at] or next;
            my ($red, $green, $blue, $alpha) = @{$pixels[$at]};
            my $sum = $over + $alpha * (1 - $over);
            my @mixed = map { ($shape->{colour}[$_] * $over + $pixels[$at][$_] * $alpha * (1 - $over)) / $sum } 0 .. 2;
            $pixels[$at] = [@mixed, $sum];
        }
    }
    my ($colours, $mask) = ('', '');
    for my $y (reverse 0 .. $size - 1) {
        my @line = @pixels[$y * $size .. ($y + 1) * $size - 1];
        $colours .= pack 'C4', map { int($_ + 0.5) } @$_[2, 1, 0], 255 * $_->[3] for @line;
        my $bits = join '', map { $_->[3] < 0.5 ? 1 : 0 } @line;
        $mask .= pack 'B*', $bits . '0' x (-$size % 32);
    }
    my $header = pack 'V l< l< v v V V l< l< V V', 40, $size, 2 * $size, 1, 32, 0, length($colours) + length $mask, 0, 0, 0, 0;
    return $header . $colours . $mask;
}

# The share of each pixel that lies in the polygon: exact along a line, sixteen lines a pixel.
sub coverage
{
    my ($size, $corners) = @_;
    my $fine = 16;
    my @share = (0) x ($size * $size);
    for my $line (0 .. $size * $fine - 1) {
        my $height = ($line + 0.5) / $fine * 256 / $size;
        my @crossings;
        for my $index (0 .. $#$corners) {
            my ($x1, $y1) = @{$corners->[$index - 1]};
            my ($x2, $y2) = @{$corners->[$index]};
            next if ($y1 <= $height) == ($y2 <= $height);
            push @crossings, ($x1 + ($height - $y1) / ($y2 - $y1) * ($x2 - $x1)) * $size / 256;
        }
        @crossings = sort { $a <=> $b } @crossings;
        while (my ($from, $to) = splice @crossings, 0, 2) {
            for my $x (int $from .. int $to) {
                last if $x >= $size;
                my $left = $from > $x ? $from : $x;
                my $right = $to < $x + 1 ? $to : $x + 1;
                $share[int($line / $fine) * $size + $x] += ($right - $left) / $fine if $right > $left;
            }
        }
    }
    return map { $_ > 1 ? 1 : $_ } @share;
}
