#pragma once

#include "BonjourClient.h"
#include "FakeDnsSd.h"
#include "RecordingListener.h"

#include <QTest>
#include <memory>

/// A discovery client between a scripted library and a listener that writes everything down. Made
/// anew for every test; closing it checks that nothing was left running or used wrongly.
class ClientDialogue {
public:
    ClientDialogue() : client(std::make_unique<BonjourClient>(&listener)) {}

    FakeDnsSd library;
    RecordingListener listener;
    std::unique_ptr<BonjourClient> client;

    /// The reference of the next call, which must be `call`; null with a failed test otherwise.
    DNSServiceRef expect(const char* call);
    /// No call was made that was not expected.
    void expectNoCall();
    /// What the listener was told since the last time, after everything was delivered.
    void expectTold(const QStringList& lines);

    /// Starts browsing.
    DNSServiceRef browse();
    /// Has `name` appear and its resolve started.
    DNSServiceRef appear(DNSServiceRef browse, const std::string& name);

    /// Destroys the client, unless that happened already; nothing may be left then.
    void close();
};

/// A test that has a dialogue of its own in every function.
class ClientDialogueTest : public QObject {
    Q_OBJECT

protected:
    std::unique_ptr<ClientDialogue> m;

private slots:
    void init() { m = std::make_unique<ClientDialogue>(); }
    void cleanup() {
        m->close();
        m.reset();
    }
};
