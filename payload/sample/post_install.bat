@echo off
rem Stands for the steps after an install. The sample has none.
exit /b 0
