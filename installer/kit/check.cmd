@echo off
rem Tries this release on this machine: double-click it, or as an administrator to try registration and package too.
rem Prints a line for each test and writes report.txt beside itself; the output of the tests is in the folder "logs".
rem Nothing is needed, and nothing is touched that was there before: where the product is installed already, what would
rem change it is skipped. Ends with the number of failures.
setlocal
cd /d "%~dp0"
if not exist tests.txt (
    echo Unpack the whole folder to a drive of this machine first.
    exit /b 1
)
set failures=0
set passed=0
set skipped=0
if not exist logs mkdir logs
> report.txt echo Orvane Vaultkeep, check of a release
if not exist report.txt (
    echo Nothing can be written to this folder.
    exit /b 1
)
for /f "delims=" %%v in ('ver') do call :tell Windows: %%v
call :tell Processor: %PROCESSOR_ARCHITECTURE%

rem Only an administrator can make a key there; nobody has one of this name.
set administrator=no
set probe=HKLM\SOFTWARE\OrvaneVaultkeepCheck%random%
reg add %probe% /f >nul 2>&1
if not errorlevel 1 set administrator=yes
if %administrator%==yes reg delete %probe% /f >nul 2>&1
call :tell Administrator: %administrator%
set key=HKCR\CLSID\{3C41A7E2-6B0D-4F93-9E25-7A1D0C6B2E48}
set folder=%ProgramW6432%\Orvane\Vaultkeep
set installed=no
reg query "%key%" >nul 2>&1
if not errorlevel 1 set installed=yes
if exist "%folder%\orvshellext.dll" set installed=yes
call :tell Product installed before: %installed%
set driver=absent
sc query orvdrv >nul 2>&1
if not errorlevel 1 set driver=there
call :tell Driver: %driver%
set wine=no
if exist "%SystemRoot%\System32\winecfg.exe" set wine=yes
call :tell Wine: %wine%
rem What a development release is signed with no machine trusts.
set trusted=yes
powershell -NoProfile -Command "if ((Get-AuthenticodeSignature bin\orvres.dll).Status -ne 'Valid') { exit 1 }" >nul 2>&1
if errorlevel 1 set trusted=no
if %wine%==yes set trusted=yes
call :tell Signature trusted: %trusted%
call :tell .

for /f "tokens=1,2 delims= " %%a in (tests.txt) do call :test %%a %%b
for /f "tokens=1,* delims= " %%a in (left_out.txt) do call :skip %%a "%%b"
call :run menu_without_registration bin\shellhost.exe menu "%SystemRoot%" --module "%~dp0bin\orvshellext.dll"

set reason=
if %administrator%==no set reason=not run as an administrator
if %installed%==yes set reason=the product is installed already
for %%t in (module_registration_tests install menu_by_registry folder_by_registry program_64 program_32 install_again another_build remove nothing_left) do (
    if defined reason call :skip %%t "%reason%"
)
if not defined reason call :package

call :tell .
call :tell Passed: %passed%, failed: %failures%, skipped: %skipped%
call :tell The report is complete.
exit /b %failures%

:package
call :test module_registration_tests
for %%m in (*.msi) do set package=%%m
call :installer install 0 /i "%package%"
call :run menu_by_registry bin\shellhost.exe menu "%SystemRoot%"
call :run folder_by_registry bin\shellhost.exe list
call :run program_64 bin\module_user.exe
call :run program_32 bin\module_user_32.exe
call :installer install_again 0 /i "%package%"
if %wine%==yes (
    call :skip another_build "Wine installs another build of a version over the first"
) else (
    call :installer another_build 1638 /i "another build\%package%"
)
call :installer remove 0 /x "%package%"
set found=0
reg query "%key%" >nul 2>&1
if not errorlevel 1 set found=1
if exist "%folder%\orvshellext.dll" set found=1
if exist "%SystemRoot%\SysWOW64\orvshellext.dll" set found=1
call :judge nothing_left %found%
exit /b

rem test NAME [trusted]
:test
if "%2.%trusted%"=="trusted.no" (
    call :skip %1 "needs a release whose signature this machine trusts"
) else (
    call :run %1 tests\%1.exe
)
exit /b

rem run NAME PROGRAM WORD...
:run
%2 %3 %4 %5 %6 %7 %8 %9 > logs\%1.txt 2>&1
call :judge %1 %errorlevel%
exit /b

rem installer NAME CODE WORD PACKAGE: the installer ends with CODE; with 3010 in place of 0 it asks for a restart.
:installer
start /wait msiexec.exe %3 "%~dp0%~4" /qn /l*v "%~dp0logs\%1.txt"
set code=%errorlevel%
if %2.%code%==0.3010 (
    call :tell         restart wanted: a program uses the module
    set code=0
)
if %code%==%2 (
    call :judge %1 0
) else (
    call :judge %1 "%code% in place of %2"
)
exit /b

:judge
if "%~2"=="0" (
    set /a passed+=1
    call :tell passed  %1
) else (
    set /a failures+=1
    call :tell FAILED  %1, code %~2, see logs\%1.txt
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
