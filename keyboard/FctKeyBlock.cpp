#include "FctKeyBlock.h"

#include "EvenKeys.h"
#include "ui_FctKeyBlock.h"

namespace {

struct FctKey {
    FixedLabelNonAscii* Ui_FctKeyBlock::*button;
    unsigned char keyByte;
};

constexpr FctKey kFctKeys[] = {
    {&Ui_FctKeyBlock::k_labels, 0x12}, {&Ui_FctKeyBlock::k_f1, 0x60}, {&Ui_FctKeyBlock::k_f2, 0x61},
    {&Ui_FctKeyBlock::k_f3, 0x62},     {&Ui_FctKeyBlock::k_f4, 0x63}, {&Ui_FctKeyBlock::k_f5, 0x64},
};

} // namespace

FctKeyBlock::FctKeyBlock(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui_FctKeyBlock>()) {
    m_ui->setupUi(this);
    for (const FctKey& key : kFctKeys) {
        activate(m_ui.get()->*key.button, key.keyByte);
    }
    new EvenKeys(m_ui->keyGrid);
}

FctKeyBlock::~FctKeyBlock() = default;

void FctKeyBlock::activate(FixedLabelNonAscii* key, unsigned char keyByte) {
    key->setCodes(nonAsciiCodes(keyByte));
    connect(key, qOverload<LetterButton*>(&LetterButton::clicked), this, &FctKeyBlock::keyPressed);
}
