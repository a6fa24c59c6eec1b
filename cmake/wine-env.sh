# The settings with which every Windows program of ours runs under Wine; sourced, with qxv_root naming the checkout.
: "${WINEPREFIX:=$qxv_root/build/wine}"
: "${WINEDEBUG:=-all}"
: "${WINEDLLOVERRIDES:=mscoree,mshtml=;winemenubuilder.exe=d}"
: "${LC_ALL:=C.UTF-8}" # with C or POSIX no file with a non-ASCII name can be made
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES LC_ALL
unset DISPLAY
