#pragma once

#include "XferClass.h"

#include <QByteArray>

/// A file transfer from or into a byte array.
class ByteArrayXfer : public XferClass {
    Q_OBJECT

public:
    using XferClass::XferClass;

    /// Sends `data`, which is not owned; the result is an XferClass::Error.
    int Send(QByteArray* data);
    /// Appends what is received to `data`, which is not owned; the result is an XferClass::Error.
    /// After a failure the array has what had arrived whole until then.
    int Receive(QByteArray* data);

    int Source() override;
    int Dest(char byte) override;

private:
    QByteArray* m_data = nullptr;
    qsizetype m_position = 0;
};
