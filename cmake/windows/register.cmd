@echo off
rem Enters the classes in the registry; needs administrator rights.
regsvr32 /s "%~dp0bin\SabXmlParser.dll"
if errorlevel 1 (echo The library could not be registered. & exit /b 1)
echo Registered.
