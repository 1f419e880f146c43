#pragma once

#include <QList>
#include <QMainWindow>
#include <QRect>
#include <QSettings>

#include <memory>
#include <string>

class ChatInbox;
class ChatWindow;
class ConnectionWidget;
class HelpGroup;
class Keyboard;
class QLabel;
class TileMenu;
class Ui_GroupWindow;

/// The main window: a grid of tiles, one for each instrument, and the place where the operator
/// types. Every key typed into it goes to all tiles; each sends it on if its frame is red. Owns
/// the tiles and the settings store. GUI thread.
class GroupWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit GroupWindow(QWidget* parent = nullptr);
    ~GroupWindow() override;

    /// Adds an empty tile at the end of the grid; `grow` makes the window larger for it.
    void addEmptyConnection(bool grow);

public slots:
    /// Asks for an instrument and connects a new tile to it.
    void newConnection();
    /// Deletes one of the window's tiles and re-lays the others. Asks first when files that came
    /// from its instrument would be lost with it.
    void removalRequest(ConnectionWidget* tile);
    /// Re-lays the tiles and resizes the window to their number a moment later.
    void rebuild();
    void startCommToAll();
    void stopCommToAll();
    void colorChanged(QByteArray colors);
    void fontFamilyChanged(QString family);
    /// Shows a chat line of an instrument. The chat window comes up without the keyboard: what is
    /// being typed is meant for another window.
    void incomingChat(const QString& from, const QString& text);
    /// Sends a chat line to all instruments that receive keys.
    void outgoingChat(const QString& text);
    /// Types a key of a keypad.
    void nonAsciiKey(unsigned char group, unsigned char key);
    /// Shows the keypad palette; one that is there already gets the keyboard.
    void showKbd();
    void showChat();
    void showPrefs();
    void doAbout();
    /// Applies the geometry that rebuild() computed.
    void jj();

signals:
    void keyPressed(unsigned short code);
    void signalFor7100(std::string packet);
    void shiftCtrlStateChange(bool shift, bool ctrl);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// Tab is a key of the instrument's, not a way around the window.
    bool focusNextPrevChild(bool next) override;

private:
    void createActions();
    QAction* toolAction(const QString& text, const QString& statusTip, const QString& shortcut,
                        const QString& icon);
    void createToolBar();
    void createMenus();
    void menuClosed();
    void watch(const QMenu* menu);
    ChatWindow& chat();
    void showReceivedChat(const QStringList& lines);
    void setSendStateOfConnected(bool on);
    void place(ConnectionWidget* tile, int index);
    void resizeTo(const QRect& target);
    bool takeModifierKey(const QKeyEvent& event);
    static QString modifierText(bool shift, bool ctrl);
    void showModState(bool shift, bool ctrl);
    bool mayClose();
    bool mayLoseFiles(const QList<ConnectionWidget*>& tiles);

    std::unique_ptr<Ui_GroupWindow> m_form;
    HelpGroup* m_help;
    Keyboard* m_keyboard = nullptr;
    ChatWindow* m_chat = nullptr;
    ChatInbox* m_chatInbox;
    int m_maxColumns = 2;
    QSettings m_store;
    QByteArray m_colors;
    QString m_fontFamily;
    QList<ConnectionWidget*> m_tiles;
    QRect m_targetGeometry;
    QLabel* m_modifierLabel = nullptr;
    TileMenu* m_tileMenu = nullptr;
    QAction* m_quitAction = nullptr;
    QAction* m_addAction = nullptr;
    QAction* m_keyboardAction = nullptr;
    QAction* m_chatAction = nullptr;
};
