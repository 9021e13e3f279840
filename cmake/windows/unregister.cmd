@echo off
rem Removes the classes from the registry; needs administrator rights.
regsvr32 /s /u "%~dp0bin\SabXmlParser.dll"
if errorlevel 1 (echo The library could not be unregistered. & exit /b 1)
echo Unregistered.
