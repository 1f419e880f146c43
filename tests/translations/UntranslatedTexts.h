#pragma once

#include <QList>
#include <QString>

/// A text in a source file that a person may get to read and that no translation reaches.
struct UntranslatedText {
    int line = 0;
    QString text;

    bool operator==(const UntranslatedText&) const = default;
};

/// Texts in C++ source outside of the translation call: words handed to something that shows them,
/// and sentences anywhere else, unless they go to something that is known to show nothing.
QList<UntranslatedText> untranslatedTextsInCode(const QString& source);

/// Words in a form that are marked as not to be translated; style sheets are none.
QList<UntranslatedText> untranslatedTextsInForm(const QString& source);
