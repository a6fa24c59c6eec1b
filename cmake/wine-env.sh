# The settings with which every Windows program of ours runs under Wine; sourced, with qxv_root naming the checkout.
: "${WINEPREFIX:=$qxv_root/build/wine}"
: "${WINEDEBUG:=-all}"
# No desktop and no debugger come up beside a program: the desktop keeps the program's error output open until the last program of the
# desktop has ended, so that whoever reads a test's output waits for all the others; the debugger of a fresh prefix may hang on a
# program that ends badly.
: "${WINEDLLOVERRIDES:=mscoree,mshtml=;winemenubuilder.exe=d;explorer.exe,winedbg.exe=}"
: "${LC_ALL:=C.UTF-8}" # with C or POSIX no file with a non-ASCII name can be made
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES LC_ALL
unset DISPLAY
