#pragma once

#include <QList>
#include <QWidget>

#include <memory>

class FixedLabelNonAscii;
class LetterButton;
class Ui_NavBlock;

/// The cursor and screen keys of the palette. Its keys' clicks leave it as keyPressed(); the
/// palette turns them into codes.
class NavBlock : public QWidget {
    Q_OBJECT

public:
    explicit NavBlock(QWidget* parent = nullptr);
    ~NavBlock() override;

    /// Hands a modifier state on to every key.
    void relabel(unsigned char state);

signals:
    void keyPressed(LetterButton* key);

private:
    void activate(FixedLabelNonAscii* key, unsigned char keyByte);

    std::unique_ptr<Ui_NavBlock> m_ui;
    QList<LetterButton*> m_keys;
};
