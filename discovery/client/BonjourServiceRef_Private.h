#pragma once

#include "BonjourContext.h"

#include <QObject>
#include <dns_sd.h>
#include <memory>

class QSocketNotifier;

/// The body of a BonjourServiceRef: one reference of the discovery library, watched by the event
/// loop once selected, and the context that the library hands back with its replies.
class BonjourServiceRef_Private : public QObject {
    Q_OBJECT

public:
    explicit BonjourServiceRef_Private(BonjourClientImpl* impl) : m_impl(impl) {}
    ~BonjourServiceRef_Private() override { Free(); }

    /// Starts watching the reference's socket; false without a reference.
    bool Select();
    /// Ends the operation: nothing is watched, the reference is given back, and the context is
    /// marked as nobody's and released. Does nothing without a reference.
    void Free();

    BonjourClientImpl* m_impl;
    DNSServiceRef m_ref = nullptr;
    QSocketNotifier* m_notifier = nullptr;
    std::shared_ptr<BonjourContext> m_context;

private slots:
    /// May destroy this object: a reply can end the operation, or the whole client.
    void OnHandleRead();
};
