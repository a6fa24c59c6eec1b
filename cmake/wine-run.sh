#!/bin/sh
# Runs a Windows program under Wine with the settings that every run of ours needs.
# exec: a time limit then ends the program itself.
: "${WINEPREFIX:=${XDG_CACHE_HOME:-$HOME/.cache}/qxv/wine}"
: "${WINEDEBUG:=-all}"
: "${WINEDLLOVERRIDES:=mscoree,mshtml=;winemenubuilder.exe=d}"
: "${LC_ALL:=C.UTF-8}" # with C or POSIX no file with a non-ASCII name can be made
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES LC_ALL
unset DISPLAY
exec wine "$@"
