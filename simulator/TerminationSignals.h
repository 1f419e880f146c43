#pragma once

#include <QObject>

/// Turns the system's wish that the program should end (SIGINT, SIGTERM; Ctrl+C and closing the
/// window on Windows) into a signal on the GUI thread. At most one object at a time.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    void terminationRequested();
};
