#pragma once

#include <QWidget>

#include <memory>

class FixedLabelNonAscii;
class LetterButton;
class Ui_FctKeyBlock;

/// The function keys of the palette, in one row. Its keys' clicks leave it as keyPressed(); the
/// palette turns them into codes.
class FctKeyBlock : public QWidget {
    Q_OBJECT

public:
    explicit FctKeyBlock(QWidget* parent = nullptr);
    ~FctKeyBlock() override;

signals:
    void keyPressed(LetterButton* key);

private:
    void activate(FixedLabelNonAscii* key, unsigned char keyByte);

    std::unique_ptr<Ui_FctKeyBlock> m_ui;
};
