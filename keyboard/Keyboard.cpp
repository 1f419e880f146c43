#include "Keyboard.h"

#include "EvenKeys.h"
#include "KeypadFocus.h"
#include "MainKeys.h"
#include "ui_Keyboard.h"

Keyboard::Keyboard(QWidget* parent)
    : QWidget(parent, Qt::Tool), m_ui(std::make_unique<Ui_Keyboard>()) {
    m_ui->setupUi(this);
    // Shown while the operator types for instruments, it leaves the keyboard where it is.
    setAttribute(Qt::WA_ShowWithoutActivating);
    // A keypad reads the same way in every language.
    setLayoutDirection(Qt::LeftToRight);
    for (const AlphabetKey& key : alphabetKeys()) {
        activate(m_ui.get()->*key.button, key.letter, key.letter - 'a' + 1);
    }
    for (const CharacterKey& key : characterKeys()) {
        activate(m_ui.get()->*key.button, key.codes);
    }
    for (const LabelledKey& key : labelledKeys()) {
        QStringList labels;
        for (const char* label : key.labels) {
            labels.append(tr(label));
        }
        activate(m_ui.get()->*key.button, key.codes, labels);
    }
    const auto keyPressedSlot = qOverload<LetterButton*>(&Keyboard::keyPressed);
    connect(m_ui->navKeys, &NavBlock::keyPressed, this, keyPressedSlot);
    connect(m_ui->fctKeys, &FctKeyBlock::keyPressed, this, keyPressedSlot);
    connect(m_ui->shiftKey, &QAbstractButton::clicked, this, &Keyboard::relabelKeys);
    connect(m_ui->ctrlKey, &QAbstractButton::clicked, this, &Keyboard::relabelKeys);
    connect(m_ui->actionNavKeys, &QAction::toggled, this, &Keyboard::showNavKeys);
    connect(m_ui->actionFctKeys, &QAction::toggled, this, &Keyboard::showFctKeys);
    new EvenKeys(m_ui->keyGrid);
    m_focus = new KeypadFocus(this);
    relabelKeys();
}

Keyboard::~Keyboard() = default;

void Keyboard::activate(LetterButton* key, unsigned char letter, unsigned char ctrlCode) {
    activate(key, letterCodes(letter, ctrlCode));
}

void Keyboard::activate(LetterButton* key, const KeyCodes& codes) {
    key->setCodes(codes);
    connect(key, qOverload<LetterButton*>(&LetterButton::clicked), this,
            qOverload<LetterButton*>(&Keyboard::keyPressed));
    m_keys.append(key);
}

void Keyboard::activate(FlexLabel* key, const KeyCodes& codes, const QStringList& labels) {
    key->setLabels(labels);
    activate(key, codes);
}

unsigned char Keyboard::state() const {
    return modifierState(m_ui->shiftKey->isChecked(), m_ui->ctrlKey->isChecked());
}

void Keyboard::keyPressed(LetterButton* key) {
    emit keyPressed(key->theCode(state()));
}

void Keyboard::showModState(bool shift, bool ctrl) {
    const unsigned char before = state();
    m_ui->shiftKey->setChecked(shift);
    m_ui->ctrlKey->setChecked(ctrl);
    if (state() != before) {
        relabelKeys();
    }
}

void Keyboard::relabelKeys() {
    for (LetterButton* key : std::as_const(m_keys)) {
        key->relabel(state());
    }
    m_ui->navKeys->relabel(state());
}

void Keyboard::takeKeyboard() {
    m_focus->takeKeyboard();
}

void Keyboard::showNavKeys(bool show) {
    m_ui->actionNavKeys->setChecked(show);
    m_ui->navKeys->setVisible(show);
    fitWindow();
}

void Keyboard::showFctKeys(bool show) {
    m_ui->actionFctKeys->setChecked(show);
    m_ui->fctKeys->setVisible(show);
    fitWindow();
}

void Keyboard::fitWindow() {
    adjustSize();
}
