#include "PlainVariants.h"

#include <QIODevice>
#include <QtEndian>

namespace {

bool isPlain(quint32 type) {
    switch (type) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QString:
        return true;
    default:
        return false;
    }
}

} // namespace

QVariant PlainVariants::next() {
    const QByteArray type = m_stream.device()->peek(sizeof(quint32));
    if (type.size() != sizeof(quint32) || !isPlain(qFromBigEndian<quint32>(type.constData())))
        m_stream.setStatus(QDataStream::ReadCorruptData);
    if (m_stream.status() != QDataStream::Ok)
        return {};
    QVariant value;
    m_stream >> value;
    return m_stream.status() == QDataStream::Ok ? value : QVariant();
}
