#include "GroupWindow.h"

#include "ChatInbox.h"
#include "ChatWindow.h"
#include "ConnectGX7100.h"
#include "ConnectionWidget.h"
#include "GridGeometry.h"
#include "GroupPrefs.h"
#include "GroupSettings.h"
#include "HelpGroup.h"
#include "KeyMap.h"
#include "Keyboard.h"
#include "NewConnection.h"
#include "TileMenu.h"
#include "WindowGeometry.h"
#include "ui_GroupWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <utility>

namespace {

constexpr QSize firstSize{450, 180};

/// Milliseconds in which a new layout settles before the window follows it.
constexpr int settleTime = 50;

} // namespace

GroupWindow::GroupWindow(QWidget* parent)
    : QMainWindow(parent), m_form(std::make_unique<Ui_GroupWindow>()),
      m_help(new HelpGroup(this, this)), m_chatInbox(new ChatInbox(this)),
      m_store(QStringLiteral("VESTRA"), QStringLiteral("group7100")) {
    QApplication::setApplicationName(QStringLiteral("GX7100Group"));
    QApplication::setApplicationVersion(QStringLiteral("2.1"));
    QApplication::setOrganizationName(QStringLiteral("vestra"));
    m_form->setupUi(this);
    setWindowTitle(
        tr("%1 %2").arg(QApplication::applicationName(), QApplication::applicationVersion()));
    connect(m_chatInbox, &ChatInbox::arrived, this, &GroupWindow::showReceivedChat);
    connect(m_chatInbox, &ChatInbox::dropped, this,
            [this](int count) { chat().noteDropped(count); });
    createActions();
    createToolBar();
    createMenus();
    m_modifierLabel = new QLabel(this);
    m_form->statusBar->addPermanentWidget(m_modifierLabel);

    const GroupSettings settings = GroupSettings::load(m_store);
    if (!windowgeometry::restore(*this, settings.geometry))
        resize(firstSize);
    m_maxColumns = settings.maxColumns;
    m_colors = settings.colors;
    m_fontFamily = settings.fontFamily;
    for (int i = 0; i < settings.count; ++i)
        addEmptyConnection(false);
    m_help->queryNews();
}

GroupWindow::~GroupWindow() = default;

void GroupWindow::createActions() {
    m_quitAction = new QAction(tr("Quit"), this);
    m_quitAction->setShortcut(QKeySequence(QStringLiteral("ctrl+Q")));
    m_quitAction->setStatusTip(tr("Exit the application"));
    connect(m_quitAction, &QAction::triggered, this, &QWidget::close);

    m_addAction = toolAction(tr("Add connection"), tr("Add a connection"), QStringLiteral("ctrl+P"),
                             QStringLiteral(":/buttons/images/edit_add.png"));
    connect(m_addAction, &QAction::triggered, this, &GroupWindow::newConnection);
    m_keyboardAction =
        toolAction(tr("Keyboard"), tr("Show the keyboard palette"), QStringLiteral("ctrl+K"),
                   QStringLiteral(":/buttons/images/g-key2.png"));
    connect(m_keyboardAction, &QAction::triggered, this, &GroupWindow::showKbd);
    m_chatAction = toolAction(tr("Chat"), tr("Show chat window"), QStringLiteral("ctrl+c"),
                              QStringLiteral(":/buttons/images/chatbubbles7.png"));
    connect(m_chatAction, &QAction::triggered, this, &GroupWindow::showChat);
}

QAction* GroupWindow::toolAction(const QString& text, const QString& statusTip,
                                 const QString& shortcut, const QString& icon) {
    auto* action = new QAction(QIcon(icon), text, this);
    action->setShortcut(QKeySequence(shortcut));
    action->setStatusTip(statusTip);
    action->setToolTip(tr("%1 (%2)", "what a button does and its shortcut")
                           .arg(statusTip, action->shortcut().toString(QKeySequence::NativeText)));
    return action;
}

void GroupWindow::createToolBar() {
    auto* toolBar = addToolBar(tr("Main tool bar"));
    toolBar->setObjectName(QStringLiteral("mainToolBar"));
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    toolBar->setMovable(false);
    // Nothing brings a hidden tool bar back.
    toolBar->setContextMenuPolicy(Qt::PreventContextMenu);
    toolBar->addActions({m_addAction, m_keyboardAction, m_chatAction});
}

void GroupWindow::createMenus() {
    QMenu* file = m_form->menuBar->addMenu(tr("&File"));
    file->addAction(tr("Preferences"), this, &GroupWindow::showPrefs)
        ->setStatusTip(tr("Choose the number of columns"));
    file->addSeparator();
    file->addAction(m_quitAction);
    m_tileMenu = new TileMenu(m_tiles, this);
    m_form->menuBar->addMenu(m_tileMenu);
    QMenu* help = m_form->menuBar->addMenu(tr("&Help"));
    help->addAction(tr("About"), this, &GroupWindow::doAbout)
        ->setStatusTip(tr("Show the version of this program"));
    m_help->buildHelpMenu(help);
    watch(file);
    watch(m_tileMenu);
    watch(help);
    // As elsewhere; no instrument has this key.
    connect(new QShortcut(Qt::Key_F10, this), &QShortcut::activated, this,
            [this, file] { m_form->menuBar->setActiveAction(file->menuAction()); });
}

/// A menu bar keeps the keyboard after its menu was closed with Escape, and the operator's next
/// Space would open the menu again instead of reaching the instruments.
void GroupWindow::menuClosed() {
    // While the menu was open it alone was told of keys.
    const Qt::KeyboardModifiers held = QGuiApplication::queryKeyboardModifiers();
    const bool shift = held.testFlag(Qt::ShiftModifier);
    const bool ctrl = held.testFlag(Qt::MetaModifier);
    // What the operator switched on in the keypad stays on where nothing was let go.
    if (m_modifierLabel->text() != modifierText(shift, ctrl))
        showModState(shift, ctrl);
    if (!m_form->menuBar->hasFocus() || QApplication::activePopupWidget())
        return;
    if (ConnectionWidget* tile = m_tileMenu->current())
        tile->setFocus(Qt::MenuBarFocusReason);
    else
        m_form->menuBar->clearFocus();
}

void GroupWindow::watch(const QMenu* menu) {
    connect(menu, &QMenu::aboutToHide, this, &GroupWindow::menuClosed, Qt::QueuedConnection);
}

void GroupWindow::addEmptyConnection(bool grow) {
    const int tilesBefore = static_cast<int>(m_tiles.size());
    auto* tile = new ConnectionWidget(m_form->centralWidget, &m_store);
    place(tile, tilesBefore);
    if (grow)
        resizeTo(grid::grown(geometry(), tilesBefore, m_maxColumns));
    tile->show();
    tile->setColor(m_colors);
    tile->setFontFamily(m_fontFamily);
    connect(this, &GroupWindow::keyPressed, tile, &ConnectionWidget::keyPressed);
    connect(tile, &ConnectionWidget::killMe, this, &GroupWindow::removalRequest);
    connect(tile, &ConnectionWidget::incomingChat, this, &GroupWindow::incomingChat);
    connect(this, &GroupWindow::signalFor7100, tile, &ConnectionWidget::signalFor7100);
    connect(tile, &ConnectionWidget::colorChanged, this, &GroupWindow::colorChanged);
    connect(tile, &ConnectionWidget::fontFamilyChanged, this, &GroupWindow::fontFamilyChanged);
    connect(tile, &ConnectionWidget::startCommToAll, this, &GroupWindow::startCommToAll);
    connect(tile, &ConnectionWidget::stopCommToAll, this, &GroupWindow::stopCommToAll);
    for (const QMenu* menu : tile->findChildren<QMenu*>())
        watch(menu);
    m_tiles.append(tile);
}

void GroupWindow::newConnection() {
    NewConnection dialog(this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    addEmptyConnection(true);
    dialog.makeConnection(m_tiles.last());
    // What is done next without a mouse is done to this one.
    m_tileMenu->makeCurrent(m_tiles.last());
}

void GroupWindow::removalRequest(ConnectionWidget* tile) {
    if (!m_tiles.contains(tile) || !mayLoseFiles({tile}) || !m_tiles.removeOne(tile))
        return;
    disconnect(tile);
    tile->disconnect(this);
    tile->closeCaptureWindow();
    m_form->gridLayout->removeWidget(tile);
    for (ConnectionWidget* other : std::as_const(m_tiles))
        m_form->gridLayout->removeWidget(other);
    // Its own button's click may have led here.
    tile->hide();
    tile->setParent(nullptr);
    tile->deleteLater();
    rebuild();
}

void GroupWindow::rebuild() {
    const int tiles = static_cast<int>(m_tiles.size());
    for (int i = 0; i < tiles; ++i)
        place(m_tiles[i], i);
    const QGridLayout* layout = m_form->gridLayout;
    m_targetGeometry =
        grid::rebuilt(geometry().topLeft(), layout->cellRect(0, 0).size(),
                      layout->horizontalSpacing(), layout->verticalSpacing(), tiles, m_maxColumns);
    QTimer::singleShot(settleTime, this, &GroupWindow::jj);
}

void GroupWindow::startCommToAll() {
    setSendStateOfConnected(true);
}

void GroupWindow::stopCommToAll() {
    setSendStateOfConnected(false);
}

void GroupWindow::setSendStateOfConnected(bool on) {
    for (ConnectionWidget* tile : std::as_const(m_tiles))
        if (tile->IsConnected())
            tile->setSendState(on);
}

void GroupWindow::colorChanged(QByteArray colors) {
    m_colors = colors;
    for (ConnectionWidget* tile : std::as_const(m_tiles))
        tile->setColor(m_colors);
}

void GroupWindow::fontFamilyChanged(QString family) {
    m_fontFamily = family;
    for (ConnectionWidget* tile : std::as_const(m_tiles))
        tile->setFontFamily(m_fontFamily);
}

ChatWindow& GroupWindow::chat() {
    if (!m_chat) {
        m_chat = new ChatWindow(&m_store, this);
        connect(m_chat, &ChatWindow::sendChat, this, &GroupWindow::outgoingChat);
    }
    return *m_chat;
}

void GroupWindow::showChat() {
    ChatWindow& window = chat();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.activateWindow();
    window.raise();
}

void GroupWindow::incomingChat(const QString& /*from*/, const QString& text) {
    m_chatInbox->add(text);
}

void GroupWindow::showReceivedChat(const QStringList& lines) {
    chat().showWithoutKeyboard();
    for (const QString& line : lines)
        chat().incoming(line);
}

void GroupWindow::outgoingChat(const QString& text) {
    emit signalFor7100(ConnectGX7100::sendChat(text));
}

void GroupWindow::nonAsciiKey(unsigned char group, unsigned char key) {
    emit keyPressed(static_cast<unsigned short>((group << 8U) + key));
}

void GroupWindow::showKbd() {
    if (!m_keyboard) {
        m_keyboard = new Keyboard(this);
        connect(m_keyboard, qOverload<unsigned short>(&Keyboard::keyPressed), this,
                &GroupWindow::keyPressed);
    }
    if (m_keyboard->isVisible())
        m_keyboard->takeKeyboard();
    else
        m_keyboard->show();
    m_keyboard->raise();
}

void GroupWindow::showPrefs() {
    GroupPrefs dialog;
    dialog.setMaxCols(m_maxColumns);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_maxColumns = dialog.maxCols();
    rebuild();
}

void GroupWindow::doAbout() {
    QMessageBox::about(
        this, tr("About GX7100Group"),
        tr("<h3>GX7100Group %1</h3>").arg(QApplication::applicationVersion()) +
            tr("<p>Watch and drive many GX-7100 field instruments at once.</p>"
               "<p>A tile with a red frame receives the keys you type. Click beside its screen "
               "to switch the frame on or off.</p>"));
}

void GroupWindow::jj() {
    resizeTo(m_targetGeometry);
}

void GroupWindow::keyPressEvent(QKeyEvent* event) {
    if (takeModifierKey(*event))
        return;
    const auto code = keymap::codeFor(event->key(), event->modifiers(), event->text());
    if (code)
        emit keyPressed(*code);
    else
        QMainWindow::keyPressEvent(event);
}

void GroupWindow::keyReleaseEvent(QKeyEvent* event) {
    if (!takeModifierKey(*event))
        QMainWindow::keyReleaseEvent(event);
}

void GroupWindow::closeEvent(QCloseEvent* event) {
    if (!mayClose()) {
        event->ignore();
        return;
    }
    // They have no parent: any that stayed open would keep the program running.
    for (ConnectionWidget* tile : std::as_const(m_tiles))
        tile->closeCaptureWindow();
    const GroupSettings settings{.geometry = saveGeometry(),
                                 .maxColumns = m_maxColumns,
                                 .count = static_cast<int>(m_tiles.size()),
                                 .colors = m_colors,
                                 .fontFamily = m_fontFamily};
    settings.save(m_store);
    event->accept();
}

void GroupWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    // A key that is let go over another window is never told; this one must not seem held for ever.
    if (event->type() == QEvent::ActivationChange && !isActiveWindow() && m_modifierLabel &&
        !m_modifierLabel->text().isEmpty())
        showModState(false, false);
}

void GroupWindow::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard)
        m_tileMenu->showScreenMenu();
    else
        QMainWindow::contextMenuEvent(event);
}

bool GroupWindow::focusNextPrevChild(bool /*next*/) {
    return false;
}

void GroupWindow::place(ConnectionWidget* tile, int index) {
    const grid::Cell cell = grid::cellAt(index, m_maxColumns);
    m_form->gridLayout->addWidget(tile, cell.row, cell.column);
}

void GroupWindow::resizeTo(const QRect& target) {
    // A window that fills the screen stays as the operator put it.
    if (!isMaximized() && !isFullScreen())
        setGeometry(target);
}

bool GroupWindow::takeModifierKey(const QKeyEvent& event) {
    if (event.key() != Qt::Key_Shift && event.key() != Qt::Key_Meta)
        return false;
    // The event's own modifiers may be those of the moment before.
    const auto held = [&event](Qt::Key key, Qt::KeyboardModifier modifier) {
        return event.key() == key ? event.type() == QEvent::KeyPress
                                  : event.modifiers().testFlag(modifier);
    };
    const bool shift = held(Qt::Key_Shift, Qt::ShiftModifier);
    const bool ctrl = held(Qt::Key_Meta, Qt::MetaModifier);
    emit shiftCtrlStateChange(shift, ctrl);
    showModState(shift, ctrl);
    return true;
}

QString GroupWindow::modifierText(bool shift, bool ctrl) {
    return (shift ? tr("Shift ") : QString()) + (ctrl ? tr(" Ctrl") : QString());
}

void GroupWindow::showModState(bool shift, bool ctrl) {
    m_modifierLabel->setText(modifierText(shift, ctrl));
    if (m_keyboard)
        m_keyboard->showModState(shift, ctrl);
}

bool GroupWindow::mayClose() {
    // Asked first: whoever wants to save them does so with the lines still open.
    if (!mayLoseFiles(m_tiles))
        return false;
    const auto connected = [](const ConnectionWidget* tile) { return tile->IsConnected(); };
    if (std::ranges::none_of(m_tiles, connected))
        return true;
    const auto answer =
        QMessageBox::question(this, QApplication::applicationName(), tr("Disconnect and quit?"),
                              QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Yes);
    if (answer != QMessageBox::Yes)
        return false;
    for (ConnectionWidget* tile : std::as_const(m_tiles))
        if (tile->IsConnected())
            tile->Disconnect();
    return true;
}

bool GroupWindow::mayLoseFiles(const QList<ConnectionWidget*>& tiles) {
    QStringList origins;
    for (const ConnectionWidget* tile : tiles)
        if (tile->hasUnsavedFiles())
            origins << tile->nameText();
    if (origins.isEmpty())
        return true;
    QMessageBox box(QMessageBox::Warning, QApplication::applicationName(),
                    tr("Files that have arrived are not saved yet:\n%1\nThrow them away?")
                        .arg(origins.join(QLatin1Char('\n'))),
                    QMessageBox::Discard | QMessageBox::Cancel, this);
    // A name may look like markup.
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Discard;
}
