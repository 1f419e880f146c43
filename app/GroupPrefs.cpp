#include "GroupPrefs.h"

#include "ui_GroupPrefs.h"

GroupPrefs::GroupPrefs(QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui_GroupPrefs>()) {
    m_form->setupUi(this);
}

GroupPrefs::~GroupPrefs() = default;

void GroupPrefs::setMaxCols(int columns) {
    m_form->spinBox->setValue(columns);
}

int GroupPrefs::maxCols() const {
    return m_form->spinBox->value();
}
