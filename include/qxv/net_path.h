// net_path.h - paths as other computers write them and as this one does.
//
// Three forms: the network form \\server\share\a.mxf (or with an address, \\10.1.2.3\share\a.mxf), the local form D:\clips\a.mxf,
// and the machine-neutral form Local\x:\clips\a.mxf. Behind the conversions stands one table for the process, built at the first
// conversion: the shares that this computer publishes, its connected network drives, and the special drives of the registry (key
// SOFTWARE\Quelta\QXSpecialDrivers of HKEY_LOCAL_MACHINE, numbers other than 0 under names such as Y, Y: or Y:\), whose paths
// take the machine-neutral form. docs/porting.md says where Linux takes shares and drives.
//
// Comparisons fold the case of characters below 256; the rest of a path keeps its case. Any thread may call any function; a
// conversion that resolves the name of a host waits for the name service, once a host, and others wait for it.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// 1 for a path with two backslashes beside each other anywhere, and for one that begins with LOCAL\ in any case; else 0.
QXV_API int QXVIsUNCPath(const CQXString& path);

/// Exactly the opposite.
QXV_API int QXVIsLocalPath(const CQXString& path);

/// The local form of a network path. Of several mappings that match, a drive connected by address comes before all others, then
/// the earliest of the table. A path without a mapping, or in the local form already, comes back unchanged; `LOCAL\D:\x`
/// gives `D:\x`.
/// @param local  may be the same object
/// @return always 0
QXV_API int QXVUNC2Local(CQXString& local, const CQXString& network);

/// The network form of a local path: on a special drive "Local\" and the path; by the first mapping whose folder contains it
/// `\\server\share` and the rest; otherwise "Local\" and the path, too. Empty stays empty, a network path comes back unchanged.
/// @param network  may be the same object
/// @return always 0
QXV_API int QXVLocal2UNC(CQXString& network, const CQXString& local);

/// QXVUNC2Local under its second name.
QXV_API int QXVGetLocalPath(CQXString& local, const CQXString& network);

/// QXVLocal2UNC under its second name.
QXV_API int QXVGetRemotePath(CQXString& network, const CQXString& local);

/// The table for people who look for a fault, built if it was not yet: a mapping a line, ended by a line feed, as network name,
/// address and local path with a tab between; then the special drives. An address that nobody asked for yet is empty.
/// @return the number of lines
QXV_API int QXVDumpNetPathTable(CQXString& lines);

/// Lets the next conversion build the table anew and ask for addresses again: after shares were published or drives connected.
QXV_API void QXVRefreshNetPathTable();
