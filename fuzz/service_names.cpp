// Names of services, from the discovery library's replies to the rows of the list. The input is a
// script: a byte that says what happens, and a line with the name that it happens to.

#include "BonjourBox.h"
#include "FakeDnsSd.h"

#include <QApplication>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string_view>

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// The one application, without a display.
void startApplication() {
    static int argc = 1;
    static char name[] = "fuzz_service_names";
    static char* argv[] = {name, nullptr};
    static const bool isWithoutDisplay = qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(argc, argv);
    require(isWithoutDisplay);
}

/// A box, the library it browses with, and what must be on its list.
class Script {
public:
    Script() {
        m_box.start("_gx7100._tcp", "local.");
        m_library.nextCall(&m_browse);
    }

    void play(char deed, const std::string& name) {
        switch (deed) {
        case '+':
            announce(name);
            break;
        case '-':
            m_library.replyToBrowse(m_browse, 0, name);
            m_library.deliver();
            m_names.erase(name);
            break;
        case 'd':
            m_box.setDefault(QString::fromStdString(name));
            break;
        case 't':
            m_box.setEditText(QString::fromStdString(name));
            break;
        case 'p':
            name.empty() ? m_box.hidePopup() : m_box.showPopup();
            break;
        default:
            m_box.setCurrentIndex(static_cast<int>(name.size()) % m_box.count());
            break;
        }
        check();
    }

private:
    void announce(const std::string& name) {
        m_library.replyToBrowse(m_browse, kDNSServiceFlagsAdd, name);
        m_library.deliver();
        DNSServiceRef ref = nullptr;
        m_library.nextCall(&ref);
        // What it says and where it is are as hostile as its name.
        m_library.replyToResolve(ref, 0, name, name);
        m_library.deliver();
        m_library.nextCall(&ref);
        m_library.replyToQuery(ref, 0, 1, std::string("\x0A\x00\x00\x01", 4));
        m_library.nextCall(&ref);
        m_library.replyToQuery(ref, 0, 28, name);
        m_library.deliver();
        m_names.insert(name);
    }

    void check() {
        require(m_box.count() == static_cast<int>(m_names.size()) + 2);
        std::multiset<QString> expected;
        for (const std::string& name : m_names)
            expected.insert(QString::fromStdString(name));
        std::multiset<QString> listed;
        for (int row = 0; row < m_box.count() - 2; ++row)
            listed.insert(m_box.itemText(row));
        require(listed == expected);
        require(m_library.running() == 1);
        require(m_library.misuses().empty());

        std::string ip;
        int scope = -1;
        int port = -1;
        const int row = m_box.currentIndex();
        const bool isLine = row == m_box.count() - 2;
        require(m_box.getIP(ip, &scope, &port) == !isLine);
        if (!isLine)
            require(row == m_box.count() - 1 ? port == 7100 : ip == "10.0.0.1");
    }

    FakeDnsSd m_library;
    BonjourBox m_box;
    DNSServiceRef m_browse = nullptr;
    std::set<std::string> m_names;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    startApplication();
    Script script;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    for (int line = 0; line < 50 && !input.empty(); ++line) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        const std::string_view whole = input.substr(0, end);
        input.remove_prefix(std::min(end + 1, input.size()));
        // A name reaches the program as a C string.
        const std::string_view name = whole.substr(std::min<std::size_t>(1, whole.size()));
        script.play(whole.empty() ? '+' : whole.front(),
                    std::string(name.substr(0, std::min(name.find('\0'), name.size()))));
    }
    return 0;
}
