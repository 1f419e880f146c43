#pragma once

#include <QByteArray>
#include <QString>

namespace wholefile {

/// Makes `contents` the file at `path`: written aside, then put in the place of what is there, so
/// that it is always the old file or the new one, whole. Empty on success; otherwise says in the
/// operator's language what failed, and nothing has changed. Any thread.
QString write(const QString& path, const QByteArray& contents);

} // namespace wholefile
