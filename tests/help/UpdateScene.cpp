#include "UpdateScene.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>

namespace {

QLabel* label(const UpdateWindow& window, Qt::TextFormat format) {
    for (QLabel* const label :
         window.findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->textFormat() == format)
            return label;
    }
    qFatal("the window has lost a label");
}

} // namespace

UpdateScene::UpdateScene(std::unique_ptr<HttpServer> server) : m_server(std::move(server)) {
    QDir(downloads()).removeRecursively();
    QDir().mkpath(downloads());
    connect(&m_watch, &QTimer::timeout, this, &UpdateScene::answerBox);
    m_watch.start(1);
}

std::unique_ptr<UpdateWindow> UpdateScene::window(web::Reach reach) const {
    return std::make_unique<UpdateWindow>(base(), QStringLiteral("tag"), QStringLiteral("2013.2"),
                                          nullptr, reach);
}

std::unique_ptr<UpdateWindow> UpdateScene::offered(const QByteArray& fileName, web::Reach reach) {
    m_server->answer("/projects/7100/files.txt", index("2013.3", fileName));
    auto dialog = window(reach);
    const QPushButton* const download = button(*dialog, QStringLiteral("Download"));
    [download] { QTRY_VERIFY_WITH_TIMEOUT(download->isEnabled(), 20000); }();
    return dialog;
}

QString UpdateScene::downloads() {
    return QDir::homePath() + QStringLiteral("/Downloads");
}

QStringList UpdateScene::entries() {
    return QDir(downloads()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

QByteArray UpdateScene::contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void UpdateScene::write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QString UpdateScene::installQuestion() {
    return QStringLiteral("%1|Install this now?|Click Yes to shutdown %1 and install the new "
                          "version.")
        .arg(QCoreApplication::applicationName());
}

QByteArray UpdateScene::index(const QByteArray& version, const QByteArray& fileName) {
    return "other\t1\tx\tother.dmg\ntag\t" + version + "\tx\t" + fileName + "\n";
}

QString UpdateScene::versionText(const UpdateWindow& window) {
    return label(window, Qt::RichText)->text();
}

QString UpdateScene::statusText(const UpdateWindow& window) {
    return statusLabel(window)->text();
}

QLabel* UpdateScene::statusLabel(const UpdateWindow& window) {
    return label(window, Qt::PlainText);
}

QPushButton* UpdateScene::button(const UpdateWindow& window, const QString& text) {
    for (QPushButton* const button :
         window.findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

void UpdateScene::clickDownload(const UpdateWindow& window) {
    button(window, QStringLiteral("Download"))->click();
}

void UpdateScene::answerBox() {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box || !box->isVisible())
        return;
    QStringList texts{box->windowTitle(), box->text()};
    if (!box->informativeText().isEmpty()) {
        texts.append(box->informativeText());
        QCOMPARE(box->defaultButton(), box->button(QMessageBox::No));
    }
    m_boxes.append(texts.join(u'|'));
    const bool question = box->button(QMessageBox::Yes) != nullptr;
    // What holds a name from the server is no markup, whatever it looks like.
    const bool isPlain =
        box->windowTitle() != QStringLiteral("Download") || box->textFormat() == Qt::PlainText;
    box->button(question ? m_answer : QMessageBox::Ok)->click();
    QVERIFY(isPlain);
}
