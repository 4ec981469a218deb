#include "comms/winsockerrors.h"

namespace Winsock {

int NumberOf(QAbstractSocket::SocketError error) {
    switch (error) {
    case QAbstractSocket::RemoteHostClosedError:
        return 0;
    case QAbstractSocket::ConnectionRefusedError:
        return ConnectionRefused;
    case QAbstractSocket::SocketTimeoutError:
        return TimedOut;
    case QAbstractSocket::HostNotFoundError:
        return HostNotFound;
    case QAbstractSocket::SocketAccessError:
        return 10013;
    case QAbstractSocket::SocketResourceError:
        return 10055;
    case QAbstractSocket::DatagramTooLargeError:
        return 10040;
    case QAbstractSocket::NetworkError:
        return 10050;
    case QAbstractSocket::AddressInUseError:
        return 10048;
    case QAbstractSocket::SocketAddressNotAvailableError:
        return 10049;
    case QAbstractSocket::UnsupportedSocketOperationError:
        return 10045;
    case QAbstractSocket::TemporaryError:
        return 10035;
    default:
        return 10000 + int(error); // no Winsock equivalent: still shown with its description
    }
}

} // namespace Winsock
