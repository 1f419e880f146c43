#include "BonjourBox.h"

#include "TypedText.h"

#include <QAbstractItemView>
#include <QIcon>
#include <QLineEdit>
#include <QMouseEvent>
#include <algorithm>
#include <iostream>
#include <optional>

namespace {

constexpr int hostRole = Qt::UserRole;
constexpr int addressRole = Qt::UserRole + 1;
constexpr int scopeRole = Qt::UserRole + 2;
constexpr int portRole = Qt::UserRole + 3;

constexpr int visibleRows = 20;
constexpr int typedAddressPort = 7100;

std::string kindOf(const std::string& regtype) {
    for (const char* kind : {"gx7100", "other"}) {
        if (regtype.find(kind) != std::string::npos)
            return kind;
    }
    return "unknown";
}

} // namespace

BonjourBox::BonjourBox(QWidget* parent)
    : QComboBox(parent), m_lastRowLabel(tr("Other...")), m_client(this) {
    setEditable(false);
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(this, &QComboBox::activated, this, [this] { m_isOperatorsChoice = true; });
}

BonjourBox::BonjourBox(const QString& regtype, const QString& domain, QWidget* parent)
    : BonjourBox(parent) {
    m_regtype = regtype;
    m_domain = domain;
    m_client.Browse(regtype.toStdString());
}

void BonjourBox::start(const QString& regtype, const QString& domain) {
    connect(this, &QComboBox::activated, this, &BonjourBox::checkEditable);
    m_lastRowLabel = tr("Other...");
    setEditable(true);
    // An address is taken as typed: nothing may be completed to a longer one behind it.
    setCompleter(nullptr);
    setMaxVisibleItems(visibleRows);
    setInsertPolicy(QComboBox::NoInsert);
    m_regtype = regtype;
    m_domain = domain;
    InfoChanged();
    m_client.Browse(regtype.toStdString());
}

void BonjourBox::setDefault(const QString& name) {
    m_defaultName = name;
    if (!name.isEmpty())
        rebuild(true);
}

bool BonjourBox::isTyping() const {
    return isEditable() && currentText() != itemText(currentIndex());
}

BonjourBox::RowKey BonjourBox::keyOf(int row) const {
    return {isLastRow(row), itemText(row)};
}

int BonjourBox::rowOf(const RowKey& key) const {
    if (key.isLastRow)
        return count() - 1;
    for (int row = 0; row < static_cast<int>(m_instruments.size()); ++row) {
        if (itemText(row) == key.text)
            return row;
    }
    return -1;
}

bool BonjourBox::isLastRow(int row) const {
    return row >= 0 && row == count() - 1;
}

bool BonjourBox::getIP(std::string& ip, int* scope, int* port) {
    const QVariant address = currentData(addressRole);
    if (!address.isValid())
        return false;
    ip = address.toString().toStdString();
    if (isLastRow(currentIndex())) {
        m_lastRowLabel = currentText();
        setItemText(currentIndex(), m_lastRowLabel);
        ip = m_lastRowLabel.toStdString();
    } else if (isTyping()) {
        // The text is ignored, so nobody must take it for what was asked for.
        setEditText(itemText(currentIndex()));
    }
    if (scope != nullptr)
        *scope = currentData(scopeRole).toInt();
    if (port != nullptr)
        *port = currentData(portRole).toInt();
    return true;
}

bool BonjourBox::getHost(std::string& host) {
    host = currentData(hostRole).toString().toStdString();
    return !host.empty();
}

const BonjourBox::InstInfo* BonjourBox::_GetSelectedInstInfo() const {
    const std::string name = currentText().toStdString();
    const auto found = std::find_if(m_instruments.begin(), m_instruments.end(),
                                    [&name](const InstInfo& each) { return each.name == name; });
    return found == m_instruments.end() ? nullptr : &*found;
}

void BonjourBox::AddService(std::string name, std::string regtype, std::string, unsigned int,
                            std::string hostTarget, const SocketAddress& address,
                            const std::map<std::string, std::string>& txt) {
    const auto known = std::find_if(m_instruments.begin(), m_instruments.end(),
                                    [&name](const InstInfo& each) { return each.name == name; });
    if (known != m_instruments.end()) {
        known->addresses.insert(address);
    } else {
        m_instruments.emplace_back(std::move(name), std::move(hostTarget), address, kindOf(regtype),
                                   txt);
        m_instruments.sort();
    }
    InfoChanged();
}

void BonjourBox::RemoveService(std::string name, std::string, std::string) {
    const auto known = std::find_if(m_instruments.begin(), m_instruments.end(),
                                    [&name](const InstInfo& each) { return each.name == name; });
    if (known != m_instruments.end())
        m_instruments.erase(known);
    InfoChanged();
}

bool BonjourBox::ServiceError(std::string message) {
    std::cout << "ERROR: " << message << std::endl;
    return false;
}

void BonjourBox::checkEditable(int) {}

void BonjourBox::selectedItem(int) {}

void BonjourBox::mousePressEvent(QMouseEvent* event) {
    if (m_isRefreshPending)
        InfoChanged();
    QComboBox::mousePressEvent(event);
}

void BonjourBox::InfoChanged() {
    rebuild(m_isOperatorsChoice || isTyping());
}

void BonjourBox::rebuild(bool keepsCurrentRow) {
    if (!isEnabled()) {
        m_isRefreshPending = true;
        return;
    }
    m_isRefreshPending = false;

    const bool isOpen = view()->isVisible();
    const RowKey highlighted = keyOf(view()->currentIndex().row());
    const RowKey current = keyOf(currentIndex());
    std::optional<TypedText> typed;
    if (isTyping())
        typed.emplace(*lineEdit());

    clear();
    fillRows();

    selectRow(keepsCurrentRow ? rowOf(current) : -1, typed, current.isLastRow);
    if (isOpen)
        reopen(rowOf(highlighted));
}

void BonjourBox::selectRow(int keptRow, const std::optional<TypedText>& typed,
                           bool wasTypedIntoLastRow) {
    const int defaultRow = m_defaultName.isEmpty() ? -1 : findText(m_defaultName);
    if (defaultRow < 0 && keptRow >= 0) {
        setCurrentIndex(keptRow);
        if (typed)
            typed->restore(*lineEdit());
        return;
    }
    m_isOperatorsChoice = false;
    if (defaultRow >= 0)
        setCurrentIndex(defaultRow);
    const bool isOwnText = typed && !typed->text().isEmpty() && typed->text() != m_defaultName;
    if (isOwnText && wasTypedIntoLastRow) {
        m_lastRowLabel = typed->text();
        setItemText(count() - 1, m_lastRowLabel);
    }
}

void BonjourBox::reopen(int highlightedRow) {
    // Once more, for a drop-down that fits the rows there are now.
    showPopup();
    if (highlightedRow >= 0)
        view()->setCurrentIndex(model()->index(highlightedRow, modelColumn(), rootModelIndex()));
}

void BonjourBox::fillRows() {
    const auto add = [this](const QString& label, const QString& host, const QString& address,
                            int scope, int port) {
        const int row = count();
        addItem(QIcon(), label, host);
        setItemData(row, address, addressRole);
        setItemData(row, scope, scopeRole);
        setItemData(row, port, portRole);
    };
    for (const InstInfo& each : m_instruments) {
        int scope = 0;
        int port = 0;
        const std::string address = each.SelectIPAddress(false, &scope, &port);
        add(QString::fromStdString(each.name), QString::fromStdString(each.host),
            QString::fromStdString(address), scope, port);
    }
    // Before the separator, so that without any instrument this row, not the line, is current.
    add(m_lastRowLabel, QStringLiteral(""), QStringLiteral(""), 0, typedAddressPort);
    insertSeparator(count() - 1);
}
