#pragma once

#include <QByteArray>
#include <QString>

/// What becomes of a file that an instrument has sent.
namespace receivedfile {

/// A file name to suggest, made of where it came from and when. Whatever the origin is called, the
/// name has no folder, no control characters and nothing that hides it.
QString suggestedName(const QString& origin, const QString& time);

/// Writes the file aside and renames it once it is whole, so that nothing is lost half-way. Empty,
/// or why it could not be done.
QString save(const QString& path, const QByteArray& contents);

} // namespace receivedfile
