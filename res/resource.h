// Numbers of the resources and of the commands that menus and accelerators send; shared by the resource script and C++.
#pragma once

#define kOwnLibrary 1
#define kStandardLibrary 2
#define kThermoContextLibrary 3

#define kMainDialog 102
#define kAddPackageDialog 105
#define kAboutDialog 107
#define kReportDialog 108
#define kSelectDialog 124

#define kIconApplication 201
#define kImages 202
#define kMainMenu 203
#define kAccelerators 205

// Controls.
#define kPackageList 201
#define kComponentTree 301
#define kComponentTreeLabel 302
#define kExportName 303
#define kExportNameLabel 304
#define kLoggingEnabled 305
#define kVersionText 306
#define kComponentList 307
#define kProductText 308
#define kOpenOtherEdition 309
#define kReportList 310
#define kReportStatus 311
#define kReportLogs 312
#define kReportOpen 313

// An item of the system menu. Its number must be below 0xF000, with the low four bits 0: the system uses those itself.
#define kCommandSystemAbout 16

// Commands of the main window. The numbers 212 to 812 are for the unit operations in the menu.
#define kCommandAddPackage 901
#define kCommandRemovePackage 902
#define kCommandEnableLogging 903
#define kCommandViewLog 904
#define kCommandAutoLogLocation 905
#define kCommandPromptOpenLog 906
#define kCommandAskUser 907
#define kCommandHelp 908
#define kCommandAbout 909
#define kCommandRecordCalls 910
#define kCommandReport 911
#define kCommandFirstUnitOperation 212
#define kCommandUnknownUnitOperation 812

// Commands of the log viewer.
#define kCommandExpandAll 1001
#define kCommandCollapseAll 1002
#define kCommandRemoveQueries 1003
#define kCommandClose 1004
#define kCommandFind 1005
#define kCommandFindNext 1006
#define kCommandFindPrevious 1007
#define kCommandNextError 1008
#define kCommandErrorDetails 1009
#define kCommandFilterErrors 1010

// Dialogs, menus and controls of the log viewer.
#define kDialogLogViewer 111
#define kDialogSearch 112
#define kDialogProgress 113
#define kMenuLogViewer 204
#define kLogTree 206
#define kErrorList 207
#define kSearchText 1101
#define kSearchIgnoreCase 1102
#define kSearchWholeItem 1103
#define kProgressBar 1104
#define kErrorFilterLabel 1105
#define kErrorFilter 1106
#define kErrorFilterCount 1107
