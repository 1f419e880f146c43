#pragma once

#include "BonjourClient.h"
#include "BonjourClientListener.h"

#include <QComboBox>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>

class TypedText;

/// The drop-down list of the instruments on the local network, with a last row to type an address
/// into. The connection dialog starts it, may name an instrument to preselect, and asks it for the
/// address in the end. One row an instrument, whatever the number of its addresses; what an
/// instrument announces about itself is shown as plain text.
///
/// Every change rebuilds the list. The default instrument is current then, when it is listed;
/// otherwise what the operator has picked or is typing stays; otherwise the first row is current.
/// A disabled box is rebuilt at the first mouse press after it was enabled. GUI thread.
class BonjourBox : public QComboBox, public BonjourClientListener {
    Q_OBJECT

public:
    /// What is known of one instrument; ordered by name without regard to case.
    class InstInfo {
    public:
        InstInfo(std::string name, std::string host, const SocketAddress& address, std::string kind,
                 const std::map<std::string, std::string>& txt);

        bool operator<(const InstInfo& other) const;

        /// The address to connect to, as text: the first IPv6 address when `preferIPv6`, otherwise
        /// the first IPv4 address, otherwise whatever there is; empty without any. `scope` and
        /// `port` may be null; an IPv4 address has scope 0.
        std::string SelectIPAddress(bool preferIPv6, int* scope, int* port) const;
        std::string SelectIPAddress(bool preferIPv6) const;

        std::string name;
        std::set<SocketAddress> addresses;
        std::string host;
        /// "gx7100", "other" or "unknown".
        std::string kind;
        std::map<std::string, std::string> txt;
    };

    /// A box that looks for nothing until start.
    explicit BonjourBox(QWidget* parent = nullptr);
    /// A box, not editable, that looks for `regtype` at once.
    BonjourBox(const QString& regtype, const QString& domain, QWidget* parent = nullptr);

    /// Lets the operator type and starts looking for services of the type `regtype`. Instruments
    /// are looked for in the default domains, whatever `domain`.
    void start(const QString& regtype, const QString& domain);

    /// Has the instrument `name` preselected whenever the list is built and has it.
    void setDefault(const QString& name);

    /// What to connect to: the current instrument's address, scope (interface index) and announced
    /// port, or what was typed into the last row, with scope 0 and port 7100. Typed text becomes
    /// that row's label; over an instrument's row it is ignored, and its name shown again. False
    /// when no row is current; nothing is changed then.
    bool getIP(std::string& ip, int* scope, int* port);

    /// The host name of the current instrument; false when there is none.
    bool getHost(std::string& host);

    /// The instrument whose name is the current text, or null. Valid until the list changes.
    const InstInfo* _GetSelectedInstInfo() const;

    void AddService(std::string name, std::string regtype, std::string domain,
                    unsigned int interfaceIndex, std::string hostTarget,
                    const SocketAddress& address,
                    const std::map<std::string, std::string>& txt) override;
    void RemoveService(std::string name, std::string regtype, std::string domain) override;
    /// Writes the message to standard output; discovery failing never stops the operator.
    bool ServiceError(std::string message) override;

public slots:
    /// Do nothing.
    void checkEditable(int row);
    void selectedItem(int row);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    /// What a row stays known by when the list is rebuilt.
    struct RowKey {
        bool isLastRow;
        QString text;
    };

    void InfoChanged();
    void rebuild(bool keepsCurrentRow);
    void fillRows();
    void selectRow(int keptRow, const std::optional<TypedText>& typed, bool wasTypedIntoLastRow);
    void reopen(int highlightedRow);
    bool isTyping() const;
    bool isLastRow(int row) const;
    RowKey keyOf(int row) const;
    /// -1 when there is no such row any more.
    int rowOf(const RowKey& key) const;

    QString m_regtype;
    QString m_domain;
    QString m_lastRowLabel;
    QString m_defaultName;
    bool m_isRefreshPending = false;
    /// The current row is one that the operator picked.
    bool m_isOperatorsChoice = false;
    std::list<InstInfo> m_instruments;
    BonjourClient m_client;
};
