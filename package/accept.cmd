@rem Plays the scenarios of this folder on the real editor: accept.cmd NAME [USER]. See acceptance.md.
@"%~dp0acceptance.exe" %*
@exit /b %errorlevel%
