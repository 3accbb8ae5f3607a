# Uses two packages in turn by the names of their members, as PowerShell and other .NET programs do. Arguments: the names of the
# packages.
$ErrorActionPreference = 'Stop'
$manager = New-Object -ComObject ZELT.PropertyPackageManager
$packages = @()
foreach ($name in $args) {
    $package = $manager.GetPropertyPackage($name)
    $package.Initialize()
    $packages += $package
}
foreach ($round in 1..2) {
    foreach ($package in $packages) {
        'name: ' + $package.ComponentName
        'compounds: ' + $package.GetNumCompounds()
    }
}
foreach ($package in $packages) { $package.Terminate() }
'end of the script'
