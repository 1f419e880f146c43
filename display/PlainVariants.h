#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QVariant>

/// Reads the variants of a settings record one by one, without trusting the record.
///
/// A stored variant may name any type, lists within lists and images among them, and reading such
/// a one from a damaged store could take any time, memory or stack. Only numbers, truth values and
/// strings are read here; anything else ends the record.
class PlainVariants {
public:
    explicit PlainVariants(const QByteArray& record) : m_stream(record) {}

    /// The next variant; an invalid one once the record is at its end or damaged.
    QVariant next();

private:
    QDataStream m_stream;
};
