@echo off
rem Removes the classes from the registry; needs administrator rights.
rem   unregister.cmd user    those of the current user alone, which needs none
set for_user=
if /i "%~1"=="user" set for_user=/n /i:user
regsvr32 /s /u %for_user% "%~dp0bin\SabXmlParser.dll"
if errorlevel 1 (echo The library could not be unregistered. & exit /b 1)
echo Unregistered.
