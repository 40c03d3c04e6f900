// The connections to the viewer.
#ifndef MLDS_MESSAGESOCKET_H
#define MLDS_MESSAGESOCKET_H

#include <cstdint>

#include "mlds/export.h"

struct sockaddr_in;

namespace mlds {
namespace platform {
class Deadline;
}
}  // namespace mlds

/// The TCP client that talks to the viewer: one connection for what the library reports, of which
/// every packet is acknowledged before the next, and one for the viewer's requests.
///
/// Where the viewer is stands in the file "plexaview.cfg" in the current directory, with lines like
/// "host = 127.0.0.1" and "port = 4801", which are also the defaults.
class MLDS_API CMessageSocket {
public:
    CMessageSocket();
    /// A copy shares sockets and buffer and owns neither: it can be used while the original is
    /// connected.
    CMessageSocket(const CMessageSocket& other);
    CMessageSocket& operator=(const CMessageSocket& other);
    /// Closes what is open.
    ~CMessageSocket();

    /// Opens both connections. False if the first cannot be opened; true also if only the second
    /// cannot, and without doing anything if the first is open. One whose other side has gone
    /// counts as none: it is closed, and opened anew.
    bool Connect();
    /// Opens the connection for requests, to the address that Connect() found.
    bool ConnectForRcv();
    /// True while the first connection is open and its other side there. Does not wait.
    bool HasViewer();
    /// How long a silent viewer is waited for: to accept a connection and answer its greeting, or
    /// to take a packet and acknowledge it. Both connections are closed when that time is over. 0
    /// and less, as at first, stand for no limit.
    void SetPatience(int milliseconds);
    /// Closes both connections. Handles that the viewer was given mean nothing any more.
    void Disconnect();
    /// Sends the buffer as one packet and waits for the acknowledgement. Disconnects if the
    /// connection does not take it, the viewer has gone or patience is over.
    void Send();

    /// Empties the buffer.
    void ResetBuff();
    /// Append an item to the buffer, which grows as needed. A null text becomes an empty one; data
    /// of a negative length, or null of any other than 0, is dropped.
    CMessageSocket& operator<<(unsigned long value);
    CMessageSocket& operator<<(const char* text);
    void AddData(void* bytes, int n);
    /// Appends an item of any type. The value of one that is no text (8) or data (24) is a 32-bit
    /// number, of which the n high-order bytes go out.
    void AppendPacket(long type, void* value, int n);
    /// Read an item at the cursor; 0 or the empty text, and nothing moves, if it is another one or
    /// not whole. `text` must have room for the text and its terminator.
    CMessageSocket& operator>>(unsigned long& value);
    CMessageSocket& operator>>(char* text);

    /// Begins the use of the socket library: 1, or 0 on failure. A socket does so by itself.
    static int InitSockets_1_1();
    static void RemoveSockets();
    /// The name of this host, in the caller's buffer; null on failure.
    static char* GetHostName(char* buffer, int length);
    /// How many addresses this host has, and the first of them; 0 on failure. Addresses are 32-bit
    /// numbers whose bytes in memory are those of the dotted form.
    static int GetNumAddresses();
    static unsigned int uGetLocalIP();
    static unsigned int uGetIPFromSockAddr_In(sockaddr_in* pAddress);
    /// The name of the host with that address, valid until the thread's next call; null if it has
    /// none.
    static char* GetHostName(unsigned int address);
    /// Writes the dotted form into the caller's buffer, and clears the rest of it. Null, with
    /// nothing written, if it has fewer than 16 characters.
    static char* IPString(unsigned int address, char* buffer, int length);

private:
    friend struct mlds::Internals;
    friend struct mlds::ConversationAccess;

    MLDS_LOCAL void Release();
    MLDS_LOCAL bool Start();
    MLDS_LOCAL std::intptr_t Open(const mlds::platform::Deadline& deadline);
    MLDS_LOCAL void Greet(unsigned long kind);
    MLDS_LOCAL bool Exchange(const mlds::platform::Deadline& deadline);
    MLDS_LOCAL void CloseRequests();
    MLDS_LOCAL void DropLateBytes();
    MLDS_LOCAL char* Buffer() const;
    MLDS_LOCAL unsigned char* Reserve(std::uint64_t size);
    MLDS_LOCAL void Append(std::uint32_t type, const void* value, std::int64_t n);

    std::intptr_t m_sendSocket;  // 0 when closed
    std::intptr_t m_receiveSocket;
    alignas(8) unsigned char m_address[16];
    bool m_bConnected;
    bool m_bStartNeeded;
    char* m_pBuffer;
    int m_nPosition;
    int m_nLength;

    bool m_bOwner;              // sockets and buffer are this object's own
    bool m_bAckOdd;             // an acknowledgement was not just one int item
    char* m_pLarge;             // a packet that outgrew the buffer
    std::uint32_t m_nLarge;     // its capacity
    mlds::ViewerLink* m_pLink;  // what is kept while connected
    int m_nPatience;            // in milliseconds
};

#endif
