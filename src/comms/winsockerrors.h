#pragma once

#include <QAbstractSocket>

// The socket's errors under the Winsock numbers the session reacts to: 10061 connection
// refused, 10060 timed out, 11001 host not found, 11004 no data record, 10054 connection reset.
namespace Winsock {

inline constexpr int ConnectionRefused = 10061;
inline constexpr int TimedOut = 10060;
inline constexpr int ConnectionReset = 10054;
inline constexpr int HostNotFound = 11001;
inline constexpr int NoData = 11004;

// The Winsock number of a socket error; 0 for the remote side closing the connection, which
// arrives as the close event instead.
int NumberOf(QAbstractSocket::SocketError error);

} // namespace Winsock
