// identity.h - who works here, and where: language, user, domain, computer, and what the network says of servers and hosts.
//
// Each function asks the system once and reports no reason for a failure. Any thread may call any function. docs/porting.md says
// where Linux takes the answers.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// The primary language of the system, the lower ten bits of its language identifier: 4 for Chinese, 9 for English.
QXV_API unsigned int QXVGetThisPrimaryLangID();

/// The sublanguage of the system, the bits above: 2 for Chinese as in China, 1 for English as in the United States.
QXV_API unsigned int QXVGetThisSubLangID();

/// The name of the user in whose name this thread works; empty when it cannot be told or has more than 255 characters.
QXV_API CQXString QXVGetLogInUserName();

/// The domain that the last of the logged-on users belongs to, and this computer's name. Both are cut to 255 bytes of the ANSI
/// code page; what the page lacks does not survive. A text that cannot be told is stored as empty.
/// @return 1 when they differ, whatever their case: the user is logged on to a domain; else 0
QXV_API int QXVGetLogInDoMain(CQXString& logonDomain, CQXString& computerName);

/// The second of these alone.
QXV_API void QXVGetLogInComputer(CQXString& computerName);

/// 1 when the last of the logged-on users has administrator privilege; 0 when not, and when it cannot be told.
QXV_API int QXVGetUserIsHaveRight_ADMINISTRATOR();

/// The domain or workgroup that holds a server.
/// @param domain  left as it was without one
/// @param server  the server's name, without backslashes
/// @return 1 when it was found, else 0
QXV_API int QXVGetServerLocateDoMain(CQXString& domain, CQXString& server);

/// The name of the provider of LAN Manager networks.
/// @param name  left as it was without one
/// @return 1 for a name, else 0
QXV_API int QXVGetNetProviderName(CQXString& name);

/// The first IPv4 address of a host, as 192.168.0.1; waits for the name service.
/// @param host     an empty name is this computer; null is none
/// @param address  cleared first; it stays empty for a host that is known without an address
/// @return 1 when the name was resolved, else 0
QXV_API int QXVGetIPAddr(const QXChar* host, CQXString& address);
