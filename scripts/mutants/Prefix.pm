# The Wine prefix of this worker: sets the switch for the changes, and ends or undoes what a test leaves behind.
package Prefix;
use strict;
use warnings;
use Cwd 'getcwd';
use File::Copy 'copy';
use POSIX ':sys_wait_h';
use Time::HiRes 'sleep';

my @registry = qw(system.reg user.reg userdef.reg);
my $resident;

sub Folder { return $ENV{WINEPREFIX} // die "WINEPREFIX is not set.\n"; }

# SwitchOn(number): turns the change on in programs that start from now on, and every other change off; 0 for none.
sub SwitchOn { return WriteSwitch("$_[0]\n"); }

# RecordTo(file): programs that start from now on record in the file the changes that they reach, with none on.
sub RecordTo { return WriteSwitch("record\nZ:" . (getcwd() . "/$_[0]") =~ tr{/}{\\}r . "\n"); }

sub WriteSwitch
{
    my ($text) = @_;
    my $path = Folder() . '/drive_c/zelt-change.txt';
    open my $file, '>:raw', $path or die "$path: $!\n";
    print $file $text;
    close $file or die "$path: $!\n";
    return;
}

# Keeps the present registry, for Reset.
sub Keep
{
    Stop();
    my $folder = Folder();
    copy("$folder/$_", "$folder/$_.kept") or die "$folder/$_: $!\n" for @registry;
    Start();
    return;
}

# Ends every program of the prefix, restores the registry, and starts Wine again.
sub Reset
{
    Stop();
    my $folder = Folder();
    copy("$folder/$_.kept", "$folder/$_") or die "$folder/$_: $!\n" for @registry;
    Start();
    return;
}

sub Stop
{
    system('wineserver -k 2>/dev/null; timeout 30 wineserver -w');
    close $resident if $resident;
    $resident = undef;
    return;
}

sub Start
{
    SwitchOn(0);
    system('wineserver -p');
    system('timeout 120 wine cmd /c ver >/dev/null 2>&1 </dev/null');
    # While one program runs, Wine's services stay. The program reads from a pipe and ends with this script.
    open $resident, '|-', 'exec wine cmd /q >/dev/null 2>&1' or die "wine: $!\n";
    return;
}

# StragglersEnded: whether the programs that a test left behind end by themselves within seconds.
sub StragglersEnded
{
    for my $attempt (1 .. 40) {
        return 1 unless Stragglers();
        sleep 0.1;
    }
    return 0;
}

# The programs that Wine itself keeps running.
my $services = qr/\b(?:wineserver|services|winedevice|plugplay|svchost|explorer|rpcss|conhost|start|wineboot|tabtip|winemenubuilder)(?:32|64)?\.exe$/i;

sub Stragglers
{
    my $folder = Folder();
    my @left;
    for my $environment (glob '/proc/[0-9]*/environ') {
        open my $file, '<', $environment or next;
        local $/;
        my $text = <$file> // next;
        next unless "\0$text\0" =~ /\0WINEPREFIX=\Q$folder\E\0/;
        my ($process) = $environment =~ /(\d+)/;
        open my $line, '<', "/proc/$process/cmdline" or next;
        my $words = <$line> // next;
        $words =~ tr/\0/ /;
        my ($program) = $words =~ /^(?:\S*wine\S* )?(.*?\.exe)\b/i or next;
        next if $program =~ $services || $words =~ /\bcmd(?:\.exe)? \/q/i;
        push @left, $process;
    }
    return @left;
}

1;
