#pragma once

#include <QList>
#include <QString>

/// One text of a translation file.
struct TranslatedText {
    QString context;
    QString source;
    /// As many as the language has plural forms, where the text counts something; otherwise one.
    QList<QString> translations;
    bool finished = false;
};

/// Everything in a file of Qt Linguist; empty when it cannot be read.
QList<TranslatedText> readTranslationFile(const QString& path);
