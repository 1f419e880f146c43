#include "LCDColorPicker.h"

#include "ColorTables.h"
#include "LCD7100.h"
#include "ui_LCDColorPicker.h"

#include <QPushButton>

LCDColorPicker::LCDColorPicker(LCD7100* screen)
    : QDialog(screen), m_screen(screen), m_form(std::make_unique<Ui_LCDColorPicker>()) {
    m_form->setupUi(this);
    m_form->buttonBox->button(QDialogButtonBox::Apply)->setDefault(true);
    connect(m_form->buttonBox, &QDialogButtonBox::clicked, this, &LCDColorPicker::clicked);
}

LCDColorPicker::~LCDColorPicker() = default;

void LCDColorPicker::setColors(QColor text, QColor background, QColor highlight) {
    m_form->sample1->setColor(text);
    m_form->sample2->setColor(background);
    m_form->sample3->setColor(highlight);
}

void LCDColorPicker::clicked(QAbstractButton* button) {
    switch (m_form->buttonBox->buttonRole(button)) {
    case QDialogButtonBox::ResetRole:
        setColors(ColorTables::defaultText(), ColorTables::defaultBackground(),
                  ColorTables::defaultHighlight());
        break;
    case QDialogButtonBox::ApplyRole:
        m_screen->setColorsFromDialog(m_form->sample1->color(), m_form->sample2->color(),
                                      m_form->sample3->color());
        break;
    default:
        close();
    }
}
