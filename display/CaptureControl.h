#pragma once

#include "CaptureInfo.h"

#include <QDialog>
#include <QString>

#include <memory>

class QSettings;
class Ui_CaptureControl;

inline const QString settings_capcon_geometry = QStringLiteral("capcon/geometry");
inline const QString settings_capcon_params = QStringLiteral("capcon/params");

/// The small modeless dialog in which the operator says how and where pictures of a screen are
/// saved. It writes nothing itself: each press of its button emits capture(). What it shows is
/// stored when it is closed.
class CaptureControl : public QDialog {
    Q_OBJECT

public:
    /// `settings` keeps what the dialog shows from run to run; it may be null, and must outlive
    /// the dialog otherwise.
    CaptureControl(QSettings* settings, QWidget* parent);
    ~CaptureControl() override;

    /// What "capcon/params" holds; see CaptureParams.
    QByteArray getParams() const;
    void setParams(QByteArray params);

    /// Stores what the dialog shows, and where it is while it can be seen.
    void saveLocation();

signals:
    void capture(CaptureInfo info);

public slots:
    /// Composes one capture and emits it.
    void triggerCapture();
    /// Lets the operator choose the directory.
    void browse();
    /// Also stores what the dialog shows: every way of closing it comes here.
    void done(int result) override;

private:
    double inches(const QString& text) const;

    QSettings* m_settings;
    std::unique_ptr<Ui_CaptureControl> m_form;
};
