#pragma once

#include <QDialog>

#include <memory>

class Ui_GroupPrefs;

/// The preferences: how many columns the grid of tiles may have. Modal, made for one run.
class GroupPrefs : public QDialog {
    Q_OBJECT

public:
    explicit GroupPrefs(QWidget* parent = nullptr);
    ~GroupPrefs() override;

    /// Shown clamped to 1 to 4.
    void setMaxCols(int columns);
    int maxCols() const;

private:
    std::unique_ptr<Ui_GroupPrefs> m_form;
};
