#include "UntranslatedTexts.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>

namespace {

const QSet<QString>& translating() {
    static const QSet<QString> calls{"tr", "translate", "QT_TR_NOOP", "QT_TRANSLATE_NOOP",
                                     "operatorText"};
    return calls;
}

const QSet<QString>& showing() {
    static const QSet<QString> calls{"about",
                                     "addAction",
                                     "addButton",
                                     "addItem",
                                     "addItems",
                                     "addMenu",
                                     "addTab",
                                     "addToolBar",
                                     "addWidget",
                                     "critical",
                                     "getExistingDirectory",
                                     "getOpenFileName",
                                     "getOpenFileNames",
                                     "getSaveFileName",
                                     "information",
                                     "insertItem",
                                     "insertText",
                                     "print",
                                     "QAction",
                                     "QCheckBox",

                                     "QFileDialog",
                                     "QGroupBox",
                                     "QLabel",
                                     "QMenu",
                                     "QMessageBox",
                                     "QProgressDialog",
                                     "QPushButton",
                                     "QRadioButton",
                                     "QToolButton",
                                     "question",
                                     "setAccessibleDescription",
                                     "setAccessibleName",
                                     "setApplicationDescription",
                                     "setCancelButtonText",
                                     "setDetailedText",
                                     "setHeaderLabels",
                                     "setHtml",
                                     "setInformativeText",
                                     "setItemText",
                                     "setLabelText",
                                     "setMarkdown",
                                     "setNameFilter",
                                     "setNameFilters",
                                     "setPlaceholderText",
                                     "setPlainText",
                                     "setPrefix",
                                     "setSpecialValueText",
                                     "setStatusTip",
                                     "setSuffix",
                                     "setText",
                                     "setTitle",
                                     "setToolTip",
                                     "setWhatsThis",
                                     "setWindowTitle",
                                     "showMessage",
                                     "showText",
                                     "warning"};
    return calls;
}

/// What takes text that nobody reads, or that is read in English: diagnostics on the standard
/// streams, style sheets, names in the file system and of things in the program.
const QSet<QString>& silent() {
    static const QSet<QString> calls{
        "QIcon", "QKeySequence", "QPixmap", "QUrl", "toString", "fromString", "setObjectName",
        "setStyleSheet", "setProperty", "property", "setValue", "value", "connect", "invokeMethod",
        // Diagnostics.
        "qWarning", "qDebug", "qCritical", "fail", "ReportError", "printLine", "_Error",
        "SocketError", "HostNotFound", "Error", "runtime_error", "static_assert"};
    return calls;
}

/// What a person reads of a literal: without markup, and without what is filled in or escaped.
QString readable(QString text) {
    static const QRegularExpression hidden(
        QStringLiteral("%L?\\d+|<[^>]*>|&[a-z]+;|\\\\[nrt0x\"\\\\]"));
    return text.remove(hidden);
}

bool hasWord(const QString& text) {
    static const QRegularExpression word(QStringLiteral("\\p{L}{2}"));
    return readable(text).contains(word);
}

bool isSentence(const QString& text) {
    static const QRegularExpression words(QStringLiteral("\\p{L}{2,}[.,:;]? \\p{L}{2,}"));
    return readable(text).contains(words);
}

/// A pass over C++ source that knows in which calls it stands.
class Scanner {
public:
    explicit Scanner(const QString& source) : m_source(source) {}

    QList<UntranslatedText> scan() {
        while (m_at < m_source.size())
            step();
        return m_found;
    }

private:
    struct Frame {
        QChar bracket;
        QString callee;
    };

    QChar peek(qsizetype ahead = 0) const {
        return m_at + ahead < m_source.size() ? m_source[m_at + ahead] : QChar();
    }

    void step() {
        const QStringView rest = QStringView(m_source).mid(m_at);
        if (rest.startsWith(u"//"))
            skipTo(QStringLiteral("\n"));
        else if (rest.startsWith(u"/*"))
            skipTo(QStringLiteral("*/"));
        else if (peek() == u'#' && m_previous.isEmpty())
            skipTo(QStringLiteral("\n"));
        else if (rest.startsWith(u"R\"("))
            readRaw();
        else if (peek() == u'"')
            readText();
        else if (peek() == u'\'')
            skipCharacter();
        else if (peek().isLetterOrNumber() || peek() == u'_')
            readWord();
        else
            readSign();
    }

    void skipTo(const QString& end) {
        const qsizetype found = m_source.indexOf(end, m_at);
        advanceTo(found < 0 ? m_source.size() : found + end.size());
        if (end == u"\n")
            m_previous.clear();
    }

    void advanceTo(qsizetype end) {
        m_line += static_cast<int>(QStringView(m_source).mid(m_at, end - m_at).count(u'\n'));
        m_at = end;
    }

    void skipCharacter() {
        qsizetype end = m_at + 1;
        while (end < m_source.size() && m_source[end] != u'\'')
            end += m_source[end] == u'\\' ? 2 : 1;
        advanceTo(std::min(end + 1, m_source.size()));
        m_previous = QStringLiteral("'");
    }

    void readRaw() {
        const qsizetype end = m_source.indexOf(u")\"", m_at);
        const QString text = m_source.mid(m_at + 3, end < 0 ? -1 : end - m_at - 3);
        judge(text, m_line);
        advanceTo(end < 0 ? m_source.size() : end + 2);
    }

    /// A literal and those that follow it without anything between.
    void readText() {
        const int line = m_line;
        QString text;
        while (peek() == u'"') {
            qsizetype end = m_at + 1;
            while (end < m_source.size() && m_source[end] != u'"')
                end += m_source[end] == u'\\' ? 2 : 1;
            text += m_source.mid(m_at + 1, end - m_at - 1);
            advanceTo(std::min(end + 1, m_source.size()));
            qsizetype next = m_at;
            while (next < m_source.size() && m_source[next].isSpace())
                ++next;
            if (next < m_source.size() && m_source[next] == u'"')
                advanceTo(next);
        }
        judge(text, line);
        m_previous = QStringLiteral("\"");
    }

    void readWord() {
        qsizetype end = m_at;
        while (end < m_source.size() &&
               (m_source[end].isLetterOrNumber() || m_source[end] == u'_' ||
                (m_source[end] == u'\'' && m_source[m_at].isDigit())))
            ++end;
        m_previous = m_source.mid(m_at, end - m_at);
        // QAction* a = new QAction(...), QLabel label(...): the type stands before the name.
        if (showing().contains(m_previous) && m_previous.startsWith(u'Q'))
            m_type = m_previous;
        advanceTo(end);
    }

    void readSign() {
        const QChar sign = peek();
        if (sign == u'(' || sign == u'{' || sign == u'[') {
            const bool body = sign == u'{' && (m_previous == u")" || m_previous == u"]" ||
                                               m_previous == u"const" || m_previous == u"else");
            const QString callee =
                showing().contains(m_previous) || m_type.isEmpty() ? m_previous : m_type;
            m_frames.append({body ? QChar(u';') : sign, body ? QString() : callee});
            m_type.clear();
        } else if ((sign == u')' || sign == u'}' || sign == u']') && !m_frames.isEmpty()) {
            m_frames.removeLast();
        } else if (sign == u';' || sign == u',') {
            m_type.clear();
        }
        if (!sign.isSpace())
            m_previous = sign;
        else if (sign == u'\n' && (m_previous == u";" || m_previous == u"}" || m_previous == u"{"))
            m_previous.clear();
        advanceTo(m_at + 1);
    }

    void judge(const QString& text, int line) {
        bool shown = false;
        for (auto frame = m_frames.crbegin(); frame != m_frames.crend(); ++frame) {
            if (translating().contains(frame->callee) || silent().contains(frame->callee))
                return;
            if (frame->bracket == u';')
                break;
            shown = shown || showing().contains(frame->callee);
        }
        if (shown ? hasWord(text) : isSentence(text))
            m_found.append({line, text});
    }

    QString m_source;
    qsizetype m_at = 0;
    int m_line = 1;
    QString m_previous;
    QString m_type;
    QList<Frame> m_frames;
    QList<UntranslatedText> m_found;
};

} // namespace

QList<UntranslatedText> untranslatedTextsInCode(const QString& source) {
    return Scanner(source).scan();
}

QList<UntranslatedText> untranslatedTextsInForm(const QString& source) {
    QList<UntranslatedText> found;
    QXmlStreamReader xml(source);
    QString property;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"property")
            property = xml.attributes().value(QStringLiteral("name")).toString();
        const bool kept = xml.attributes().value(QStringLiteral("notr")) == u"true";
        if (xml.name() != u"string" || !kept || property == u"styleSheet")
            continue;
        const int line = static_cast<int>(xml.lineNumber());
        const QString text = xml.readElementText();
        if (hasWord(text))
            found.append({line, text});
    }
    return found;
}
