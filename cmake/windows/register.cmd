@echo off
rem Enters the classes in the registry; needs administrator rights.
rem   register.cmd user    for the current user alone, which needs none
set for_user=
if /i "%~1"=="user" set for_user=/n /i:user
regsvr32 /s %for_user% "%~dp0bin\SabXmlParser.dll"
if errorlevel 1 (echo The library could not be registered. & exit /b 1)
echo Registered.
