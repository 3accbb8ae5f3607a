#!/usr/bin/perl
# Checks ZELT.EXE or ZELT64.EXE as a file: check_executable.pl <program> <version> <objdump> <folders that it must not name...>.
# Looks at its imported libraries, flags, version, manifest and icon, and for traces of the building machine.
use strict;
use warnings;
use Encode 'encode';

my ($program, $version, $objdump, @folders) = @ARGV;
@folders or die "check_executable.pl <ZELT.EXE> <version> <objdump> <folders...>\n";
my @faults;
sub Expect { my ($ok, $what) = @_; push @faults, $what if !$ok; }

# The libraries that may be imported: documented parts of Windows 10 and 11. The compiler's runtime libraries are linked in;
# only the C library, msvcrt, is the system's own.
my %system = map { lc "$_.dll" => 1 } qw(advapi32 bcrypt comctl32 comdlg32 gdi32 kernel32 msvcrt ole32 oleaut32 shell32 user32 version);

my $header = qx("$objdump" -p "$program");
$? == 0 or die "$objdump failed\n";
my @imports = $header =~ /DLL Name: (\S+)/g;
Expect(@imports >= 5, "only @imports are imported");
Expect($system{lc $_}, "$_ is imported") for @imports;

Expect($header =~ /^\s+DYNAMIC_BASE$/m, 'no address space layout randomisation');
Expect($header =~ /^\s+NX_COMPAT$/m, 'no data execution prevention');
Expect($header =~ /^\s+TERMINAL_SERVICE_AWARE$/m, 'not aware of terminal servers');
Expect($header =~ /large address aware/, 'not large-address aware');
Expect($header !~ /^The Export Tables|^There is an export table/m, 'something is exported');
Expect($header !~ /relocations stripped/, 'relocations are stripped');
Expect($header =~ /Base Relocation Directory/ && $header =~ /^Entry 5 [0-9a-f]*[1-9a-f]/m, 'no base relocations');
Expect($header =~ /^Time\/Date stamp\s+0$/m || $header =~ /^Time\/Date\s+Thu Jan +1 /m, 'the time of linking is in the header');
Expect($header =~ /^Subsystem\s+0+2\s/m, 'not a GUI program');
Expect($header =~ /Type Table.*?ID: 0x0*$_\b/s, "no resource of type $_") for 'e', '10', '18';

open my $file, '<:raw', $program or die "$program: $!\n";
my $bytes = do { local $/; <$file> };

my $numbers = join '.', map { $_ // 0 } (split /\./, $version)[0 .. 3];
my $fixed = index $bytes, pack 'VV', 0xFEEF04BD, 0x10000;
Expect($fixed >= 0, 'no version resource');
if ($fixed >= 0) {
    my ($minor, $major, $build, $patch) = unpack 'v4', substr $bytes, $fixed + 8, 8;
    Expect("$major.$minor.$patch.$build" eq $numbers, "the file version is $major.$minor.$patch.$build, not $numbers");
}
for my $field (qw(CompanyName FileDescription FileVersion InternalName LegalCopyright OriginalFilename ProductName ProductVersion)) {
    Expect(index($bytes, encode('UTF-16LE', "$field\0")) >= 0, "the version resource has no $field");
}

my ($manifest) = $bytes =~ /(<assembly .*?<\/assembly>)/s;
Expect(defined $manifest, 'no manifest');
$manifest //= '';
my %wanted = (
    'its version'               => qr/name="ZELT" version="\Q$numbers\E"/,
    'common controls 6'         => qr/Microsoft\.Windows\.Common-Controls" version="6\.0\.0\.0"/,
    'asInvoker'                 => qr/requestedExecutionLevel level="asInvoker" uiAccess="false"/,
    'awareness of resolution'   => qr/<dpiAwareness [^>]*>system</,
    'the older form, dpiAware'  => qr/<dpiAware [^>]*>true</,
    'long paths'                => qr/<longPathAware [^>]*>true</,
    'Windows 10 and 11'         => qr/supportedOS Id="\{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a\}"/,
);
Expect($manifest =~ $wanted{$_}, "the manifest lacks $_") for sort keys %wanted;
Expect($manifest !~ /activeCodePage/, 'the manifest changes the code page');

for my $folder (@folders) {
    Expect(index($bytes, $folder) < 0 && index($bytes, encode('UTF-16LE', $folder)) < 0, "$folder is named in it");
}
die map { "$program: $_\n" } @faults if @faults;
print scalar(@imports), " system libraries; version $numbers; flags, manifest and resources are as they should be.\n";
