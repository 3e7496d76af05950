@echo off
rem Takes back what vscode_plugins.exe added, before the folder is removed.
if exist "%~dp0vscode_plugins.exe" echo Nothing to take back in the sample.
exit /b 0
