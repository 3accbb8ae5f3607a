' A simulator written as a script: packages of both generations and a unit operation, each reached by name alone. Arguments: the
' names of a 1.1 and of a 1.0 package.
Option Explicit
Dim manager, package, old, unit, parameter, specification, number

' Holding the manager keeps the server running, so that all calls go to the same process.
Set manager = CreateObject("ZELT.PropertyPackageManager")
Set package = manager.GetPropertyPackage(WScript.Arguments(0))
package.Initialize
WScript.Echo "compounds: " & package.GetNumCompounds()
WScript.Echo "phase: " & package.GetPhaseInfo("Vapor", "StateOfAggregation")
' This language cannot pass named arguments by itself, but it passes one when it sets a property.
package.ComponentName = "Renamed"
WScript.Echo "name: " & package.ComponentName
On Error Resume Next
WScript.Echo package.GetPhaseInfo("Plasma", "StateOfAggregation")
WScript.Echo "error: " & Hex(Err.Number)
WScript.Echo "description: " & package.description
Err.Clear
WScript.Echo package.NoSuchMember
WScript.Echo "error: " & Err.Number
On Error GoTo 0
package.Terminate
Set package = Nothing

Set old = CreateObject("ZELT.ThermoSystem").ResolvePropertyPackage(WScript.Arguments(1))
old.Initialize
WScript.Echo "phases: " & VarType(old.GetPhaseList())
WScript.Echo "name: " & old.ComponentName
old.Terminate
Set old = Nothing

Set unit = CreateObject("PRAVIK.UnitOperation")
unit.Initialize
WScript.Echo "ports: " & unit.ports.Count()
WScript.Echo "parameters: " & unit.parameters.Count()
For number = 1 To unit.parameters.Count()
    Set parameter = unit.parameters.Item(number)
    Set specification = parameter.Specification
    WScript.Echo parameter.ComponentName & ": type " & specification.Type & ", mode " & parameter.Mode
Next
Set parameter = unit.parameters.Item(1)
parameter.value = 2500.5
WScript.Echo "value: " & parameter.value
WScript.Echo "default: " & parameter.Specification.DefaultValue
unit.Terminate
Set specification = Nothing
Set parameter = Nothing
Set unit = Nothing
Set manager = Nothing
WScript.Echo "end of the script"
