# The copy of the sources into which the changes are written, and its build. A file is written only when it differs, so that a
# second run compiles little.
package Tree;
use strict;
use warnings;
use Cwd 'getcwd';
use File::Basename 'dirname';
use File::Path 'make_path';
use Apply;
use Changes;

our $folder = 'build/mutants/tree';
our $build = "$folder/build/i686";
my @rooms = qw(com system guard log log_reader core parameters reactions unit thermo registration packages shell ctl);

# The files of the project, including new ones, as git knows them.
sub Files
{
    my @files = grep { -f } split /\n/, qx(git ls-files --cached --others --exclude-standard);
    @files or die "git lists no file: ./dev mutants needs a checkout.\n";
    return @files;
}

sub Sources { return grep { m{^(?:@{[join '|', @rooms]})/.*\.(?:cpp|h)$} } @_; }

# Write(change...): writes the copy, with these changes and no others.
sub Write
{
    my (@changes) = @_;
    my %changed;
    push @{$changed{$_->{file}}}, $_ for @changes;
    my %wanted = map { $_ => 1 } my @files = Files();
    for my $file (@files) {
        my $text = $changed{$file} ? Apply::Text($changed{$file}[0]{source}, @{$changed{$file}}) : Changes::ReadFile($file);
        my $copy = "$folder/$file";
        next if -f $copy && Changes::ReadFile($copy) eq $text;
        make_path(dirname $copy);
        open my $out, '>:raw', $copy or die "$copy: $!\n";
        print $out $text;
        close $out or die "$copy: $!\n";
        chmod((stat $file)[2] & 07777, $copy);
    }
    for my $old (split /\n/, qx(cd $folder && find . -path ./build -prune -o -type f -printf '%P\\n')) {
        unlink "$folder/$old" unless $wanted{$old};
    }
    return;
}

sub Configure
{
    make_path("$folder/build");
    my $root = getcwd();
    # Shares the sources of libraries, and the programs of the other width, which some tests start if they exist.
    for my $shared (qw(sources x86_64)) {
        symlink "$root/build/$shared", "$folder/build/$shared" if -e "build/$shared" && !-l "$folder/build/$shared";
    }
    return if -f "$build/build.ninja";
    system(qq(cd $folder && cmake --preset i686 -DZELT_MUTANTS=ON)) == 0 or die "The copy could not be configured.\n";
    return;
}

# Compile(change...): builds, and returns the changes that the compiler refuses.
sub Compile
{
    my (@changes) = @_;
    my $output = qx(ninja -C $build -k 0 2>&1);
    return () if $? == 0;
    my @failures = split /^(?=FAILED: )/m, $output;
    shift @failures;
    my %refused;
    for my $failure (@failures) {
        $failure =~ /fatal error: \S+: No such file/ and die "$failure\nNo change is to blame for a header that is missing.\n";
        $refused{$_->{number}} = $_ for Blamed($failure, @changes);
    }
    %refused or die "$output\nThe copy does not compile, and no change is to blame.\n";
    return values %refused;
}

# The changes that the compiler's message names, by line or by the name of a twin or of its macro; all changes of the file when it
# names none.
sub Blamed
{
    my ($message, @changes) = @_;
    # The compiler reads headers through the views of the rooms.
    $message =~ s{\Q$build\E/rooms/[^/\s]+/}{$folder/}g;
    my %lines;
    $lines{$1}{$2} = 1 while $message =~ m{(?:^|[ ])\S*\Q$folder\E/(\S+?):(\d+):}mg;
    my %twins;
    $twins{$1} = 1 while $message =~ /_changed(\d+)/g;
    my %macros;
    $macros{$1} = 1 while $message =~ /(?:in expansion of|in definition of) macro .(\w+)/g;
    my @blamed = grep { IsNamed($_, \%lines, \%twins, \%macros) } @changes;
    return @blamed if @blamed;
    my ($source) = $message =~ m{\Q$folder\E/(\S+?\.cpp)\b};
    return grep { $_->{file} eq ($source // '') } @changes;
}

sub IsNamed
{
    my ($change, $lines, $twins, $macros) = @_;
    return 1 if $twins->{$change->{number}};
    if ($change->{twins}) {
        return 1 if grep { $macros->{$_->[0]{name}} } @{$change->{twins}};
    }
    my $tokens = $change->{source}{tokens};
    my $length = substr($change->{source}{text}, $tokens->[$change->{first}]{start},
                        $tokens->[$change->{last}]{end} - $tokens->[$change->{first}]{start}) =~ tr/\n//;
    return grep { $lines->{$change->{file}}{$_} } $change->{line} .. $change->{line} + $length;
}

# CheckHeaders(change...): like Compile, but only for changes to headers: compiles one source that includes the header, before
# hundreds of them fail.
sub CheckHeaders
{
    my (@changes) = @_;
    my %headers = map { $_->{file} => 1 } grep { $_->{file} =~ /\.h$/ } @changes;
    return () unless %headers;
    system("ninja -C $build precompiled >/dev/null 2>&1");
    my %command = Commands();
    my %refused;
    for my $header (sort keys %headers) {
        my $source = Includer($header, sort keys %command) // next;
        (my $command = $command{$source}) =~ s/ -o \S+ -c / -fsyntax-only /;
        my $output = qx(cd $build && $command 2>&1);
        next if $? == 0;
        $refused{$_->{number}} = $_ for grep { $_->{file} =~ /\.h$/ } Blamed($output, @changes);
    }
    return values %refused;
}

sub Commands
{
    my $text = Changes::ReadFile("$build/compile_commands.json");
    my %command;
    while ($text =~ /"command": "((?:[^"\\]|\\.)*)",\s*"file": "[^"]*?\Q$folder\E\/([^"]+)"/g) {
        my ($command, $source) = ($1, $2);
        $command =~ s/\\(.)/$1/g;
        $command{$source} = $command;
    }
    return %command;
}

# A source that includes the header directly: its own source first.
sub Includer
{
    my ($header, @sources) = @_;
    (my $own = $header) =~ s/\.h$/.cpp/;
    for my $source ($own, @sources) {
        next unless -f $source;
        return $source if Changes::ReadFile($source) =~ /^#include "\Q$header\E"/m && grep { $_ eq $source } @sources;
    }
    return;
}

1;
