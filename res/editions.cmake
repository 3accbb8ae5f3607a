# What differs between the two editions of the program, and what each registers: ZELT.EXE hosts 32-bit components, ZELT64.EXE 64-bit
# ones, both from the same sources. These tables are the only place for it. From them, this file makes in ${ZELT_EDITIONS_DIR} the
# registry scripts of the classes, a list of each edition's scripts for the resources, the texts of this edition's windows, and the
# rows of the C++ table (system/edition.h).
set(ZELT_EDITIONS_DIR ${CMAKE_BINARY_DIR}/editions)

# name | width | program | zeltctl of that width | application | key of the list of packages | script of the application, which
# decides whether Explorer opens logs with it | what is added to the numbers of its scripts | titles of the main window and of the
# export dialog
set(zelt_editions
  "ZELT|32|ZELT.EXE|zeltctl.exe|{D76CDF09-2520-4B73-9730-98028328426E}|Software\\\\ZELT|application.rgs|0|ZELT Packages:|Export package:"
  "ZELT64|64|ZELT64.EXE|zeltctl64.exe|{17CC0CA2-B86E-46C5-B5E9-B31DFF844699}|Software\\\\ZELT\\\\64-bit|application64.rgs|400|ZELT64 Packages (64-bit):|Export 64-bit package:")

# kind of class | number of its script | description | two categories | CAPE-OPEN description | CAPE-OPEN version
set(zelt_class_kinds
  "ThermoSystem|109|ThermoSystem Class|{678C09A3-7D66-11D2-A67D-00105A42887F}|{678C09A1-7D66-11D2-A67D-00105A42887F}|Zeltora: Thermo System|1.0"
  "PropertyPackageManager|104|PropertyPackageManager Class|{678C09A1-7D66-11D2-A67D-00105A42887F}|{CF51E383-0110-4ed8-ACB7-B50CFDE6908E}|Zeltora: Property Package Manager|1.1"
  "ReactionPackageManager|135|ReactionPackageManager Class|{678C09A1-7D66-11D2-A67D-00105A42887F}|{678C09AA-0100-11D2-A67D-00105A42887F}|Zeltora: Reacion Package Manager|1.0"
  "UnitOperation|116|UnitOperation Class|{678C09A5-7D66-11D2-A67D-00105A42887F}|{678C09A1-7D66-11D2-A67D-00105A42887F}|PRAVIK Logged Unit Operation|1.0")

# edition | kind of class | ProgID | class | name, which simulators list | purpose
set(zelt_classes
  "ZELT|ThermoSystem|ZELT.ThermoSystem|{4CCF55DB-E332-42F8-B685-188989F8E1EC}|ZELT Thermo System (CAPE-OPEN 1.0)|ZELT (Zeltora): run 32-bit in-proc property packages out-of-proc"
  "ZELT|PropertyPackageManager|ZELT.PropertyPackageManager|{6377AC63-7A36-46DC-8897-F277012CDA9D}|ZELT Property Package Manager (CAPE-OPEN 1.1)|ZELT (Zeltora): run 32-bit in-proc property packages out-of-proc"
  "ZELT|ReactionPackageManager|ZELT.ReactionPackageManager|{2034CAB3-FBC2-4C81-9449-CD13C73CE674}|ZELT Reaction Package Manager (CAPE-OPEN 1.0)|ZELT (Zeltora): run 32-bit in-proc reaction packages out-of-proc"
  "ZELT|UnitOperation|PRAVIK.UnitOperation|{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}|PRAVIK Logged Unit Operation|CAPE-OPEN 1.0 unit operation"
  "ZELT64|ThermoSystem|ZELT64.ThermoSystem|{D2838E62-EE1C-4C3E-929B-E96384C65B62}|ZELT Thermo System (CAPE-OPEN 1.0) (64-bit packages)|ZELT (Zeltora): run 64-bit in-proc property packages out-of-proc"
  "ZELT64|PropertyPackageManager|ZELT64.PropertyPackageManager|{25D8600D-CBE0-4748-BBDD-14A8F74A9EA1}|ZELT Property Package Manager (CAPE-OPEN 1.1) (64-bit packages)|ZELT (Zeltora): run 64-bit in-proc property packages out-of-proc"
  "ZELT64|ReactionPackageManager|ZELT64.ReactionPackageManager|{4046AE60-7543-43C7-9D6A-437B9FA0845A}|ZELT Reaction Package Manager (CAPE-OPEN 1.0) (64-bit packages)|ZELT (Zeltora): run 64-bit in-proc reaction packages out-of-proc"
  "ZELT64|UnitOperation|PRAVIK64.UnitOperation|{B658E84A-9299-4C06-905C-0310B35FEE62}|PRAVIK Logged Unit Operation (64-bit packages)|CAPE-OPEN 1.0 unit operation")

# zelt_row(<row> <variable>...): sets the variables to the row's cells.
function(zelt_row row)
  string(REPLACE "|" ";" cells "${row}")
  foreach(name IN LISTS ARGN)
    list(POP_FRONT cells cell)
    set(${name} "${cell}" PARENT_SCOPE)
  endforeach()
endfunction()

# zelt_class(<edition> <kind> <offset of the script's number>): writes the script of a class; adds to `resources` and
# `cppClasses`.
function(zelt_class edition kind offset)
  foreach(row IN LISTS zelt_class_kinds)
    zelt_row("${row}" rowKind number description category1 category2 capeDescription capeVersion)
    if(rowKind STREQUAL kind)
      break()
    endif()
  endforeach()
  foreach(row IN LISTS zelt_classes)
    zelt_row("${row}" rowEdition rowKind progId clsid capeName about)
    if(rowEdition STREQUAL edition AND rowKind STREQUAL kind)
      break()
    endif()
  endforeach()
  math(EXPR number "${number} + ${offset}")
  configure_file(${CMAKE_SOURCE_DIR}/res/class.rgs.in ${ZELT_EDITIONS_DIR}/${edition}.${kind}.rgs @ONLY)
  set(resources "${resources}${number} REGISTRY \"${edition}.${kind}.rgs\"\n" PARENT_SCOPE)
  set(cppClasses "${cppClasses}      {ClassIdOf(L\"${clsid}\"), L\"${progId}\", L\"${capeName}\", ${number}},\n" PARENT_SCOPE)
endfunction()

set(table)
foreach(row IN LISTS zelt_editions)
  zelt_row("${row}" name width program tool application packagesKey applicationScript offset title exportTitle)
  math(EXPR number "101 + ${offset}")
  set(resources "${number} REGISTRY \"${applicationScript}\"\n")
  set(cppClasses)
  foreach(kindRow IN LISTS zelt_class_kinds)
    zelt_row("${kindRow}" kind)
    zelt_class(${name} ${kind} ${offset})
  endforeach()
  # The texts of this build's windows.
  math(EXPR ownWidth "8 * ${CMAKE_SIZEOF_VOID_P}")
  if(width EQUAL ownWidth)
    set(ZELT_EDITION ${name})
    string(REPLACE ".exe" "" ZELT_TOOL ${tool})
    file(CONFIGURE OUTPUT ${ZELT_EDITIONS_DIR}/edition_texts.h CONTENT
"#define EDITION_NAME \"${name}\"
#define EDITION_PROGRAM \"${program}\"
#define EDITION_TOOL \"${tool}\"
#define EDITION_TITLE \"${title}\"
#define EDITION_EXPORT_TITLE \"${exportTitle}\"
#define EDITION_ABOUT_TITLE \"About ${name}\"
#define EDITION_PRODUCT \"${name} (Zeltora)\"
#define EDITION_PURPOSE \"Runs ${width}-bit CAPE-OPEN packages out of process and logs every call.\"
")
  endif()
  file(CONFIGURE OUTPUT ${ZELT_EDITIONS_DIR}/${name}.scripts.rc CONTENT "${resources}")
  string(APPEND table
    "    {${width}, L\"${name}\", L\"${program}\", L\"${tool}\", L\"${application}\", L\"${packagesKey}\", ${number},\n"
    "     L\"${title}\",\n     {\n${cppClasses}     }},\n")
endforeach()
file(CONFIGURE OUTPUT ${ZELT_EDITIONS_DIR}/editions.inc CONTENT "${table}")
