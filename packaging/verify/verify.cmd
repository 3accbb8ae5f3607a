@echo off
rem Tests ZELT on this computer: see README.txt, or run verify.cmd /?
setlocal
set "program=%~dp0tree\build\i686\tests\verification\verify.exe"
if exist "%program%" goto run
echo Extract the whole zip first: "%program%" is missing.
set result=2
goto end
:run
"%program%" %*
set result=%errorlevel%
:end
rem Started by a double click, the window would close at once.
if "%~1"=="" pause
exit /b %result%
