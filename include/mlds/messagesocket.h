// The connections to the viewer.
#ifndef MLDS_MESSAGESOCKET_H
#define MLDS_MESSAGESOCKET_H

#include <cstdint>

#include "mlds/export.h"

struct sockaddr_in;

/// The TCP client that talks to the viewer. Not available yet: nothing connects.
class MLDS_API CMessageSocket {
public:
    CMessageSocket();
    /// A copy shares sockets and buffer and owns neither.
    CMessageSocket(const CMessageSocket& other);
    CMessageSocket& operator=(const CMessageSocket& other);
    ~CMessageSocket();

    bool Connect();
    bool ConnectForRcv();
    void Disconnect();
    void Send();
    void ResetBuff();
    CMessageSocket& operator<<(unsigned long value);
    CMessageSocket& operator<<(const char* text);
    void AddData(void* bytes, int n);
    void AppendPacket(long type, void* value, int n);
    CMessageSocket& operator>>(unsigned long& value);
    /// Reads a text into the caller's buffer.
    CMessageSocket& operator>>(char* text);

    static int InitSockets_1_1();
    static void RemoveSockets();
    static char* GetHostName(char* buffer, int length);
    static int GetNumAddresses();
    static unsigned int uGetLocalIP();
    static unsigned int uGetIPFromSockAddr_In(sockaddr_in* pAddress);
    static char* GetHostName(unsigned int address);
    static char* IPString(unsigned int address, char* buffer, int length);

private:
    friend struct mlds::Internals;

    std::intptr_t m_sendSocket;  // 0 when closed
    std::intptr_t m_receiveSocket;
    alignas(8) unsigned char m_address[16];
    bool m_bConnected;
    bool m_bStartNeeded;
    char* m_pBuffer;
    int m_nPosition;
    int m_nLength;

    bool m_bOwner;  // sockets and buffer are this object's own
};

#endif
