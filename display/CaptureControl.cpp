#include "CaptureControl.h"

#include "CaptureName.h"
#include "CaptureParams.h"
#include "WindowGeometry.h"
#include "ui_CaptureControl.h"

#include <QDir>
#include <QFileDialog>
#include <QLocale>
#include <QSettings>

#include <cmath>

namespace {

QString asDirectory(const QString& path) {
    return QDir::toNativeSeparators(path.endsWith(u'/') ? path : path + u'/');
}

/// 0 when it cannot be read or is no length.
double length(const QString& text) {
    bool read = false;
    double value = text.toDouble(&read);
    if (!read)
        value = QLocale().toDouble(text, &read);
    return read && std::isfinite(value) && value > 0 ? value : 0;
}

/// What the record holds before the first file, whatever language the window speaks.
constexpr QLatin1String noFile("<none>");

} // namespace

CaptureControl::CaptureControl(QSettings* settings, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_form(std::make_unique<Ui_CaptureControl>()) {
    m_form->setupUi(this);
    setWindowFlags(windowFlags() | Qt::Window);
    m_form->dirLabel->setText(asDirectory(QDir::homePath()));
    connect(m_form->captureButton, &QPushButton::clicked, this, &CaptureControl::triggerCapture);
    connect(m_form->browseButton, &QPushButton::clicked, this, &CaptureControl::browse);
    if (m_settings == nullptr)
        return;
    windowgeometry::restore(*this, m_settings->value(settings_capcon_geometry));
    if (m_settings->contains(settings_capcon_params))
        setParams(m_settings->value(settings_capcon_params).toByteArray());
}

CaptureControl::~CaptureControl() = default;

QByteArray CaptureControl::getParams() const {
    CaptureParams params;
    params.sizeChecked = m_form->sizeBox->isChecked();
    params.height = m_form->heightEdit->text();
    params.width = m_form->widthEdit->text();
    params.cursorChecked = m_form->cursorBox->isChecked();
    const QString previous = m_form->prevFile->text();
    params.previousFile = previous == tr("<none>") ? QString(noFile) : previous;
    params.incrementChecked = m_form->incrementBox->isChecked();
    params.counter = m_form->incVal->value();
    params.fileName = m_form->nameEditg->text();
    params.directory = m_form->dirLabel->text();
    params.border = m_form->borderBox->value();
    params.borderChecked = m_form->borderCheck->isChecked();
    params.units = m_form->unitsBox->currentIndex();
    return params.toBytes();
}

void CaptureControl::setParams(QByteArray bytes) {
    const CaptureParams params = CaptureParams::fromBytes(bytes);
    const auto check = [](QCheckBox* box, const std::optional<bool>& checked) {
        box->setChecked(checked.value_or(box->isChecked()));
    };
    const auto write = [](auto* field, const std::optional<QString>& text) {
        field->setText(text.value_or(field->text()));
    };
    const auto count = [](QSpinBox* box, const std::optional<int>& value) {
        box->setValue(value.value_or(box->value()));
    };
    check(m_form->sizeBox, params.sizeChecked);
    write(m_form->heightEdit, params.height);
    write(m_form->widthEdit, params.width);
    check(m_form->cursorBox, params.cursorChecked);
    write(m_form->prevFile, params.previousFile == noFile ? tr("<none>") : params.previousFile);
    check(m_form->incrementBox, params.incrementChecked);
    count(m_form->incVal, params.counter);
    write(m_form->nameEditg, params.fileName);
    // Anywhere else would be wherever the program was started.
    if (params.directory && QDir::isAbsolutePath(*params.directory))
        m_form->dirLabel->setText(asDirectory(*params.directory));
    count(m_form->borderBox, params.border);
    check(m_form->borderCheck, params.borderChecked);
    if (params.units && *params.units >= 0 && *params.units < m_form->unitsBox->count())
        m_form->unitsBox->setCurrentIndex(*params.units);
}

void CaptureControl::saveLocation() {
    if (m_settings == nullptr)
        return;
    if (isVisible() && !isMinimized())
        m_settings->setValue(settings_capcon_geometry, saveGeometry());
    m_settings->setValue(settings_capcon_params, getParams());
}

void CaptureControl::done(int result) {
    saveLocation();
    QDialog::done(result);
}

void CaptureControl::triggerCapture() {
    CaptureName name{m_form->dirLabel->text(), m_form->nameEditg->text(), std::nullopt};
    if (m_form->incrementBox->isChecked()) {
        name.counter = m_form->incVal->value();
        m_form->incVal->setValue(*name.counter + 1);
    }
    CaptureInfo info;
    info.fileName = name.filePath();
    m_form->prevFile->setText(info.fileName);
    if (m_form->sizeBox->isChecked()) {
        info.width = inches(m_form->widthEdit->text());
        info.height = inches(m_form->heightEdit->text());
    }
    info.showCursor = m_form->cursorBox->isChecked();
    info.border = m_form->borderCheck->isChecked() ? m_form->borderBox->value() : 0;
    emit capture(info);
}

/// A length in the units chosen.
double CaptureControl::inches(const QString& text) const {
    constexpr double cmPerInch = 2.54;
    return m_form->unitsBox->currentIndex() > 0 ? length(text) / cmPerInch : length(text);
}

void CaptureControl::browse() {
    QFileDialog dialog(this, tr("Pick destination directory for .pdf screen shots"),
                       m_form->dirLabel->text());
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setNameFilters({tr("PDF files (*.pdf)"), tr("All files (*)")});
    dialog.selectFile(QStringLiteral("default"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    m_form->dirLabel->setText(asDirectory(dialog.selectedFiles().constFirst()));
}
