#include "TypedText.h"

#include <QLineEdit>

TypedText::TypedText(const QLineEdit& edit)
    : m_text(edit.text()), m_cursor(edit.cursorPosition()), m_selectionStart(edit.selectionStart()),
      m_selectionLength(edit.selectionLength()), m_isModified(edit.isModified()) {}

void TypedText::restore(QLineEdit& edit) const {
    edit.setText(m_text);
    edit.setModified(m_isModified);
    if (m_selectionStart < 0)
        edit.setCursorPosition(m_cursor);
    else if (m_cursor == m_selectionStart)
        edit.setSelection(m_selectionStart + m_selectionLength, -m_selectionLength);
    else
        edit.setSelection(m_selectionStart, m_selectionLength);
}
