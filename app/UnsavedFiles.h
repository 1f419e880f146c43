#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The files of one instrument that wait to be saved, in the order in which they arrived.
///
/// Whatever an instrument sends, they take no more than so much memory: a file for which there is
/// no room is not kept. One as large as a transfer can carry fits.
class UnsavedFiles {
public:
    struct File {
        QString suggestedName;
        QByteArray contents;
    };

    static constexpr qsizetype maxFiles = 20;
    static constexpr qsizetype maxBytes = qsizetype{128} * 1024 * 1024;

    /// False when there is no room for it.
    bool add(const File& file);

    qsizetype count() const { return m_files.size(); }
    bool isEmpty() const { return m_files.isEmpty(); }
    /// The oldest; there must be one.
    const File& first() const { return m_files.first(); }
    void removeFirst();
    void clear();

private:
    QList<File> m_files;
    qsizetype m_bytes = 0;
};
