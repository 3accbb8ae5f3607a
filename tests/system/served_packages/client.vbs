' A script as a client: everything goes through IDispatch. Arguments: a package's name, and a name without a package.
Option Explicit
Dim manager, names, package

Set manager = CreateObject("ZELT.PropertyPackageManager")
names = manager.GetPropertyPackageList()
' An array of strings; scripts can access its elements only on some systems.
WScript.Echo "list: " & VarType(names)

Set package = manager.GetPropertyPackage(WScript.Arguments(0))
WScript.Echo "name: " & package.ComponentName
package.ComponentName = "Renamed"
WScript.Echo "name: " & package.ComponentName
Set package = Nothing

On Error Resume Next
Set package = manager.GetPropertyPackage(WScript.Arguments(1))
WScript.Echo "error: " & Hex(Err.Number)
WScript.Echo "description: " & Err.Description
WScript.Echo "source: " & Err.Source
On Error GoTo 0

Set manager = Nothing
WScript.Echo "end of the script"
