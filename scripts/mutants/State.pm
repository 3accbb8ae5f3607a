# What a run remembers between its steps, in build/mutants: the changes, the tests, what each test reaches, the results. Workers
# share it, and an interrupted run continues from it.
package State;
use strict;
use warnings;
use Fcntl qw(O_CREAT O_EXCL O_WRONLY);
use File::Path qw(make_path remove_tree);
use JSON::PP;

our $folder = 'build/mutants';

my $json = JSON::PP->new->canonical->pretty->latin1;

sub Begin
{
    remove_tree("$folder/$_") for qw(claims reach tests results output);
    unlink "$folder/tests.json";
    return Continue();
}

# Claims of workers that have ended are void; their finished work stays.
sub Continue
{
    remove_tree("$folder/claims");
    make_path("$folder/$_") for qw(claims reach tests results output);
    return;
}

sub Save
{
    my ($name, $value) = @_;
    my $path = "$folder/$name.json";
    open my $file, '>:raw', "$path.$$" or die "$path: $!\n";
    print $file $json->encode($value);
    close $file or die "$path: $!\n";
    rename "$path.$$", $path or die "$path: $!\n";
    return;
}

sub Load
{
    my ($name) = @_;
    open my $file, '<:raw', "$folder/$name.json" or return;
    local $/;
    return $json->decode(scalar <$file>);
}

sub Has { return -f "$folder/$_[0].json"; }

# Claim(name): whether this worker is the first to ask.
sub Claim
{
    my ($name) = @_;
    sysopen my $file, "$folder/claims/$name", O_CREAT | O_EXCL | O_WRONLY or return 0;
    return 1;
}

1;
