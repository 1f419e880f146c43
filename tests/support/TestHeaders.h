// Qt's headers that most tests need, precompiled for the sanitized builds. No file includes this
// one. Nothing of Qt Test is among them: it looks at macros that every test defines its own way.
#pragma once

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>

#include <functional>
#include <memory>
#include <string>
#include <vector>
