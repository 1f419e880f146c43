#include "NavBlock.h"

#include "EvenKeys.h"
#include "ui_NavBlock.h"

namespace {

struct NavKey {
    FixedLabelNonAscii* Ui_NavBlock::*button;
    unsigned char keyByte;
};

constexpr NavKey kNavKeys[] = {
    {&Ui_NavBlock::homeKey, 0x24},      {&Ui_NavBlock::endKey, 0x23},
    {&Ui_NavBlock::pgupKey, 0x21},      {&Ui_NavBlock::pgdnKey, 0x22},
    {&Ui_NavBlock::leftArrowKey, 0x25}, {&Ui_NavBlock::rightArrowKey, 0x27},
    {&Ui_NavBlock::upArrowKey, 0x26},   {&Ui_NavBlock::dnArrowKey, 0x28},
};

} // namespace

NavBlock::NavBlock(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui_NavBlock>()) {
    m_ui->setupUi(this);
    for (const NavKey& key : kNavKeys) {
        activate(m_ui.get()->*key.button, key.keyByte);
    }
    new EvenKeys(m_ui->keyGrid);
}

NavBlock::~NavBlock() = default;

void NavBlock::activate(FixedLabelNonAscii* key, unsigned char keyByte) {
    key->setCodes(nonAsciiCodes(keyByte));
    connect(key, qOverload<LetterButton*>(&LetterButton::clicked), this, &NavBlock::keyPressed);
    m_keys.append(key);
}

void NavBlock::relabel(unsigned char state) {
    for (LetterButton* key : std::as_const(m_keys)) {
        key->relabel(state);
    }
}
