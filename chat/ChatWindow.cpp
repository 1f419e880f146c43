#include "ChatWindow.h"

#include "ChatText.h"
#include "WindowGeometry.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>
#include <QTime>

namespace {

constexpr QSize kFirstSize(400, 200);
constexpr int kShortestInput = 12;
constexpr int kMiddleLightness = 128;

QTextCharFormat in(const QColor& color) {
    QTextCharFormat format;
    format.setForeground(color);
    return format;
}

} // namespace

ChatWindow::ChatWindow(QSettings* settings, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_grid(new QGridLayout(this)), m_row(new QHBoxLayout),
      m_input(new QComboBox(this)), m_send(new QPushButton(tr("Send"), this)),
      m_transcript(new QTextEdit(this)) {
    setWindowFlags(windowFlags() | Qt::Window);
    setWindowTitle(tr("Chat Window"));
    buildInput();
    buildTranscript();
    m_grid->addLayout(m_row, 0, 0);
    m_grid->addWidget(m_transcript, 1, 0);
    if (!windowgeometry::restore(*this, m_settings->value(settings_chat_geometry))) {
        resize(kFirstSize);
    }
}

void ChatWindow::buildInput() {
    m_input->setEditable(true);
    // What is sent is what was typed, not an earlier line that begins so.
    m_input->setCompleter(nullptr);
    // Long earlier lines must not widen the window.
    m_input->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_input->setMinimumContentsLength(kShortestInput);
    m_input->installEventFilter(this);
    m_input->setAccessibleName(tr("Message"));
    m_input->lineEdit()->setPlaceholderText(tr("Message to the instruments"));
    m_send->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_send->setDefault(true);
    m_send->setToolTip(tr("Send the line to every instrument that receives keys (Return)"));
    connect(m_send, &QPushButton::clicked, this, &ChatWindow::sendLine);
    m_row->addWidget(m_input);
    m_row->addWidget(m_send);
}

void ChatWindow::buildTranscript() {
    m_transcript->setAccessibleName(tr("Transcript"));
    m_transcript->setReadOnly(true);
    m_transcript->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_transcript->setUndoRedoEnabled(false);
    keepTranscriptReadable();
    followNewestLine();
}

void ChatWindow::followNewestLine() {
    // Only who has scrolled back to read is left alone. Asking for the range to change, not for
    // lines to arrive, also covers those that arrive while the window is hidden.
    QScrollBar* const bar = m_transcript->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar](int value) { m_following = value == bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
        if (m_following) {
            bar->setValue(maximum);
        }
    });
}

void ChatWindow::sendLine() {
    const QString text = m_input->currentText();
    append(in(Qt::blue), text);
    emit sendChat(text);
    m_input->clearEditText();
}

void ChatWindow::incoming(const QString& text) {
    append(in(Qt::red), text);
}

void ChatWindow::noteDropped(int count) {
    // In neither party's colour: nobody has said it.
    append({}, tr("[Too many at once: %1 lines from instruments are not shown]").arg(count));
}

void ChatWindow::append(const QTextCharFormat& format, const QString& text) {
    QTextDocument* const document = m_transcript->document();
    // A cursor of its own: the transcript's would colour what the operator has selected.
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    if (!document->isEmpty()) {
        cursor.insertBlock();
    }
    cursor.insertText(QTime::currentTime().toString(QStringLiteral("hh:mm:ss")) + QLatin1Char(' ') +
                          displayableChat(text),
                      format);
    cursor.endEditBlock();
    if (document->blockCount() > kMostLines) {
        forgetOldest();
    }
}

void ChatWindow::forgetOldest() {
    QTextDocument* const document = m_transcript->document();
    const QTextBlock oldestKept = document->findBlockByNumber(kForgottenAtOnce);
    const qreal height = document->documentLayout()->blockBoundingRect(oldestKept).top();
    QScrollBar* const bar = m_transcript->verticalScrollBar();
    const int reading = bar->value() - static_cast<int>(height);
    const bool following = m_following;
    QTextCursor cursor(document);
    cursor.setPosition(oldestKept.position(), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    // Who has scrolled back still reads the same lines.
    if (!following) {
        bar->setValue(reading);
    }
    m_following = following;
}

void ChatWindow::showWithoutKeyboard() {
    QWidget* const typedInto = QApplication::activeWindow();
    const bool restored = isMinimized();
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    setAttribute(Qt::WA_ShowWithoutActivating, false);
    raise();
    if (restored && typedInto && typedInto != this) {
        // No attribute keeps a window that is restored from taking the keyboard.
        typedInto->activateWindow();
    }
    QApplication::alert(this);
}

void ChatWindow::setVisible(bool visible) {
    QDialog::setVisible(visible);
    // A dialog that is shown selects the text of its input: the next key would replace it.
    if (visible) {
        m_input->lineEdit()->deselect();
    }
}

void ChatWindow::saveLocation() {
    if (isVisible() && !isMinimized()) {
        m_settings->setValue(settings_chat_geometry, saveGeometry());
    }
}

void ChatWindow::reject() {
    close();
}

void ChatWindow::closeEvent(QCloseEvent* event) {
    saveLocation();
    event->accept();
}

void ChatWindow::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        keepTranscriptReadable();
    }
}

bool ChatWindow::eventFilter(QObject* watched, QEvent* event) {
    // A wheel turned over the input would put an earlier line in the place of the one being typed.
    if (watched == m_input && event->type() == QEvent::Wheel) {
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void ChatWindow::keepTranscriptReadable() {
    // Blue on a dark ground cannot be read: the transcript stays paper where windows are dark.
    QPalette paper;
    if (palette().color(QPalette::Base).lightness() < kMiddleLightness) {
        paper.setColor(QPalette::Base, Qt::white);
        paper.setColor(QPalette::Text, Qt::black);
    }
    m_transcript->setPalette(paper);
}
