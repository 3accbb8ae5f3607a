#!/usr/bin/perl
# The bill of materials of a release, as SPDX 2.3 in JSON: bill-of-materials.pl <version> <time of the commit> <folder of the files>
# <THIRD-PARTY.md>. It lists the shipped files, with their checksums, and the third-party components in them, with the versions of
# the Debian packages that the build used; THIRD-PARTY.md gives those of the libraries that it compiles itself.
use strict;
use warnings;
use Digest::SHA;
use File::Find;
use JSON::PP;
use POSIX 'strftime';

my ($version, $time, $folder, $thirdParty) = @ARGV;
defined $thirdParty or die "bill-of-materials.pl <version> <time> <folder> <THIRD-PARTY.md>\n";

# id | name, as in THIRD-PARTY.md | Debian package whose version it has, or - for that of THIRD-PARTY.md | terms | source package
my $components = <<'TABLE';
libxml2   | libxml2         | -                        | MIT                                              | libxml2
sqlite    | SQLite          | -                        | blessing                                         | sqlite3
zlib      | zlib            | libz-mingw-w64-dev       | Zlib                                             | libz-mingw-w64
protozero | protozero       | libprotozero-dev         | BSD-2-Clause AND Apache-2.0                      | protozero
gcc       | libgcc          | g++-mingw-w64-i686-posix | GPL-3.0-or-later WITH GCC-exception-3.1          | gcc-mingw-w64
mingw-w64 | mingw-w64       | mingw-w64-i686-dev       | ZPL-2.1 AND MIT AND BSD-3-Clause AND LicenseRef-PublicDomain | mingw-w64
nsis      | NSIS            | nsis                     | Zlib AND CPL-1.0                                 | nsis
TABLE

sub Read {
    my ($path) = @_;
    open my $file, '<', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

my $listed = Read($thirdParty);
my (@packages, @relations);
my @rows = map { [split /\s*\|\s*/] } split /\n/, $components;
for (@rows) {
    my ($id, $name, $debian, $terms, $source) = @$_;
    $listed =~ /^\| [^|]*\Q$name\E/m or die "$name is not in $thirdParty\n";
    my ($number) = $listed =~ /^\| \Q$name\E ([0-9.]+) /m;
    if ($debian ne '-') {
        $number = qx(dpkg-query -W -f '\${Version}' $debian);
        $? == 0 or die "The version of $debian is unknown\n";
    }
    push @packages, {
        SPDXID => "SPDXRef-$id", name => $name, versionInfo => $number, supplier => 'Organization: Debian',
        downloadLocation => "https://tracker.debian.org/pkg/$source", filesAnalyzed => JSON::PP::false,
        licenseConcluded => $terms, licenseDeclared => $terms, copyrightText => 'NOASSERTION',
    };
    push @relations, {spdxElementId => 'SPDXRef-ZELT', relationshipType => 'CONTAINS', relatedSpdxElement => "SPDXRef-$id"};
}
my $rows = () = $listed =~ /^\| (?!component|---)[^|]+\|/mg;
$rows == @rows or die "$thirdParty lists $rows components, not ${\scalar @rows}\n";

my @paths;
find({no_chdir => 1, wanted => sub { push @paths, substr $_, length($folder) + 1 if -f }}, $folder);
my (@files, @sums);
for my $path (sort @paths) {
    next if $path =~ /\.spdx\.json$/;
    my ($sha1, $sha256) = map { Digest::SHA->new($_)->addfile("$folder/$path", 'b')->hexdigest } 1, 256;
    push @sums, $sha1;
    push @files, {
        SPDXID => sprintf('SPDXRef-File-%d', @files + 1), fileName => "./$path", copyrightText => 'NOASSERTION',
        licenseConcluded => 'NOASSERTION', licenseInfoInFiles => ['NOASSERTION'],
        checksums => [{algorithm => 'SHA1', checksumValue => $sha1}, {algorithm => 'SHA256', checksumValue => $sha256}],
    };
}
@files or die "$folder has no files\n";

# The checksum of the checksums of all files except the bill, as the format defines it.
my $code = Digest::SHA::sha1_hex(join '', sort @sums);
unshift @packages, {
    SPDXID => 'SPDXRef-ZELT', name => 'ZELT', versionInfo => $version, supplier => 'Organization: The ZELT developers',
    downloadLocation => 'NOASSERTION', filesAnalyzed => JSON::PP::true, licenseConcluded => 'MIT', licenseDeclared => 'MIT',
    copyrightText => 'Copyright the ZELT developers', licenseInfoFromFiles => ['NOASSERTION'],
    packageVerificationCode => {packageVerificationCodeValue => $code,
                                packageVerificationCodeExcludedFiles => ['./licences/zelt.spdx.json']},
    hasFiles => [map { $_->{SPDXID} } @files],
};
unshift @relations, {spdxElementId => 'SPDXRef-DOCUMENT', relationshipType => 'DESCRIBES', relatedSpdxElement => 'SPDXRef-ZELT'};
print JSON::PP->new->canonical->pretty->encode({
    spdxVersion => 'SPDX-2.3', dataLicense => 'CC0-1.0', SPDXID => 'SPDXRef-DOCUMENT', name => "zelt-$version",
    documentNamespace => "https://spdx.org/spdxdocs/zelt-$version-$code",
    creationInfo => {created => strftime('%Y-%m-%dT%H:%M:%SZ', gmtime $time), creators => ['Organization: The ZELT developers']},
    hasExtractedLicensingInfos => [{licenseId => 'LicenseRef-PublicDomain', name => 'Public domain',
                                    extractedText => 'Parts of mingw-w64 are in the public domain: see mingw-w64.txt.'}],
    packages => \@packages, files => \@files, relationships => \@relations,
});
