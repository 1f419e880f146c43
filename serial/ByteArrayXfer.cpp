#include "ByteArrayXfer.h"

int ByteArrayXfer::Send(QByteArray* data) {
    m_data = data;
    m_position = 0;
    return XferClass::Send();
}

int ByteArrayXfer::Receive(QByteArray* data) {
    m_data = data;
    return XferClass::Receive();
}

int ByteArrayXfer::Source() {
    if (m_position >= m_data->size())
        return -1;
    return static_cast<unsigned char>(m_data->at(m_position++));
}

int ByteArrayXfer::Dest(char byte) {
    m_data->append(byte);
    return 0;
}
