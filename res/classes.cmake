# The registry scripts of the served classes, made from one form. A row: the script's file, the ProgID, the class's
# description and identity, its two categories, and its CAPE-OPEN name, description, version and purpose.
function(zelt_class_script file progId description clsid category1 category2 capeName capeDescription capeVersion about)
  configure_file(${CMAKE_SOURCE_DIR}/res/class.rgs.in ${CMAKE_CURRENT_BINARY_DIR}/${file} @ONLY)
endfunction()

zelt_class_script(property_package_manager.rgs
  "ZELT.PropertyPackageManager" "PropertyPackageManager Class" "{6377AC63-7A36-46DC-8897-F277012CDA9D}"
  "{678C09A1-7D66-11D2-A67D-00105A42887F}" "{CF51E383-0110-4ed8-ACB7-B50CFDE6908E}"
  "ZELT Property Package Manager (CAPE-OPEN 1.1)" "Zeltora: Property Package Manager" "1.1"
  "ZELT (Zeltora): run 32-bit in-proc property packages out-of-proc")
zelt_class_script(thermo_system.rgs
  "ZELT.ThermoSystem" "ThermoSystem Class" "{4CCF55DB-E332-42F8-B685-188989F8E1EC}"
  "{678C09A3-7D66-11D2-A67D-00105A42887F}" "{678C09A1-7D66-11D2-A67D-00105A42887F}"
  "ZELT Thermo System (CAPE-OPEN 1.0)" "Zeltora: Thermo System" "1.0"
  "ZELT (Zeltora): run 32-bit in-proc property packages out-of-proc")
zelt_class_script(reaction_package_manager.rgs
  "ZELT.ReactionPackageManager" "ReactionPackageManager Class" "{2034CAB3-FBC2-4C81-9449-CD13C73CE674}"
  "{678C09A1-7D66-11D2-A67D-00105A42887F}" "{678C09AA-0100-11D2-A67D-00105A42887F}"
  "ZELT Reaction Package Manager (CAPE-OPEN 1.0)" "Zeltora: Reacion Package Manager" "1.0"
  "ZELT (Zeltora): run 32-bit in-proc reaction packages out-of-proc")
zelt_class_script(unit_operation.rgs
  "PRAVIK.UnitOperation" "UnitOperation Class" "{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}"
  "{678C09A5-7D66-11D2-A67D-00105A42887F}" "{678C09A1-7D66-11D2-A67D-00105A42887F}"
  "PRAVIK Logged Unit Operation" "PRAVIK Logged Unit Operation" "1.0"
  "CAPE-OPEN 1.0 unit operation")
