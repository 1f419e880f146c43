#pragma once

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

/// Gives one test program settings, cache and runtime directories of its own, so that it never
/// reads or writes the user's. Construct it before the application object.
class TestEnvironment {
public:
    TestEnvironment();

    /// The temporary directory that everything lives in; removed with this object.
    QString path() const { return m_root.path(); }

private:
    QTemporaryDir m_root;
};

/// The body of a test program's main: one test class, run in a temporary environment.
template <typename TestClass>
int runTest(int argc, char** argv) {
    const TestEnvironment environment;
    const QApplication application(argc, argv);
    TestClass test;
    return QTest::qExec(&test, argc, argv);
}
