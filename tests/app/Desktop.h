#pragma once

#include <QImage>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>

/// A program that a test runs; ended with this object.
class Program : public QProcess {
    Q_OBJECT

public:
    Program(const QString& path, const QStringList& arguments,
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
    ~Program() override;

    /// Everything that it has written so far.
    QString output();

private:
    QString m_output;
};

/// A display without a screen, with a window manager, and the hands of an operator. Every word is
/// a call of the desktop tools; what cannot be done makes false or an empty answer.
class Desktop {
public:
    Desktop();

    bool isReady() const { return !m_display.isEmpty(); }
    /// The environment in which programs show their windows here.
    QProcessEnvironment environment() const;

    /// The visible window of this title, or nothing.
    QString window(const QString& title) const;
    void activate(const QString& window) const;
    void press(const QStringList& keys) const;
    void type(const QString& text) const;
    /// Clicks at a place in a window.
    void click(const QString& window, int x, int y) const;
    QImage picture(const QString& window) const;

private:
    QByteArray run(const QString& tool, const QStringList& arguments) const;

    std::unique_ptr<Program> m_server;
    std::unique_ptr<Program> m_manager;
    QString m_display;
};
