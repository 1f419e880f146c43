#pragma once

#include <QDialog>
#include <QString>

class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QPushButton;
class QSettings;
class QTextCharFormat;
class QTextEdit;

/// Where the window keeps its geometry in the settings.
inline const QString settings_chat_geometry = QStringLiteral("chat/geometry");

/// The chat between the operator and the people at the instruments: a time-stamped transcript, the
/// operator's lines in blue and the instruments' in red, and a line to type in.
///
/// Emits sendChat() for every line the operator sends; incoming() shows a received one. Closing
/// only hides it: transcript and half-typed line are kept as long as the window lives. It knows
/// neither links nor instruments.
class ChatWindow : public QDialog {
    Q_OBJECT

public:
    /// The most lines the transcript holds.
    static constexpr int kMostLines = 5000;
    /// The oldest go first, this many at once: what is left must be laid out anew.
    static constexpr int kForgottenAtOnce = 500;

    /// `settings` holds the geometry from one run to the next; not owned, must outlive the window.
    ChatWindow(QSettings* settings, QWidget* parent);

    /// Shows a received line.
    void incoming(const QString& text);
    /// Says in the transcript that `count` received lines are missing here.
    void noteDropped(int count);
    /// Stores the geometry, unless the window is hidden or minimised.
    void saveLocation();
    /// Brings the window to the front and leaves the keyboard with whatever window has it.
    void showWithoutKeyboard();

    void setVisible(bool visible) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void sendLine();
    /// Escape closes the window as its close button does.
    void reject() override;

signals:
    void sendChat(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildInput();
    void buildTranscript();
    void followNewestLine();
    void append(const QTextCharFormat& format, const QString& text);
    void forgetOldest();
    void keepTranscriptReadable();

    QSettings* m_settings;
    QGridLayout* m_grid;
    QHBoxLayout* m_row;
    QComboBox* m_input;
    QPushButton* m_send;
    QTextEdit* m_transcript;
    /// Whether the newest line is in sight and must stay so.
    bool m_following = true;
};
