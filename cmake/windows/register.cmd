@echo off
rem Enters the classes of both widths in the registry; asks for administrator rights if need be.
rem   register.cmd user    for the current user alone, which needs none
setlocal
set for_user=
if /i "%~1"=="user" set for_user=/n /i:user
set failed=
if exist "%~dp0x64\bin\SabXmlParser.dll" call :one System32 x64
if exist "%~dp0x86\bin\SabXmlParser.dll" call :one SysWOW64 x86
if not defined failed (echo Registered. & exit /b 0)
if defined for_user goto :refused
if /i "%~1"=="elevated" goto :refused
rem Only an administrator may read this key.
reg query HKU\S-1-5-19 >nul 2>&1 && goto :refused
echo Administrator rights are needed. Windows asks for them now.
powershell -NoProfile -Command "exit (Start-Process -FilePath '%~f0' -ArgumentList elevated -Verb RunAs -Wait -PassThru).ExitCode"
if not errorlevel 1 (echo Registered. & exit /b 0)
:refused
echo The library could not be registered:%failed%. README.txt says what to do.
if /i "%~1"=="elevated" pause
exit /b 1

:one
rem Programs of the other width are in another folder; what Windows cannot run is left out.
set folder=%SystemRoot%\%1
if "%2"=="x64" if defined PROCESSOR_ARCHITEW6432 set folder=%SystemRoot%\Sysnative
if "%2"=="x64" if "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" exit /b 0
if "%2"=="x86" if "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" set folder=%SystemRoot%\System32
if not exist "%folder%\regsvr32.exe" exit /b 0
"%folder%\regsvr32.exe" /s %for_user% "%~dp0%2\bin\SabXmlParser.dll"
if errorlevel 1 set failed=%failed% %2
exit /b 0
