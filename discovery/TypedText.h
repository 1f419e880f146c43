#pragma once

#include <QString>

class QLineEdit;

/// What the operator is typing into a line edit, with cursor and selection and whether any of it is
/// his, so that a list behind it can be rebuilt without taking it away.
class TypedText {
public:
    explicit TypedText(const QLineEdit& edit);

    QString text() const { return m_text; }
    void restore(QLineEdit& edit) const;

private:
    QString m_text;
    int m_cursor;
    int m_selectionStart;
    int m_selectionLength;
    bool m_isModified;
};
