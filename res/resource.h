// Numbers of the resources and of the commands that menus and accelerators send; shared by the resource script and C++.
#pragma once

#define kOwnLibrary 1
#define kStandardLibrary 2
#define kThermoContextLibrary 3

#define kScriptApplication 101
#define kScriptPropertyPackageManager 104
#define kScriptThermoSystem           109
#define kScriptReactionPackageManager 135

#define kIconApplication 201
#define kImages 202
#define kAccelerators 205

// Commands of the log viewer. The range 212 to 812 is kept for menus that are filled at run time.
#define kCommandExpandAll 1001
#define kCommandCollapseAll 1002
#define kCommandRemoveQueries 1003
#define kCommandClose 1004
#define kCommandFind 1005
#define kCommandFindNext 1006
#define kCommandFindPrevious 1007
#define kCommandNextError 1008

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
