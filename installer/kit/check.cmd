@echo off
rem Tries this release on this machine: double-click it, or as an administrator to try registration and package too.
rem Prints a line for each test and writes report.txt beside itself; the output of the tests is in the folder "logs".
rem Nothing is needed, and nothing is touched that was there before: where the product is installed already, what would
rem change it is skipped. Ends with the number of failures.
setlocal enabledelayedexpansion
cd /d "%~dp0"
set failures=0
set passed=0
set skipped=0
if not exist logs mkdir logs
> report.txt echo Orvane Vaultkeep, check of a release
for /f "delims=" %%v in ('ver') do call :tell Windows: %%v
call :tell Processor: %PROCESSOR_ARCHITECTURE%

set key=HKCR\CLSID\{3C41A7E2-6B0D-4F93-9E25-7A1D0C6B2E48}
set administrator=no
reg add HKLM\SOFTWARE\OrvaneVaultkeepCheck /f >nul 2>&1
if not errorlevel 1 set administrator=yes
if %administrator%==yes reg delete HKLM\SOFTWARE\OrvaneVaultkeepCheck /f >nul 2>&1
call :tell Administrator: %administrator%
set installed=no
reg query "%key%" >nul 2>&1
if not errorlevel 1 set installed=yes
call :tell Product installed before: %installed%
set driver=absent
sc query orvdrv >nul 2>&1
if not errorlevel 1 set driver=there
call :tell Driver: %driver%
call :tell .

for /f "tokens=1,* delims= " %%a in (tests.txt) do call :test %%a
for /f "tokens=1,* delims= " %%a in (left_out.txt) do call :skip %%a "%%b"
call :run menu_without_registration bin\shellhost.exe menu "%SystemRoot%" --module "%~dp0bin\orvshellext.dll"

set reason=
if %administrator%==no set reason=not run as an administrator
if %installed%==yes set reason=the product is installed already
for %%t in (module_registration_tests install menu_by_registry folder_by_registry program_64 program_32 install_again remove nothing_left) do (
    if defined reason call :skip %%t "!reason!"
)
if not defined reason call :package

call :tell .
call :tell Passed: %passed%, failed: %failures%, skipped: %skipped%
call :tell The report is complete.
exit /b %failures%

:package
call :test module_registration_tests
for %%m in (*.msi) do set package=%%m
call :installer install /i
call :run menu_by_registry bin\shellhost.exe menu "%SystemRoot%"
call :run folder_by_registry bin\shellhost.exe list
call :run program_64 bin\module_user.exe
call :run program_32 bin\module_user_32.exe
call :installer install_again /i
call :installer remove /x
set found=0
reg query "%key%" >nul 2>&1
if not errorlevel 1 set found=1
if exist "%ProgramFiles%\Orvane\Vaultkeep\orvshellext.dll" set found=1
call :judge nothing_left %found%
exit /b

:test
call :run %1 tests\%1.exe
for /f "delims=" %%s in ('findstr /b /c:"[  SKIPPED ]" logs\%1.txt') do call :tell         %%s
exit /b

rem run NAME PROGRAM WORD...
:run
%2 %3 %4 %5 %6 %7 %8 %9 > logs\%1.txt 2>&1
call :judge %1 %errorlevel%
exit /b

rem installer NAME WORD: 3010 asks for a restart, which is no failure.
:installer
start /wait msiexec.exe %2 "%~dp0%package%" /qn /l*v "%~dp0logs\%1.txt"
set code=%errorlevel%
if %code%==3010 (
    call :tell         restart wanted: a program uses the module
    set code=0
)
call :judge %1 %code%
exit /b

:judge
if "%2"=="0" (
    set /a passed+=1
    call :tell passed  %1
) else (
    set /a failures+=1
    call :tell FAILED  %1, code %2, see logs\%1.txt
)
exit /b

:skip
set /a skipped+=1
call :tell skipped %1: %~2
exit /b

:tell
echo %*
>> report.txt echo %*
exit /b
