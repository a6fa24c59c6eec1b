#!/bin/sh
# Runs a Windows program under Wine with the settings that every run of ours needs.
# exec: a time limit then ends the program itself.
qxv_root=$(CDPATH='' cd -- "${0%/*}/.." && pwd)
. "$qxv_root/cmake/wine-env.sh"
exec wine "$@"
